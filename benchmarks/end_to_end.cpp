// SPDX-License-Identifier: BSD-3-Clause
// Whole factorisations: the solver of the examples beside CHOLMOD (supernodal) and MUMPS (sequential), over
// the same BLAS and in the same order of elimination, interleaved in one process; the best of several runs
// counts.
//
// usage: bla_end_to_end [--threads=N] [--repetitions=N] [--cube=M...] [FILE.mtx...]
//
// The order is the one of the example's analysis (METIS, or AMD where that is sparser). All three factorise
// the equilibrated matrix, so that none of them has to scale. MUMPS takes it as positive definite, which
// spares it the search for pivots. Each code has factorised before and keeps its memory, as in a Newton
// iteration. Flops are those that each code does, with the zeros it stores.
#include "TOVBlaModule.h"
#include "analysis.h"
#include "beam.h"
#include "factor.h"
#include "matrix_market.h"
#include "profile.h"
#include "scaling.h"
#include "stopwatch.h"

#include <cholmod.h>
#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace {

struct Contender
{
    virtual ~Contender() = default;
    virtual void factorise() = 0;
    virtual void solve(Vectors& b) = 0;
    virtual double flops() const = 0;
    virtual double entries() const = 0;

    double seconds = 1e300;
};

class Ours : public Contender
{
public:
    Ours(const Analysis& analysis, const SparseMatrix& a)
        : analysis_(analysis), a_(a), factor_(analysis, true)
    {
    }
    void factorise() override { factor_.factorise(a_, PivotRule{1e-14, 0.0, 0}, Progress()); }
    void solve(Vectors& b) override { factor_.solve(b); }
    double flops() const override { return analysis_.flops; }
    double entries() const override { return static_cast<double>(analysis_.lowerEntries); }

private:
    const Analysis& analysis_;
    const SparseMatrix& a_;
    Factor factor_;
};

class Cholmod : public Contender
{
public:
    Cholmod(const Analysis& analysis, const SparseMatrix& a)
    {
        cholmod_start(&common_);
        common_.supernodal = CHOLMOD_SUPERNODAL;
        common_.nmethods = 1;
        common_.method[0].ordering = CHOLMOD_GIVEN;
        a_.nrow = a_.ncol = a.n;
        a_.nzmax = a.entries();
        a_.p = const_cast<int*>(a.start.data());
        a_.i = const_cast<int*>(a.column.data());
        a_.x = const_cast<double*>(a.value.data());
        a_.stype = 1;
        a_.itype = CHOLMOD_INT;
        a_.xtype = CHOLMOD_REAL;
        a_.sorted = a_.packed = 1;
        factor_ = cholmod_analyze_p(&a_, const_cast<int*>(analysis.permutation.data()), nullptr, 0, &common_);
        for (int f = 0; f < static_cast<int>(factor_->nsuper); ++f) {
            const int* super = static_cast<const int*>(factor_->super);
            const int* start = static_cast<const int*>(factor_->pi);
            const double pivots = super[f + 1] - super[f], order = start[f + 1] - start[f];
            entries_ += pivots * (order - (pivots - 1) / 2);
            for (double m = order - pivots; m < order; ++m)
                flops_ += m * (m + 2);
        }
    }
    ~Cholmod() override
    {
        cholmod_free_factor(&factor_, &common_);
        cholmod_finish(&common_);
    }
    void factorise() override { cholmod_factorize(&a_, factor_, &common_); }
    void solve(Vectors& b) override
    {
        cholmod_dense right{};
        right.nrow = right.d = right.nzmax = b.n;
        right.ncol = b.columns;
        right.x = b.value.data();
        right.xtype = CHOLMOD_REAL;
        cholmod_dense* x = cholmod_solve(CHOLMOD_A, factor_, &right, &common_);
        std::copy_n(static_cast<const double*>(x->x), b.value.size(), b.value.begin());
        cholmod_free_dense(&x, &common_);
    }
    double flops() const override { return flops_; }
    double entries() const override { return entries_; }

private:
    cholmod_common common_;
    cholmod_sparse a_{};
    cholmod_factor* factor_ = nullptr;
    double flops_ = 0.0, entries_ = 0.0;
};

class Mumps : public Contender
{
public:
    Mumps(const Analysis& analysis, const SparseMatrix& a) : place_(analysis.inverse)
    {
        for (int i = 0; i < a.n; ++i)
            for (int p = a.start[i]; p < a.start[i + 1] && a.column[p] <= i; ++p) {
                row_.push_back(i + 1);
                column_.push_back(a.column[p] + 1);
                value_.push_back(a.value[p]);
            }
        for (int& p : place_)
            ++p;
        id_.sym = 1;
        id_.par = 1;
        call(-1);
        for (int output = 0; output < 3; ++output)
            id_.icntl[output] = -1;
        id_.icntl[3] = 0;
        id_.icntl[6] = 1;   // the order is given
        id_.icntl[7] = 0;   // no scaling
        id_.icntl[13] = 60; // per cent of memory above the estimate
        id_.n = a.n;
        id_.nnz = static_cast<MUMPS_INT8>(value_.size());
        id_.irn = row_.data();
        id_.jcn = column_.data();
        id_.a = value_.data();
        id_.perm_in = place_.data();
        call(1);
    }
    ~Mumps() override { call(-2); }
    void factorise() override { call(2); }
    void solve(Vectors& b) override
    {
        id_.rhs = b.value.data();
        id_.nrhs = b.columns;
        id_.lrhs = b.n;
        call(3);
    }
    double flops() const override { return id_.rinfog[2]; }
    double entries() const override { return id_.infog[28] < 0 ? -1e6 * id_.infog[28] : id_.infog[28]; }

private:
    void call(int job)
    {
        id_.job = job;
        dmumps_c(&id_);
        if (id_.infog[0] < 0) {
            std::fprintf(stderr, "MUMPS, job %d: error %d, %d\n", job, id_.infog[0], id_.infog[1]);
            std::exit(1);
        }
    }

