# SPDX-License-Identifier: BSD-3-Clause
"""The matrices of tests/data, and small systems of kinds that none of those has.

BLA_TEST_DATA names a further folder: what it holds of the larger ones of the same public collections is solved too."""
import os

import made
import runner

POSITIVE_DEFINITE = ["bar_hex8", "bcsstk01", "bcsstk02", "lund_a", "msc01050", "nos1", "nos5", "unit_cube_p1"]
# (positive, negative) eigenvalues
INDEFINITE = {"reorientation_1": (396, 281)}
UNSYMMETRIC = ["recirc_flow_q1", "steam2", "utm300", "west0479"]
LARGER = [["bcsstk11", "bcsstk14", "bcsstk15", "bcsstk18", "nos3", "rail1357_M", "s3rmt3m3"],
          {"e05r0000": (162, 74)},
          ["e05r0100", "orsreg_1"]]


def larger(name):
    return os.path.join(os.environ.get("BLA_TEST_DATA", ""), name + ".mtx")


def present(names):
    return [name for name in names if os.path.exists(larger(name))] if "BLA_TEST_DATA" in os.environ else []


def matrix(name):
    here = os.path.join(runner.DATA, name + ".mtx")
    return here if os.path.exists(here) else larger(name)


class Data(runner.Case):
    def solved(self, file, *options):
        """Solves, and computes the residual again from the files, with exactly rounded sums."""
        report = self.report(file, "--solution", "x.mtx", *options)
        self.assertLess(report["relative_residual"], 1e-14)
        self.assertLessEqual(report["refinement_steps"], 4)
        n, entries = runner.read_matrix(file)
        self.assertEqual((report["unknowns"], report["nonzeros"]), (n, len(entries)))
        b = [0.0] * n
        for i, j, value in entries:
            b[i] += value
        x, = runner.read_vectors(self.path("x.mtx"))
        self.assertLess(runner.relative_residual(n, entries, x, b), 1e-14)
        self.assertAlmostEqual(report["solution_error"], max(abs(v - 1.0) for v in x), delta=1e-15)
        return report

    def test_positive_definite_matrices_are_solved(self):
        for name in POSITIVE_DEFINITE + present(LARGER[0]):
            with self.subTest(name):
                report = self.solved(matrix(name))
                self.assertEqual(report["method"], "L*D*L^T")
                self.assertEqual(report["positive_pivots"], report["unknowns"])
                self.assertLess(report["solution_error"], report["estimated_error"])

    def test_indefinite_matrices_are_solved_and_show_their_inertia(self):
        indefinite = dict(INDEFINITE, **{name: LARGER[1][name] for name in present(LARGER[1])})
        for name, inertia in indefinite.items():
            with self.subTest(name):
                report = self.solved(matrix(name))
                self.assertEqual((report["positive_pivots"], report["negative_pivots"]), inertia)

    def test_a_saddle_point_is_solved_and_shows_its_inertia(self):
        flow = made.Flow(8)
        report = self.solved(self.write("flow.mtx", flow.text()))
        self.assertEqual((report["positive_pivots"], report["negative_pivots"]), (flow.velocities, flow.pressures))

    def test_pivots_that_vanish_are_shifted_and_said_to_be(self):
        report = self.solved(self.write("hollow.mtx", made.hollow_pairs(50, 5)))
        self.assertEqual(report["shifted_pivots"], 5)
        self.assertEqual(report["positive_pivots"], 55)
        for name in present(["ACTIVSg200_kkt"]):
            report = self.solved(matrix(name))
            self.assertGreater(report["shifted_pivots"], 0)
            self.assertLess(report["shifted_pivots"], 30)
            self.assertEqual(report["positive_pivots"], 2768)

    def test_unsymmetric_matrices_are_solved(self):
        files = [matrix(name) for name in UNSYMMETRIC + present(LARGER[2])]
        files.append(self.write("wind.mtx", made.flow_with_wind(8, 0.5)))
        for file in files:
            with self.subTest(file):
                report = self.solved(file)
                self.assertEqual(report["method"], "L*D*U")
                self.assertLess(report["solution_error"], report["estimated_error"])

    def test_a_symmetric_matrix_is_solved_by_ldu_as_well(self):
        files = [matrix(name) for name in ["lund_a", "bar_hex8", *present(["bcsstk11", "e05r0000", "ACTIVSg200_kkt"])]]
        files += [self.write("flow.mtx", made.Flow(8).text()), self.write("hollow.mtx", made.hollow_pairs(50, 5))]
        for file in files:
            with self.subTest(file):
                self.assertEqual(self.solved(file, "--method", "ldu")["method"], "L*D*U")

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
        report = self.solved(matrix("lund_a"), "--tolerance", 0.5)
        self.assertEqual(report["verdict"], "solved")

    def test_the_error_is_bounded_without_refinement(self):
        for name in ["lund_a", "msc01050", "west0479", *present(["bcsstk11", "ACTIVSg200_kkt"])]:
            with self.subTest(name):
                report = self.report(matrix(name), "--refine", 0)
                self.assertEqual(report["refinement_steps"], 0)
                self.assertGreater(report["estimated_error"], report["solution_error"])

    def test_singular_matrices_are_called_so(self):
        mass = self.report(matrix("bcsstm01"), status=1)
        self.assertEqual((mass["positive_pivots"], mass["replaced_pivots"]), (24, 24))
        self.assertIn("singular to working precision (24 unheld motions, e.g. unknowns 4, 5, 6, 10,", mass["verdict"])
        flow = self.report(self.write("closed.mtx", made.Flow(4, pinned=False).text()), status=1)
        self.assertEqual((flow["positive_pivots"], flow["negative_pivots"], flow["replaced_pivots"]), (24, 15, 1))
        self.assertLess(flow["relative_residual"], 1e-14)
        self.assertIn("singular to working precision (1 unheld motion, unknown ", flow["verdict"])
        heat = self.report(matrix("rail1357_K"), status=1)
        self.assertEqual(heat["positive_pivots"], 1356)
        self.assertIn("singular to working precision (1 unheld motion, unknown ", heat["verdict"])
        for report in (mass, flow, heat):
            self.assertIsNone(report["estimated_error"])
        self.assertEqual([report["unheld_motions"] for report in (mass, flow, heat)], [24, 1, 1])

    def test_a_singular_matrix_is_called_so_by_ldu_as_well(self):
        for m in range(2, 11):
            with self.subTest(m):
                closed = self.write("closed.mtx", made.Flow(m, pinned=False).text())
                flow = self.report(closed, "--method", "ldu", status=1)
                self.assertIn("singular", flow["verdict"])
                self.assertIsNone(flow["estimated_error"])

    def test_an_ill_conditioned_matrix_is_called_so(self):
        report = self.report(matrix("msc01050"))
        self.assertIn("solved; ill-conditioned", report["verdict"])

    def test_the_list_of_matrices_is_right(self):
        listed = {}
        with open(os.path.join(runner.DATA, "README.md")) as text:
            for line in text:
                if line.startswith("| `"):
                    cells = [cell.strip() for cell in line.strip("|\n").split("|")]
                    name, n, entries, kind, _, _, licence = cells
                    listed[name.strip("`")] = (n, entries, "general" if "unsymmetric" in kind else "symmetric",
                                               {"CC BY 4.0": "CC-BY-4.0", "MIT": "MIT"}[licence])
        found = {}
        for file in os.listdir(runner.DATA):
            if file.endswith(".mtx"):
                with open(os.path.join(runner.DATA, file)) as text:
                    lines = text.read().splitlines()
                rows, columns, entries = next(line for line in lines if not line.startswith("%")).split()
                self.assertEqual(rows, columns)
                self.assertEqual(int(entries), sum(not line.startswith("%") for line in lines) - 1)
                found[file[:-4]] = (rows, entries, lines[0].split()[-1], lines[1].split()[-1])
        self.assertEqual(found, listed)

    def test_a_complex_file_is_refused(self):
        self.refused(self.write("waves.mtx", made.COMPLEX), says=["waves.mtx", "complex"])

    def test_an_unsymmetric_file_is_refused_where_a_symmetric_one_is_asked_for(self):
        self.refused(matrix("west0479"), "--method", "ldlt", says=["west0479.mtx", "not symmetric"])


if __name__ == "__main__":
    runner.main()
