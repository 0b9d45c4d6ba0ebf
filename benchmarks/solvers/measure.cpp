// SPDX-License-Identifier: BSD-3-Clause
// One contender and one matrix. Analyses, and then does what it is told on the standard input, so that
// several of these programs can take turns:
//
//     factorise SECONDS        factorises again and again, with other values each time, for that long
//     solve COLUMNS SECONDS    the same with solutions
//     verify                   factorises and solves once more and computes the largest backward error
//
// Answers each with a line of JSON; the time is that of the fastest.
//
// usage: bla_measure_NAME THREADS PROBLEM [wall|cpu]
//
// The problem is from bla_make_problem. cpu: the time that the process had a processor, for one thread on a
// machine that others use.
// Status 77: the solver is not on this machine.
#include "contender.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <vector>

namespace {

clockid_t clockUsed = CLOCK_MONOTONIC;

class Stopwatch
{
public:
    double seconds() const { return now() - start_; }

private:
    static double now()
    {
        timespec time;
        clock_gettime(clockUsed, &time);
        return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
    }
    double start_ = now();
};

// The same values times a power of two, another one at each call: nobody gets away with doing nothing.
void renew(Problem& problem)
{
    static bool large = false;
    large = !large;
    for (double& v : problem.value)
        v *= large ? 2.0 : 0.5;
}

template <class Action>
double fastest(double seconds, Action action)
{
    double best = 1e300;
    for (double spent = 0.0; spent < seconds || best == 1e300;) {
        const double taken = action();
        best = std::min(best, taken);
        spent += taken;
    }
    return best;
}

double factorise(Contender& contender, Problem& problem)
{
    renew(problem);
    Stopwatch watch;
    contender.factorise(problem.value.data());
    return watch.seconds();
}

// Right-hand sides of solutions that are 1, 2, ... in every unknown, and what becomes of them.
struct Block
{
    Block(const Problem& problem, int count)
        : columns(count), x(std::size_t{1} * problem.n * count), b(x.size())
    {
        for (int j = 0; j < count; ++j)
            std::fill_n(x.begin() + std::ptrdiff_t{problem.n} * j, problem.n, j + 1.0);
        multiply(problem, count, x.data(), b.data());
        std::fill(x.begin(), x.end(), 0.0); // not to be found there already
    }
    int columns;
    std::vector<double> x, b;
};

double solve(Contender& contender, Block& block)
{
    Stopwatch watch;
    contender.solve(block.columns, block.b.data(), block.x.data());
    return watch.seconds();
}

// Two of them in one process fight for the processors.
std::string openmpRunTimes()
{
    std::ifstream maps("/proc/self/maps");
    std::set<std::string> found;
    for (std::string line; std::getline(maps, line);)
        for (const char* name : {"libgomp", "libiomp5", "libomp"})
            if (line.find(std::string("/") + name + ".so") != std::string::npos)
                found.insert(name);
    std::string names;
    for (const std::string& name : found)
        names += (names.empty() ? "" : "+") + name;
    return names;
}

void obey(Contender& contender, Problem& problem)
{
    std::string command;
    while (std::cin >> command) {
        if (command == "factorise") {
            double seconds = 0.0;
            std::cin >> seconds;
            const double best = fastest(seconds, [&] { return factorise(contender, problem); });
            std::printf("{\"seconds\": %.9g}\n", best);
        } else if (command == "solve") {
            int columns = 1;
            double seconds = 0.0;
            std::cin >> columns >> seconds;
            Block block(problem, columns);
            const double best = fastest(seconds, [&] { return solve(contender, block); });
            std::printf("{\"seconds\": %.9g}\n", best);
        } else if (command == "verify") {
            factorise(contender, problem);
            double error = 0.0;
            for (int columns : {1, 8}) {
                Block block(problem, columns);
                solve(contender, block);
                error = std::max(error, backwardError(problem, columns, block.x.data(), block.b.data()));
            }
            std::printf("{\"error\": \"%.1e\"}\n", error);
        } else {
            throw std::runtime_error("unknown command " + command);
        }
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s THREADS PROBLEM [wall|cpu]\n", argv[0]);
        return 2;
    }
    if (argc > 3 && argv[3] == std::string("cpu"))
        clockUsed = CLOCK_PROCESS_CPUTIME_ID;
    try {
        Problem problem = read(argv[2]);
        const std::unique_ptr<Contender> contender = makeContender(problem, std::atoi(argv[1]));
        contender->tryOrders();
        Stopwatch watch;
        contender->analyse();
        const double analysis = watch.seconds();
        factorise(*contender, problem); // the first time takes memory
        const Cost cost = contender->cost();
        std::printf("{\"n\": %d, \"analysis\": %.9g, \"order\": \"%s\", \"entries\": %.0f, \"flops\": %.0f, "
                    "\"openmp\": \"%s\"}\n",
                    problem.n, analysis, cost.order.c_str(), cost.entries, cost.flops,
                    openmpRunTimes().c_str());
        std::fflush(stdout);
        obey(*contender, problem);
    } catch (const Missing& missing) {
        std::fprintf(stderr, "skipped: %s\n", missing.what());
        return 77;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}
