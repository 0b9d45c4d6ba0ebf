// SPDX-License-Identifier: BSD-3-Clause
#include "unheld.h"

#include "dense.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// A stiffness of nothing, beside |A|.
constexpr double nothing = 0x1p-46;
// The size of A*z that first-order errors of a motion z may leave, beside |A|*|z|.
constexpr double firstOrder = 0x1p-26;
// Solutions and memory that an explanation may cost.
constexpr int mostPivots = 256;
constexpr std::int64_t mostEntries = std::int64_t{1} << 26;

// M^-1*E
Vectors responses(int n, const std::vector<TreatedPivot>& treated, const Apply& apply)
{
    Vectors w(n, static_cast<int>(treated.size()));
    for (int j = 0; j < w.columns; ++j)
        w.column(j)[treated[j].unknown] = 1.0;
    apply(w);
    return w;
}

// An orthonormal basis of the columns of W, in its place. False where W is not finite.
bool orthonormalise(Vectors& w)
{
    const int t = w.columns, size = 32 * t;
    for (int j = 0; j < t; ++j) {
        const double norm = maxNorm(w.column(j), w.n);
        if (!std::isfinite(norm) || norm == 0.0)
            return false;
        std::transform(w.column(j), w.column(j) + w.n, w.column(j), [norm](double v) { return v / norm; });
    }
    std::vector<double> tau(t), work(size);
    int info = 0;
    blac_dgeqrf_(&w.n, &t, w.value.data(), &w.n, tau.data(), work.data(), &size, &info);
    if (info == 0)
        blac_dorgqr_(&w.n, &t, &t, w.value.data(), &w.n, tau.data(), work.data(), &size, &info);
    return info == 0;
}

// C := A^T*B
Vectors crossProduct(const Vectors& a, const Vectors& b)
{
    Vectors c(a.columns, b.columns);
    dense::gemm('T', 'N', a.columns, b.columns, a.n, 1.0, a.value.data(), a.n, b.value.data(), b.n, 0.0,
                c.value.data(), c.n);
    return c;
}

// H = U*diag(values)*V^T, the values falling; empty where there is no convergence.
struct Singular
{
    std::vector<double> values;
    Vectors u, v;
};

Singular decomposed(Vectors h)
{
    const int t = h.n, size = 10 * t;
    Singular s{std::vector<double>(t), Vectors(t, t), Vectors(t, t)};
    Vectors rows(t, t);
    std::vector<double> work(size);
    const char all = 'A';
    int info = 0;
    blac_dgesvd_(&all, &all, &t, &t, h.value.data(), &t, s.values.data(), s.u.value.data(), &t,
                 rows.value.data(), &t, work.data(), &size, &info);
    for (int j = 0; j < t; ++j)
        for (int i = 0; i < t; ++i)
            s.v.column(j)[i] = rows.column(i)[j];
    return info == 0 ? s : Singular();
}

// Rows of B that make up a nonsingular matrix, as many as B has columns, by complete pivoting.
std::vector<int> independentRows(Vectors b)
{
    std::vector<int> chosen;
    for (int done = 0; done < b.columns; ++done) {
        const auto begin = b.value.begin() + static_cast<std::ptrdiff_t>(b.n) * done;
        const auto largest = std::max_element(begin, b.value.end(),
                                              [](double x, double y) { return std::fabs(x) < std::fabs(y); });
        const int row = static_cast<int>((largest - begin) % b.n);
        const int column = done + static_cast<int>((largest - begin) / b.n);
        std::swap_ranges(b.column(done), b.column(done) + b.n, b.column(column));
        chosen.push_back(row);
        for (int j = done + 1; j < b.columns; ++j) {
            const double factor = b.column(j)[row] / b.column(done)[row];
            for (int i = 0; i < b.n; ++i)
                b.column(j)[i] -= factor * b.column(done)[i];
            b.column(j)[row] = 0.0;
        }
    }
    return chosen;
}

double euclidean(const double* x, int n)
{
    double sum = 0.0;
    for (int i = 0; i < n; ++i)
        sum += x[i] * x[i];
    return std::sqrt(sum);
}

// A*v for a block A and one vector
std::vector<double> combined(const Vectors& a, const double* v)
{
    std::vector<double> result(a.n);
    dense::gemm('N', 'N', a.n, 1, a.columns, 1.0, a.value.data(), a.n, v, a.columns, 0.0, result.data(), a.n);
    return result;
}

// The largest |z^T*b| / |b| over the columns, |z| = 1.
double part(const std::vector<double>& z, const Vectors& b)
{
    double largest = 0.0;
    for (int j = 0; j < b.columns; ++j) {
        double product = 0.0;
        for (int i = 0; i < b.n; ++i)
            product += z[i] * b.column(j)[i];
        if (product != 0.0)
            largest = std::max(largest, std::fabs(product) / euclidean(b.column(j), b.n));
    }
    return largest;
}

} // namespace

double unreachable(const UnheldMotions& motions, const Vectors& b)
{
    double largest = 0.0;
    for (const std::vector<double>& z : motions.reactions)
        largest = std::max(largest, part(z, b));
    return largest;
}

UnheldMotions findUnheldMotions(const SparseMatrix& a, const std::vector<TreatedPivot>& treated,
                                const Factorised& m)
{
    UnheldMotions motions;
    const int t = static_cast<int>(treated.size());
    if (t == 0 || t > mostPivots || std::int64_t{t} * a.n > mostEntries)
        return motions;
    Vectors right = responses(a.n, treated, m.solve);
    if (!orthonormalise(right))
        return motions;
    Vectors left = a.symmetric ? right : responses(a.n, treated, m.solveTransposed);
    if (!a.symmetric && !orthonormalise(left))
        return motions;
    Vectors image(a.n, t);
    multiply(a, right.value.data(), image.value.data(), t);
    const Singular s = decomposed(crossProduct(left, image));

    const double normA = normInf(a);
    std::vector<double> atTreated;
    for (int k = static_cast<int>(s.values.size()) - 1; k >= 0 && s.values[k] <= nothing * normA; --k) {
        const double* v = s.v.column(k);
        if (!(euclidean(combined(image, v).data(), a.n) <= firstOrder * normA))
            continue; // small by cancellation, as in indefinite systems
        ++motions.count;
        motions.reactions.push_back(combined(left, s.u.column(k)));
        const std::vector<double> z = combined(right, v);
        for (const TreatedPivot& pivot : treated)
            atTreated.push_back(z[pivot.unknown]);
    }
    Vectors shapes(t, motions.count);
    shapes.value = atTreated;
    for (int row : independentRows(shapes))
        motions.unknowns.push_back(treated[row].unknown);
    std::sort(motions.unknowns.begin(), motions.unknowns.end());
    return motions;
}
