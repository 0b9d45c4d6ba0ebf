// SPDX-License-Identifier: BSD-3-Clause
// Calls on tiny blocks: each kernel beside its loop as documented behind the same interface. Prints, for the
// orders 1 to 8 and 16, how many times as fast as its loop the kernel is, and the nanoseconds of its call.
#include "TOVBlaModule.h"
#include "plain_entries.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <regex>
#include <vector>

namespace {

constexpr int Orders[] = {1, 2, 3, 4, 5, 6, 7, 8, 16};
constexpr int Largest = 16, Unit = 1, PanelWidth = 32;
constexpr double Zero = 0.0, One = 1.0, Minus = -1.0;
std::regex wanted(".");
int repetitions = 1000;

/// What one call works on. Positive definite, and scaled by 1 and -1.
struct Block
{
    int n;
    double a[Largest * Largest], b[Largest * Largest], d[Largest], dinv[Largest], x[Largest], c[Largest],
        s[Largest], tol[Largest], reg[Largest], dcorr[Largest];
    blac_complex z[Largest], w[Largest];
    int negpiv[Largest], info, ia[Largest + 1], ja[Largest * Largest]; ///< a full matrix by rows

    explicit Block(int order) : n(order), info(0)
    {
        for (int i = 0; i < Largest; ++i) {
            d[i] = i % 2 ? 1.0 : -1.0;
            dinv[i] = 1.0 / d[i];
            x[i] = 0.05;
            c[i] = s[i] = dcorr[i] = 0.0;
            tol[i] = 1e-10;
            reg[i] = 1.0;
            negpiv[i] = 0;
        }
        for (int i = 0; i <= Largest; ++i)
            ia[i] = i * n;
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i)
                ja[i + j * n] = i;
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < n; ++i)
                a[i + j * n] = b[i + j * n] = i == j ? 2.0 : 0.1;
    }
};

/// Nanoseconds between two looks at the clock with nothing in between.
double idle = 0.0;

double since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

/// Nanoseconds a call, of `rounds` calls on each of the blocks.
template <class Function, class Call>
double time(std::vector<Block>& blocks, const Block& original, int rounds, Function* function, Call call)
{
    std::fill(blocks.begin(), blocks.end(), original);
    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < rounds; ++round)
        for (Block& block : blocks)
            call(function, block);
    return (since(start) - idle) / rounds / static_cast<double>(blocks.size());
}

/// A row of the table. `rounds`: how often a block may be worked on, 1 if a call spoils it for the next.
template <class Function, class Call>
void compare(const char* name, int rounds, Function* kernel, Function* loop, Call call)
{
    if (!std::regex_search(name, wanted))
        return;
    std::printf("| %-15s |", name);
    for (const int n : Orders) {
        const Block original(n);
        std::vector<Block> blocks(16, original);
        double best_kernel = 1e30, best_loop = 1e30;
        for (int r = 0; r < repetitions; ++r) {
            best_kernel = std::min(best_kernel, time(blocks, original, rounds, kernel, call));
            best_loop = std::min(best_loop, time(blocks, original, rounds, loop, call));
        }
        std::printf(" %.2f (%.1f) |", best_loop / best_kernel, best_kernel);
        std::fflush(stdout);
    }
    std::printf("\n");
}

void compare_blocks()
{
    compare("scale", 20, blac_scale_, plain_scale_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.d, t.a, &t.n, t.b, &t.n); });
    compare("scale2", 20, blac_scale2_, plain_scale2_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.d); });
    compare("scale2t", 20, blac_scale2t_, plain_scale2t_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.d); });
    compare("scale_low", 20, blac_scale_low_, plain_scale_low_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d); });
    compare("scale_low2", 20, blac_scale_low2_, plain_scale_low2_,
            [](auto f, Block& t) { f(&t.n, t.b, &t.n); });
    compare("addrectblock", 20, blac_addrectblock_, plain_addrectblock_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.b, &t.n); });
    compare("addrectblockt", 20, blac_addrectblockt_, plain_addrectblockt_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.b, &t.n); });
    compare("addtriblock", 20, blac_addtriblock_, plain_addtriblock_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.b, &t.n); });
    compare("datcpy", 20, blac_datcpy_, plain_datcpy_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.b, &t.n); });
    compare("dlacpysc", 20, blac_dlacpysc_, plain_dlacpysc_,
            [](auto f, Block& t) { f(&t.n, &t.n, t.a, &t.n, t.d, t.b, &t.n); });
    compare("copyrect", 20, blaC_copyrect_intr, plain_copyrect_,
            [](auto f, Block& t) { f(t.n, t.n, t.b, t.n, t.a, t.n); });
    compare("zerotri", 20, blac_zerotri_, plain_zerotri_, [](auto f, Block& t) { f(&t.n, t.a, &t.n); });
    compare("copydiag", 20, blac_copydiag_, plain_copydiag_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d, t.dinv); });
    compare("reflect", 20, blac_reflect_, plain_reflect_, [](auto f, Block& t) { f("L", &t.n, t.a, &t.n); });
}

