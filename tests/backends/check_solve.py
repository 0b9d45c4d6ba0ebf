# SPDX-License-Identifier: BSD-3-Clause
"""check_solve.py PROGRAM FOLDER: bla_solve on a small beam and on real matrices, where there are some."""
import json
import os
import subprocess
import sys
import tempfile

program = sys.argv[1]
data = os.environ.get("BLA_TEST_DATA", sys.argv[2])


def solve(*arguments):
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run([program, "--json", *arguments], cwd=folder, capture_output=True, text=True)
    assert done.returncode == 0 and not done.stderr, (arguments, done)
    report = json.loads(done.stdout)
    assert report["relative_residual"] < 1e-14, report
    return report


solve("--mesh", "12x4x4", "--no-vtk")
# Small, for a library whose threads wait for one another by spinning: BLIS 0.9.0 takes seconds for 12x4x4.
solve("--mesh", "4x2x2", "--no-vtk", "--threads", "2")
if not os.path.isdir(data):
    print("no real matrices: BLA_TEST_DATA names their folder")
    sys.exit(0)
spd = solve(os.path.join(data, "bcsstk14.mtx"))
assert spd["positive_pivots"] == spd["unknowns"], spd
assert solve(os.path.join(data, "orsreg_1.mtx"))["method"] == "L*D*U"
