/* SPDX-License-Identifier: BSD-3-Clause */
/* A sparse symmetric system: analyse the pattern, factorise the values, solve, refine, and ask how good it
 * is. */
#include <TOVBlaSolver.h>

#include <stdio.h>

static void check(const bla_solver* solver, int status)
{
    if (status != BLA_SOLVER_OK)
        printf("%s\n", bla_solver_message(solver));
}

int main(void)
{
    /* The lower triangle of a chain of four springs, row by row, counted from 0. */
    const int32_t n = 4, column[] = {0, 0, 1, 1, 2, 2, 3};
    const int64_t start[] = {0, 1, 3, 5, 7};
    const double value[] = {2, -1, 2, -1, 2, -1, 1};
    const double b[] = {0, 0, 0, 1}; /* a load at the free end */
    double x[] = {0, 0, 0, 1}, bound;
    bla_solver* solver;

    check(NULL, bla_solver_create(&solver));
    check(solver, bla_solver_analyse(solver, BLA_SOLVER_SYMMETRIC_LOWER, n, start, column));
    check(solver, bla_solver_factorise(solver, value));
    check(solver, bla_solver_solve(solver, 0, 1, x, n));
    check(solver, bla_solver_refine(solver, value, 1, b, n, x, n));
    check(solver, bla_solver_get(solver, "error_estimate", &bound));
    bla_solver_destroy(solver);

    printf("x = %g %g %g %g, %s\n", x[0], x[1], x[2], x[3],
           bound < 1e-14 ? "to 14 digits" : "not to be trusted");
    return bound < 1e-14 ? 0 : 1;
}
