// SPDX-License-Identifier: BSD-3-Clause
// An analysis that gets no memory, be it in METIS or AMD, says so, and the next one finds the same order as
// ever. Every allocation of it fails once, with all that follow.
#include "analysis.h"
#include "patterns.h"

#include <cstdio>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

int main()
{
    std::puts("skipped: the sanitizer has its own malloc");
    return 77;
}

#else

namespace {

long granted = -1; // allocations that still succeed; below 0 all do

bool refuse()
{
    if (granted > 0)
        --granted;
    else if (granted == 0)
        return true;
    return false;
}

std::vector<int> orderOf(const Edges& edges, Ordering ordering)
{
    return analyse(edges.pattern(), {}, {ordering, nullptr, {}}).permutation;
}

} // namespace

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);

void* malloc(std::size_t bytes)
{
    return refuse() ? nullptr : __libc_malloc(bytes);
}
void* calloc(std::size_t count, std::size_t bytes)
{
    return refuse() ? nullptr : __libc_calloc(count, bytes);
}
void* realloc(void* p, std::size_t bytes)
{
    return refuse() ? nullptr : __libc_realloc(p, bytes);
}
}

int main()
{
    const Edges cube(3 * 343, elasticity(7, 3));
    for (const Ordering ordering : {Ordering::metis, Ordering::amd}) {
        const std::vector<int> expected = orderOf(cube, ordering);
        long failures = 0;
        for (bool refused = true; refused; ++failures) {
            refused = false;
            granted = failures;
            try {
                orderOf(cube, ordering);
            } catch (const std::bad_alloc&) {
                refused = true;
            }
            granted = -1;
            if (orderOf(cube, ordering) != expected) {
                std::printf("another order after failure %ld\n", failures);
                return 1;
            }
        }
        std::printf("%ld allocations failed in turn\n", failures - 1);
        if (failures < 50)
            return 1;
    }
}

#endif
