// SPDX-License-Identifier: BSD-3-Clause
#include "bench.h"

#include "TOVBlaModule.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace bench {

void add(const std::string& name, double work, std::function<Job()> make)
{
    benchmark::RegisterBenchmark(name.c_str(), [work, make](benchmark::State& state) {
        const Job job = make();
        job.reset();
        job.run();
        // A peer with 512-bit registers lowers the clock for those that run right after it.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        for (auto _ : state) {
            job.reset();
            const auto start = std::chrono::steady_clock::now();
            job.run();
            state.SetIterationTime(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
        state.counters["rate"] = benchmark::Counter(work, benchmark::Counter::kIsIterationInvariantRate);
    })->UseManualTime();
}

// Large arrays of malloc and of Fortran's allocate start 16 bytes behind a page, and so do these; --behind=0
// lets them start with a cache line.
static constexpr std::size_t Page = 4096;
static std::size_t behind_page = 16;

Array::Array(int64_t count) : count_(count)
{
    const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(double);
    void* const pages = std::aligned_alloc(Page, (behind_page + bytes + Page - 1) / Page * Page);
    data_ = reinterpret_cast<double*>(static_cast<char*>(pages) + behind_page);
    std::memset(data_, 0, bytes);
}

Array::Array(const Array& other) : Array(other.count_)
{
    copy_from(other);
}

Array::~Array()
{
    std::free(reinterpret_cast<char*>(data_) - behind_page);
}

void Array::copy_from(const Array& other)
{
    std::memcpy(data_, other.data_, static_cast<std::size_t>(count_) * 8);
}

void fill(Array& a)
{
    std::mt19937_64 random(1);
    for (int64_t i = 0; i < a.size(); ++i)
        a[i] = static_cast<double>(static_cast<int64_t>(random() >> 11)) * 0x1p-52 - 1.0;
}

} // namespace bench

int main(int argc, char** argv)
{
    // Arguments of ours: --threads=2 gives the BLAS two; --behind=0 places arrays at a page.
    int threads = 1;
    int kept = 1;
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--threads=", 10) == 0)
            threads = std::atoi(argv[i] + 10);
        else if (std::strncmp(argv[i], "--behind=", 9) == 0)
            bench::behind_page = static_cast<std::size_t>(std::atoi(argv[i] + 9));
        else
            argv[kept++] = argv[i];
    }
    argc = kept;
    blaC_set_num_threads(threads);

    bench::add_families();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
}
