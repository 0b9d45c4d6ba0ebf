// SPDX-License-Identifier: BSD-3-Clause
// One BLAS thread while it lasts: the solver has threads of its own, and bits must not depend on their
// number. The number is the process's; the first one that is made sets it, the last one that ends puts it
// back.
#pragma once

class OneBlasThread
{
public:
    OneBlasThread();
    ~OneBlasThread();
    OneBlasThread(const OneBlasThread&) = delete;
    OneBlasThread& operator=(const OneBlasThread&) = delete;
};
