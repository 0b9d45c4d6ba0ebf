// SPDX-License-Identifier: BSD-3-Clause
#include "front.h"

#include "dense.h"

#include <algorithm>

int panelWidth(const PivotRule& rule, int pivots)
{
    if (rule.nb > 0)
        return rule.nb;
    return pivots <= 128 ? std::max(pivots, 1) : pivots <= 1400 ? 32 : pivots <= 3000 ? 48 : 96;
}

void eliminateSymmetric(const PivotRule& rule, int pivots, int rest, double* panel, double* schur, double* d,
                        double* dinv)
{
    const int order = pivots + rest;
    const int nb = panelWidth(rule, pivots);
    blac_selim_(&pivots, &nb, &rule.tolerance, panel, &order, d, dinv);
    if (rest == 0)
        return;

    // L21*D := F21 * L11^-T: each diagonal panel of F11 holds its L^T above the diagonal.
    for (int j = 0; j < pivots; j += nb) {
        const int width = std::min(nb, pivots - j);
        const int later = pivots - j - width;
        double* diagonal = panel + j + static_cast<std::int64_t>(order) * j;
        double* rows = panel + pivots + static_cast<std::int64_t>(order) * j;
        dense::trsm('R', 'U', 'N', 'U', rest, width, diagonal, order, rows, order);
        if (later > 0)
            dense::subtractScaledProduct(rest, later, width, rows, order, diagonal + width, order,
                                         rows + static_cast<std::int64_t>(order) * width, order, dinv + j);
    }
    dense::subtractScaledSquare(std::min(rest, 96), rest, pivots, panel + pivots, order, schur, rest, dinv);
}
