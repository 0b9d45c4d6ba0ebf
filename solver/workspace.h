// SPDX-License-Identifier: BSD-3-Clause
// An array of doubles, not initialised. A large one is in large pages where the system has them: a factor is
// written once from front to back, and with small pages the page faults would cost as much time as the
// assembly. A small one takes little more than it needs. All start with a cache line.
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
        // malloc is faster than aligned_alloc, which leaves crumbs to be put together again.
        allocated_.reset(unit == page ? std::aligned_alloc(unit, whole) : std::malloc(whole));
        if (!allocated_)
            throw std::bad_alloc();
        void* start = allocated_.get();
        std::size_t room = whole;
        data_ = static_cast<double*>(std::align(line, count * sizeof(double), start, room));
        if (unit == page)
            madvise(data_, whole, MADV_HUGEPAGE);
    }
    double* get() const { return data_; }

    // What an array of that size takes.
    static std::size_t bytes(std::size_t count)
    {
        const std::size_t unit = unitOf(count), least = count * sizeof(double);
        return unit == page ? (least / page + 1) * page : least + line;
    }

private:
    static constexpr std::size_t page = std::size_t{1} << 21, line = 64;
    static std::size_t unitOf(std::size_t count) { return count * sizeof(double) < page ? line : page; }

    struct Free
    {
        void operator()(void* p) const { std::free(p); }
    };
    std::unique_ptr<void, Free> allocated_;
    double* data_;
};
