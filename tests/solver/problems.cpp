// SPDX-License-Identifier: BSD-3-Clause
#include "problems.h"

#include "TOVBlaSolver.h"
#include "triplets.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>

namespace problems {

namespace {

double uniform(std::mt19937_64& random, double least, double most)
{
    return std::uniform_real_distribution<double>(least, most)(random);
}

SparseMatrix symmetricFrom(int n, std::vector<Triplet> entries)
{
    SparseMatrix a = fromTriplets(n, std::move(entries));
    a.symmetric = true;
    return a;
}

// A product of n random reflections, by columns.
Dense orthogonal(int n, std::mt19937_64& random)
{
    Dense q(static_cast<std::size_t>(n) * n, 0.0);
    for (int i = 0; i < n; ++i)
        q[i + n * i] = 1.0;
    std::normal_distribution<double> normal;
    for (int k = 0; k < n; ++k) {
        std::vector<double> v(n);
        for (double& value : v)
            value = normal(random);
        const double square = std::inner_product(v.begin(), v.end(), v.begin(), 0.0);
        for (int j = 0; j < n; ++j) {
            const double dot = std::inner_product(v.begin(), v.end(), q.begin() + n * j, 0.0);
            for (int i = 0; i < n; ++i)
                q[i + n * j] -= 2.0 * dot / square * v[i];
        }
    }
    return q;
}

} // namespace

SparseMatrix sparse(int n, const Dense& a)
{
    std::vector<Triplet> entries;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
            if (a[i + static_cast<std::size_t>(n) * j] != 0.0)
                entries.push_back({i, j, a[i + static_cast<std::size_t>(n) * j]});
    SparseMatrix s = fromTriplets(n, entries);
    s.symmetric = equal(s, transposed(s));
    return s;
}

Dense dense(const SparseMatrix& a)
{
    Dense d(static_cast<std::size_t>(a.n) * a.n, 0.0);
    for (int i = 0; i < a.n; ++i)
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
            d[i + static_cast<std::size_t>(a.n) * a.column[p]] = a.value[p];
    return d;
}

Dense conditioned(int n, double condition, bool symmetric, std::mt19937_64& random)
{
    const Dense u = orthogonal(n, random), v = symmetric ? u : orthogonal(n, random);
    Dense a(static_cast<std::size_t>(n) * n, 0.0);
    for (int k = 0; k < n; ++k) {
        const double share = k == 0 ? 0.0 : k == n - 1 ? 1.0 : uniform(random, 0.0, 1.0);
        const double value = std::pow(condition, -share);
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i)
                a[i + n * j] += u[i + n * k] * value * v[j + n * k];
    }
    for (int j = 0; j < n && symmetric; ++j)
        for (int i = 0; i < j; ++i)
            a[i + n * j] = a[j + n * i];
    return a;
}

SparseMatrix indefinite(int n, double smallest, double largest, std::mt19937_64& random)
{
    std::vector<Triplet> entries;
    for (int i = 0; i < n; ++i) {
        const double size = smallest * std::pow(largest / smallest, uniform(random, 0.0, 1.0));
        entries.push_back({i, i, random() % 2 ? size : -size});
        for (int k = 0; k < 2; ++k) {
            const int j = static_cast<int>(random() % n);
            const double value = uniform(random, -1.0, 1.0);
            if (j != i) {
                entries.push_back({i, j, value});
                entries.push_back({j, i, value});
            }
        }
    }
    return symmetricFrom(n, entries);
}

SparseMatrix grid(int nx, int ny, int nz)
{
    std::vector<Triplet> entries;
    const auto at = [&](int i, int j, int k) { return (i * ny + j) * nz + k; };
    const auto spring = [&](int p, int q) {
        entries.insert(entries.end(), {{p, p, 1.0}, {q, q, 1.0}, {p, q, -1.0}, {q, p, -1.0}});
    };
    for (int i = 0; i < nx; ++i)
        for (int j = 0; j < ny; ++j)
            for (int k = 0; k < nz; ++k) {
                if (i + 1 < nx)
                    spring(at(i, j, k), at(i + 1, j, k));
                if (j + 1 < ny)
                    spring(at(i, j, k), at(i, j + 1, k));
                if (k + 1 < nz)
                    spring(at(i, j, k), at(i, j, k + 1));
            }
    return symmetricFrom(nx * ny * nz, entries);
}

SparseMatrix lattice(int nx, int ny, int nz)
{
    std::vector<Triplet> entries;
    const auto at = [&](int i, int j, int k) { return (i * (ny + 1) + j) * (nz + 1) + k; };
    const auto spring = [&](int p, int q, const int(&d)[3]) {
        const double square = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
        for (int a = 0; a < 3; ++a)
            for (int b = 0; b < 3; ++b) {
                const double value = 1e9 * d[a] * d[b] / square;
                entries.insert(entries.end(), {{3 * p + a, 3 * p + b, value},
                                               {3 * q + a, 3 * q + b, value},
                                               {3 * p + a, 3 * q + b, -value},
                                               {3 * q + a, 3 * p + b, -value}});
            }
    };
    constexpr int directions[13][3] = {{1, 0, 0},  {0, 1, 0},  {0, 0, 1}, {1, 1, 0},  {1, -1, 0},
                                       {1, 0, 1},  {1, 0, -1}, {0, 1, 1}, {0, 1, -1}, {1, 1, 1},
                                       {1, 1, -1}, {1, -1, 1}, {-1, 1, 1}};
    for (int i = 0; i <= nx; ++i)
        for (int j = 0; j <= ny; ++j)
            for (int k = 0; k <= nz; ++k)
                for (const auto& d : directions) {
                    const int x = i + d[0], y = j + d[1], z = k + d[2];
                    if (x >= 0 && x <= nx && y >= 0 && y <= ny && z >= 0 && z <= nz)
                        spring(at(i, j, k), at(x, y, z), d);
                }
    return symmetricFrom(3 * (nx + 1) * (ny + 1) * (nz + 1), entries);
}

