// SPDX-License-Identifier: BSD-3-Clause
#include "digest.h"

DIGEST(blac_cholupd_, Computed)
{
    const char job = "PpNnX"[c.below(5)];
    const int n = c.size(), nlead = c.count(n), ncol = c.odds(2) ? n : c.count(n), ldl = c.leading(n);
    const double tol = c.odds(2) ? 0.0 : 1e-3;
    double *const l = c.factor(n, ldl), *const x = c.ordinary(n);
    for (int i = 0; i < n; ++i) { // so short that most hyperbolic rotations exist
        const double longest = c.odds(3) ? 2.0 : 0.25;
        c.set(x, i, c.number() / 16 * longest);
    }
    int info = -7;
    blac_cholupd_(&job, &n, &nlead, &ncol, l, &ldl, x, &tol, &info);
    c.result(info);
}

DIGEST(blac_dchud_, Computed)
{
    const int p = c.size(), ldl = c.leading(p);
    double *const l = c.factor(p, ldl), *const x = c.vector(p), *const cosines = c.room(p);
    blac_dchud_(l, &ldl, &p, x, cosines, c.room(p));
}

DIGEST(blac_dchdd_, Computed)
{
    const int p = 1 + c.size(), ldl = c.leading(p);
    double *const l = c.factor(p, ldl), *const x = c.ordinary(p), *const cosines = c.room(p);
    for (int i = 0; i < p; ++i)
        c.set(x, i, c.number() / 1024);
    int info = -7;
    blac_dchdd_(l, &ldl, &p, x, cosines, c.room(p), &info);
    c.result(info);
}
