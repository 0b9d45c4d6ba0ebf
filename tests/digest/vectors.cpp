// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

#include <bit>
#include <cstdlib>

namespace {

// n elements with an increment of either sign; the first one stands at the far end for a negative one.
struct Strided
{
    int step;
    double* first;

    Strided(digest::Case& c, std::int64_t n, bool filled) : step(c.odds(3) ? 1 : c.below(7) - 3)
    {
        const std::int64_t length = n > 0 ? (n - 1) * std::abs(step) + 1 : 0;
        first = filled ? c.vector(length) : c.room(length);
        if (step < 0 && n > 0)
            first += length - 1;
    }
};

} // namespace

DIGEST(tovbla_vdasn_, Copied)
{
    const int n = c.size();
    const double a = c.number();
    tovbla_vdasn_(&n, c.room(n), &a);
}

DIGEST(tovbla_bvdasn_, Copied)
{
    const std::int64_t n = c.size();
    const double a = c.number();
    tovbla_bvdasn_(&n, c.room(n), &a);
}

DIGEST(tovbla_vdscale_, Computed)
{
    const int n = c.size();
    const double a = c.number();
    tovbla_vdscale_(&n, c.vector(n), &a);
}

DIGEST(tovbla_bvdscale_, Computed)
{
    const std::int64_t n = c.size();
    const double a = c.number();
    tovbla_bvdscale_(&n, c.vector(n), &a);
}

DIGEST(tovbla_vdcopyi_, Copied)
{
    const int n = c.size();
    const Strided x(c, n, true), y(c, n, false);
    tovbla_vdcopyi_(&n, x.first, &x.step, y.first, &y.step);
}

DIGEST(tovbla_vdnegcopyi_, Copied)
{
    const int n = c.size();
    const Strided x(c, n, true), y(c, n, false);
    tovbla_vdnegcopyi_(&n, x.first, &x.step, y.first, &y.step);
}

DIGEST(tovbla_vdaddi_, Computed)
{
    const int n = c.size();
    const Strided x(c, n, true), y(c, n, true), z(c, n, false);
    tovbla_vdaddi_(&n, x.first, &x.step, y.first, &y.step, z.first, &z.step);
}

DIGEST(tovbla_vdnegaddi_, Computed)
{
    const int n = c.size();
    const Strided x(c, n, true), y(c, n, true), z(c, n, false);
    tovbla_vdnegaddi_(&n, x.first, &x.step, y.first, &y.step, z.first, &z.step);
}

DIGEST(tovbla_vzconj_, Copied)
{
    const int n = c.size();
    const double* const x = c.vector(2 * std::int64_t{n});
    double* const y = c.room(2 * std::int64_t{n});
    tovbla_vzconj_(&n, reinterpret_cast<const blac_complex*>(x), reinterpret_cast<blac_complex*>(y));
}

DIGEST(blac_hdmcon_, Copied)
{
    const int i = c.below(20) - 1;
    c.result(blac_hdmcon_(&i));
}
