// SPDX-License-Identifier: BSD-3-Clause
// Arrays in which a stray access shows: the page behind the last element cannot be touched, everything else
// that does not belong to the array is filled with a pattern that must be found unchanged.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

namespace support {

/// The pattern: a signalling NaN, so that reading it shows in the result as well.
constexpr std::uint64_t Canary = 0x7ff4deadbeefcafe;

/// Pages of memory with an inaccessible page on either side.
class Pages
{
public:
    explicit Pages(std::size_t bytes)
    {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        size_ = (bytes + page - 1) / page * page + page;
        whole_ = static_cast<char*>(
            mmap(nullptr, size_ + 2 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        begin_ = whole_ + page;
        mprotect(begin_, size_, PROT_READ | PROT_WRITE);
        for (std::size_t i = 0; i < size_; i += 8)
            std::memcpy(begin_ + i, &Canary, 8);
    }
    ~Pages() { munmap(whole_, size_ + 2 * static_cast<std::size_t>(sysconf(_SC_PAGESIZE))); }
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    char* begin() const { return begin_; }
    char* end() const { return begin_ + size_; }
    std::size_t size() const { return size_; }

private:
    char *whole_, *begin_;
    std::size_t size_;
};

/// `count` elements that end `gap` bytes before the inaccessible page: gap 0 puts the guard right behind the
/// last element, gap 8 moves the start by half a vector, gap 3 makes the array unaligned.
template <class T>
class Guarded
{
public:
    explicit Guarded(std::int64_t count, std::size_t gap = 0)
        : pages_(bytes(count) + gap), count_(count > 0 ? count : 0),
          data_(reinterpret_cast<T*>(pages_.end() - gap - bytes(count)))
    {
    }

    /// The array's address. For an unaligned array use get and set for its elements.
    T* data() const { return data_; }
    operator T*() const { return data_; }
    std::int64_t size() const { return count_; }

    T get(std::int64_t i) const
    {
        T value;
        std::memcpy(&value, reinterpret_cast<const char*>(data_) + i * static_cast<std::int64_t>(sizeof(T)),
                    sizeof(T));
        return value;
    }
    void set(std::int64_t i, T value) const
    {
        std::memcpy(reinterpret_cast<char*>(data_) + i * static_cast<std::int64_t>(sizeof(T)), &value,
                    sizeof(T));
    }

    const Pages& pages() const { return pages_; }

private:
    static std::size_t bytes(std::int64_t count)
    {
        return count > 0 ? static_cast<std::size_t>(count) * sizeof(T) : 0;
    }

    Pages pages_;
    std::int64_t count_;
    T* data_;
};

} // namespace support
