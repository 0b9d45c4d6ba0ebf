// SPDX-License-Identifier: BSD-3-Clause
// Sparse products on 27-point patterns in three dimensions, scalar and with three unknowns a node, beside the
// loops as documented (blocks of eight columns) and other sparse libraries. Rates count two flops an entry
// and vector.
#include "bench.h"

#include "TOVBlaModule.h"

#include <Eigen/SparseCore>
#include <cholmod.h>
#include <rsb.h>

#include <algorithm>
#include <memory>

namespace bench {
namespace {

/// A square matrix in compressed rows, columns ascending, and two blocks of vectors.
struct Sparse
{
    int n, nrhs;
    std::vector<int> ia, ja;
    Array a, x, y;

    Sparse(int side, int unknowns, int columns) : Sparse(pattern(side, unknowns), columns) {}

    int64_t entries() const { return ia.back(); }

    static int64_t count(int side, int unknowns)
    {
        const int64_t neighbours = 3 * side - 2; // along one axis
        return neighbours * neighbours * neighbours * unknowns * unknowns;
    }

private:
    struct Pattern
    {
        std::vector<int> ia, ja;
    };

    Sparse(Pattern p, int columns)
        : n(static_cast<int>(p.ia.size()) - 1), nrhs(columns), ia(std::move(p.ia)), ja(std::move(p.ja)),
          a(static_cast<int64_t>(ja.size())), x(int64_t{n} * columns), y(int64_t{n} * columns)
    {
        fill(a);
        fill(x);
    }

    static Pattern pattern(int side, int unknowns)
    {
        Pattern p;
        p.ia.push_back(0);
        for (int node = 0; node < side * side * side; ++node) {
            const int at[] = {node % side, node / side % side, node / side / side};
            for (int unknown = 0; unknown < unknowns; ++unknown) {
                for (int z = std::max(at[2] - 1, 0); z <= std::min(at[2] + 1, side - 1); ++z)
                    for (int y_ = std::max(at[1] - 1, 0); y_ <= std::min(at[1] + 1, side - 1); ++y_)
                        for (int x_ = std::max(at[0] - 1, 0); x_ <= std::min(at[0] + 1, side - 1); ++x_)
                            for (int u = 0; u < unknowns; ++u)
                                p.ja.push_back(((z * side + y_) * side + x_) * unknowns + u);
                p.ia.push_back(static_cast<int>(p.ja.size()));
            }
        }
        return p;
    }
};

using Problem = std::shared_ptr<Sparse>;

/// The arrays of a problem as CHOLMOD sees them: the columns of the transposed matrix.
struct Cholmod
{
    cholmod_common common;
    cholmod_sparse matrix{};
    cholmod_dense x{}, y{};

    explicit Cholmod(Sparse& s)
    {
        cholmod_start(&common);
        matrix.nrow = matrix.ncol = static_cast<std::size_t>(s.n);
        matrix.nzmax = static_cast<std::size_t>(s.entries());
        matrix.p = s.ia.data();
        matrix.i = s.ja.data();
        matrix.x = s.a.data();
        matrix.itype = CHOLMOD_INT;
        matrix.xtype = CHOLMOD_REAL;
        matrix.dtype = CHOLMOD_DOUBLE;
        matrix.sorted = matrix.packed = 1;
        x.nrow = x.d = y.nrow = y.d = matrix.nrow;
        x.ncol = y.ncol = static_cast<std::size_t>(s.nrhs);
        x.nzmax = y.nzmax = x.nrow * x.ncol;
        x.x = s.x.data();
        y.x = s.y.data();
        x.xtype = y.xtype = CHOLMOD_REAL;
        x.dtype = y.dtype = CHOLMOD_DOUBLE;
    }
    ~Cholmod() { cholmod_finish(&common); }

