# SPDX-License-Identifier: BSD-3-Clause
"""check_solve.py PROGRAM FOLDER: bla_solve on a small beam and on real matrices."""
import json
import os
import subprocess
import sys
import tempfile

program, data = map(os.path.abspath, sys.argv[1:])


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
spd = solve(os.path.join(data, "bar_hex8.mtx"))
assert spd["positive_pivots"] == spd["unknowns"], spd
for name in "steam2", "west0479":
    assert solve(os.path.join(data, name + ".mtx"))["method"] == "L*D*U"
