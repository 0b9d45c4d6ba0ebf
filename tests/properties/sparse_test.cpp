// SPDX-License-Identifier: BSD-3-Clause
// The sparse products on real matrices, against CHOLMOD and against one another.
#include "TOVBlaModule.h"
#include "bits.h"
#include "matrix_market.h"
#include "random.h"

#include <cholmod.h>

using namespace support;

namespace {

using Vectors = std::vector<double>;

Vectors random_vectors(int rows, int columns)
{
    auto random = generator(static_cast<std::uint64_t>(rows));
    Vectors x(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns));
    for (double& value : x)
        value = ordinary(random);
    return x;
}

Vectors umv(const Rows& a, const Vectors& x, int nrhs)
{
    Vectors y(static_cast<std::size_t>(a.m) * static_cast<std::size_t>(nrhs), NAN);
    blac_sparse_umv_(a.a.data(), x.data(), a.ia.data(), a.ja.data(), y.data(), &a.m, &a.n, &nrhs);
    return y;
}

Vectors umtv(const Rows& a, const Vectors& x, int nrhs)
{
    Vectors y(static_cast<std::size_t>(a.n) * static_cast<std::size_t>(nrhs), NAN);
    blac_sparse_umtv_(a.a.data(), x.data(), a.ia.data(), a.ja.data(), y.data(), &a.m, &a.n, &nrhs);
    return y;
}

// A·X (or Aᵀ·X) by CHOLMOD. It holds matrices by columns: our rows are the columns of its Aᵀ.
Vectors cholmod_product(const Rows& a, bool transpose, const Vectors& x, int nrhs)
{
    cholmod_common common;
    cholmod_start(&common);
    const int rows = transpose ? a.n : a.m, inner = transpose ? a.m : a.n;
    Vectors y(static_cast<std::size_t>(rows) * static_cast<std::size_t>(nrhs), 0.0);
    cholmod_sparse sparse{};
    sparse.nrow = static_cast<std::size_t>(a.n);
    sparse.ncol = static_cast<std::size_t>(a.m);
    sparse.nzmax = a.a.size();
    sparse.p = const_cast<int*>(a.ia.data());
    sparse.i = const_cast<int*>(a.ja.data());
    sparse.x = const_cast<double*>(a.a.data());
    sparse.stype = 0;
    sparse.itype = CHOLMOD_INT;
    sparse.xtype = CHOLMOD_REAL;
    sparse.dtype = CHOLMOD_DOUBLE;
    sparse.sorted = sparse.packed = 1;
    const auto dense = [nrhs](int count, double* values) {
        cholmod_dense d{};
        d.nrow = d.d = static_cast<std::size_t>(count);
        d.ncol = static_cast<std::size_t>(nrhs);
        d.nzmax = d.nrow * d.ncol;
        d.x = values;
        d.xtype = CHOLMOD_REAL;
        d.dtype = CHOLMOD_DOUBLE;
        return d;
    };
    cholmod_dense from = dense(inner, const_cast<double*>(x.data())), to = dense(rows, y.data());
    double one[2] = {1.0, 0.0}, zero[2] = {0.0, 0.0};
    EXPECT_TRUE(cholmod_sdmult(&sparse, !transpose, one, zero, &from, &to, &common));
    cholmod_finish(&common);
    return y;
}

// |y - z| <= 2·k·eps·(|A|·|X|) element by element, k the number of entries in the element's row of A.
void expect_close(const Rows& a, const Vectors& x, const Vectors& y, const Vectors& z)
{
    const std::size_t m = static_cast<std::size_t>(a.m), n = static_cast<std::size_t>(a.n);
    ASSERT_EQ(y.size(), z.size());
    for (std::size_t k = 0; k < y.size() / m; ++k)
        for (std::size_t i = 0; i < m; ++i) {
            double size = 0.0;
            const std::size_t begin = static_cast<std::size_t>(a.ia[i]),
                              end = static_cast<std::size_t>(a.ia[i + 1]);
            for (std::size_t p = begin; p < end; ++p)
                size += std::fabs(a.a[p] * x[static_cast<std::size_t>(a.ja[p]) + k * n]);
            const double bound = 2.0 * static_cast<double>(end - begin) * 0x1p-53 * size;
            ASSERT_LE(std::fabs(y[i + k * m] - z[i + k * m]), bound) << "row " << i << ", column " << k;
        }
}

void expect_same_bits(const Vectors& y, const Vectors& z)
{
    ASSERT_EQ(y.size(), z.size());
    for (std::size_t i = 0; i < y.size(); ++i)
        ASSERT_EQ(bits(y[i]), bits(z[i])) << "element " << i;
}

template <class Body>
void on_every_matrix(Body body)
{
    const auto files = matrix_files();
    ASSERT_FALSE(files.empty());
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename());
        const Rows a = read_matrix(file);
        ASSERT_GT(a.a.size(), 0u);
        for (int nrhs : {1, 2, 3, 8, 13}) {
            SCOPED_TRACE(nrhs);
            body(a, nrhs);
            if (::testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(SparseProperties, TheProductAgreesWithCholmod)
{
    on_every_matrix([](const Rows& a, int nrhs) {
        const Vectors x = random_vectors(a.n, nrhs);
        expect_close(a, x, umv(a, x, nrhs), cholmod_product(a, false, x, nrhs));
    });
}

TEST(SparseProperties, TheTransposedProductAgreesWithCholmod)
{
    on_every_matrix([](const Rows& a, int nrhs) {
        const Vectors x = random_vectors(a.m, nrhs);
        expect_close(a.transposed(), x, umtv(a, x, nrhs), cholmod_product(a, true, x, nrhs));
    });
}

TEST(SparseProperties, TheTransposedProductIsTheProductWithTheTransposedMatrix)
{
    // Both add the products of an element in the order of the rows of A: the bits agree too.
    on_every_matrix([](const Rows& a, int nrhs) {
        const Vectors x = random_vectors(a.m, nrhs);
        expect_same_bits(umtv(a, x, nrhs), umv(a.transposed(), x, nrhs));
    });
}

TEST(SparseProperties, TheListedProductIsTheTransposedProductOfTheListedRows)
{
    on_every_matrix([](const Rows& a, int nrhs) {
        auto random = generator(static_cast<std::uint64_t>(nrhs));
        std::vector<int> list, i, j;
        std::vector<double> values;
        const int nl = a.m / 2 + 1;
        for (int r = 0; r < nl; ++r) {
            const auto row = random() % static_cast<std::size_t>(a.m);
            list.push_back(static_cast<int>(row));
            for (int p = a.ia[row]; p < a.ia[row + 1]; ++p) {
                i.push_back(r);
                j.push_back(a.ja[static_cast<std::size_t>(p)]);
                values.push_back(a.a[static_cast<std::size_t>(p)]);
            }
        }
        const Rows listed(nl, a.n, i, j, values);
        const Vectors x = random_vectors(nl, nrhs);
        Vectors y(static_cast<std::size_t>(a.n) * static_cast<std::size_t>(nrhs), NAN);
        blac_sparse_sparse_umtv_(a.a.data(), x.data(), a.ia.data(), a.ja.data(), y.data(), &nl, &a.n, &nrhs,
                                 list.data());
        expect_same_bits(y, umtv(listed, x, nrhs));
    });
}

} // namespace
