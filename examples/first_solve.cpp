// SPDX-License-Identifier: BSD-3-Clause
// A sparse system with two sets of values for one pattern: the analysis is made once.
#include <TOVBlaSolver.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <vector>

namespace {

struct Destroy
{
    void operator()(bla_solver* solver) const { bla_solver_destroy(solver); }
};
using Solver = std::unique_ptr<bla_solver, Destroy>;

void check(const Solver& solver, int status)
{
    if (status != BLA_SOLVER_OK)
        throw std::runtime_error(bla_solver_message(solver.get()));
}

} // namespace

int main()
try {
    bla_solver* handle;
    bla_solver_create(&handle);
    const Solver solver(handle);

    // Convection and diffusion on a line: -u'' + c*u' = 1, general tridiagonal rows.
    const int n = 9;
    const double h = 1.0 / (n + 1);
    std::vector<std::int64_t> start{0};
    std::vector<std::int32_t> column;
    for (int i = 0; i < n; ++i) {
        for (int j : {i - 1, i, i + 1})
            if (j >= 0 && j < n)
                column.push_back(j);
        start.push_back(static_cast<std::int64_t>(column.size()));
    }
    check(solver, bla_solver_analyse(solver.get(), BLA_SOLVER_GENERAL, n, start.data(), column.data()));

    bool good = true;
    for (const double c : {0.0, 10.0}) {
        std::vector<double> value;
        for (int i = 0; i < n; ++i)
            for (std::int64_t e = start[i]; e < start[i + 1]; ++e)
                value.push_back(column[e] == i ? 2 / (h * h) : -1 / (h * h) + (column[e] - i) * c / (2 * h));
        std::vector<double> b(n, 1.0), x = b;
        double bound;
        check(solver, bla_solver_factorise(solver.get(), value.data()));
        check(solver, bla_solver_solve(solver.get(), 0, 1, x.data(), n));
        check(solver, bla_solver_refine(solver.get(), value.data(), 1, b.data(), n, x.data(), n));
        check(solver, bla_solver_get(solver.get(), "error_estimate", &bound));
        std::printf("c = %-3g u(1/2) = %.6f, relative error at most %.0e\n", c, x[n / 2], bound);
        good = good && bound < 1e-12;
    }
    return good ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
