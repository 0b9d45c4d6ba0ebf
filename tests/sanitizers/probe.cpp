// SPDX-License-Identifier: BSD-3-Clause
// Provokes one defect of each kind that a sanitizer or memcheck is there to report. The tests demand the
// report: a build whose sanitizer is off, or does not cover this kind, fails them.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

static volatile int two = 2; // what the compiler cannot see through

static int shared;

[[gnu::noinline]] static double load(const double* x)
{
    return *x;
}

int main(int argc, char** argv)
{
    const std::string kind = argc > 1 ? argv[1] : "";
    if (kind == "heap") { // read behind an array
        double* const x = static_cast<double*>(std::calloc(static_cast<std::size_t>(two), 8));
        std::printf("%g\n", load(x + two));
        std::free(x);
    } else if (kind == "alignment") { // a double at an odd address
        alignas(8) char bytes[24] = {};
        std::printf("%g\n", load(reinterpret_cast<const double*>(bytes + two + 1)));
    } else if (kind == "overflow") {
        const int large = 0x7fffffff - 1 + two / 2;
        std::printf("%d\n", large + two);
    } else if (kind == "race") {
        auto work = [] {
            for (int i = 0; i < 100000; ++i)
                shared = shared + 1;
        };
        std::thread one(work), other(work);
        one.join();
        other.join();
        std::printf("%d\n", shared);
    } else if (kind == "memory") { // a decision on what was never written
        int* const x = static_cast<int*>(std::malloc(static_cast<std::size_t>(two) * sizeof(int)));
        std::puts(x[two - 1] > 5 ? "more" : "less");
        std::free(x);
    } else {
        std::fprintf(stderr, "heap, alignment, overflow, race or memory\n");
        return 2;
    }
}
