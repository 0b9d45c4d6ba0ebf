# SPDX-License-Identifier: BSD-3-Clause
"""Runs bla_solve in a folder of its own and looks at everything that comes out of it."""
import json
import math
import os
import subprocess
import sys
import tempfile
import unittest

PROGRAM = os.environ["BLA_SOLVE"]
SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DATA = os.path.join(SOURCE, "tests", "data")


class Case(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "wb") as file:
            file.write(text if isinstance(text, bytes) else text.encode())
        return self.path(name)

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *map(str, arguments)], cwd=self.folder, stdin=subprocess.DEVNULL,
                              capture_output=True, text=True, timeout=300)

    def report(self, *arguments, status=0):
        """The JSON report; stdout must hold nothing else, stderr nothing at all."""
        done = self.run_program("--json", *arguments)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, status, done.stdout)
        report = json.loads(done.stdout, parse_constant=lambda word: self.fail(word + " in the report"))
        self.assertEqual(report["trusted"], status == 0)
        self.assertEqual(report["positive_pivots"] + report["negative_pivots"] + report["replaced_pivots"]
                         + report["shifted_pivots"], report["unknowns"])
        return report

    def refused(self, *arguments, says):
        """Bad input: one line on stderr with all of `says` in it, status 2, nothing else anywhere."""
        before = sorted(os.listdir(self.folder))
        done = self.run_program(*arguments)
        self.assertEqual(done.stdout, "")
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        self.assertTrue(done.stderr.endswith("\n"))
        for word in says:
            self.assertIn(word, done.stderr)
        self.assertEqual(done.returncode, 2)
        self.assertEqual(sorted(os.listdir(self.folder)), before)


def read_matrix(path):
    """n and the list of (row, column, value) of a real coordinate file, both halves, counted from 0."""
    with open(path) as file:
        symmetric = "symmetric" in file.readline().lower().split()
        line = file.readline()
        while line.startswith("%"):
            line = file.readline()
        n = int(line.split()[0])
        entries = []
        for line in file:
            words = line.split()
            if not words:
                continue
            i, j, value = int(words[0]) - 1, int(words[1]) - 1, float(words[2])
            entries.append((i, j, value))
            if symmetric and i != j:
                entries.append((j, i, value))
    return n, entries


def read_vectors(path):
    """The columns of a real array file."""
    with open(path) as file:
        file.readline()
        rows, columns = map(int, file.readline().split())
        values = [float(line) for line in file]
    assert len(values) == rows * columns
    return [values[k * rows:(k + 1) * rows] for k in range(columns)]


def relative_residual(n, entries, x, b):
    """|b - A*x| / (|A|*|x| + |b|) in maximum norms, the sums exactly rounded."""
    terms = [[value] for value in b]
    rows = [0.0] * n
    for i, j, value in entries:
        terms[i].append(-value * x[j])
        rows[i] += abs(value)
    norm = max(rows) * max(map(abs, x)) + max(map(abs, b))
    residual = max(abs(math.fsum(row)) for row in terms)
    return residual / norm if residual else 0.0


def main():
    unittest.main(argv=sys.argv, verbosity=1)
