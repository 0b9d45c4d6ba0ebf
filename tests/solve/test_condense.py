# SPDX-License-Identifier: BSD-3-Clause
"""bla_solve --condense: the matrix of the unknowns that are kept, and what is refused."""
import os
import random

import made
import runner


def read_array(path):
    """The rows of a real array file, of a symmetric one both triangles."""
    with open(path) as file:
        symmetric = file.readline().split()[4] == "symmetric"
        n, columns = map(int, file.readline().split())
        values = [float(line) for line in file]
    assert n == columns and len(values) == (n * (n + 1) // 2 if symmetric else n * n)
    a = [[0.0] * n for _ in range(n)]
    next_value = iter(values)
    for j in range(n):
        for i in range(j if symmetric else 0, n):
            a[i][j] = next(next_value)
            if symmetric:
                a[j][i] = a[i][j]
    return a, symmetric


def condensed(n, entries, kept):
    """Dense elimination of all unknowns but `kept`, one by one; `entries` both halves."""
    a = [[0.0] * n for _ in range(n)]
    for i, j, value in entries:
        a[i][j] += value
    others = [k for k in range(n) if k not in set(kept)]
    for step, k in enumerate(others):
        rows = others[step + 1:] + kept
        for i in rows:
            factor = a[i][k] / a[k][k]
            if factor:
                for j in rows:
                    a[i][j] -= factor * a[k][j]
    return [[a[i][j] for j in kept] for i in kept]


class Condense(runner.Case):
    def condense(self, matrix, kept, *options, **keywords):
        unknowns = self.write("kept.txt", "\n".join(str(k + 1) for k in kept))
        arguments = [matrix] if matrix else []
        report = self.report(*arguments, "--condense", unknowns, "--condensed", "c.mtx", *options, **keywords)
        self.assertEqual((report["kept_unknowns"], report["condensed_file"]), (len(kept), "c.mtx"))
        return report, *read_array(self.path("c.mtx"))

    def assert_near(self, c, expected, tolerance):
        scale = max(abs(value) for row in expected for value in row)
        self.assertEqual(len(c), len(expected))
        for row, wanted in zip(c, expected):
            for value, right in zip(row, wanted):
                self.assertAlmostEqual(value, right, delta=tolerance * scale)

    def test_it_is_what_dense_elimination_leaves(self):
        for name in ("bcsstk01", "nos1", "unit_cube_p1", "recirc_flow_q1", "utm300"):
            with self.subTest(name):
                path = os.path.join(runner.DATA, name + ".mtx")
                n, entries = runner.read_matrix(path)
                kept = random.Random(3).sample(range(n), 7)
                report, c, symmetric = self.condense(path, kept)
                self.assertEqual(symmetric, report["symmetric"])
                self.assertEqual(report["verdict"], "condensed")
                self.assertLess(report["condensed_residual"], 1e-13)
                self.assert_near(c, condensed(n, entries, kept), 1e-9)

    def test_a_symmetric_matrix_may_be_condensed_as_a_general_one(self):
        path = os.path.join(runner.DATA, "nos1.mtx")
        n, entries = runner.read_matrix(path)
        report, c, symmetric = self.condense(path, [5, 1, 100], "--method", "ldu")
        self.assertFalse(symmetric)
        self.assert_near(c, condensed(n, entries, [5, 1, 100]), 1e-9)

    def test_the_answer_is_a_matrix_that_it_reads(self):
        path = os.path.join(runner.DATA, "bcsstk01.mtx")
        _, first, _ = self.condense(path, [40, 7, 20, 3])
        os.rename(self.path("c.mtx"), self.path("first.mtx"))
        _, second, _ = self.condense("first.mtx", [2, 0])
        self.assert_near(second, condensed(4, [(i, j, first[i][j]) for i in range(4) for j in range(4)], [2, 0]), 1e-12)

    def test_numbers_stand_as_they_like(self):
        a = self.write("a.mtx", made.matrix_market(5, {(i, i): i + 2.0 for i in range(5)}))
        kept = self.write("k.txt", "% the first two\n 4 2 # and\n\n\t1%\r\n5")
        self.report(a, "--condense", kept, "--condensed", "c.mtx")
        self.assertEqual(read_array(self.path("c.mtx"))[0],
                         [[5, 0, 0, 0], [0, 3, 0, 0], [0, 0, 2, 0], [0, 0, 0, 6]])

    def test_it_tells_in_words(self):
        a = self.write("a.mtx", made.matrix_market(5, {(i, i): i + 2.0 for i in range(5)}))
        done = self.run_program(a, "--condense", self.write("k.txt", "1 2"), "--condensed", "c.mtx")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for words in ("kept unknowns             2", "condensed", "c.mtx", "factorisation"):
            self.assertIn(words, done.stdout)

    def test_a_loose_part_inside_is_not_hidden(self):
        """Unknowns 3 and 4 hold each other and nothing else does: eliminating them divides by zero."""
        chain = {(0, 0): 2.0, (1, 1): 2.0, (1, 0): -1.0, (2, 2): 1.0, (3, 3): 1.0, (3, 2): -1.0}
        report, _, _ = self.condense(self.write("a.mtx", made.matrix_market(4, chain)), [0], status=1)
        self.assertTrue(report["verdict"].startswith("NOT TO BE TRUSTED"))
        self.assertRegex(report["verdict"], "unknown [34]:")
        self.assertEqual(report["replaced_pivots"], 1)
        report, c, _ = self.condense("a.mtx", [3, 0])  # kept, it is no pivot
        self.assert_near(c, [[0.0, 0.0], [0.0, 1.5]], 1e-15)


class Beam(Condense):
    """A cantilever beam in two halves of m elements, one of them condensed to the nodes that the other one meets."""
    M, WIDTH, HEIGHT = 3, 2, 3
    PLANE = 3 * (WIDTH + 1) * (HEIGHT + 1)

    def mesh(self):
        return "--mesh", f"{2 * self.M}x{self.WIDTH}x{self.HEIGHT}"

    def setUp(self):
        """The stiffness of the whole beam, which is what remains where all unknowns are kept, and that of its halves: of
        a plane in the middle, the part left of it has the stiffness of the plane at the tip."""
        super().setUp()
        self.n = 2 * self.M * self.PLANE
        _, self.whole, _ = self.condense("", range(self.n), *self.mesh())
        middle, tip = (self.M - 1) * self.PLANE, self.n - self.PLANE
        self.interface = range(middle, middle + self.PLANE)
        self.left, self.right = {}, {}
        for i in range(self.n):
            for j in range(i + 1):
                value = self.whole[i][j]
                if j in self.interface and i in self.interface:
                    self.left[i, j] = self.whole[tip + i - middle][tip + j - middle]
                    self.right[i, j] = value - self.left[i, j]
                elif value:
                    (self.left if j < middle else self.right)[i, j] = value

    def deflection(self, glued, unknown):
        """Of the tip, by the glued matrix; unknown[i] says where unknown i of the beam went, if it is there."""
        tip = self.report(*self.mesh(), "--no-vtk")
        self.assertEqual(tip["verdict"], "solved")
        n = len(unknown)
        load = [0.0] * n
        shares = {}
        for node in range((self.WIDTH + 1) * (self.HEIGHT + 1)):
            j, k = divmod(node, self.HEIGHT + 1)
            edges = (j in (0, self.WIDTH)) + (k in (0, self.HEIGHT))
            shares[self.n - self.PLANE + 3 * node + 2] = 0.5 ** edges / (self.WIDTH * self.HEIGHT)
        for i, share in shares.items():
            load[unknown[i]] = -10e3 * share
        self.write("glued.mtx", made.matrix_market(n, glued))
        self.write("load.mtx", f"%%MatrixMarket matrix array real general\n{n} 1\n" + "\n".join(map(repr, load)))
        report = self.report("glued.mtx", "--rhs", "load.mtx", "--solution", "x.mtx")
        self.assertEqual(report["verdict"], "solved")
        x = runner.read_vectors(self.path("x.mtx"))[0]
        self.assertAlmostEqual(-sum(share * x[unknown[i]] for i, share in shares.items()) / tip["tip_deflection"], 1.0,
                               delta=1e-9)

    def glue(self, part, kept, other):
        """The matrix `part` (lower triangle, numbers of the beam), condensed to `kept`, plus `other`, and where the
        unknowns went."""
        inside = sorted({i for place in part for i in place})
        number = {i: k for k, i in enumerate(inside)}
        matrix = self.write("part.mtx", made.matrix_market(
            len(inside), {(number[i], number[j]): value for (i, j), value in part.items()}))
        _, c, _ = self.condense(matrix, [number[i] for i in kept])
        remaining = sorted({i for place in other for i in place} | set(kept))
        unknown = {i: k for k, i in enumerate(remaining)}
        glued = {(unknown[i], unknown[j]): value for (i, j), value in other.items()}
        for a, i in enumerate(kept):
            for b, j in enumerate(kept):
                if i >= j:
                    place = unknown[i], unknown[j]
                    glued[place] = glued.get(place, 0.0) + c[a][b]
        self.deflection(glued, unknown)

    def test_the_clamped_half(self):
        self.glue(self.left, list(reversed(self.interface)), self.right)

    def test_the_free_half(self):
        """A structure that nothing holds can be condensed as well: to both its ends."""
        self.glue(self.right, [*self.interface, *range(self.n - self.PLANE, self.n)], self.left)


class Refusals(runner.Case):
    def setUp(self):
        super().setUp()
        self.a = self.write("a.mtx", made.matrix_market(3, {(i, i): 1.0 for i in range(3)}))
        self.kept = self.write("k.txt", "1 3")

    def contents(self, name):
        with open(self.path(name)) as file:
            return file.read()

    def test_lists_that_are_none(self):
        for text, says in (("1 4", "4 is not an unknown of the matrix, 1 to 3"), ("0", "0 is not an unknown"),
                           ("1\n2\n1", "line 3: 1 is there twice"), ("1 x", "x is no number"), ("1.5", "1.5 is no number"),
                           ("99999999999999999999", "is not an unknown"), ("% nothing\n#\n", "names no unknowns"), ("", "empty")):
            with self.subTest(text):
                self.write("k.txt", text)
                self.refused(self.a, "--condense", self.kept, "--condensed", "c.mtx", says=[self.kept, says])
        self.refused(self.a, "--condense", "none.txt", "--condensed", "c.mtx", says=["none.txt", "No such file"])

    def test_options_that_do_not_go_together(self):
        self.refused(self.a, "--condense", self.kept, says=["--condensed"])
        self.refused(self.a, "--condensed", "c.mtx", says=["--condense"])
        for option in (("--rhs", "ones"), ("--columns", 2), ("--refine", 3), ("--solution", "x.mtx")):
            self.refused(self.a, "--condense", self.kept, "--condensed", "c.mtx", *option, says=[option[0], "--condense"])
        for option in (("--vtk", "x.vtu"), ("--no-vtk",)):
            self.refused("--condense", self.kept, "--condensed", "c.mtx", *option, says=[option[0], "--condense"])

    def test_no_input_is_overwritten(self):
        for output in (self.a, "k.txt", "./k.txt"):
            before = self.contents("a.mtx"), self.contents("k.txt")
            self.refused(self.a, "--condense", self.kept, "--condensed", output, says=["would overwrite the input"])
            self.assertEqual((self.contents("a.mtx"), self.contents("k.txt")), before)
        self.refused(self.a, "--condense", self.kept, "--condensed", "no/such/c.mtx", says=["no/such/c.mtx"])

    def test_what_cannot_be_written_is_told_beside_the_report(self):
        done = self.run_program("--json", self.a, "--condense", self.kept, "--condensed", "/dev/full")
        self.assertEqual(done.returncode, 1)
        self.assertIn("/dev/full: not written: No space left", done.stderr)
        self.assertIn('"trusted": true', done.stdout)
        self.assertNotIn("condensed_file", done.stdout)


if __name__ == "__main__":
    runner.main()
