// SPDX-License-Identifier: BSD-3-Clause
#include "options.h"

#include "error.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string_view>

const char* const helpText =
    R"(usage: bla_solve [options]              a cantilever beam in linear elasticity
       bla_solve [options] FILE.mtx     the linear system of a real Matrix Market file

Factorises a sparse matrix front by front, A = L*D*L^T (symmetric) or L*D*U (unsymmetric), without
exchanging rows on the way: a tiny pivot is replaced, and iterative refinement repairs what that did.
Prints what was done, how fast, and how far the answer can be trusted.

matrix
  --mesh NXxNYxNZ   elements of the beam along its length, width and height (51x13x13)
  --method M        auto, ldlt or ldu (auto: by the symmetry of the matrix)

right-hand side
  --rhs ones        A*x for x = (1, 1, ...), so that the error of the answer is known (default with a file)
  --rhs random      A*x for x random in [-1, 1]
  --rhs FILE        from a Matrix Market file of one or several columns
  --columns K       number of right-hand sides made by ones and random; columns after the first of ones
                    are random

numbers
  --tolerance T     pivots of at most this magnitude in the equilibrated matrix are replaced (1e-14)
  --nb N            panel width of the front elimination (default: by the size of the front)
  --refine N        at most N steps of iterative refinement (10)
  --threads N       threads of factorisation and solution (default: one for each processor)

condensation
  --condense FILE   instead of a solution, the matrix that is left of A where all unknowns but those listed in
                    FILE are eliminated (a Schur complement; of a structure, a superelement): their numbers,
                    counted from 1, in text; what follows % or # in a line is a comment
  --condensed FILE  where it goes: a Matrix Market array, rows and columns as listed

tasks of the factorisation
  --trace FILE      write when and on which thread each ran, as Chrome trace events (chrome://tracing, Perfetto)
  --simulate LIST   how long they would take on other numbers of workers, by list scheduling with the measured
                    times: --threads 1 --simulate 1,2,4,8,16 (one thread measures them undisturbed)

output
  --json            the report as one JSON object on stdout, nothing else
  --solution FILE   write the solution as a Matrix Market array
  --vtk FILE        where the deformed beam goes (beam.vtu)
  --no-vtk          do not write it
  --version         the version of the program
  --help            this text

A matrix is real, general, symmetric or skew-symmetric, coordinate or array; exponents may be Fortran's
(1.0D+00). A compressed file is to be unpacked first. An output file appears whole or not at all, and
never takes the place of an input file; devices, pipes and /dev/stdout are written straight.

exit status
  0  solved, or condensed
  1  a report was printed, but the answer is not to be trusted (the verdict says why), or something could not be
     written: one line on stderr for each
  2  bad input: one line on stderr, nothing written
)";

namespace {

template <class Number>
Number number(std::string_view option, std::string_view text, Number least, Number most)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !(value >= least && value <= most))
        throw InputError(std::string(option) + ": '" + std::string(text) + "' is not a sensible value");
    return value;
}

// Ascending, each once.
std::vector<int> parseWorkers(std::string_view option, std::string_view text)
{
    std::vector<int> workers;
    for (std::string_view rest = text;; rest.remove_prefix(rest.find(',') + 1)) {
        workers.push_back(number<int>(option, rest.substr(0, rest.find(',')), 1, 1000000));
        if (rest.find(',') == std::string_view::npos)
            break;
    }
    std::sort(workers.begin(), workers.end());
    workers.erase(std::unique(workers.begin(), workers.end()), workers.end());
    return workers;
}

