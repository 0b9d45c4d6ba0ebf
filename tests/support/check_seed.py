# SPDX-License-Identifier: BSD-3-Clause
"""check_seed.py PROGRAM...: each prints the seed of its run, the same in every run unless BLA_TEST_SEED says otherwise."""
import os
import re
import subprocess
import sys


def seed(program, value=None):
    environment = {name: text for name, text in os.environ.items() if name != "BLA_TEST_SEED"}
    if value is not None:
        environment["BLA_TEST_SEED"] = value
    done = subprocess.run([program, "--gtest_filter=none"] if "fuzz" not in program else [program], env=environment,
                          capture_output=True, text=True, check=True)
    return re.search(r"^(?:BLA_TEST_SEED=|seed )(\d+)$", done.stdout, re.MULTILINE)[1]


for program in sys.argv[1:]:
    assert seed(program) == seed(program) == seed(program, ""), program
    assert seed(program, "77") == "77", program
    assert len({seed(program, "random") for _ in range(3)}) == 3, program
