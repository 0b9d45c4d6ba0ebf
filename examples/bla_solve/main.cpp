// SPDX-License-Identifier: BSD-3-Clause
// bla_solve: a sparse direct solver on the dense kernels of the module. See --help.
#include "analysis.h"
#include "beam.h"
#include "error.h"
#include "factor.h"
#include "matrix_market.h"
#include "options.h"
#include "refine.h"
#include "report.h"
#include "scaling.h"

#include <TOVBlaModule.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <random>
#include <unistd.h>

namespace {

class Stopwatch
{
public:
    // seconds since the last call
    double lap()
    {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - last_).count();
        last_ = now;
        return seconds;
    }

private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

// x known, b = A*x
Vectors chosenSolution(int n, const Options& options)
{
    Vectors x(n, options.columns);
    std::mt19937_64 random(1);
    for (int j = 0; j < x.columns; ++j)
        for (int i = 0; i < n; ++i)
            x.column(j)[i] = options.rhs == "ones" && j == 0
                                 ? 1.0
                                 : std::ldexp(static_cast<double>(random() >> 11), -52) - 1.0;
    return x;
}

double relativeError(const Vectors& x, const Vectors& exact)
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

int run(const Options& options)
{
    Stopwatch watch;
    Report report;
    const bool beam = options.matrix.empty();
    SparseMatrix a;
    Vectors b, exact;
    if (beam) {
        a = beamStiffness(options.beam);
        b = beamLoad(options.beam);
    } else {
        a = readMatrix(options.matrix);
        if (options.rhs == "ones" || options.rhs == "random") {
            exact = chosenSolution(a.n, options);
            b = Vectors(a.n, exact.columns);
            multiply(a, exact.value.data(), b.value.data(), b.columns);
        } else {
            b = readVectors(options.rhs, a.n);
        }
    }
    if (options.threads > 0)
        blaC_set_num_threads(options.threads);
    const double inputSeconds = watch.lap();

    const std::vector<double> scale = equilibrate(a);
    std::vector<char> late(a.n, 1);
    for (int i = 0; i < a.n; ++i)
        for (int p = a.start[i]; p < a.start[i + 1]; ++p)
            if (a.column[p] == i && a.value[p] != 0.0)
                late[i] = 0;
    const Analysis analysis = analyse(a, late);
    const double analysisSeconds = watch.lap();

    const Factor factor(analysis, a, scale, {options.tolerance, options.nb}, {});
    const double factorSeconds = watch.lap();

    const Refined solution = solveRefined(
        a, b, [&](Vectors& x) { factor.solve(x); }, options.refinements);
    const double solveSeconds = watch.lap();

    report.add("unknowns", "unknowns", std::int64_t{a.n});
    report.add("nonzeros", "nonzeros", static_cast<std::int64_t>(a.entries()));
    report.add("ordering", "ordering", std::string(analysis.ordering));
    report.add("fronts", "fronts", static_cast<std::int64_t>(analysis.fronts.size()));
    report.add("largest_front", "largest front", std::int64_t{analysis.largestFront});
    report.add("factor_entries", "factor entries", analysis.factorEntries);
    report.add("gflop", "work", analysis.flops * 1e-9, "Gflop");
    report.add("input_seconds", "input", inputSeconds, "s");
    report.add("analysis_seconds", "analysis", analysisSeconds, "s");
    report.add("factor_seconds", "factor", factorSeconds, "s");
    report.add("factor_gflops", "factor", analysis.flops * 1e-9 / factorSeconds, "GFLOP/s");
    report.add("solve_seconds", "solve", solveSeconds, "s");
    report.add("positive_pivots", "positive pivots", std::int64_t{factor.positive()});
    report.add("negative_pivots", "negative pivots", std::int64_t{factor.negative()});
    report.add("replaced_pivots", "replaced pivots", std::int64_t{factor.replaced()});
    report.add("refinement_steps", "refinement steps", std::int64_t{solution.steps});
    report.add("relative_residual", "relative residual", solution.residual);
    report.add("correction", "last correction", solution.correction);
    if (exact.n > 0)
        report.add("solution_error", "solution error", relativeError(solution.x, exact));
    if (beam) {
        report.add("tip", "tip", tipDeflection(options.beam, solution.x.value.data()));
        report.add("theory", "theory", tipDeflectionTheory(options.beam));
        writeDeformedBeam(options.vtk, options.beam, solution.x.value.data(), 50.0);
    }
    std::fputs((options.json ? report.json() : report.text()).c_str(), stdout);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Options options = parseOptions(argc, argv);
        if (options.help) {
            std::fputs(helpText, stdout);
            return 0;
        }
        return run(options);
    } catch (const InputError& error) {
        std::fprintf(stderr, "bla_solve: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bla_solve: %s\n", error.what());
        return 1;
    }
}
