// SPDX-License-Identifier: BSD-3-Clause
#include "problem.h"

#include "error.h"
#include "matrix_market.h"
#include "unknowns.h"

#include <cmath>
#include <random>

namespace {

// x known, b = A*x
void chooseSolution(Problem& problem, const Options& options)
{
    Block x(problem.a.n, options.columns);
    std::mt19937_64 random(1);
    for (int j = 0; j < x.columns; ++j)
        for (int i = 0; i < x.n; ++i)
            x.column(j)[i] = options.rhs == "ones" && j == 0
                                 ? 1.0
                                 : std::ldexp(static_cast<double>(random() >> 11), -52) - 1.0;
    problem.b = product(problem.a, x);
    problem.exact = std::move(x);
}

} // namespace

Problem readProblem(const Options& options)
{
    Problem problem;
    problem.a = options.matrix.empty() ? beamStiffness(options.beam) : readMatrix(options.matrix);
    if (options.method == Method::symmetric && !problem.a.symmetric)
        throw InputError(options.matrix +
                         ": the matrix is not symmetric, and --method ldlt asks for a symmetric one");
    if (!options.condense.empty())
        problem.kept = readUnknowns(options.condense, problem.a.n);
    else if (options.matrix.empty())
        problem.b = beamLoad(options.beam);
    else if (options.rhsFile().empty())
        chooseSolution(problem, options);
    else
        problem.b = readVectors(options.rhsFile(), problem.a.n);
    return problem;
}

double relativeError(const Block& x, const Block& exact)
{
    double worst = 0.0;
    for (int j = 0; j < x.columns; ++j) {
        double difference = 0.0, norm = 0.0;
        for (int i = 0; i < x.n; ++i) {
            difference = std::fmax(difference, std::fabs(x.column(j)[i] - exact.column(j)[i]));
            norm = std::fmax(norm, std::fabs(exact.column(j)[i]));
        }
        worst = std::fmax(worst, difference / norm);
    }
    return worst;
}
