// SPDX-License-Identifier: BSD-3-Clause
#include "problems.h"

#include <gtest/gtest.h>

TEST(Unsupported, X)
{
    auto random = support::generator(7);
    const auto show = [&](const char* name, const SparseMatrix& a) {
        for (int kind = 0; kind < 2; ++kind) {
            Vectors x = problems::ones(a.n), b;
            for (double& v : x.value)
                v = support::ordinary(random);
            b = kind ? x : problems::product(a, x);
            const Outcome o = problems::solved(a, b);
            std::printf("%s: n %d treated %d/%d res %.2g bound %.2g |x| %.2g: %s\n", name, a.n, o.replaced,
                        o.shifted, o.answer.residual, o.bound.forward(),
                        maxNorm(o.answer.x.value.data(), a.n), o.verdict.c_str());
            if (o.unheld.count) {
                const SparseMatrix h = problems::held(a, o.unheld.unknowns);
                const Outcome p = problems::solved(h, problems::product(h, problems::ones(h.n)));
                std::printf("   held: bound %.2g %s\n", p.bound.forward(), p.verdict.c_str());
            }
        }
    };
    show("grid 1d", problems::grid(50, 1, 1));
    show("grid 2d", problems::grid(20, 21, 1));
    show("grid 3d", problems::grid(10, 11, 12));
    show("lattice 1", problems::lattice(1, 1, 1));
    show("lattice 4", problems::lattice(4, 3, 2));
    show("lattice 30", problems::lattice(30, 5, 5));
    show("lattice 60x2", problems::lattice(100, 1, 1));
}
