// SPDX-License-Identifier: BSD-3-Clause
// An array of doubles, not initialised. A large one is in large pages where the system has them: a factor is
// written once from front to back, and with small pages the page faults would cost as much time as the
// assembly. A small one takes no more than it needs.
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
        const std::size_t whole = bytes(count), unit = unitOf(count);
        data_.reset(static_cast<double*>(std::aligned_alloc(unit, whole)));
        if (!data_)
            throw std::bad_alloc();
        if (unit == page)
            madvise(data_.get(), whole, MADV_HUGEPAGE);
    }
    double* get() const { return data_.get(); }

    // What an array of that size takes.
    static std::size_t bytes(std::size_t count)
    {
        const std::size_t unit = unitOf(count);
        return (count * sizeof(double) / unit + 1) * unit;
    }

private:
    static constexpr std::size_t page = std::size_t{1} << 21, line = 64;
    static std::size_t unitOf(std::size_t count) { return count * sizeof(double) < page ? line : page; }

    struct Free
    {
        void operator()(double* p) const { std::free(p); }
    };
    std::unique_ptr<double, Free> data_;
};
