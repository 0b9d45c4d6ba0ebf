# SPDX-License-Identifier: BSD-3-Clause
"""Configures the project as it is and again with tools hidden: both must list the same tests, and those that want a
hidden tool must report themselves as skipped, with the reason. Nothing is built: a program that knows its own tests
stands for them by its name."""
import argparse
import json
import os
import re
import subprocess
import sys
import tempfile

# What is hidden, how, and a test that wants it.
HIDDEN = {
    "tools": (["-DCMAKE_IGNORE_PATH=/usr/bin;/bin;/usr/local/bin", "-DCMAKE_Fortran_COMPILER=",
               "-DCMAKE_DISABLE_FIND_PACKAGE_Doxygen=ON"],
              ["emulation.avx", "fortran.families", "packaging.abi", "packaging.format",
               "packaging.install", "solve.first_call_fortran"]),
    "programs and examples": (["-DBLA_BUILD_PROGRAMS=OFF", "-DBLA_BUILD_EXAMPLES=OFF"],
                              ["backend.reference.solve", "docs.eliminations", "solve.data", "solve.first_call"]),
}


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True).stdout


def main():
    parser = argparse.ArgumentParser()
    for name in "source", "cmake", "ctest", "generator", "make", "c", "cxx":
        parser.add_argument("--" + name, required=True)
    options = parser.parse_args()

    def configured(folder, *more):
        """The names of all tests of a configuration."""
        run(options.cmake, "-S", options.source, "-B", folder, "-G", options.generator, "-DBLA_BUILD_TESTS=ON",
            f"-DCMAKE_MAKE_PROGRAM={options.make}", f"-DCMAKE_C_COMPILER={options.c}",
            f"-DCMAKE_CXX_COMPILER={options.cxx}", "-DCMAKE_INSTALL_PREFIX=/usr",
            f"-DPython3_EXECUTABLE={sys.executable}", *more)
        listed = json.loads(run(options.ctest, "--test-dir", folder, "--show-only=json-v1"))
        return {test["name"].removesuffix("_NOT_BUILT") for test in listed["tests"]}

    failed = False
    with tempfile.TemporaryDirectory() as scratch:
        everything = configured(os.path.join(scratch, "everything"))
        for what, (how, wanting) in HIDDEN.items():
            folder = os.path.join(scratch, what.replace(" ", "_"))
            names = configured(folder, *how)
            for name in sorted(everything - names):
                print(f"without {what}, {name} vanishes")
                failed = True
            pattern = "^(" + "|".join(wanting).replace(".", r"\.") + ")$"
            lines = run(options.ctest, "--test-dir", folder, "-V", "-R", pattern).splitlines()
            told = sum(re.match(r"\d+: skipped: .", line) is not None for line in lines)
            skipped = sum("***Skipped" in line for line in lines)
            if (told, skipped) != (len(wanting), len(wanting)):
                print(f"without {what}, not all of {' '.join(wanting)} are skipped with a reason:", *lines, sep="\n")
                failed = True
    print(f"{len(everything)} tests, whatever is missing" if not failed else "FAILED")
    return failed


if __name__ == "__main__":
    sys.exit(main())
