# SPDX-License-Identifier: BSD-3-Clause
import os
import unittest
import xml.etree.ElementTree

import runner

WORDS = ["mesh", "unknowns", "nonzeros", "fronts", "largest front", "factor entries", "Gflop", "GFLOP/s",
         "positive pivots", "negative pivots", "replaced pivots", "relative residual", "beam theory", "verdict"]


class Beam(runner.Case):
    def test_a_small_beam_is_solved_and_bends_as_beam_theory_says(self):
        report = self.report("--mesh", "20x5x4", "--vtk", "b.vtu")
        self.assertEqual(report["mesh"], "20x5x4")
        self.assertEqual(report["unknowns"], 3 * 20 * 6 * 5)
        # 3x3 blocks between nodes that are at most one apart along each axis, the clamped ones left out
        self.assertEqual(report["nonzeros"], 9 * (3 * 20 - 2) * (3 * 6 - 2) * (3 * 5 - 2))
        self.assertEqual(report["positive_pivots"], report["unknowns"])
        self.assertLess(report["relative_residual"], 1e-14)
        self.assertEqual(report["verdict"], "solved")
        self.assertLess(report["estimated_error"], 1e-6)
        self.assertGreater(report["estimated_error"], 2.0 ** -53)
        theory = report["tip_deflection_theory"]
        self.assertAlmostEqual(theory, 1.9193e-3, delta=1e-7)
        self.assertAlmostEqual(report["tip_deflection"] / theory, 1.0, delta=0.02)
        self.assertGreater(report["factorisation_gflops"], 0.0)
        self.assertGreater(report["gflop"], 0.0)
        self.assertEqual(os.listdir(self.folder), ["b.vtu"])

    def test_the_element_does_not_lock(self):
        one_element_high = self.report("--mesh", "20x1x1", "--no-vtk")
        self.assertAlmostEqual(one_element_high["tip_deflection"] / one_element_high["tip_deflection_theory"], 1.0,
                               delta=0.03)
        self.assertEqual(os.listdir(self.folder), [])

    def test_without_arguments_it_solves_about_30000_unknowns(self):
        done = self.run_program()
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for word in WORDS:
            self.assertIn(word, done.stdout)
        self.assertIn("beam.vtu", done.stdout)
        self.assertNotIn("\r", done.stdout)
        unknowns = next(line for line in done.stdout.splitlines() if "unknowns" in line)
        self.assertAlmostEqual(int(unknowns.split("unknowns")[1].replace(" ", "")), 30000, delta=2000)

    def test_every_panel_width_gives_the_same_answer(self):
        tips = [self.report("--mesh", "8x4x4", "--no-vtk", "--nb", nb)["tip_deflection"] for nb in (1, 3, 32, 1000)]
        for tip in tips:
            self.assertAlmostEqual(tip / tips[0], 1.0, delta=1e-10)

    def test_the_bound_on_the_error_needs_no_refinement(self):
        bounds = [self.report("--mesh", "8x4x4", "--no-vtk", "--refine", steps)["estimated_error"] for steps in (0, 10)]
        self.assertGreater(bounds[0], 1e-14)
        self.assertLess(bounds[0], 1e-6)
        self.assertAlmostEqual(bounds[0] / bounds[1], 1.0, delta=9.0)

    def test_the_numbers_of_threads_are_taken(self):
        self.assertEqual(self.report("--mesh", "4x2x2", "--no-vtk", "--threads", 1)["threads"], 1)

    def test_ldu_agrees_with_ldlt(self):
        ldlt = self.report("--mesh", "8x4x3", "--no-vtk")
        ldu = self.report("--mesh", "8x4x3", "--no-vtk", "--method", "ldu")
        self.assertEqual((ldlt["method"], ldu["method"]), ("L*D*L^T", "L*D*U"))
        self.assertAlmostEqual(ldu["tip_deflection"] / ldlt["tip_deflection"], 1.0, delta=1e-10)
        self.assertLess(ldu["relative_residual"], 1e-14)

    def test_the_deformed_beam_is_a_well_formed_mesh(self):
        report = self.report("--mesh", "5x3x2", "--vtk", "b.vtu")
        piece = xml.etree.ElementTree.parse(self.path("b.vtu")).getroot().find("UnstructuredGrid/Piece")
        points, cells = int(piece.get("NumberOfPoints")), int(piece.get("NumberOfCells"))
        self.assertEqual((points, cells), (6 * 4 * 3, 5 * 3 * 2))

        def numbers(path):
            return [float(word) for word in piece.find(path).text.split()]
        displacement = numbers("PointData/DataArray[@Name='displacement']")
        position = numbers("Points/DataArray")
        corners = [int(c) for c in numbers("Cells/DataArray[@Name='connectivity']")]
        self.assertEqual((len(displacement), len(position), len(corners)), (3 * points, 3 * points, 8 * cells))
        self.assertEqual(numbers("Cells/DataArray[@Name='offsets']"), [8 * (c + 1) for c in range(cells)])
        self.assertEqual(numbers("Cells/DataArray[@Name='types']"), [12] * cells)
        self.assertEqual(displacement[:3 * 12], [0.0] * 36)
        tip = [-displacement[3 * node + 2] for node in range(5 * 12, 6 * 12)]
        self.assertAlmostEqual(sum(tip) / len(tip) / report["tip_deflection"], 1.0, delta=0.01)
        # A hexahedron's volume is positive for the corner order that the format prescribes.
        for cell in range(cells):
            p = [position[3 * c:3 * c + 3] for c in corners[8 * cell:8 * cell + 8]]
            a, b, c = ([p[k][i] - p[0][i] for i in range(3)] for k in (1, 3, 4))
            volume = (a[0] * (b[1] * c[2] - b[2] * c[1]) - a[1] * (b[0] * c[2] - b[2] * c[0])
                      + a[2] * (b[0] * c[1] - b[1] * c[0]))
            self.assertGreater(volume, 0.0)


if __name__ == "__main__":
    runner.main()
