#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Runs the digest and the kernels' tests on an emulated processor.

    emulate.py --model MODEL --tier V|R|A --qemu QEMU --probe PROBE --digest DIGEST [--expected FILE] [--tiers FILE]
               [--tests PROGRAM --filter FILTER]

1. What the model lacks does not run: PROBE executes one instruction of each kind.
2. DIGEST gives the expected hashes, and its own report is that TIER ran.
3. The emulator's log of what it executed shows the variants of that tier, of every tiered kernel, and no other.
4. PROGRAM passes the tests that FILTER selects, under a BLAS kept to its plainest kernels.
"""
import argparse
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../library"))
from instructions_check import read_tiers  # noqa: E402
from symbols_check import plain  # noqa: E402

# Instructions that an emulator runs although its model lacks them; the check of the instructions stands in for these.
NOT_ENFORCED = {"vbroadcastsd_register"}  # QEMU 7.2: takes it for AVX


def executed_kernels(log):
    """Functions in the emulator's log of translated code; code is translated only to be executed."""
    with open(log, errors="replace") as file:
        return {plain(line.split()[1]) for line in file if re.match(r"IN: \S", line)}


def wrong_variants(executed, table, tier):
    for kernel, tiers in table.items():
        wanted = tier if tier in tiers else "A"
        found = {t for t in tiers if kernel + t in executed}
        inlined = wanted == "A" and not found and kernel in executed  # the baseline, into the entry point
        if kernel not in executed:
            yield f"{kernel} was not called"
        elif tiers and found != {wanted} and not inlined:
            yield f"{kernel} ran variants {sorted(found)}, expected {wanted}"


def main():
    parser = argparse.ArgumentParser()
    for name in ("model", "tier", "qemu", "probe", "digest"):
        parser.add_argument("--" + name, required=True)
    parser.add_argument("--expected", default=os.path.join(HERE, "../digest/expected.txt"))
    parser.add_argument("--tiers", default=os.path.join(HERE, "../library/tiers.txt"))
    parser.add_argument("--tests")
    parser.add_argument("--filter", default="*")
    arguments = parser.parse_args()
    errors = []

    def emulate(*command, options=(), environment=None):
        result = subprocess.run([arguments.qemu, "-cpu", arguments.model, *options, *command], text=True,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, env={**os.environ, **(environment or {})})
        error = "\n".join(line for line in result.stderr.splitlines() if "TCG doesn't support" not in line)
        return result.returncode, result.stdout, error

    status, output, error = emulate(arguments.probe)
    kinds = [line.split() for line in output.splitlines()]
    if status or not kinds:
        errors.append(f"the probe failed: {error}")
    for feature, name, claimed, ran in kinds:
        if (claimed == "claimed") != (ran == "ran") and name not in NOT_ENFORCED:
            errors.append(f"the emulator cannot be trusted: {name} ({feature}) is {claimed}, but {ran}")

    with tempfile.TemporaryDirectory() as directory:
        log = os.path.join(directory, "log")
        status, output, error = emulate(arguments.digest, "--expect-tier", arguments.tier, "--compare",
                                        arguments.expected, options=("-d", "in_asm", "-D", log))
        if status:
            errors.append(f"the digest failed ({status}):\n{error}")
        errors += wrong_variants(executed_kernels(log), read_tiers(arguments.tiers), arguments.tier)
    print(output.splitlines()[0] if output else "no output", "on", arguments.model)

    if arguments.tests:
        status, output, error = emulate(arguments.tests, "--gtest_filter=" + arguments.filter, "--gtest_brief=1",
                                        environment={"OPENBLAS_CORETYPE": "Prescott", "OPENBLAS_NUM_THREADS": "1"})
        passed = re.search(r"PASSED\s+\D+(\d+) tests", output)
        if status or not passed or int(passed.group(1)) < 50:
            errors.append(f"the kernels' tests failed ({status}):\n{output[-4000:]}{error}")
        else:
            print(passed.group(1), "tests passed")

    for error in errors:
        print(error)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
