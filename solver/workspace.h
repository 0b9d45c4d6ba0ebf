// SPDX-License-Identifier: BSD-3-Clause
// A large array of doubles, not initialised, in large pages where the system has them: a factor is written
// once from front to back, and with small pages the page faults would cost as much time as the assembly.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <sys/mman.h>

class Workspace
{
public:
    explicit Workspace(std::size_t count)
    {
        constexpr std::size_t page = std::size_t{1} << 21;
        const std::size_t bytes = (count * sizeof(double) / page + 1) * page;
        data_.reset(static_cast<double*>(std::aligned_alloc(page, bytes)));
        if (!data_)
            throw std::bad_alloc();
        madvise(data_.get(), bytes, MADV_HUGEPAGE);
    }
    double* get() const { return data_.get(); }

private:
    struct Free
    {
        void operator()(double* p) const { std::free(p); }
    };
    std::unique_ptr<double, Free> data_;
};
