// SPDX-License-Identifier: BSD-3-Clause
#include "blas_threads.h"

#include <TOVBlaModule.h>

#include <cstring>
#include <dlfcn.h>
#include <mutex>

extern "C" void dlacn2_(const int* n, double* v, double* x, int* isgn, double* est, int* kase, int* isave);

namespace {

std::mutex changing;
int alive = 0, before = 0;

} // namespace

bool blasTakesCallers()
{
    // Where LAPACK is from, and what that has loaded: the BLAS, which need not be in the process's own scope.
    Dl_info lapack;
    if (dladdr(reinterpret_cast<void*>(&dlacn2_), &lapack) == 0)
        return true;
    void* const library = dlopen(lapack.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (!library)
        return true;
    const auto parallel = reinterpret_cast<int (*)()>(dlsym(library, "openblas_get_parallel"));
    const auto config = reinterpret_cast<const char* (*)()>(dlsym(library, "openblas_get_config"));
    const bool alone = parallel && config && parallel() == 0 && !std::strstr(config(), "USE_LOCKING");
    dlclose(library);
    return !alone;
}

OneBlasThread::OneBlasThread()
{
    const std::lock_guard<std::mutex> lock(changing);
    if (alive++ > 0)
        return;
    before = blaC_get_num_threads();
    if (before != 1)
        blaC_set_num_threads(1);
}

OneBlasThread::~OneBlasThread()
{
    const std::lock_guard<std::mutex> lock(changing);
    if (--alive == 0 && before != 1)
        blaC_set_num_threads(before);
}
