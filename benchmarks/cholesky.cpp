// SPDX-License-Identifier: BSD-3-Clause
// The rank-one modifications of a Cholesky factor, n²/2 elements each, beside the loops as documented, Eigen
// (which multiplies by reciprocals: other bits), qrupdate and divisions on registers.
#include "bench.h"

#include "TOVBlaModule.h"
#include "peers.h"
#include "reference.h"

#include <cmath>
#include <memory>

namespace bench {
namespace {

/// A well-conditioned lower factor, its transpose for qrupdate, and a vector small enough to be taken away
/// again.
struct Factor
{
    int n;
    Array original, l, x_original, x, c, s;

    Factor(int order, bool upper)
        : n(order), original(int64_t{order} * order), l(original.size()), x_original(order), x(order),
          c(order), s(order)
    {
        fill(original);
        for (int64_t j = 0; j < n; ++j)
            for (int64_t i = 0; i < n; ++i) {
                double& e = original[i + j * n];
                if (i == j)
                    e = 2.0 + std::fabs(e);
                else if ((i > j) == upper)
                    e = 0.0;
                else
                    e /= n;
            }
        fill(x_original);
        for (int i = 0; i < n; ++i)
            x_original[i] /= n;
    }
};

void add_factor(const std::string& name, int n, bool upper, std::function<void(Factor&)> run)
{
    add(name, 0.5 * n * n, [=] {
        auto factor = std::make_shared<Factor>(n, upper);
        return Job{[=] {
                       factor->l.copy_from(factor->original);
                       factor->x.copy_from(factor->x_original);
                   },
                   [=] { run(*factor); }};
    });
}

const double Zero = 0.0;

} // namespace

void add_cholesky()
{
    for (int n : {64, 100, 256, 500, 1000, 2000, 4000}) {
        const std::string size = std::to_string(n);
        const std::string m = "cholupd/" + size + '/';
        add_factor(m + "kernel", n, false, [](Factor& f) {
            int info;
            blac_cholupd_("P", &f.n, &f.n, &f.n, f.l, &f.n, f.x, &Zero, &info);
        });
        add_factor(m + "loop", n, false,
                   [](Factor& f) { reference::cholupd('P', f.n, f.n, f.n, f.l, f.n, f.x, 0.0); });
        add_factor(m + "eigen", n, false, [](Factor& f) { eigen_rank_update(f.n, f.l, f.n, f.x); });
        add(m + "limit", 1000 * limit::DivisionsPerRound, [] {
            return Job{[] {}, [] { limit::divide(1000); }};
        });

        const std::string u = "dchud/" + size + '/';
        add_factor(u + "kernel", n, false, [](Factor& f) { blac_dchud_(f.l, &f.n, &f.n, f.x, f.c, f.s); });
        add_factor(u + "loop", n, false, [](Factor& f) { reference::dchud(f.l, f.n, f.n, f.x, f.c, f.s); });
        add_factor(u + "qrupdate", n, true, [](Factor& f) { dch1up_(&f.n, f.l, &f.n, f.x, f.c); });

        const std::string d = "dchdd/" + size + '/';
        add_factor(d + "kernel", n, false, [](Factor& f) {
            int info;
            blac_dchdd_(f.l, &f.n, &f.n, f.x, f.c, f.s, &info);
        });
        add_factor(d + "loop", n, false, [](Factor& f) { reference::dchdd(f.l, f.n, f.n, f.x, f.c, f.s); });
        add_factor(d + "qrupdate", n, true, [](Factor& f) {
            int info;
            dch1dn_(&f.n, f.l, &f.n, f.x, f.c, &info);
        });
    }
}

} // namespace bench
