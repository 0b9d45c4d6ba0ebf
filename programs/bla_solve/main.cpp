// SPDX-License-Identifier: BSD-3-Clause
// bla_solve: the sparse direct solver at the command line. See --help.
#include "beam.h"
#include "condense.h"
#include "error.h"
#include "library.h"
#include "matrix_market.h"
#include "options.h"
#include "output_file.h"
#include "problem.h"
#include "report.h"
#include "standard_output.h"
#include "stopwatch.h"
#include "task_report.h"
#include "trace.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <new>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace {

void keepInput(const std::string& input, const std::string& output)
{
    if (sameFile(output, input))
        throw InputError(output + ": the output would overwrite the input " + input);
}

// Before any work: every output can be written, and is none of the inputs.
void checkOutputs(const Options& options)
{
    const bool picture = options.matrix.empty() && options.condense.empty();
    const std::pair<const char*, std::string> outputs[] = {{"--solution", options.solution},
                                                           {"--condensed", options.condensed},
                                                           {"--trace", options.trace},
                                                           {"--vtk", picture ? options.vtk : ""}};
    for (const auto& [name, output] : outputs) {
        if (output.empty())
            continue;
        for (const std::string& input : {options.matrix, options.rhsFile(), options.condense})
            keepInput(input, output);
        checkWritable(output);
        for (const auto* other = outputs; other->first != name; ++other)
            if (!other->second.empty() && samePlace(other->second, output))
                throw InputError(std::string(other->first) + " and " + name +
                                 " name the same file: " + output);
    }
}

// One line that is written over while the work goes on, and gone at its end.
Monitor progressLine(bool wanted)
{
    if (!wanted || !isatty(STDOUT_FILENO) || !isatty(STDERR_FILENO))
        return [](const char*, double) {};
    return [watch = Stopwatch(), waited = 1.0](const char* what, double share) mutable {
        waited += watch.lap();
        if (share >= 1.0)
            std::fputs("\r\033[K", stderr);
        else if (share == 0.0 || waited > 0.1)
            waited = 0.0, std::fprintf(stderr, share > 0.0 ? "\r\033[K%s ... %.0f %%" : "\r\033[K%s ...",
                                       what, 100.0 * share);
    };
}

// Whatever ends the work, its line goes.
struct ProgressEnd
{
    const Monitor& monitor;
    ~ProgressEnd() { monitor("", 1.0); }
};

std::string text(const char* pattern, double a, double b = 0.0, double c = 0.0)
{
    char buffer[120];
    std::snprintf(buffer, sizeof buffer, pattern, a, b, c);
    return buffer;
}

struct Phase
{
    double seconds, flops = 0.0;
};

void addPhase(Report& report, const char* key, const char* label, const Phase& phase)
{
    report.add(std::string(key) + "_seconds", "", phase.seconds);
    if (phase.flops == 0.0) {
        report.line(label, text("%8.3f s", phase.seconds));
        return;
    }
    const double rate = phase.seconds > 0.0 ? phase.flops * 1e-9 / phase.seconds : 0.0;
    report.add(std::string(key) + "_gflop", "", phase.flops * 1e-9);
    report.add(std::string(key) + "_gflops", "", rate);
    report.line(label, text("%8.3f s %9.3f Gflop %8.2f GFLOP/s", phase.seconds, phase.flops * 1e-9, rate));
}

void addCount(Report& report, const Library& library, const char* quantity, const char* label)
{
    report.add(quantity, label, static_cast<std::int64_t>(library.get(quantity)));
}

// Writes a file; false with a message where that fails.
template <class Write>
bool written(Write write)
{
    try {
        write();
        return true;
    } catch (const OutputError& error) {
        std::fprintf(stderr, "bla_solve: %s\n", error.what());
        return false;
    }
}

