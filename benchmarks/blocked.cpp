// SPDX-License-Identifier: BSD-3-Clause
// The blocked eliminations over panel widths, beside the factorisations of the library and its matrix
// product.
#include "bench.h"

#include "TOVBlaModule.h"
#include "peers.h"

#include <memory>

namespace bench {
namespace {

/// One dominant symmetric front.
struct Front
{
    int n;
    Array original, a, b, c, d, dinv, work;
    std::vector<int> pivots;
    int lwork;

    Front(int order, bool product)
        : n(order), original(int64_t{order} * order), a(original.size()), b(product ? original.size() : 1),
          c(product ? original.size() : 1), d(order), dinv(order), work(int64_t{order} * 64),
          pivots(static_cast<std::size_t>(order)), lwork(order * 64)
    {
        fill(original);
        for (int64_t j = 0; j < n; ++j) {
            for (int64_t i = 0; i < j; ++i)
                original[i + j * n] = original[j + i * n];
            original[j + j * n] = n + 1.0;
        }
        if (product)
            fill(b);
    }
};

void add_front(const std::string& name, int n, double work, bool product, std::function<void(Front&)> run)
{
    add(name, work, [=] {
        auto front = std::make_shared<Front>(n, product);
        return Job{[=] { front->a.copy_from(front->original); }, [=] { run(*front); }};
    });
}

const double Tolerance = 1e-10, One = 1.0;

} // namespace

void add_blocked_eliminations()
{
    for (int n : {128, 256, 500, 1000, 2000, 4000, 8000}) {
        const std::string size = std::to_string(n);
        const double cube = n * (n * 1.0 * n), symmetric = cube / 3;
        for (int nb : {24, 32, 40, 48, 64, 96, 128, 160, 192, 256, n}) {
            if (nb > n || (nb == n && n > 512))
                continue;
            const std::string width = nb == n ? "nb_n" : "nb" + std::to_string(nb);
            add_front("selim/" + size + '/' + width, n, symmetric, false,
                      [=](Front& f) { blac_selim_(&f.n, &nb, &Tolerance, f.a, &f.n, f.d, f.dinv); });
            add_front("uelim/" + size + '/' + width, n, 2 * symmetric, false,
                      [=](Front& f) { blac_uelim_(&f.n, &nb, &Tolerance, f.a, &f.n, f.d, f.dinv); });
        }
        add_front("selim/" + size + "/dpotrf", n, symmetric, false, [](Front& f) {
            int info;
            dpotrf_("L", &f.n, f.a, &f.n, &info, 1);
        });
        add_front("selim/" + size + "/dsytrf", n, symmetric, false, [](Front& f) {
            int info;
            dsytrf_("L", &f.n, f.a, &f.n, f.pivots.data(), f.work, &f.lwork, &info, 1);
        });
        add_front("selim/" + size + "/eigen_llt", n, symmetric, false,
                  [](Front& f) { eigen_llt(f.n, f.a, f.n); });
        add_front("uelim/" + size + "/dgetrf", n, 2 * symmetric, false, [](Front& f) {
            int info;
            dgetrf_(&f.n, &f.n, f.a, &f.n, f.pivots.data(), &info);
        });
        for (const char* family : {"selim/", "uelim/"})
            add_front(family + size + "/dgemm", n, 2 * cube, true, [](Front& f) {
                dgemm_("N", "T", &f.n, &f.n, &f.n, &One, f.a, &f.n, f.b, &f.n, &One, f.c, &f.n, 1, 1);
            });
    }
}

} // namespace bench
