# SPDX-License-Identifier: BSD-3-Clause
"""The example in Python: the answer of MUMPS, by one process and by four."""
import os
import re
import subprocess
import sys
import unittest

import runner

EXAMPLE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples", "petsc", "elasticity_fenicsx.py")
PYTHON = "/usr/bin/python3" # that of the distribution's packages


class Elasticity(unittest.TestCase):
    def test_one_process_and_four(self):
        for processes in 1, 4:
            done = runner.run(PYTHON, processes, EXAMPLE, plugin=False, info=False,
                              environment={"PETSC_OPTIONS": f"-dll_append {runner.PLUGIN}"})
            self.assertEqual(done.status, 0, done.output[-2000:])
            one, two = re.findall(r"(?:tovbla|mumps): deflection ([\d.]+) mm", done.output)
            self.assertEqual(one[:9], two[:9])
            self.assertAlmostEqual(float(one), 1.8378, delta=1e-3)
            self.assertRegex(done.output, r"relative difference \d\.\de-(09|1\d)")


if __name__ == "__main__":
    if subprocess.run([PYTHON, "-c", "import dolfinx"], capture_output=True).returncode:
        print("skipped: FEniCSx is not installed")
        sys.exit(77)
    unittest.main()
