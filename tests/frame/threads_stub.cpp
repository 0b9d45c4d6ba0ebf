// SPDX-License-Identifier: BSD-3-Clause
// The thread control of a BLAS library, or of several in one process: HAS_MKL, HAS_OPENBLAS, HAS_BLIS.
#include "threads_stub.h"

ThreadCalls thread_calls;

#define SET(name, type, member)                                                                              \
    extern "C" void name(type count)                                                                         \
    {                                                                                                        \
        ++thread_calls.member.sets;                                                                          \
        thread_calls.member.count = count;                                                                   \
    }
#define GET(name, type, member)                                                                              \
    extern "C" type name()                                                                                   \
    {                                                                                                        \
        ++thread_calls.member.gets;                                                                          \
        return static_cast<type>(thread_calls.member.answer);                                                \
    }

#if HAS_MKL
SET(MKL_Set_Num_Threads, int, mkl)
GET(MKL_Get_Max_Threads, int, mkl)
#endif
#if HAS_OPENBLAS
SET(openblas_set_num_threads, int, openblas)
GET(openblas_get_num_threads, int, openblas)
#endif
#if HAS_BLIS
SET(bli_thread_set_num_threads, std::int64_t, blis)
GET(bli_thread_get_num_threads, std::int64_t, blis)
#endif
