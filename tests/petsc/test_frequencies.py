# SPDX-License-Identifier: BSD-3-Clause
"""Eigenfrequencies of the beam by SLEPc's spectrum slicing: as many as the pivots' signs count, in pairs, beside theory."""
import os
import re
import unittest

import runner

PROGRAM = os.environ["BLA_PETSC_FREQUENCIES"]


class Frequencies(unittest.TestCase):
    def test_interval(self):
        done = runner.run(PROGRAM, 1, "-eps_interval", "1e5,1e8", plugin=False)
        self.assertEqual(done.status, 0, done.output[-2000:])
        self.assertGreaterEqual(done.factorised()[0], 2)
        counts = [int(count) for count in re.findall(r"(\d+) frequencies below", done.output)]
        found = [(float(f), float(error)) for f, error in re.findall(r"([\d.]+) Hz  error (\S+)", done.output)]
        theory = [float(f) for f in re.findall(r"bending \d: ([\d.]+)", done.output)]
        self.assertEqual(counts[-1] - counts[0], len(found))
        self.assertEqual(len(found), 8)
        self.assertLess(max(error for _, error in found), 1e-8)
        hertz = [f for f, _ in found]
        for pair in (0, 2, 6): # bending, in both directions of the square section
            self.assertAlmostEqual(hertz[pair], hertz[pair + 1], delta=1e-3)
        self.assertAlmostEqual(hertz[0], theory[0], delta=0.01 * theory[0])
        self.assertAlmostEqual(hertz[2], theory[1], delta=0.06 * theory[1])     # not slender any more: shear
        self.assertAlmostEqual(hertz[5], (210e9 / 7850) ** 0.5 / 4.0, delta=0.01 * hertz[5])   # a rod's, along x


if __name__ == "__main__":
    unittest.main()
