// SPDX-License-Identifier: BSD-3-Clause
#include "allocations.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <link.h>
#include <malloc.h>

namespace {

std::atomic<long> liveCount{0};
std::atomic<std::int64_t> liveBytes{0}, mostBytes{0};
std::atomic<long> toGo{-1}; // allocations that still succeed; below 0 all do
std::atomic<bool> forGood{false}, failed{false};

// The code of the BLAS: some small products of OpenBLAS 0.3.21 with AVX-512 ask for memory and do not look
// whether they got it.
struct Code
{
    std::uintptr_t start, end;
};
Code blas[8];
std::size_t blasParts = 0;

int addPartsOfBlas(dl_phdr_info* object, std::size_t, void*)
{
    const char* const file = std::strrchr(object->dlpi_name, '/');
    if (file && std::strstr(file, "blas"))
        for (int i = 0; i < object->dlpi_phnum && blasParts < std::size(blas); ++i)
            if (const auto& part = object->dlpi_phdr[i]; part.p_flags & PF_X)
                blas[blasParts++] = {object->dlpi_addr + part.p_vaddr,
                                     object->dlpi_addr + part.p_vaddr + part.p_memsz};
    return 0;
}

bool isOfBlas(const void* caller)
{
    const auto at = reinterpret_cast<std::uintptr_t>(caller);
    return std::any_of(blas, blas + blasParts,
                       [at](const Code& part) { return part.start <= at && at < part.end; });
}

[[maybe_unused]] bool refused(const void* caller)
{
    long left = toGo;
    if (left >= 0 && isOfBlas(caller))
        return false;
    while (left >= 0)
        if (toGo.compare_exchange_weak(left, left > 0 ? left - 1 : forGood ? 0 : -1)) {
            if (left > 0)
                return false;
            failed = true;
            errno = ENOMEM;
            return true;
        }
    return false;
}

} // namespace

namespace allocations {

void fail(long k, Failing failing)
{
    if (blasParts == 0)
        dl_iterate_phdr(addPartsOfBlas, nullptr);
    forGood = failing == Failing::fromThereOn;
    failed = false;
    toGo = k;
}

bool stopFailing()
{
    toGo = -1;
    return failed;
}

long live()
{
    return liveCount;
}

std::int64_t bytes()
{
    return liveBytes;
}

std::int64_t peak()
{
    return mostBytes;
}

void forgetPeak()
{
    mostBytes = liveBytes.load();
}

} // namespace allocations

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

void* entered(void* p)
{
    if (p) {
        ++liveCount;
        const std::int64_t now = liveBytes += static_cast<std::int64_t>(malloc_usable_size(p));
        if (now > mostBytes)
            mostBytes = now;
    }
    return p;
}

void left(void* p)
{
    if (p) {
        --liveCount;
        liveBytes -= static_cast<std::int64_t>(malloc_usable_size(p));
    }
}

} // namespace

extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t bytes)
{
    return refused(__builtin_return_address(0)) ? nullptr : entered(__libc_malloc(bytes));
}
void* calloc(std::size_t count, std::size_t bytes)
{
    return refused(__builtin_return_address(0)) ? nullptr : entered(__libc_calloc(count, bytes));
}
void* realloc(void* p, std::size_t bytes)
{
    if (refused(__builtin_return_address(0)))
        return nullptr;
    left(p);
    void* const q = __libc_realloc(p, bytes);
    return entered(q || bytes == 0 ? q : p);
}
void* memalign(std::size_t alignment, std::size_t bytes)
{
    return refused(__builtin_return_address(0)) ? nullptr : entered(__libc_memalign(alignment, bytes));
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes)
{
    return memalign(alignment, bytes);
}
int posix_memalign(void** p, std::size_t alignment, std::size_t bytes)
{
    *p = memalign(alignment, bytes);
    return *p ? 0 : ENOMEM;
}
void free(void* p)
{
    left(p);
    __libc_free(p);
}
}

#endif
