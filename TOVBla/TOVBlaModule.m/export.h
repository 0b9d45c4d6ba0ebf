// SPDX-License-Identifier: BSD-3-Clause
#pragma once

/// The only symbols that leave the library are marked with this.
#define BLA_EXPORT __attribute__((visibility("default")))

/// Exports a function of C++ linkage under its plain name as well, for callers from C and Fortran and for
/// dlsym. `mangled` is the C++ symbol: the compiler refuses an alias of a name that is not defined here.
#define BLA_PLAIN_NAME(name, mangled, result, params)                                                        \
    extern "C" __attribute__((visibility("default"), alias(mangled)))                                        \
    result name##_plain params __asm__(#name);