    DMUMPS_STRUC_C id_{};
    std::vector<int> place_, row_, column_;
    std::vector<double> value_;
};

double time(Contender& contender)
{
    // 512-bit instructions lower the clock for what runs right after them.
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
    Stopwatch watch;
    contender.factorise();
    const double seconds = watch.lap();
    contender.seconds = std::min(contender.seconds, seconds);
    return seconds;
}

// |b - A*x| / (|A|*|x| + |b|) for b = A * (1, 1, ...), maximum norms
double residual(const SparseMatrix& a, Contender& contender)
{
    Vectors b(a.n, 1), x(a.n, 1), ax(a.n, 1);
    std::fill(x.value.begin(), x.value.end(), 1.0);
    multiply(a, x.column(0), b.column(0), 1);
    x = b;
    contender.solve(x);
    multiply(a, x.column(0), ax.column(0), 1);
    double difference = 0.0, normX = 0.0, normB = 0.0;
    for (int i = 0; i < a.n; ++i) {
        difference = std::max(difference, std::abs(b.value[i] - ax.value[i]));
        normX = std::max(normX, std::abs(x.value[i]));
        normB = std::max(normB, std::abs(b.value[i]));
    }
    return difference / (normInf(a) * normX + normB);
}

void printHeader()
{
    std::printf("%-16s %7s | %6s %6s %6s | %8s %8s %8s | %9s %9s %9s | %5s %5s %5s | %6s | %7s %7s %7s |", "",
                "", "", "1e6", "", "", "Gflop", "", "", "ms", "", "", "GF/s", "", "best/", "", "residual",
                "");
    std::printf(" share of our time, %%\n");
    std::printf("%-16s %7s |", "matrix", "n");
    for (const char* format : {" %6s %6s %6s |", " %8s %8s %8s |", " %9s %9s %9s |", " %5s %5s %5s |"})
        std::printf(format, "ours", "CHOLM", "MUMPS");
    std::printf(" %6s | %7s %7s %7s |", "ours", "ours", "CHOLM", "MUMPS");
    for (int part = 0; part < profile::parts; ++part)
        std::printf(" %s", profile::name[part]);
    std::printf(" other\n");
}

void compare(const std::string& name, const SparseMatrix& original, int repetitions)
{
    const SparseMatrix a = equilibrateSymmetric(original).matrix;
    const Analysis analysis = analyse(a, std::vector<char>(a.n, 0));
    Ours ours(analysis, a);
    Cholmod cholmod(analysis, a);
    Mumps mumps(analysis, a);
    Contender* const all[] = {&ours, &cholmod, &mumps};

    double spent = 0.0;
    for (int r = 0; (r < repetitions && (r < 2 || spent < 30.0)) || (spent < 0.5 && r < 20 * repetitions);
         ++r)
        for (Contender* contender : all)
            spent += time(*contender);

    const double million = 1e-6;
    std::printf("%-16s %7d |", name.c_str(), a.n);
    for (const Contender* c : all)
        std::printf(" %6.2f", c->entries() * million);
    std::printf(" |");
    for (const Contender* c : all)
        std::printf(" %8.3f", c->flops() * 1e-9);
    std::printf(" |");
    for (const Contender* c : all)
        std::printf(" %9.3f", c->seconds * 1e3);
    std::printf(" |");
    for (const Contender* c : all)
        std::printf(" %5.1f", c->flops() * 1e-9 / c->seconds);
    std::printf(" | %6.2f |", std::min(cholmod.seconds, mumps.seconds) / ours.seconds);
    for (Contender* c : all)
        std::printf(" %7.1e", residual(a, *c));
    std::printf(" |");

    Stopwatch watch;
    profile::start();
    ours.factorise();
    profile::stop();
    const double seconds = watch.lap();
    double other = 100.0;
    for (int part = 0; part < profile::parts; ++part) {
        const double share = 100.0 * profile::seconds[part] / seconds;
        std::printf(" %*.0f", static_cast<int>(std::strlen(profile::name[part])), share);
        other -= share;
    }
    std::printf(" %5.0f\n", other);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv)
{
    int threads = 1, repetitions = 5;
    printHeader();
    std::vector<std::string> files;
    std::vector<int> cubes;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--threads=", 10) == 0)
            threads = std::atoi(argv[i] + 10);
        else if (std::strncmp(argv[i], "--repetitions=", 14) == 0)
            repetitions = std::atoi(argv[i] + 14);
        else if (std::strncmp(argv[i], "--cube=", 7) == 0)
            cubes.push_back(std::atoi(argv[i] + 7));
        else
            files.push_back(argv[i]);
    }
    blaC_set_num_threads(threads);

    // Cubes of m^3 nodes, three unknowns each; behind the clamped face there are m layers.
    for (int m : cubes) {
        BeamMesh cube;
        for (int axis = 0; axis < 3; ++axis) {
            cube.elements[axis] = axis == 0 ? m : m - 1;
            cube.size[axis] = 1.0;
        }
        compare("elasticity " + std::to_string(m) + "^3", beamStiffness(cube), repetitions);
    }
    for (const std::string& file : files)
        compare(file.substr(file.find_last_of('/') + 1), readMatrix(file), repetitions);
}
