// SPDX-License-Identifier: BSD-3-Clause
// PARDISO of MKL, for positive definite matrices, in that of its orders that takes the fewest flops. MKL
// is loaded at run time, where the environment points the dynamic linker to it.
#include "contender.h"

#include <dlfcn.h>

namespace {

// As documented. Arrays of 64 parameters: handles in pt, options and results in iparm.
using Initialise = void (*)(void** pt, const int* mtype, int* iparm);
using Pardiso = void (*)(void** pt, const int* maxfct, const int* mnum, const int* mtype, const int* phase,
                         const int* n, const void* a, const int* ia, const int* ja, int* perm,
                         const int* nrhs, int* iparm, const int* msglvl, void* b, void* x, int* error);
using SetThreads = void (*)(int);

constexpr int positiveDefinite = 2;
enum Phase { release = -1, analysis = 11, factorisation = 22, solution = 33 };
enum Parameter {
    ordering = 1,
    refinements = 7,
    entriesOfFactor = 17,
    millionsOfFlops = 18,
    countedFromZero = 34
};

// iparm(2)
constexpr struct
{
    int number;
    const char* name;
} orders[] = {{2, "METIS"}, {3, "PMETIS"}, {0, "MD"}};

class MklPardiso : public Contender
{
public:
    MklPardiso(const Problem& problem, int threads) : problem_(problem)
    {
        void* const library = dlopen("libmkl_rt.so.3", RTLD_NOW);
        if (!library)
            throw Missing("MKL is not on this machine");
        find(library, "pardiso", pardiso_);
        find(library, "pardisoinit", initialise_);
        SetThreads setThreads;
        find(library, "MKL_Set_Num_Threads", setThreads);
        setThreads(threads);
        start_.assign(problem.start.begin(), problem.start.end());
        begin();
    }
    ~MklPardiso() override
    {
        int error = 0;
        call(release, 0, nullptr, nullptr, error);
    }
    MklPardiso(const MklPardiso&) = delete;
    MklPardiso& operator=(const MklPardiso&) = delete;

    void tryOrders() override
    {
        int best = 0;
        for (const auto& order : orders) {
            iparm_[ordering] = order.number;
            iparm_[entriesOfFactor] = iparm_[millionsOfFlops] = -1; // to be counted
            run(analysis);
            const Cost found{order.name, 1.0 * iparm_[entriesOfFactor], 1e6 * iparm_[millionsOfFlops]};
            if (cost_.order.empty() || found.flops < cost_.flops) {
                cost_ = found;
                best = order.number;
            }
            run(release);
            begin();
        }
        iparm_[ordering] = best;
    }
    void analyse() override { run(analysis); }
    void factorise(const double* value) override
    {
        value_ = value;
        run(factorisation);
    }
    void solve(int columns, const double* b, double* x) override
    {
        run(solution, columns, const_cast<double*>(b), x);
    }
    Cost cost() const override { return cost_; }

private:
    template <class Function>
    static void find(void* library, const char* name, Function& function)
    {
        function = reinterpret_cast<Function>(dlsym(library, name));
        if (!function)
            throw std::runtime_error(std::string("MKL has no ") + name);
    }
    void begin()
    {
        for (void*& p : handle_)
            p = nullptr;
        initialise_(handle_, &positiveDefinite, iparm_);
        iparm_[countedFromZero] = 1;
        iparm_[refinements] = 0; // where pivots were perturbed only, not two steps each time
        iparm_[entriesOfFactor] = iparm_[millionsOfFlops] = 0; // counting takes time
    }
    void call(int phase, int columns, double* b, double* x, int& error)
    {
        const int one = 1, silent = 0;
        pardiso_(handle_, &one, &one, &positiveDefinite, &phase, &problem_.n, value_, start_.data(),
                 problem_.column.data(), nullptr, &columns, iparm_, &silent, b, x, &error);
    }
    void run(int phase, int columns = 1, double* b = nullptr, double* x = nullptr)
    {
        int error = 0;
        call(phase, columns, b, x, error);
        if (error != 0)
            throw std::runtime_error("PARDISO, phase " + std::to_string(phase) + ": error " +
                                     std::to_string(error));
    }

    const Problem& problem_;
    std::vector<int> start_;
    const double* value_ = problem_.value.data();
    Initialise initialise_;
    Pardiso pardiso_;
    void* handle_[64];
    int iparm_[64];
    Cost cost_;
};

} // namespace

std::unique_ptr<Contender> makeContender(const Problem& problem, int threads)
{
    return std::make_unique<MklPardiso>(problem, threads);
}
