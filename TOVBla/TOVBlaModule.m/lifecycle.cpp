// SPDX-License-Identifier: BSD-3-Clause
// Counts how many components were brought up on a caller's behalf: the module, the core, and a third that
// has no entry points of its own. Up in the order module, core, third; down module with third, then core.
//
// The counters are never clamped: a surplus finalisation takes a count to -1, and the initialisation that
// brings it back to 0 does nothing else. Callers serialise these calls.
#include "TOVBlaModule.h"

#include "export.h"

static int module_users = 0;
static int core_users = 0;
static int third_users = 0;
static int private_tally = 0; // of the entry points without argument

BLA_EXPORT void TOVBlaCore_initialize(int& tally)
{
    if (core_users++ == 0)
        ++tally;
}

BLA_EXPORT void TOVBlaCore_finalize(int& tally)
{
    if (--core_users == 0)
        --tally;
}

BLA_EXPORT void TOVBlaModule_initialize(int& tally)
{
    if (module_users++ != 0)
        return;
    ++tally;
    TOVBlaCore_initialize(tally);
    if (third_users++ == 0)
        ++tally;
}

BLA_EXPORT void TOVBlaModule_finalize(int& tally)
{
    if (--module_users != 0)
        return;
    tally -= --third_users == 0 ? 2 : 1;
    TOVBlaCore_finalize(tally);
}

BLA_EXPORT void TOVBlaModule_initializeC()
{
    TOVBlaModule_initialize(private_tally);
}

BLA_EXPORT void TOVBlaModule_finalizeC()
{
    TOVBlaModule_finalize(private_tally);
}
