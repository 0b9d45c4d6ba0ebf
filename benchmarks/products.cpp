// SPDX-License-Identifier: BSD-3-Clause
// The scaled products beside the plain product of the same size, and a facade call beside the direct one.
#include "bench.h"

#include "TOVBlaModule.h"
#include "peers.h"

#include <algorithm>
#include <memory>

namespace bench {
namespace {

struct Product
{
    int m, n, k;
    Array a, b, bt, c, d, matrix;

    Product(int rows, int columns, int inner)
        : m(rows), n(columns), k(inner), a(int64_t{rows} * inner), b(int64_t{columns} * inner), bt(b.size()),
          c(int64_t{rows} * columns), d(inner), matrix(int64_t{inner} * inner)
    {
        for (Array* x : {&a, &b, &bt, &d, &matrix})
            fill(*x);
    }
};

void add_product(const std::string& name, int m, int n, int k, std::function<void(Product&)> run)
{
    const double flops = 2.0 * m * n * k;
    const int repeat = std::max(1, static_cast<int>(1e6 / flops));
    add(name, flops * repeat, [=] {
        auto product = std::make_shared<Product>(m, n, k);
        return Job{[] {},
                   [=] {
                       for (int i = 0; i < repeat; ++i)
                           run(*product);
                   }};
    });
}

const double One = 1.0;

} // namespace

void add_products()
{
    const int sizes[][3] = {{2000, 64, 64}, {500, 32, 64}, {64, 64, 64},
                            {32, 32, 32},   {16, 16, 16},  {8, 8, 8}};
    for (const auto& [m, n, k] : sizes) {
        const std::string size = std::to_string(m) + 'x' + std::to_string(n) + 'x' + std::to_string(k);
        const std::string t = "dgemm_scaled_T/" + size + '/', s = "dgemm_scaled_N/" + size + '/';
        add_product(t + "kernel", m, n, k, [](Product& p) {
            blac_dgemm_scaled_("N", "T", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.n, &One, p.c, &p.m,
                               p.matrix, &p.k);
        });
        add_product(t + "vector", m, n, k, [](Product& p) {
            blac_dgemm_scaled2_("N", "T", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.n, &One, p.c, &p.m, p.d);
        });
        add_product(t + "dgemm", m, n, k, [](Product& p) {
            dgemm_("N", "T", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.n, &One, p.c, &p.m, 1, 1);
        });
        add_product(s + "kernel", m, n, k, [](Product& p) {
            blac_dgemm_scaled_("N", "N", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.k, &One, p.c, &p.m,
                               p.matrix, &p.k);
        });
        add_product(s + "vector", m, n, k, [](Product& p) {
            blac_dgemm_scaled2_("N", "N", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.k, &One, p.c, &p.m, p.d);
        });
        add_product(s + "dgemm", m, n, k, [](Product& p) {
            dgemm_("N", "N", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.k, &One, p.c, &p.m, 1, 1);
        });
    }
    // The lower trapezoid over the width of its column blocks; the work is that of the triangle.
    const int updates[][2] = {{300, 32}, {300, 150}, {1000, 32}, {1000, 300}, {2000, 96}, {2000, 600}};
    for (const auto& [n, k] : updates) {
        const std::string line = "dsyrk_scaled/" + std::to_string(n) + 'x' + std::to_string(k) + '/';
        const double flops = 1.0 * n * n * k;
        const auto add_update = [&](const std::string& variant, std::function<void(Product&)> run) {
            add(line + variant, flops, [n = n, k = k, run] {
                auto product = std::make_shared<Product>(n, n, k);
                return Job{[] {}, [=] { run(*product); }};
            });
        };
        for (int nb : {24, 32, 48, 64, 96, 128, 192})
            add_update("nb" + std::to_string(nb), [nb](Product& p) {
                blac_dsyrk_scaled_(&nb, &p.n, &p.k, &One, p.a, &p.n, p.a, &p.n, &One, p.c, &p.n, p.d);
            });
        add_update("dsyrk",
                   [](Product& p) { dsyrk_("L", "N", &p.n, &p.k, &One, p.a, &p.n, &One, p.c, &p.n, 1, 1); });
    }
    add_product("facade/4x4x4/kernel", 4, 4, 4, [](Product& p) {
        blac_dgemm_("N", "T", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.n, &One, p.c, &p.m);
    });
    add_product("facade/4x4x4/dgemm", 4, 4, 4, [](Product& p) {
        dgemm_("N", "T", &p.m, &p.n, &p.k, &One, p.a, &p.m, p.b, &p.n, &One, p.c, &p.m, 1, 1);
    });
}

} // namespace bench