void parseMesh(std::string_view text, BeamMesh& mesh)
{
    const std::string_view all = text;
    std::int64_t unknowns = 3;
    for (int axis = 0; axis < 3; ++axis) {
        const std::size_t end = axis < 2 ? text.find('x') : text.size();
        if (end == std::string_view::npos)
            throw InputError("--mesh: '" + std::string(all) + "' is not of the form NXxNYxNZ");
        mesh.elements[axis] = number<int>("--mesh", text.substr(0, end), 1, 1000000);
        unknowns *= mesh.elements[axis] + (axis > 0);
        if (unknowns > 20000000)
            throw InputError("--mesh: '" + std::string(all) + "' is more than 20 million unknowns");
        text.remove_prefix(axis < 2 ? end + 1 : end);
    }
}

} // namespace

Options parseOptions(int argc, char** argv)
{
    Options options;
    bool mesh = false, rhs = false, columns = false, vtk = false;
    std::string_view ofSolution; // an option that only a solution needs
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        for (const char* option : {"--rhs", "--columns", "--refine", "--solution", "--vtk", "--no-vtk"})
            if (word == option)
                ofSolution = word;
        const auto value = [&]() -> std::string_view {
            if (++i >= argc || argv[i][0] == '\0')
                throw InputError(std::string(word) + ": a value is missing");
            return argv[i];
        };
        if (word == "--help" || word == "-h") {
            options.help = true;
        } else if (word == "--version") {
            options.version = true;
        } else if (word == "--json") {
            options.json = true;
        } else if (word == "--mesh") {
            parseMesh(value(), options.beam);
            mesh = true;
        } else if (word == "--method") {
            const std::string_view m = value();
            if (m != "auto" && m != "ldlt" && m != "ldu")
                throw InputError("--method: '" + std::string(m) + "' is none of auto, ldlt and ldu");
            options.method = m == "auto"   ? Method::automatic
                             : m == "ldlt" ? Method::symmetric
                                           : Method::unsymmetric;
        } else if (word == "--rhs") {
            options.rhs = value();
            rhs = true;
        } else if (word == "--columns") {
            options.columns = number<int>(word, value(), 1, 10000);
            columns = true;
        } else if (word == "--tolerance") {
            options.tolerance = number<double>(word, value(), 0.0, 1.0);
        } else if (word == "--nb") {
            options.nb = number<int>(word, value(), 1, 4096);
        } else if (word == "--refine") {
            options.refinements = number<int>(word, value(), 0, 1000);
        } else if (word == "--threads") {
            options.threads = number<int>(word, value(), 1, 1024);
        } else if (word == "--trace") {
            options.trace = value();
        } else if (word == "--simulate") {
            options.simulate = parseWorkers(word, value());
        } else if (word == "--solution") {
            options.solution = value();
        } else if (word == "--condense") {
            options.condense = value();
        } else if (word == "--condensed") {
            options.condensed = value();
        } else if (word == "--vtk") {
            options.vtk = value();
            vtk = true;
        } else if (word == "--no-vtk") {
            options.vtk.clear();
            vtk = true;
        } else if (word.size() > 1 && word[0] == '-') {
            throw InputError("unknown option '" + std::string(word) + "' (--help lists them)");
        } else if (word.empty()) {
            throw InputError("the file name is empty");
        } else if (!options.matrix.empty()) {
            throw InputError("one matrix at a time: '" + options.matrix + "' or '" + std::string(word) + "'");
        } else {
            options.matrix = word;
        }
    }
    if (options.help || options.version)
        return options;
    if (options.condense.empty() != options.condensed.empty())
        throw InputError("--condense and --condensed go together");
    if (!options.condense.empty() && !ofSolution.empty())
        throw InputError(std::string(ofSolution) + " goes with a solution; --condense makes none");
    if (!options.matrix.empty() && mesh)
        throw InputError("--mesh goes with the beam, not with a file");
    if (!options.matrix.empty() && vtk)
        throw InputError("--vtk and --no-vtk go with the beam, not with a file");
    if (options.matrix.empty() && (rhs || columns))
        throw InputError("--rhs and --columns go with a file; the beam has its own load");
    if (columns && !options.rhsFile().empty())
        throw InputError("--columns: the number of right-hand sides is that of " + options.rhs);
    return options;
}
