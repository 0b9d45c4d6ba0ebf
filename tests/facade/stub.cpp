// SPDX-License-Identifier: BSD-3-Clause
#include "stub.h"

#include <complex>
#include <cstdarg>

namespace stub {

std::vector<Call> calls;

static void record(const char* name, int count, std::uintptr_t first, std::va_list rest)
{
    Call call{name, {first}};
    while (static_cast<int>(call.values.size()) < count)
        call.values.push_back(va_arg(rest, std::uintptr_t));
    calls.push_back(call);
}

} // namespace stub

// A variadic function finds the arguments of an ordinary call where the caller put them, however many there
// are.
#define RECORD(name, count)                                                                                  \
    std::va_list rest;                                                                                       \
    va_start(rest, first);                                                                                   \
    stub::record(#name, count, first, rest);                                                                 \
    va_end(rest);

#define STUB(type, name, count, value)                                                                       \
    extern "C" type name##_(std::uintptr_t first, ...)                                                       \
    {                                                                                                        \
        RECORD(name, count)                                                                                  \
        return value;                                                                                        \
    }

#define STUB_Nothing(name, count) STUB(void, name, count, void())
#define STUB_Double(name, count) STUB(double, name, count, stub::Double)
#define STUB_Integer(name, count) STUB(int, name, count, stub::Integer)
#define STUB_Logical(name, count) STUB(int, name, count, stub::Logical)
#define STUB_Single(name, count) STUB(double, name, count, stub::Single)
#define STUB_ComplexAsSingle(name, count) STUB(double, name, count, stub::Single)
#define STUB_Complex(name, count) // below

#define ROUTINE(name, arguments, characters, result) STUB_##result(name, arguments + characters)
#include "routines.def"

namespace {

using complex = std::complex<double>;

struct InRegisters
{
    double re, im;
};

complex dot(const int* n, const complex* zx, const int* incx, const complex* zy, const int* incy)
{
    complex sum = 0.0;
    for (int i = 0; i < *n; ++i)
        sum += std::conj(zx[i * *incx]) * zy[i * *incy];
    return sum;
}

template <class... Arguments>
void record(const char* name, Arguments*... arguments)
{
    stub::calls.push_back({name, {reinterpret_cast<std::uintptr_t>(arguments)...}});
}

} // namespace

extern "C" {

#if BLAS_HIDDEN
void zdotc_(complex* result, const int* n, const complex* zx, const int* incx, const complex* zy,
            const int* incy)
{
    record("zdotc", result, n, zx, incx, zy, incy);
    *result = dot(n, zx, incx, zy, incy);
}
#else
InRegisters zdotc_(const int* n, const complex* zx, const int* incx, const complex* zy, const int* incy)
{
    record("zdotc", n, zx, incx, zy, incy);
    const complex value = dot(n, zx, incx, zy, incy);
    return {value.real(), value.imag()};
}
#endif

#if LAPACK_HIDDEN
void zladiv_(complex* result, const complex* x, const complex* y)
{
    record("zladiv", result, x, y);
    *result = *x / *y;
}
#else
InRegisters zladiv_(const complex* x, const complex* y)
{
    record("zladiv", x, y);
    const complex value = *x / *y;
    return {value.real(), value.imag()};
}
#endif
}
