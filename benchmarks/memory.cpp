// SPDX-License-Identifier: BSD-3-Clause
// Kernels that move more than they compute: transposes, scaling, assembly, copies and fills. Rates are useful
// bytes, counted as reads and writes of the elements concerned; variants of one line count alike.
#include "bench.h"

#include "TOVBlaModule.h"
#include "peers.h"
#include "reference.h"

#include <cstring>
#include <memory>

namespace bench {
namespace {

/// Two blocks and a diagonal. Its entries and those on the diagonals of the blocks are 1 and -1, so that
/// scaling in place again and again stays in range.
struct Pair
{
    int n, ld;
    Array a, b, d;

    Pair(int order, int leading) : n(order), ld(leading), a(int64_t{leading} * order), b(a.size()), d(leading)
    {
        fill(a);
        fill(b);
        for (int i = 0; i < ld; ++i)
            d[i] = i % 2 ? 1.0 : -1.0;
        for (int64_t i = 0; i < n; ++i)
            a[i * (ld + 1)] = b[i * (ld + 1)] = d[i];
    }
};

using Run = void (*)(Pair&, double* a, double* b);

void add_pair(const std::string& name, int n, int ld, double bytes, Run run)
{
    const int repeat = n <= 50 ? 200 : n <= 300 ? 10 : 1; // a run is long enough to be timed
    add(name, bytes * repeat, [=] {
        auto pair = std::make_shared<Pair>(n, ld);
        return Job{[] {},
                   [=] {
                       for (int i = 0; i < repeat; ++i)
                           run(*pair, pair->a, pair->b);
                   }};
    });
}

void copy_columns(Pair& p, double* a, double* b)
{
    for (int64_t j = 0; j < p.n; ++j)
        std::memcpy(b + j * p.ld, a + j * p.ld, static_cast<std::size_t>(p.n) * 8);
}

const int Unit = 1;
const double One = 1.0, Minus = -1.0;

} // namespace

void add_transposes()
{
    const int shapes[][2] = {{4, 4},     {8, 8},       {16, 16},     {40, 40},    {200, 200},
                             {200, 256}, {1000, 1000}, {1000, 1024}, {6000, 6000}};
    for (const auto& [n, ld] : shapes) {
        const std::string size = std::to_string(n) + "_ld" + std::to_string(ld) + '/';
        const double square = 8.0 * n * n;

        add_pair("datcpy/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { blac_datcpy_(&p.n, &p.n, a, &p.ld, b, &p.ld); });
        add_pair("datcpy/" + size + "loop", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { reference::datcpy(p.n, p.n, a, p.ld, b, p.ld); });
        add_pair("datcpy/" + size + "eigen", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { eigen_transpose(p.n, p.n, a, p.ld, b, p.ld); });
        add_pair("datcpy/" + size + "copy", n, ld, 2 * square, copy_columns);

        add_pair("addrectblockt/" + size + "kernel", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { blac_addrectblockt_(&p.n, &p.n, a, &p.ld, b, &p.ld); });
        add_pair("addrectblockt/" + size + "loop", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { reference::addrectblockt(p.n, p.n, a, p.ld, b, p.ld); });
        add_pair("addrectblockt/" + size + "eigen", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { eigen_add_transposed(p.n, p.n, a, p.ld, b, p.ld); });
        add_pair("addrectblockt/" + size + "add", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { reference::addrectblock(p.n, p.n, a, p.ld, b, p.ld); });

        add_pair("reflect/" + size + "kernel", n, ld, square,
                 [](Pair& p, double* a, double*) { blac_reflect_("L", &p.n, a, &p.ld); });
        add_pair("reflect/" + size + "loop", n, ld, square,
                 [](Pair& p, double* a, double*) { reference::reflect('L', p.n, a, p.ld); });
        add_pair("reflect/" + size + "copy", n, ld, 2 * square, copy_columns);
    }
}

void add_block_kernels()
{
    for (int n : {4, 8, 16, 32, 50, 200, 1000}) {
        const std::string size = std::to_string(n) + '/';
        const double square = 8.0 * n * n, triangle = square / 2;
        const int ld = n;

        add_pair("scale/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { blac_scale_(&p.n, &p.n, p.d, a, &p.ld, b, &p.ld); });
        add_pair("scale/" + size + "loop", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { reference::scale(p.n, p.n, p.d, a, p.ld, b, p.ld); });
        add_pair("scale/" + size + "copy", n, ld, 2 * square, copy_columns);

        add_pair("scale2/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double*) { blac_scale2_(&p.n, &p.n, a, &p.ld, p.d); });
        add_pair("scale2/" + size + "loop", n, ld, 2 * square,
                 [](Pair& p, double* a, double*) { reference::scale2(p.n, p.n, a, p.ld, p.d); });

        add_pair("scale2t/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double*) { blac_scale2t_(&p.n, &p.n, a, &p.ld, p.d); });
        add_pair("scale2t/" + size + "loop", n, ld, 2 * square,
                 [](Pair& p, double* a, double*) { reference::scale2t(p.n, p.n, a, p.ld, p.d); });
        add_pair("scale2t/" + size + "dscal", n, ld, 2 * square, [](Pair& p, double* a, double*) {
            for (int64_t j = 0; j < p.n; ++j)
                dscal_(&p.n, &Minus, a + j * p.ld, &Unit);
        });

        add_pair("scale_low/" + size + "kernel", n, ld, 2 * triangle,
                 [](Pair& p, double* a, double*) { blac_scale_low_(&p.n, a, &p.ld, p.d); });
        add_pair("scale_low/" + size + "loop", n, ld, 2 * triangle,
                 [](Pair& p, double* a, double*) { reference::scale_low(p.n, a, p.ld, p.d); });

        add_pair("scale_low2/" + size + "kernel", n, ld, 2 * triangle,
                 [](Pair& p, double* a, double*) { blac_scale_low2_(&p.n, a, &p.ld); });
        add_pair("scale_low2/" + size + "loop", n, ld, 2 * triangle,
                 [](Pair& p, double* a, double*) { reference::scale_low2(p.n, a, p.ld); });

        add_pair("copydiag/" + size + "kernel", n, ld, 24.0 * n,
                 [](Pair& p, double* a, double* b) { blac_copydiag_(&p.n, a, &p.ld, b, p.d); });
        add_pair("copydiag/" + size + "loop", n, ld, 24.0 * n,
                 [](Pair& p, double* a, double* b) { reference::copydiag(p.n, a, p.ld, b, p.d); });

        add_pair("addrectblock/" + size + "kernel", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { blac_addrectblock_(&p.n, &p.n, a, &p.ld, b, &p.ld); });
        add_pair("addrectblock/" + size + "loop", n, ld, 3 * square,
                 [](Pair& p, double* a, double* b) { reference::addrectblock(p.n, p.n, a, p.ld, b, p.ld); });
        add_pair("addrectblock/" + size + "daxpy", n, ld, 3 * square, [](Pair& p, double* a, double* b) {
            for (int64_t j = 0; j < p.n; ++j)
                daxpy_(&p.n, &One, b + j * p.ld, &Unit, a + j * p.ld, &Unit);
        });

        add_pair("addtriblock/" + size + "kernel", n, ld, 3 * triangle,
                 [](Pair& p, double* a, double* b) { blac_addtriblock_(&p.n, a, &p.ld, b, &p.ld); });
        add_pair("addtriblock/" + size + "loop", n, ld, 3 * triangle,
                 [](Pair& p, double* a, double* b) { reference::addtriblock(p.n, a, p.ld, b, p.ld); });

        add_pair("dlacpysc/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { blac_dlacpysc_(&p.n, &p.n, a, &p.ld, p.d, b, &p.ld); });
        add_pair("dlacpysc/" + size + "loop", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { reference::dlacpysc(p.n, p.n, a, p.ld, p.d, b, p.ld); });
        add_pair("dlacpysc/" + size + "copy", n, ld, 2 * square, copy_columns);

        add_pair("zerotri/" + size + "kernel", n, ld, triangle,
                 [](Pair& p, double* a, double*) { blac_zerotri_(&p.n, a, &p.ld); });
        add_pair("zerotri/" + size + "memset", n, ld, triangle, [](Pair& p, double* a, double*) {
            for (int64_t j = 0; j < p.n; ++j)
                std::memset(a + j * p.ld + j, 0, static_cast<std::size_t>(p.n - j) * 8);
        });

        add_pair("copyrect/" + size + "kernel", n, ld, 2 * square,
                 [](Pair& p, double* a, double* b) { blaC_copyrect_intr(p.n, p.n, b, p.ld, a, p.ld); });
        add_pair("copyrect/" + size + "copy", n, ld, 2 * square, copy_columns);
    }
}

} // namespace bench
