// SPDX-License-Identifier: BSD-3-Clause
// The thread count is the BLAS library's state; these two calls pass it through. Which library is there is
// decided by name when the process loads: a weak reference that nobody defines is null.
#include "TOVBlaModule.h"

#include "export.h"

#include <cstdint>

extern "C" {
[[gnu::weak]] void MKL_Set_Num_Threads(int count);
[[gnu::weak]] int MKL_Get_Max_Threads();
[[gnu::weak]] void openblas_set_num_threads(int count);
[[gnu::weak]] int openblas_get_num_threads();
[[gnu::weak]] void bli_thread_set_num_threads(std::int64_t count);
[[gnu::weak]] std::int64_t bli_thread_get_num_threads();
}

BLA_EXPORT void blaC_set_num_threads(int count)
{
    if (MKL_Set_Num_Threads)
        MKL_Set_Num_Threads(count);
    else if (openblas_set_num_threads)
        openblas_set_num_threads(count);
    else if (bli_thread_set_num_threads)
        bli_thread_set_num_threads(count);
}

BLA_EXPORT int blaC_get_num_threads()
{
    if (MKL_Get_Max_Threads)
        return MKL_Get_Max_Threads();
    if (openblas_get_num_threads)
        return openblas_get_num_threads();
    if (bli_thread_get_num_threads) {
        // BLIS 0.9.0 says -1 as long as nobody has set a number, and then uses one thread.
        const std::int64_t count = bli_thread_get_num_threads();
        return count > 0 ? static_cast<int>(count) : 1;
    }
    return 1;
}

BLA_EXPORT void blaC_formalize() {}

BLA_PLAIN_NAME(blaC_set_num_threads, "_Z20blaC_set_num_threadsi", void, (int))
BLA_PLAIN_NAME(blaC_get_num_threads, "_Z20blaC_get_num_threadsv", int, ())
BLA_PLAIN_NAME(blaC_formalize, "_Z14blaC_formalizev", void, ())