void compare_factorisations()
{
    compare("selim_small", 1, blac_selim_small_, plain_selim_small_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d, t.dinv, t.tol); });
    compare("uelim_small", 1, blac_uelim_small_, plain_uelim_small_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d, t.dinv, t.tol); });
    compare("selim_small_reg", 1, blac_selim_small_reg_, plain_selim_small_reg_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d, t.dinv, t.tol, t.negpiv, t.reg, t.dcorr); });
    compare("uelim_small_reg", 1, blac_uelim_small_reg_, plain_uelim_small_reg_,
            [](auto f, Block& t) { f(&t.n, t.a, &t.n, t.d, t.dinv, t.tol, t.negpiv, t.reg, t.dcorr); });
    compare("selim", 1, blac_selim_, plain_selim_,
            [](auto f, Block& t) { f(&t.n, &PanelWidth, t.tol, t.a, &t.n, t.d, t.dinv); });
    compare("uelim", 1, blac_uelim_, plain_uelim_,
            [](auto f, Block& t) { f(&t.n, &PanelWidth, t.tol, t.a, &t.n, t.d, t.dinv); });
    compare("cholupd", 1, blac_cholupd_, plain_cholupd_,
            [](auto f, Block& t) { f("P", &t.n, &t.n, &t.n, t.a, &t.n, t.x, &Zero, &t.info); });
    compare("dchud", 1, blac_dchud_, plain_dchud_,
            [](auto f, Block& t) { f(t.a, &t.n, &t.n, t.x, t.c, t.s); });
    compare("dchdd", 1, blac_dchdd_, plain_dchdd_,
            [](auto f, Block& t) { f(t.a, &t.n, &t.n, t.x, t.c, t.s, &t.info); });
}

void compare_vectors()
{
    compare("dset", 20, blac_dset_, plain_dset_, [](auto f, Block& t) { f(&t.n, &One, t.x, &Unit); });
    compare("vdasn", 20, tovbla_vdasn_, plain_vdasn_, [](auto f, Block& t) { f(&t.n, t.x, &One); });
    compare("vdscale", 20, tovbla_vdscale_, plain_vdscale_, [](auto f, Block& t) { f(&t.n, t.x, &Minus); });
    compare("vdcopyi", 20, tovbla_vdcopyi_, plain_vdcopyi_,
            [](auto f, Block& t) { f(&t.n, t.x, &Unit, t.c, &Unit); });
    compare("vdnegcopyi", 20, tovbla_vdnegcopyi_, plain_vdnegcopyi_,
            [](auto f, Block& t) { f(&t.n, t.x, &Unit, t.c, &Unit); });
    compare("vdaddi", 20, tovbla_vdaddi_, plain_vdaddi_,
            [](auto f, Block& t) { f(&t.n, t.x, &Unit, t.d, &Unit, t.c, &Unit); });
    compare("vdnegaddi", 20, tovbla_vdnegaddi_, plain_vdnegaddi_,
            [](auto f, Block& t) { f(&t.n, t.x, &Unit, t.d, &Unit, t.c, &Unit); });
    compare("vzconj", 20, tovbla_vzconj_, plain_vzconj_, [](auto f, Block& t) { f(&t.n, t.z, t.w); });
}

void compare_sparse_products()
{
    compare("sparse_umv", 20, blac_sparse_umv_, plain_sparse_umv_,
            [](auto f, Block& t) { f(t.a, t.x, t.ia, t.ja, t.c, &t.n, &t.n, &Unit); });
    compare("sparse_umtv", 20, blac_sparse_umtv_, plain_sparse_umtv_,
            [](auto f, Block& t) { f(t.a, t.x, t.ia, t.ja, t.c, &t.n, &t.n, &Unit); });
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--families=", 11) == 0)
            wanted = argv[i] + 11;
        else if (std::strncmp(argv[i], "--repetitions=", 14) == 0)
            repetitions = std::atoi(argv[i] + 14);
    }
    idle = 1e30;
    for (int r = 0; r < 1000; ++r)
        idle = std::min(idle, since(std::chrono::steady_clock::now()));

    std::printf("| kernel          |");
    for (const int n : Orders)
        std::printf(" %d |", n);
    std::printf("\n|---|");
    for (std::size_t column = 0; column < std::size(Orders); ++column)
        std::printf("--:|");
    std::printf("\n");
    compare_blocks();
    compare_factorisations();
    compare_sparse_products();
    compare_vectors();
}