Dense nearlySingular(int n, double smallest, std::mt19937_64& random)
{
    Dense l(static_cast<std::size_t>(n) * n, 0.0), a(l.size(), 0.0);
    for (int k = 0; k < n; ++k) {
        const double d = std::pow(smallest, random() % 3 == 0 ? 1.0 : uniform(random, 0.0, 1.0));
        l[k + n * k] = 1.0;
        for (int i = k + 1; i < n; ++i)
            l[i + n * k] = uniform(random, -1.0, 1.0) / std::sqrt(random() % 3 == 0 ? d : 1.0);
        for (int j = k; j < n; ++j)
            for (int i = k; i < n; ++i)
                a[i + n * j] += l[i + n * k] * d * l[j + n * k];
    }
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < j; ++i)
            a[i + n * j] = a[j + n * i];
    return a;
}

SparseMatrix held(const SparseMatrix& a, const std::vector<int>& unknowns)
{
    std::vector<int> number(a.n, 0);
    for (int i : unknowns)
        number[i] = -1;
    int count = 0;
    for (int& i : number)
        i = i < 0 ? -1 : count++;
    std::vector<Triplet> entries;
    for (int i = 0; i < a.n; ++i)
        for (auto p = a.start[i]; p < a.start[i + 1]; ++p)
            if (number[i] >= 0 && number[a.column[p]] >= 0)
                entries.push_back({number[i], number[a.column[p]], a.value[p]});
    return symmetricFrom(count, entries);
}

Vectors ones(int n)
{
    Vectors x(n, 1);
    std::fill(x.value.begin(), x.value.end(), 1.0);
    return x;
}

Vectors product(const SparseMatrix& a, const Vectors& x)
{
    Vectors b(a.n, x.columns);
    multiply(a, x.value.data(), b.value.data(), x.columns);
    return b;
}

double relativeError(const Vectors& x, const Vectors& y)
{
    double difference = 0.0, norm = 0.0;
    for (std::size_t i = 0; i < y.value.size(); ++i) {
        difference = std::max(difference, std::fabs(x.value[i] - y.value[i]));
        norm = std::max(norm, std::fabs(y.value[i]));
    }
    return difference / norm;
}

Vectors exactSolution(int n, const Dense& a, const Vectors& b)
{
    const auto lessModulus = [](long double x, long double y) { return std::fabs(x) < std::fabs(y); };
    std::vector<std::vector<long double>> row(n);
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
            row[i].push_back(a[i + static_cast<std::size_t>(n) * j]);
        row[i].push_back(b.value[i]);
        const long double largest = *std::max_element(row[i].begin(), row[i].end() - 1, lessModulus);
        for (long double& value : row[i])
            value /= largest; // so that exchanges compare what can be compared
    }
    for (int k = 0; k < n; ++k) {
        std::iter_swap(row.begin() + k,
                       std::max_element(row.begin() + k, row.end(), [&](const auto& x, const auto& y) {
                           return lessModulus(x[k], y[k]);
                       }));
        for (int i = k + 1; i < n; ++i) {
            const long double factor = row[i][k] / row[k][k];
            for (int j = k; j <= n; ++j)
                row[i][j] -= factor * row[k][j];
        }
    }
    Vectors x(n, 1);
    for (int k = n - 1; k >= 0; --k) {
        row[k][n] /= row[k][k];
        for (int i = 0; i < k; ++i)
            row[i][n] -= row[i][k] * row[k][n];
        x.value[k] = static_cast<double>(row[k][n]);
    }
    return x;
}

Outcome solved(const SparseMatrix& a, const Vectors& b, const How& how)
{
    bla_solver* handle = nullptr;
    bla_solver_create(&handle);
    const std::unique_ptr<bla_solver, void (*)(bla_solver*)> solver(handle, bla_solver_destroy);
    Outcome o;
    o.x = b;
    bla_solver_set(handle, "refinements", how.refinements);
    const int kind = how.symmetric ? BLA_SOLVER_SYMMETRIC_LOWER : BLA_SOLVER_GENERAL;
    if (bla_solver_analyse(handle, kind, a.n, a.start.data(), a.column.data()) ||
        bla_solver_factorise(handle, a.value.data()) ||
        bla_solver_solve(handle, 0, b.columns, o.x.value.data(), a.n) ||
        bla_solver_refine(handle, a.value.data(), b.columns, b.value.data(), a.n, o.x.value.data(), a.n)) {
        o.verdict = bla_solver_message(handle);
        return o;
    }
    const auto get = [&](const char* quantity) {
        double value = NAN;
        bla_solver_get(handle, quantity, &value);
        return value;
    };
    o.verdict = bla_solver_verdict(handle);
    o.trusted = get("trusted") == 1.0;
    o.residual = get("residual");
    o.backwardError = get("backward_error");
    o.bound = get("error_estimate");
    o.steps = static_cast<int>(get("refinement_steps"));
    o.replaced = static_cast<int>(get("replaced_pivots"));
    o.shifted = static_cast<int>(get("shifted_pivots"));
    o.motions = static_cast<int>(get("unheld_motions"));
    o.unheld.resize(o.motions);
    bla_solver_unheld(handle, o.unheld.data());
    return o;
}

} // namespace problems
