// SPDX-License-Identifier: BSD-3-Clause
#include "blas_threads.h"

#include <TOVBlaModule.h>

#include <mutex>

namespace {

std::mutex changing;
int alive = 0, before = 0;

} // namespace

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
