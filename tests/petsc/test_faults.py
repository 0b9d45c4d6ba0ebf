# SPDX-License-Identifier: BSD-3-Clause
"""What can go wrong ends in PETSc's reason or in an abort with one sentence of ours: no hang, no wrong answer that is
called converged, nothing lost. And the ways to load the plug-in."""
import os
import subprocess
import unittest

import runner

FAULTS = os.environ["BLA_PETSC_FAULTS"]
OPERATIONS = os.environ["BLA_PETSC_OPERATIONS"]
INDEFINITE = os.environ["BLA_PETSC_INDEFINITE"]
VALUES = os.environ["BLA_PETSC_VALUES"]
DIRECT = ["-ksp_type", "preonly", "-pc_factor_mat_solver_type", "tovbla"]
BLOCKS = ["-pc_type", "bjacobi", "-sub_pc_factor_mat_solver_type", "tovbla"]
LEAKS = ["-malloc_debug", "-malloc_dump"]


def verdicts(result):
    return [line for line in result.output.splitlines() if line.startswith(("CONVERGED", "DIVERGED"))]


class Faults(unittest.TestCase):
    def run_faults(self, processes, *arguments):
        return runner.run(FAULTS, processes, *arguments, plugin=False)

    def test_regular(self):
        for kind in "lu", "cholesky":
            direct = self.run_faults(1, *DIRECT, "-pc_type", kind, *LEAKS)
            self.assertEqual(direct.output, "CONVERGED_ITS, right\n")
            self.assertEqual(direct.factorised(), [1])
            blocks = self.run_faults(2, *BLOCKS, "-sub_pc_type", kind, "-ksp_rtol", "1e-12", *LEAKS)
            self.assertEqual(blocks.output, "CONVERGED_RTOL, right\n")
            self.assertEqual(blocks.factorised(), [1, 1])

    def test_singular_or_not_a_number(self):
        """Diverged; and solved when better values come."""
        for fault in "zero_row", "nan", "floating":
            for kind in "lu", "cholesky":
                done = self.run_faults(1, *DIRECT, "-pc_type", kind, "-fault", fault, *LEAKS)
                self.assertEqual(done.output, "DIVERGED_PC_FAILED, no answer\nCONVERGED_ITS, right\n")

    def test_floating(self):
        """Rounding leaves small pivots where a larger structure without supports has none."""
        for points in 20, 60, 90:
            for kind in "lu", "cholesky":
                done = self.run_faults(1, *DIRECT, "-pc_type", kind, "-fault", "floating", "-m", points)
                self.assertEqual(done.output, "DIVERGED_PC_FAILED, no answer\nCONVERGED_ITS, right\n")

    def test_singular_subdomain(self):
        for fault in "zero_row", "nan":
            done = self.run_faults(2, *BLOCKS, "-sub_pc_type", "cholesky", "-fault", fault)
            self.assertEqual(verdicts(done)[0], "DIVERGED_PC_FAILED, no answer")
            self.assertNotIn("WRONG", done.output)

    def test_sentence_of_an_error(self):
        for fault, sentence in (("zero_row", "the matrix is singular whatever its values: 63 of 64 rows can be matched"),
                                ("floating", "the matrix is singular: 1 pivots are zero, one of them in row "),
                                ("nan", "a value of the matrix is not finite")):
            done = self.run_faults(1, *DIRECT, "-pc_type", "lu", "-fault", fault, "-ksp_error_if_not_converged")
            self.assertNotEqual(done.status, 0)
            self.assertIn("tovbla: " + sentence, done.output)

    def test_memory_limit(self):
        done = self.run_faults(2, *BLOCKS, "-sub_pc_type", "lu", "-sub_mat_tovbla_memory_limit", "1000", *LEAKS)
        self.assertEqual(done.output, "DIVERGED_PC_FAILED, no answer\n")
        done = self.run_faults(1, *DIRECT, "-pc_type", "lu", "-mat_tovbla_memory_limit", "1000",
                               "-ksp_error_if_not_converged")
        self.assertNotEqual(done.status, 0)
        self.assertIn("memory_limit allows", done.output)

    def test_killed_process(self):
        done = self.run_faults(2, *BLOCKS, "-sub_pc_type", "lu", "-fault", "kill") # TimeoutExpired where it hangs
        self.assertNotEqual(done.status, 0)
        self.assertEqual(verdicts(done), [])

    def test_options(self):
        done = self.run_faults(1, *DIRECT, "-pc_type", "lu", "-help")
        for option in "threads", "tolerance", "shift", "refinements", "panel_width", "memory_limit", "ordering":
            self.assertIn("-mat_tovbla_" + option, done.output)
        done = self.run_faults(1, *DIRECT, "-pc_type", "lu", "-mat_tovbla_tolerance", "2")
        self.assertNotEqual(done.status, 0)
        self.assertIn("not a sensible value", done.output)

    def test_view(self):
        for ordering, says in ("amd", "AMD"), ("metis", "METIS"), ("given", "as given"):
            done = self.run_faults(1, *DIRECT, "-pc_type", "cholesky", "-ksp_view", "-mat_tovbla_ordering", ordering,
                                   "-pc_factor_mat_ordering_type", "rcm")
            self.assertIn("package used to perform factorization: tovbla", done.output)
            self.assertIn(f"L*D*L^T, order of elimination {says}, 1 threads", done.output)
            self.assertIn("pivots: 64 positive, 0 negative, 0 shifted, 0 replaced", done.output)
            self.assertIn("CONVERGED_ITS, right", done.output)

    def test_operations(self):
        for program, least in (OPERATIONS, 200), (VALUES, 30):
            done = runner.run(program, 1, *LEAKS, plugin=False)
            lines = done.output.splitlines()
            self.assertEqual([line for line in lines if ": ok (" not in line], [])
            self.assertGreater(len(lines), least)
            self.assertEqual(done.status, 0)

    def test_indefinite(self):
        done = runner.run(INDEFINITE, 1, *LEAKS, plugin=False)
        self.assertEqual([line for line in done.output.splitlines() if not line.endswith(": ok")], [])
        self.assertIn("some were infinite", done.output)
        self.assertEqual(done.status, 0)

    def test_other_solvers(self):
        """Those that PETSc brings are still there."""
        for solver in "petsc", "mumps":
            done = self.run_faults(1, "-ksp_type", "preonly", "-pc_type", "lu", "-pc_factor_mat_solver_type", solver)
            self.assertEqual((done.output, done.factorised()), ("CONVERGED_ITS, right\n", [0]))

    def test_shift_type(self):
        """Who sets a shift takes a singular matrix as it is: the unknown of the zero row is left out."""
        done = self.run_faults(1, "-pc_type", "cholesky", "-pc_factor_mat_solver_type", "tovbla", "-fault", "zero_row",
                               "-pc_factor_shift_type", "nonzero", "-ksp_max_it", "3", "-ksp_norm_type", "unpreconditioned",
                               "-ksp_pc_side", "right")
        self.assertEqual(verdicts(done)[0], "DIVERGED_ITS, no answer") # b is not in the range of A


class Loading(unittest.TestCase):
    """The two options of a user, on his command line or in his environment."""

    def test_by_environment(self):
        options = f"-dll_append {runner.PLUGIN} -pc_factor_mat_solver_type tovbla"
        done = runner.run(FAULTS, 1, "-ksp_type", "preonly", "-pc_type", "lu", plugin=False,
                          environment={"PETSC_OPTIONS": options})
        self.assertEqual((done.output, done.factorised()), ("CONVERGED_ITS, right\n", [1]))

    def test_exports(self):
        names = subprocess.run(["nm", "-D", "--defined-only", runner.PLUGIN + ".so"], check=True, capture_output=True,
                               text=True).stdout.split()[2::3]
        self.assertEqual(sorted(names), ["MatSolverTypeRegister_TOVBla", "PetscDLLibraryRegister_petsc_tovbla"])


if __name__ == "__main__":
    unittest.main()
