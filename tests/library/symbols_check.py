#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""What the library takes from others, and what it brings for whom.

    symbols_check.py LIBRARY [TIERS [DIGEST]]

- From outside it takes the BLAS and LAPACK routines behind its facade and the few that its kernels call, the thread
  controls of BLAS libraries (weak), malloc and free, and block copies and fills. Nothing prints, aborts, throws, runs
  before main or needs the C++ runtime.
- Every exported name is of the frame, of the facade, or a kernel on the list TIERS, and each kernel has exactly the
  variants that the list gives it.
- The list DIGEST of expected hashes has every kernel.
"""
import os
import re
import sys

import disassembly
from instructions_check import read_tiers

MEMORY = {"malloc", "free", "memcpy", "memmove", "memset"}
WEAK = {"__cxa_finalize", "_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable", "__gmon_start__",
        "MKL_Set_Num_Threads", "MKL_Get_Max_Threads", "openblas_set_num_threads", "openblas_get_num_threads",
        "bli_thread_set_num_threads", "bli_thread_get_num_threads"}
FRAME = {"TOVBlaModule_initialize", "TOVBlaModule_finalize", "TOVBlaCore_initialize", "TOVBlaCore_finalize",
         "TOVBlaModule_initializeC", "TOVBlaModule_finalizeC", "blaC_formalize", "blaC_get_num_threads",
         "blaC_set_num_threads"}
KINDS = [  # what an unwelcome name most likely means
    (r"printf|puts|putc|fopen|fwrite|^std(out|err|in)$|perror|^(read|write|open)$", "input or output"),
    (r"calloc|alloc|^_Zn[wa]|^_Zd[la]|mmap|sbrk", "heap beyond malloc and free"),
    (r"abort|exit|assert|terminate|stack_chk_fail|raise", "aborts"),
    (r"^__cxa|^_Unwind|gxx_personality|^_ZSt|^_ZNSt|^_ZTV|guard_acquire", "C++ runtime"),
]


def plain(name):
    """blaC_selimC of _Z11blaC_selimCiidPd; other names as they are."""
    match = re.match(r"_Z(\d+)(.*)", name)
    return match.group(2)[:int(match.group(1))] if match else name


def check_undefined(library):
    undefined, exported = disassembly.undefined(library), set(disassembly.exported(library))
    for name in undefined:
        called_by_kernels = name in {"lsame_", "dgemm_", "dtrsm_", "dtrmm_", "ddot_", "dnrm2_", "drotg_"}
        if name in MEMORY | WEAK or called_by_kernels or "blac_" + name in exported:
            continue
        kind = next((text for pattern, text in KINDS if re.search(pattern, name)), "not on the list")
        yield f"takes {name} from outside: {kind}"
    for name in disassembly.needed(library):
        if re.match(r"lib(std|c)\+\+|libgcc_s|libgfortran|libm\b", name):
            yield f"needs {name}"
    if disassembly.section_size(library, ".init_array") > 8:  # one pointer: the compiler's own frame_dummy
        yield "runs code when it is loaded (.init_array)"


def check_kernels(library, table):
    undefined, exported = set(disassembly.undefined(library)), disassembly.exported(library)
    own = {plain(name) for name in exported}
    own = {name for name in own - FRAME if not (name.startswith("blac_") and name[5:] in undefined)}
    for name in sorted(own - set(table)):
        yield f"{name} is exported, but on no list"
    functions = {name.split(".")[0] for _, names in disassembly.functions(library).values() for name in names}
    for kernel, tiers in table.items():
        if kernel not in own:
            yield f"{kernel} is missing"
            continue
        found = "".join(tier for tier in "VRA" if kernel + tier in functions)
        if found != tiers:
            yield f"{kernel} has variants '{found}', expected '{tiers}'"


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    library, tiers, digest = (sys.argv[1:] + [os.path.join(here, "tiers.txt"),
                                              os.path.join(here, "../digest/expected.txt")][len(sys.argv) - 2:])[:3]
    table = read_tiers(tiers)
    errors = list(check_undefined(library)) + list(check_kernels(library, table))
    with open(digest) as file:
        digested = {line.split()[0] for line in file if line.strip()}
    errors += [f"{kernel} is in no digest" for kernel in table if kernel not in digested]
    for error in errors:
        print(error)
    print(f"{len(table)} kernels, {len(disassembly.undefined(library))} names from outside, {len(errors)} violations")
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
