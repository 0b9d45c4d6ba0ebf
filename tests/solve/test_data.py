# SPDX-License-Identifier: BSD-3-Clause
"""Real matrices, from the folder that BLA_TEST_DATA names; status 77 (skipped) without it."""
import os
import sys
import unittest

import runner

POSITIVE_DEFINITE = ["bar_hex8", "bcsstk01", "bcsstk02", "bcsstk11", "bcsstk14", "bcsstk15", "bcsstk18", "lund_a",
                     "msc01050", "nos1", "nos3", "nos5", "rail1357_M", "s3rmt3m3", "unit_cube_p1"]
# (positive, negative) eigenvalues
INDEFINITE = {"e05r0000": (162, 74), "reorientation_1": (396, 281)}
UNSYMMETRIC = ["e05r0100", "orsreg_1", "recirc_flow_q1", "steam2", "utm300", "west0479"]


def matrix(name):
    return os.path.join(runner.DATA, name + ".mtx")


class Data(runner.Case):
    def solved(self, name, *options):
        """Solves, and computes the residual again from the files, with exactly rounded sums."""
        report = self.report(matrix(name), "--solution", "x.mtx", *options)
        self.assertLess(report["relative_residual"], 1e-14)
        self.assertLessEqual(report["refinement_steps"], 4)
        n, entries = runner.read_matrix(matrix(name))
        self.assertEqual((report["unknowns"], report["nonzeros"]), (n, len(entries)))
        b = [0.0] * n
        for i, j, value in entries:
            b[i] += value
        x, = runner.read_vectors(self.path("x.mtx"))
        self.assertLess(runner.relative_residual(n, entries, x, b), 1e-14)
        self.assertAlmostEqual(report["solution_error"], max(abs(v - 1.0) for v in x), delta=1e-15)
        return report

    def test_positive_definite_matrices_are_solved(self):
        for name in POSITIVE_DEFINITE:
            with self.subTest(name):
                report = self.solved(name)
                self.assertEqual(report["method"], "L*D*L^T")
                self.assertEqual(report["positive_pivots"], report["unknowns"])
                self.assertLess(report["solution_error"], report["estimated_error"])

    def test_indefinite_matrices_are_solved_and_show_their_inertia(self):
        for name, inertia in INDEFINITE.items():
            with self.subTest(name):
                report = self.solved(name)
                self.assertEqual((report["positive_pivots"], report["negative_pivots"]), inertia)

    def test_pivots_that_vanish_are_shifted_and_said_to_be(self):
        report = self.solved("ACTIVSg200_kkt")
        self.assertGreater(report["shifted_pivots"], 0)
        self.assertLess(report["shifted_pivots"], 30)
        self.assertEqual(report["positive_pivots"], 2768)

    def test_unsymmetric_matrices_are_solved(self):
        for name in UNSYMMETRIC:
            with self.subTest(name):
                report = self.solved(name)
                self.assertEqual(report["method"], "L*D*U")
                self.assertLess(report["solution_error"], report["estimated_error"])

    def test_a_symmetric_matrix_is_solved_by_ldu_as_well(self):
        for name in ("lund_a", "bcsstk11", "e05r0000", "ACTIVSg200_kkt"):
            with self.subTest(name):
                self.assertEqual(self.solved(name, "--method", "ldu")["method"], "L*D*U")

    def test_the_reported_residual_is_the_true_one_where_it_is_bad(self):
        # A load that nothing balances.
        n, entries = runner.read_matrix(matrix("rail1357_K"))
        b = [1.0] * n
        load = self.write("b.mtx", f"%%MatrixMarket matrix array real general\n{n} 1\n" + "1\n" * n)
        report = self.report(matrix("rail1357_K"), "--rhs", load, "--solution", "x.mtx", "--refine", 0, status=1)
        self.assertIn("NOT SOLVED", report["verdict"])
        x, = runner.read_vectors(self.path("x.mtx"))
        residual = runner.relative_residual(n, entries, x, b)
        self.assertGreater(residual, 1e-12)
        self.assertAlmostEqual(report["relative_residual"] / residual, 1.0, delta=1e-6)

    def test_pivots_that_should_not_have_been_replaced_are_not_the_second_time(self):
        report = self.solved("bcsstk11", "--tolerance", 0.5)
        self.assertEqual(report["verdict"], "solved")

    def test_the_error_is_bounded_without_refinement(self):
        for name in ("bcsstk11", "msc01050", "ACTIVSg200_kkt", "west0479"):
            with self.subTest(name):
                report = self.report(matrix(name), "--refine", 0)
                self.assertEqual(report["refinement_steps"], 0)
                self.assertGreater(report["estimated_error"], report["solution_error"])

    def test_singular_matrices_are_called_so(self):
        mass = self.report(matrix("bcsstm01"), status=1)
        self.assertEqual((mass["positive_pivots"], mass["replaced_pivots"]), (24, 24))
        self.assertIn("singular to working precision (24 unheld motions, e.g. unknowns 4, 5, 6, 10,", mass["verdict"])
        flow = self.report(matrix("fidapm05"), status=1)
        self.assertEqual((flow["positive_pivots"], flow["negative_pivots"], flow["replaced_pivots"]), (27, 14, 1))
        self.assertLess(flow["relative_residual"], 1e-14)
        self.assertIn("singular to working precision (1 unheld motion, unknown ", flow["verdict"])
        heat = self.report(matrix("rail1357_K"), status=1)
        self.assertEqual(heat["positive_pivots"], 1356)
        self.assertIn("singular to working precision (1 unheld motion, unknown ", heat["verdict"])
        for report in (mass, flow, heat):
            self.assertIsNone(report["estimated_error"])
        self.assertEqual([report["unheld_motions"] for report in (mass, flow, heat)], [24, 1, 1])

    def test_an_ill_conditioned_matrix_is_called_so(self):
        report = self.report(matrix("msc01050"))
        self.assertIn("solved; ill-conditioned", report["verdict"])

    def test_a_complex_file_is_refused(self):
        self.refused(matrix("young1c"), says=["young1c.mtx", "complex"])

    def test_an_unsymmetric_file_is_refused_where_a_symmetric_one_is_asked_for(self):
        self.refused(matrix("west0479"), "--method", "ldlt", says=["west0479.mtx", "not symmetric"])


if __name__ == "__main__":
    if not os.path.isdir(runner.DATA):
        print("no matrices: " + runner.DATA + " does not exist (BLA_TEST_DATA names their folder)")
        sys.exit(77)
    runner.main()