// false where the picture could not be written
bool reportBeam(Report& report, const BeamMesh& mesh, const Block& x, const std::string& vtk)
{
    const double tip = tipDeflection(mesh, x.value.data()), theory = tipDeflectionTheory(mesh);
    const double deviation = 100.0 * (tip / theory - 1.0);
    report.heading("Deflection of the tip");
    report.add("tip_deflection", "", tip);
    report.add("tip_deflection_theory", "", theory);
    report.add("tip_deflection_deviation_percent", "", deviation);
    report.line("computed", text("%.4f mm", 1e3 * tip));
    report.line("Timoshenko beam theory", text("%.4f mm (computed: %+.2f %%)", 1e3 * theory, deviation));
    if (vtk.empty())
        return true;
    // exaggerated so that the tip moves by a tenth of the length
    const double factor = tip > 0.0 && std::isfinite(tip) ? std::ceil(0.1 * mesh.size[0] / tip) : 1.0;
    if (!written([&] { writeDeformedBeam(vtk, mesh, x.value.data(), factor); }))
        return false;
    report.add("vtk_file", "", vtk);
    report.add("vtk_exaggeration", "", factor);
    report.line("deformed beam", vtk + text(" (for ParaView; displacements x %.0f)", factor));
    return true;
}

void reportMatrix(Report& report, const Options& options, const Matrix& a)
{
    const BeamMesh& mesh = options.beam;
    if (options.matrix.empty()) {
        const std::string elements = std::to_string(mesh.elements[0]) + "x" +
                                     std::to_string(mesh.elements[1]) + "x" +
                                     std::to_string(mesh.elements[2]);
        report.heading("Cantilever beam, linear elasticity, 8-node hexahedra with incompatible modes");
        report.add("mesh", "mesh", elements, "elements");
        report.line("beam", text("%g m x %g m x %g m", mesh.size[0], mesh.size[1], mesh.size[2]) +
                                text(", E = %g GPa, nu = %g, tip load %g kN", mesh.young * 1e-9, mesh.poisson,
                                     mesh.force * 1e-3));
    } else {
        report.heading(options.matrix);
        report.add("file", "", options.matrix);
    }
    report.add("unknowns", "unknowns", std::int64_t{a.n});
    report.add("nonzeros", "nonzeros", static_cast<std::int64_t>(a.entries()));
    report.add("symmetric", "symmetric", a.symmetric);
}

void reportFactorisation(Report& report, const Library& library, bool symmetric)
{
    report.heading("Factorisation");
    report.add("method", "method", std::string(symmetric ? "L*D*L^T" : "L*D*U"));
    const char* const orderings[] = {"", "METIS", "AMD", "given"};
    report.add("ordering", "ordering",
               std::string(orderings[static_cast<int>(library.get("ordering_used"))]));
    addCount(report, library, "fronts", "fronts");
    addCount(report, library, "largest_front", "largest front");
    addCount(report, library, "factor_entries", "factor entries");
    report.add("gflop", "", library.get("flops") * 1e-9);
    addCount(report, library, "positive_pivots", "positive pivots");
    addCount(report, library, "negative_pivots", "negative pivots");
    addCount(report, library, "replaced_pivots", "replaced pivots");
    addCount(report, library, "shifted_pivots", "shifted pivots");
    addCount(report, library, "memory", "memory in bytes");
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage); // in kilobytes
    report.add("peak_memory", "peak memory in bytes", std::int64_t{usage.ru_maxrss} * 1024);
}

// Up to the factorisation; what follows it differs.
void reportTime(Report& report, const Options& options, const Library& library, const Phase& input)
{
    report.heading("Time");
    report.add("threads", "threads", static_cast<std::int64_t>(library.get("threads_used")));
    addPhase(report, "input", options.matrix.empty() ? "assembly" : "reading", input);
    addPhase(report, "analysis", "analysis", {library.get("seconds_analyse")});
    addPhase(report, "factorisation", "factorisation",
             {library.get("seconds_factorise"), library.get("flops")});
}

// false where the trace could not be written
bool reportTasks(Report& report, const Tasks& tasks, const Options& options)
{
    reportTasks(report, tasks);
    const bool there = options.trace.empty() || written([&] { writeTrace(options.trace, tasks); });
    if (there && !options.trace.empty())
        report.add("trace_file", "written to", options.trace);
    if (!options.simulate.empty())
        reportSimulation(report, tasks, options.simulate);
    return there;
}