    void multiply(bool transposed)
    {
        double one[] = {1.0, 0.0}, zero[] = {0.0, 0.0};
        cholmod_sdmult(&matrix, !transposed, one, zero, &x, &y, &common);
    }
};

void add_product(const std::string& name, int side, int unknowns, int nrhs,
                 std::function<std::function<void()>(Problem)> prepare)
{
    const double work = 2.0 * static_cast<double>(Sparse::count(side, unknowns)) * nrhs;
    add(name, work, [=] {
        auto problem = std::make_shared<Sparse>(side, unknowns, nrhs);
        return Job{[] {}, prepare(problem)};
    });
}

/// Y(:,k..) := A·X(:,k..), W columns.
template <int W>
void multiply_plainly(const Sparse& s, int64_t k)
{
    const int64_t n = s.n;
    for (int64_t i = 0; i < n; ++i) {
        double sum[W] = {};
        for (int64_t p = s.ia[i]; p < s.ia[i + 1]; ++p) {
            const double value = s.a[p];
            const double* const x = s.x + s.ja[p] + k * n;
            for (int c = 0; c < W; ++c)
                sum[c] += value * x[c * n];
        }
        for (int c = 0; c < W; ++c)
            s.y[i + (k + c) * n] = sum[c];
    }
}

/// Y(:,k..) += Aᵀ·X(:,k..), W columns.
template <int W>
void scatter_plainly(const Sparse& s, int64_t k)
{
    const int64_t n = s.n;
    for (int64_t i = 0; i < n; ++i) {
        double x[W];
        for (int c = 0; c < W; ++c)
            x[c] = s.x[i + (k + c) * n];
        for (int64_t p = s.ia[i]; p < s.ia[i + 1]; ++p) {
            const double value = s.a[p];
            double* const y = s.y + s.ja[p] + k * n;
            for (int c = 0; c < W; ++c)
                y[c * n] = (value * x[c] + 0.0) + y[c * n];
        }
    }
}

/// The loops as documented: columns in blocks of eight, then the rest.
void multiply_plainly(const Sparse& s, bool transposed)
{
    if (transposed)
        std::fill_n(s.y.data(), s.y.size(), 0.0);
    for (int64_t k = 0; k < s.nrhs; k += 8)
        switch (s.nrhs - k) {
        case 1:
            transposed ? scatter_plainly<1>(s, k) : multiply_plainly<1>(s, k);
            break;
        case 2:
            transposed ? scatter_plainly<2>(s, k) : multiply_plainly<2>(s, k);
            break;
        case 4:
            transposed ? scatter_plainly<4>(s, k) : multiply_plainly<4>(s, k);
            break;
        default:
            transposed ? scatter_plainly<8>(s, k) : multiply_plainly<8>(s, k);
        }
}

using RowMajor = Eigen::SparseMatrix<double, Eigen::RowMajor, int>;

void add_librsb(const std::string& name, int side, int unknowns, int nrhs, bool transposed)
{
    add_product(name, side, unknowns, nrhs, [=](Problem p) -> std::function<void()> {
        static const bool initialised = rsb_lib_init(nullptr) == RSB_ERR_NO_ERROR;
        (void)initialised;
        rsb_err_t error = RSB_ERR_NO_ERROR;
        std::shared_ptr<rsb_mtx_t> matrix(
            rsb_mtx_alloc_from_csr_const(p->a.data(), p->ia.data(), p->ja.data(),
                                         static_cast<rsb_nnz_idx_t>(p->entries()), RSB_NUMERICAL_TYPE_DOUBLE,
                                         p->n, p->n, 0, 0, RSB_FLAG_NOFLAGS, &error),
            [](rsb_mtx_t* m) { rsb_mtx_free(m); });
        return [=] {
            const double one = 1.0, zero = 0.0;
            rsb_spmm(transposed ? RSB_TRANSPOSITION_T : RSB_TRANSPOSITION_N, &one, matrix.get(), p->nrhs,
                     RSB_FLAG_WANT_COLUMN_MAJOR_ORDER, p->x.data(), p->n, &zero, p->y.data(), p->n);
        };
    });
}

} // namespace

void add_sparse()
{
    const struct
    {
        const char* name;
        int side, unknowns;
    } matrices[] = {{"scalar_0.3MB", 10, 1},
                    {"scalar_39MB", 50, 1},
                    {"elasticity_42MB", 25, 3},
                    {"elasticity_177MB", 40, 3}};
    for (const auto& m : matrices)
        for (int nrhs : {1, 2, 4, 8, 16, 32}) {
            const int side = m.side, unknowns = m.unknowns;
            const std::string size = std::string(m.name) + "_nrhs" + std::to_string(nrhs) + '/';

            add_product("sparse_umv/" + size + "kernel", side, unknowns, nrhs, [](Problem p) {
                return [=] {
                    blac_sparse_umv_(p->a, p->x, p->ia.data(), p->ja.data(), p->y, &p->n, &p->n, &p->nrhs);
                };
            });
            add_product("sparse_umtv/" + size + "kernel", side, unknowns, nrhs, [](Problem p) {
                return [=] {
                    blac_sparse_umtv_(p->a, p->x, p->ia.data(), p->ja.data(), p->y, &p->n, &p->n, &p->nrhs);
                };
            });
            for (bool transposed : {false, true}) {
                const std::string family = (transposed ? "sparse_umtv/" : "sparse_umv/") + size;
                add_product(family + "loop", side, unknowns, nrhs,
                            [=](Problem p) { return [=] { multiply_plainly(*p, transposed); }; });
                add_product(family + "cholmod", side, unknowns, nrhs, [=](Problem p) {
                    auto cholmod = std::make_shared<Cholmod>(*p);
                    return [=] { (void)p, cholmod->multiply(transposed); };
                });
                add_product(family + "eigen", side, unknowns, nrhs, [=](Problem p) {
                    return [=] {
                        const Eigen::Map<const RowMajor> a(p->n, p->n, p->entries(), p->ia.data(),
                                                           p->ja.data(), p->a.data());
                        const Eigen::Map<const Eigen::MatrixXd> x(p->x.data(), p->n, p->nrhs);
                        Eigen::Map<Eigen::MatrixXd> y(p->y.data(), p->n, p->nrhs);
                        if (transposed)
                            y.noalias() = a.transpose() * x;
                        else
                            y.noalias() = a * x;
                    };
                });
                add_librsb(family + "librsb", side, unknowns, nrhs, transposed);
            }
        }
}

} // namespace bench
