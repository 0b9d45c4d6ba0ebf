// SPDX-License-Identifier: BSD-3-Clause
// What the BLAS beneath has to do with threads.
#pragma once

// Whether several threads may call it at once. An OpenBLAS that was built without threads gives wrong numbers
// then, unless it was built to lock (its USE_LOCKING).
bool blasTakesCallers();

// One BLAS thread while it lasts: the solver has threads of its own, and bits must not depend on their
// number. The number is the process's; the first one that is made sets it, the last one that ends puts it
// back.
class OneBlasThread
{
public:
    OneBlasThread();
    ~OneBlasThread();
    OneBlasThread(const OneBlasThread&) = delete;
    OneBlasThread& operator=(const OneBlasThread&) = delete;
};