void reportAnswer(Report& report, const Library& library, const Problem& problem, const Block& x)
{
    report.heading("Answer");
    addCount(report, library, "refinement_steps", "refinement steps");
    report.add("relative_residual", "relative residual", library.get("residual"));
    report.add("backward_error", "backward error", library.get("backward_error"));
    report.add("condition", "condition", library.get("condition"));
    report.add("estimated_error", "bound on the error", library.get("error_estimate"));
    if (problem.exact.n > 0)
        report.add("solution_error", "error of the solution", relativeError(x, problem.exact));
    addCount(report, library, "unheld_motions", "");
    report.add("trusted", "", library.get("trusted") == 1.0);
    report.add("verdict", "verdict", library.verdict());
}

void reportCondensation(Report& report, const Condensed& condensed)
{
    report.heading("Condensed matrix");
    report.add("kept_unknowns", "kept unknowns", std::int64_t{condensed.matrix.n});
    report.add("condensed_residual", "relative residual", condensed.residual);
    report.add("trusted", "", condensed.trusted);
    report.add("verdict", "verdict", condensed.verdict);
}

int run(const Options& options)
{
    Stopwatch watch;
    checkOutputs(options);
    const Monitor monitor = progressLine(!options.json);
    const ProgressEnd end{monitor};
    monitor("reading", 0.0);
    const Problem problem = readProblem(options);
    const Matrix& a = problem.a;
    const Phase input{watch.lap()};
    const bool symmetric = a.symmetric && options.method != Method::unsymmetric;
    const bool condensing = !problem.kept.empty();
    Library library(monitor);
    library.set("threads", options.threads);
    library.set("tolerance", options.tolerance);
    library.set("panel_width", options.nb);
    library.set("refinements", options.refinements);
    library.set("record", options.record());
    library.keep(problem.kept);
    library.analyse(a, symmetric);
    library.factorise(a);
    Condensed condensed;
    Block x;
    if (condensing) {
        condensed = condense(a, problem.kept, library);
    } else {
        x = library.solve(problem.b);
        library.refine(a, problem.b, x);
    }
    const Phase total{input.seconds + watch.lap()};
    monitor("", 1.0);

    Report report;
    reportMatrix(report, options, a);
    if (!condensing)
        report.add("right_hand_sides", "right-hand sides", std::int64_t{problem.b.columns});
    reportFactorisation(report, library, symmetric);
    reportTime(report, options, library, input);
    if (condensing) {
        addPhase(report, "condensation", "condensation", {condensed.seconds});
    } else {
        addPhase(report, "solution", "solution",
                 {library.get("seconds_solve"), 4.0 * x.columns * library.get("factor_entries")});
        addPhase(report, "refinement", "refinement", {library.get("seconds_refine")});
    }
    addPhase(report, "total", "total", total);

    bool good = true;
    if (options.record())
        good = reportTasks(report, library.tasks(), options);
    if (condensing) {
        reportCondensation(report, condensed);
        const auto write = symmetric ? writeSymmetric : writeVectors;
        const bool there = written([&] { write(options.condensed, condensed.matrix); });
        if (there)
            report.add("condensed_file", "written to", options.condensed);
        good &= there && condensed.trusted;
    } else {
        if (options.matrix.empty())
            good &= reportBeam(report, options.beam, x, options.vtk);
        reportAnswer(report, library, problem, x);
        good &= library.get("trusted") == 1.0;
        if (!options.solution.empty())
            good &= written([&] { writeVectors(options.solution, x); });
    }
    good &= standard::print("bla_solve", options.json ? report.json() : report.text()) == 0;
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    standard::prepare();
    try {
        const Options options = parseOptions(argc, argv);
        if (options.help)
            return standard::print("bla_solve", helpText);
        if (options.version)
            return standard::print("bla_solve", "bla_solve " BLA_VERSION "\n");
        return run(options);
    } catch (const InputError& error) {
        std::fprintf(stderr, "bla_solve: %s\n", error.what());
        return 2;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "bla_solve: not enough memory\n");
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bla_solve: %s\n", error.what());
        return 1;
    }
}
