# SPDX-License-Identifier: BSD-3-Clause
"""Processes that see each other over TCP alone, as those of two hosts do, get the answer of those that share memory; and
a run under memcheck, which finds nothing of ours."""
import os
import shutil
import unittest

import runner

FAULTS = os.environ["BLA_PETSC_FAULTS"]
OPERATIONS = os.environ["BLA_PETSC_OPERATIONS"]
BLOCKS = ["-pc_type", "bjacobi", "-sub_pc_type", "cholesky", "-sub_pc_factor_mat_solver_type", "tovbla", "-m", "40",
          "-ksp_rtol", "1e-12", "-ksp_type", "cg", "-ksp_monitor"]


class Hosts(unittest.TestCase):
    def test_tcp_alone(self):
        near = runner.run(FAULTS, 4, *BLOCKS, plugin=False)
        far = runner.run(FAULTS, 4, *BLOCKS, plugin=False,
                         environment={"OMPI_MCA_btl": "tcp,self", "OMPI_MCA_pml": "ob1", "OMPI_MCA_btl_tcp_if_include": "lo"})
        self.assertIn("CONVERGED_RTOL, right", near.output)
        self.assertEqual(near.factorised(), [1] * 4)
        numbers = [[float(line.split()[4]) for line in run.output.splitlines() if "KSP Residual norm" in line]
                   for run in (near, far)]
        self.assertEqual(len(numbers[0]), len(numbers[1]), far.output[-1000:])
        self.assertGreater(len(numbers[0]), 5)
        for one, two in zip(*numbers): # sums over processes may be formed in another order
            self.assertAlmostEqual(one, two, delta=1e-6 * max(one, 1e-6))


class Memcheck(unittest.TestCase):
    @unittest.skipUnless(shutil.which("valgrind"), "valgrind is not installed")
    def test_operations(self):
        done = runner.run("valgrind", 1, "--leak-check=full", "--show-leak-kinds=definite", "--keep-debuginfo=yes",
                          FAULTS, "-m", "6", "-ksp_type", "preonly", "-pc_type", "cholesky",
                          "-pc_factor_mat_solver_type", "tovbla", "-fault", "nan", plugin=False)
        self.assertIn("CONVERGED_ITS, right", done.output)
        blocks = [text for text in done.output.split("== \n") if "TOVBla" in text or "bla_solver" in text]
        self.assertEqual(blocks, [])


if __name__ == "__main__":
    unittest.main()
