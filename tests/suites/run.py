#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""run.py --preload FILE --module FILE [NAME...]: runs the double and double-complex test programs of Debian's
libblas-test and liblapack-test with all their inputs, over the reference BLAS and LAPACK as they are and with the
module's entry points in between. Both must print the same words, write the same files and end with the same status.

The reference libraries are taken because their sums do not depend on where the data lies. NAMEs are parts of the runs'
names: "xeigtstd sep" are all runs with either."""

import argparse
import collections
import concurrent.futures
import difflib
import os
import pathlib
import subprocess
import sys
import tempfile

LIBRARIES = pathlib.Path("/usr/lib/x86_64-linux-gnu")
BLAS, LAPACK = LIBRARIES / "blas", LIBRARIES / "lapack"
SKIPPED = 77
AT_LEAST_REACHED = 100
# One entry point that jumps to another of the same arguments, and a program that must not print the same then.
WRONG = ("dswap=dcopy", "xblat1d")

Run = collections.namedtuple("Run", "program input")
Result = collections.namedtuple("Result", "status words reached")


def name(run):
    return " ".join(path.name for path in run if path)


def runs():
    """The longest first, so that two workers end together."""
    result = []
    for t in "zd":
        result.append(Run(LAPACK / f"xeigtst{t}", LAPACK / "sep.in"))
        result.append(Run(LAPACK / f"xlintst{t}", LAPACK / f"{t}test.in"))
        for input_ in ["se2", "svd", "nep", "glm", "gqr", "gsv", "csd", "lse"] + [
                t + rest for rest in ["bak", "bal", "bb", "ec", "ed", "gbak", "gbal", "gd", "gg", "sb", "sg"]]:
            result.append(Run(LAPACK / f"xeigtst{t}", LAPACK / f"{input_}.in"))
        result.append(Run(LAPACK / f"xlintstrf{t}", LAPACK / f"{t}test_rfp.in"))
        result.append(Run(BLAS / f"xblat1{t}", None))
        result.append(Run(BLAS / f"x{t}cblat1", None))
        for level in "23":
            result.append(Run(BLAS / f"xblat{level}{t}", BLAS / f"{t}blat{level}.in"))
            result.append(Run(BLAS / f"x{t}cblat{level}", BLAS / f"{t}in{level}"))
    result.append(Run(LAPACK / "xlintstds", LAPACK / "dstest.in"))
    result.append(Run(LAPACK / "xlintstzc", LAPACK / "zctest.in"))
    return result


def perform(run, **environment):
    """What the program prints and writes into files of its own, line by line, but how long it took."""
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        with open(run.input or os.devnull, "rb") as input_:
            done = subprocess.run([run.program], cwd=folder, stdin=input_, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, timeout=500, env=dict(
                                      os.environ, LD_LIBRARY_PATH=f"{BLAS}:{LAPACK}", BLA_REACHED="reached",
                                      **environment))
        reached = folder / "reached"
        names = reached.read_text().split() if reached.exists() else []
        reached.unlink(missing_ok=True)
        text = done.stdout + b"".join(path.read_bytes() for path in sorted(folder.iterdir()))
    words = [line for line in text.decode(errors="replace").splitlines() if "seconds" not in line]
    return Result(done.returncode, words, names)


def differences(plain, ours):
    """Nothing if both are the same."""
    lines = list(difflib.unified_diff(plain.words, ours.words, "without the module", "with it", lineterm="", n=0))
    if plain.status != ours.status:
        lines.insert(0, f"status {plain.status} without the module, {ours.status} with it")
    return lines


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--preload", required=True)
    parser.add_argument("--module", required=True)
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    for path in [BLAS / "xblat1d", LAPACK / "xeigtstd", BLAS / "libblas.so.3", LAPACK / "liblapack.so.3"]:
        if not path.exists():
            print(f"skipped: no {path}; the packages are libblas-test, liblapack-test, libblas3, liblapack3")
            return SKIPPED

    between = {"LD_PRELOAD": options.preload, "BLA_MODULE": options.module}
    chosen = [run for run in runs() if not options.names or any(part in name(run) for part in options.names)]
    failed, reached, lines = 0, set(), 0
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        pairs = [(run, pool.submit(perform, run), pool.submit(perform, run, **between)) for run in chosen]
        wrong = pool.submit(perform, next(run for run in runs() if run.program.name == WRONG[1]),
                            BLA_WRONG=WRONG[0], **between)
        for run, plain, ours in pairs:
            plain, ours = plain.result(), ours.result()
            found = differences(plain, ours)
            if not plain.words or not ours.reached:
                found.append("nothing was printed" if not plain.words else "no entry point was reached")
            if found:
                failed += 1
                print(f"FAILED {name(run)}", *found[:40], sep="\n    ")
            if run.program.name == WRONG[1] and not differences(plain, wrong.result()):
                failed += 1
                print(f"FAILED {WRONG[1]} prints the same with {WRONG[0]}")
            reached.update(ours.reached)
            lines += len(plain.words)

    print(f"{len(chosen)} runs, {lines} lines, {failed} failed; {len(reached)} entry points reached")
    if not options.names and len(reached) < AT_LEAST_REACHED:
        print(f"FAILED fewer than {AT_LEAST_REACHED} entry points were reached: {' '.join(sorted(reached))}")
        failed += 1
    return failed > 0


if __name__ == "__main__":
    sys.exit(main())
