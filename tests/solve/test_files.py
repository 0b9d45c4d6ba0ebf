# SPDX-License-Identifier: BSD-3-Clause
"""Small files of every kind, good and bad."""
import bz2
import gzip
import lzma
import os
import random
import resource
import time

import runner

BANNER = "%%MatrixMarket matrix "
SYMMETRIC = BANNER + "coordinate real symmetric\n"
GENERAL = BANNER + "coordinate real general\n"
# [4 1 2; 1 5 1; 2 1 6], A*(1, 2, 3) = (12, 14, 22)
SMALL = SYMMETRIC + "% a comment\n\n3 3 6\n1 1 4\n2 1 1\n3 1 2\n2 2 5\n3 2 1\n3 3 6\n"


class Good(runner.Case):
    def solved(self, text, *options, **keywords):
        path = self.write("a.mtx", text)
        report = self.report(path, "--solution", "x.mtx", *options, **keywords)
        return report, runner.read_vectors(self.path("x.mtx"))

    def close(self, x, y):
        self.assertEqual(len(x), len(y))
        for a, b in zip(x, y):
            self.assertAlmostEqual(a, b, delta=1e-13)

    def test_a_symmetric_file(self):
        report, (x,) = self.solved(SMALL)
        self.close(x, [1, 1, 1])
        self.assertEqual((report["unknowns"], report["nonzeros"], report["method"]), (3, 9, "L*D*L^T"))
        self.assertEqual(report["file"], self.path("a.mtx"))

    def test_a_right_hand_side_from_a_file(self):
        b = self.write("b.mtx", BANNER + "array real general\n3 2\n12\n14\n22\n4\n1\n2\n")
        report, x = self.solved(SMALL, "--rhs", b)
        self.close(x[0], [1, 2, 3])
        self.close(x[1], [1, 0, 0])
        self.assertEqual(report["right_hand_sides"], 2)
        self.assertNotIn("solution_error", report)

    def test_a_sparse_right_hand_side_from_a_file(self):
        b = self.write("b.mtx", GENERAL + "3 2 4\n1 2 4\n2 2 1\n3 2 2\n1 1 0\n")
        _, x = self.solved(SMALL, "--rhs", b)
        self.close(x[0], [0, 0, 0])
        self.close(x[1], [1, 0, 0])

    def test_many_columns(self):
        for rhs in ("ones", "random"):
            report, x = self.solved(SMALL, "--columns", 19, "--rhs", rhs)
            self.assertEqual((report["right_hand_sides"], len(x)), (19, 19))
            self.assertLess(report["solution_error"], 1e-14)
            self.assertEqual(abs(x[0][0] - 1.0) < 1e-13, rhs == "ones")

    def test_the_upper_triangle_serves_as_well_as_the_lower(self):
        _, (x,) = self.solved(SYMMETRIC + "2 2 3\n1 1 2\n1 2 1\n2 2 2\n")
        self.close(x, [1, 1])

    def test_a_general_file_with_symmetric_values_is_symmetric(self):
        report, _ = self.solved(GENERAL + "2 2 4\n1 1 2\n1 2 1\n2 1 1\n2 2 2\n")
        self.assertEqual((report["symmetric"], report["method"]), (True, "L*D*L^T"))

    def test_a_general_file(self):
        report, (x,) = self.solved(GENERAL + "2 2 4\n2 1 3\n1 2 1\n1 1 2\n2 2 2\n")
        self.close(x, [1, 1])
        self.assertEqual((report["symmetric"], report["method"]), (False, "L*D*U"))

    def test_entries_given_twice_are_summed(self):
        b = self.write("b.mtx", BANNER + "array real general\n2 1\n6\n5\n")
        _, (x,) = self.solved(GENERAL + "2 2 4\n1 1 2\n1 1 4\n2 2 3\n2 2 2\n", "--rhs", b)
        self.close(x, [1, 1])

    def test_array_files(self):
        b = self.write("b.mtx", BANNER + "array real general\n2 1\n4\n7\n")
        _, (x,) = self.solved(BANNER + "array real general\n2 2\n1\n2\n3\n5\n", "--rhs", b)
        self.close(x, [1, 1])
        _, (x,) = self.solved(BANNER + "array real symmetric\n2 2\n1\n3\n4\n", "--rhs", b)
        self.close(x, [1, 1])

    def test_integer_and_upper_case_files_with_windows_line_ends(self):
        _, (x,) = self.solved((BANNER + "COORDINATE Integer Symmetric\n1 1 1\n1 1 3\n").replace("\n", "\r\n"))
        self.close(x, [1])

    def test_every_line_end(self):
        for text in (SMALL.replace("\n", "\r\n"), SMALL.replace("\n", "\r"), SMALL.rstrip("\n"), SMALL + "\n\r\n \t\n",
                     SMALL.replace("\n", "\r\n").rstrip("\r\n"), SMALL.replace("6\n", "6\r").replace("5\n", "5\r\n")):
            with self.subTest(text):
                self.close(self.solved(text)[1][0], [1, 1, 1])

    def rewritten(self, row):
        """Each entry as one string, from its row, column and value."""
        lines = SMALL.splitlines()
        return "\n".join(lines[:4] + [row(*map(int, line.split())) for line in lines[4:]]) + "\n"

    def values(self, text):
        """A*(1, 2, 3) solved for, so that any value read wrong shows."""
        b = self.write("b.mtx", BANNER + "array real general\n3 1\n1.2d+1\n140D-1\n.22E2\n")
        _, (x,) = self.solved(text, "--rhs", b)
        self.close(x, [1, 2, 3])

    def test_exponents_of_fortran(self):
        for form in ("{:.1f}D+00", "{:.1f}d0", "{}D-0", "{}.d00", "+{}0D-01", "0.{}d+1", "{}E0", ".{}e+01"):
            with self.subTest(form):
                self.values(self.rewritten(lambda i, j, v: f"{i} {j} " + form.format(v)))

    def test_signs_and_leading_zeros(self):
        self.values(self.rewritten(lambda i, j, v: f"+{i} 0{j} +00{v}"))
        self.values(SMALL.replace("3 3 6\n1", "+3 0003 +06\n1"))
        self.values(self.rewritten(lambda i, j, v: f"{i:01000} {j:01000} {v:01000}"))

    def test_lines_of_any_length(self):
        self.values(SMALL.replace("% a comment", "%" + " 1 1 4" * 300000))
        self.values(SMALL.replace("2 2 5", "% 2 2 7" + " 9" * 300000 + "\n2 2 5"))
        self.values(SMALL.replace("2 2 5", " " * 300000 + "2\t \t2" + " " * 300000 + "5" + " \t" * 300000))
        self.values(self.rewritten(lambda i, j, v: f"{i} {j} {v}." + "0" * 200000))
        self.values(self.rewritten(lambda i, j, v: f"{i} {j} {v - 1}." + "9" * 200000 + "d0"))
        self.values(self.rewritten(lambda i, j, v: f"{i} {j} 0." + "0" * 100000 + f"{v}e100001"))

    def test_a_pipe(self):
        done = runner.subprocess.run([runner.PROGRAM, "/dev/stdin"], input=SMALL, capture_output=True, text=True,
                                     cwd=self.folder, timeout=60)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_a_skew_symmetric_file(self):
        report, (x,) = self.solved(BANNER + "coordinate real skew-symmetric\n4 4 4\n2 1 1\n3 2 5\n4 3 2\n4 1 3\n")
        self.close(x, [1, 1, 1, 1])
        self.assertEqual(report["method"], "L*D*U")

    def test_the_other_triangle_has_the_other_sign(self):
        # [0 -4; 4 0] * (1, 2) = (-8, 4)
        b = self.write("b.mtx", BANNER + "array real general\n2 1\n-8\n4\n")
        for text in (BANNER + "coordinate real skew-symmetric\n2 2 1\n2 1 4\n",
                     BANNER + "array real skew-symmetric\n2 2\n4\n"):
            _, (x,) = self.solved(text, "--rhs", b)
            self.close(x, [1, 2])

    def test_a_matrix_with_a_zero_diagonal(self):
        report, (x,) = self.solved(SYMMETRIC + "2 2 1\n2 1 1\n")
        self.close(x, [1, 1])
        self.assertEqual(report["shifted_pivots"], 1)
        report, (x,) = self.solved(SYMMETRIC + "2 2 1\n2 1 1\n", "--method", "ldu")
        self.close(x, [1, 1])
        self.assertEqual(report["shifted_pivots"], 0)

    def test_entries_from_the_smallest_to_the_largest(self):
        _, (x,) = self.solved(SYMMETRIC + "3 3 4\n1 1 1e300\n2 1 5e-301\n2 2 1e-300\n3 3 4e-320\n")
        self.close(x, [1, 1, 1])

    def test_random_sparse_matrices_of_many_sizes(self):
        rng = random.Random(7)
        for n in (1, 2, 3, 5, 17, 60, 200):
            for symmetric in (True, False):
                entries = {(i, i): rng.choice((-1, 1)) * (1.0 + rng.random()) for i in range(1, n + 1)}
                for _ in range(3 * n):
                    i, j = rng.randint(1, n), rng.randint(1, n)
                    if i > j or (i != j and not symmetric):
                        entries[i, j] = 0.2 * rng.uniform(-1, 1)
                text = (SYMMETRIC if symmetric else GENERAL) + f"{n} {n} {len(entries)}\n"
                text += "".join(f"{i} {j} {v!r}\n" for (i, j), v in entries.items())
                report, columns = self.solved(text, "--columns", 3)
                self.assertLess(report["relative_residual"], 1e-14)
                self.assertLess(report["solution_error"], 1e-10)
                if symmetric:
                    self.assertEqual(report["shifted_pivots"] + report["replaced_pivots"], 0)


class Singular(runner.Case):
    def test_a_zero_matrix(self):
        report = self.report(self.write("a.mtx", SYMMETRIC + "3 3 1\n2 2 0\n"), status=1)
        self.assertEqual((report["replaced_pivots"], report["unheld_motions"]), (3, 3))
        self.assertIn("singular to working precision (3 unheld motions, unknowns 1, 2, 3)", report["verdict"])
        self.assertIsNone(report["estimated_error"])

    def test_a_matrix_without_entries(self):
        report = self.report(self.write("a.mtx", SYMMETRIC + "3 3 0\n"), status=1)
        self.assertEqual((report["replaced_pivots"], report["nonzeros"]), (3, 0))

    def test_a_right_hand_side_out_of_reach(self):
        a = self.write("a.mtx", SYMMETRIC + "2 2 3\n1 1 1\n2 1 1\n2 2 1\n")
        b = self.write("b.mtx", BANNER + "array real general\n2 1\n1\n0\n")
        report = self.report(a, "--rhs", b, status=1)
        self.assertGreater(report["relative_residual"], 1e-12)
        self.assertIn("NOT SOLVED", report["verdict"])

    def test_an_unsymmetric_matrix_without_full_structural_rank(self):
        a = self.write("a.mtx", GENERAL + "3 3 5\n1 1 1\n1 2 2\n1 3 3\n2 1 4\n3 1 5\n")
        b = self.write("b.mtx", BANNER + "array real general\n3 1\n1\n2\n7\n")
        report = self.report(a, "--rhs", b, status=1)
        self.assertIn("structurally singular (rank at most 2 of 3)", report["verdict"])

    def test_overflow_is_not_called_a_solution(self):
        a = self.write("a.mtx", SYMMETRIC + "2 2 3\n1 1 9e307\n2 1 9e307\n2 2 1\n")
        report = self.report(a, status=1)
        self.assertIsNone(report["relative_residual"])


class Bad(runner.Case):
    def bad(self, text, *says, options=()):
        self.refused(self.write("bad.mtx", text), *options, says=["bad.mtx", *says])

    def test_missing_file(self):
        self.refused("nowhere.mtx", says=["nowhere.mtx", "No such file"])

    def test_folder(self):
        self.refused(self.folder, says=[self.folder, "directory"])

    def test_empty_file(self):
        self.bad("", "empty")

    def test_not_matrix_market(self):
        self.bad("1 2 3\n", "not a Matrix Market file")
        self.bad(bytes(range(256)), "not a Matrix Market file")

    def test_truncated_anywhere(self):
        text = SMALL.rstrip("\n")
        for end in range(len(text) - 1):
            with self.subTest(text[:end]):
                self.bad(text[:end])
        for end in (SMALL.index("3 3 6"), SMALL.index("2 2 5"), SMALL.index("2 2 5") + 4):
            self.bad(SMALL[:end], "truncated")

    def test_too_many_entries(self):
        self.bad(SMALL + "1 1 1\n", "line 11", "more than the 6 entries")

    def test_compressed_files(self):
        for data, kind in ((gzip.compress(SMALL.encode()), "gzip"), (bz2.compress(SMALL.encode()), "bzip2"),
                           (lzma.compress(SMALL.encode()), "xz"), (b"\x28\xb5\x2f\xfd\0\0", "zstd"),
                           (b"PK\x03\x04\0\0", "zip"), (b"\x1f\x9d\x90", "compress"),
                           (b"\x04\x22\x4d\x18", "lz4")):
            self.bad(data, kind, "unpack it first")

    def test_byte_order_marks(self):
        self.bad(SMALL.encode("utf-8-sig"), "byte-order mark (UTF-8)")
        for encoding, name in (("utf-16-le", "UTF-16"), ("utf-16-be", "UTF-16"), ("utf-32-le", "UTF-32"),
                               ("utf-32-be", "UTF-32")):
            self.bad(("\ufeff" + SMALL).encode(encoding), name)

    def test_long_words_are_shown_in_part(self):
        path = self.write("bad.mtx", SMALL.replace("2 2 5", "2 2 " + "x" * 500000))
        self.refused(path, says=["line 8", "xxx... is not a number"])
        self.assertLess(len(self.run_program(path).stderr), 500)
        self.bad(SMALL.replace("2 2 5", "7" * 500000 + " 2 5"), "line 8", "outside")
        self.bad(SMALL.replace("2 2 5", "2 2 5 " + "5" * 500000), "line 8", "expected row, column and value")

    def test_zero_bytes(self):
        for entry in ("2 2 5\0", "2 2\0 5", "\0", "2 \0002 5", "\0 2 5", "2 2 \0005"):
            self.bad(SMALL.replace("2 2 5", entry), "line 8", "zero byte")
        self.bad(SMALL.replace("2 2 5", "2 2 5\x1b[31m"), "line 8", "5?[31m is not a number")

    def test_lines_are_counted_by_their_ends(self):
        for end in ("\n", "\r\n", "\r"):
            self.bad(SMALL.replace("2 2 5", "2 2 x").replace("\n", end), "line 8")

    def test_a_few_entries_of_a_huge_matrix(self):
        """Refused by what the file holds: in no time, and without memory for what the header says."""
        for text, says in ((SYMMETRIC + "2000000000 2000000000 3\n1 1 1\n2 2 1\n3 3 1\n", "structurally singular"),
                           (GENERAL + "50000000 50000000 3\n1 1 1\n2 2 1\n3 3 1\n", "structurally singular"),
                           (SYMMETRIC + "40000 40000 800000000\n1 1 1\n", "truncated"),
                           (GENERAL + "2 2 9000000000000000000\n1 1 1\n", "truncated"),
                           (BANNER + "array real general\n40000 40000\n1\n", "truncated"),
                           (BANNER + "array real symmetric\n2000000000 2000000000\n1\n", "truncated"),
                           (GENERAL + "99999 99999 99998\n" + "1 1 1\n" * 99998, "structurally singular")):
            self.frugal(self.write("bad.mtx", text), says=["bad.mtx", says])
        self.frugal("/dev/zero", says=["/dev/zero", "not a Matrix Market file"])
        a = self.write("a.mtx", SMALL)
        for text, says in ((BANNER + "array real general\n3 2000000000\n1\n2\n3\n", "truncated"),
                           (GENERAL + "3 2000000000 1\n1 1 1\n", "2000000000 columns, but 1 entries"),
                           (GENERAL + "3 100000000 3\n1 1 1\n2 1 1\n3 1 1\n", "100000000 columns")):
            self.frugal(a, "--rhs", self.write("b.mtx", text), says=["b.mtx", says])

    def frugal(self, *arguments, says):
        with open(self.path("err"), "w+") as err:
            started = time.monotonic()
            program = runner.subprocess.Popen([runner.PROGRAM, *arguments], cwd=self.folder, stderr=err, preexec_fn=lambda: (
                resource.setrlimit(resource.RLIMIT_AS, (1 << 33, 1 << 33))))
            _, status, usage = os.wait4(program.pid, 0)
            program.returncode = os.waitstatus_to_exitcode(status)
            seconds = time.monotonic() - started
            err.seek(0)
            message = err.read()
        if "AddressSanitizer failed to allocate" in message:
            self.skipTest("the sanitizer sets more memory aside than is granted")
        self.assertEqual((program.returncode, message.count("\n")), (2, 1), message)
        for word in says:
            self.assertIn(word, message)
        self.assertLess(usage.ru_maxrss, 150000) # kilobytes
        self.assertLess(seconds, 30.0)

    def test_complex(self):
        self.bad(BANNER + "coordinate complex general\n1 1 1\n1 1 1 0\n", "complex", "only real matrices")

    def test_pattern(self):
        self.bad(BANNER + "coordinate pattern symmetric\n1 1 1\n1 1\n", "pattern only")

    def test_hermitian(self):
        self.bad(BANNER + "coordinate real hermitian\n1 1 1\n1 1 1\n", "hermitian")
        self.bad(BANNER + "coordinate complex hermitian\n1 1 1\n1 1 1 0\n", "complex")

    def test_unknown_words_in_the_header(self):
        self.bad("%%MatrixMarket vector coordinate real general\n1 1 1\n1 1 1\n", "vector")
        self.bad(BANNER + "sparse real general\n1 1 1\n1 1 1\n", "sparse")
        self.bad(BANNER + "coordinate quaternion general\n1 1 1\n1 1 1\n", "quaternion")
        self.bad(BANNER + "coordinate real\n1 1 1\n1 1 1\n", "line 1", "needs object, format, field and symmetry")

    def test_not_a_number_and_infinities(self):
        for value, word in (("nan", "NaN"), ("NaN", "NaN"), ("inf", "infinite"), ("-Infinity", "infinite"),
                            ("INF", "infinite"), ("+inf", "infinite"), ("-nan", "NaN"), ("nan(7)", "NaN"), ("1D999", "infinite"),
                            ("1e999", "infinite"), ("-1e400", "infinite"), ("1.5e308", "infinite")):
            self.bad(SYMMETRIC + f"2 2 2\n1 1 1\n2 2 {value}\n", "line 4", word)

    def test_entries_that_add_up_to_infinity(self):
        self.bad(SYMMETRIC + "1 1 2\n1 1 9.9e307\n1 1 9.9e307\n", "infinity")

    def test_words_that_are_no_numbers(self):
        self.bad(SYMMETRIC + "2 2 2\n1 1 one\n2 2 1\n", "line 3", "one")
        self.bad(SYMMETRIC + "2 2 2\n1 1 1 7\n2 2 1\n", "line 3")
        for value in ("1d", "d0", "1d0d0", "1e0d0", "1d0.5", "0x1p3", "0x10", "1.0.0", "++1", "+-1", "-+1", ".", "-", "+", "e5",
                      "1,5", "1_000", "1e+", "infd0", "1 d0", "0x", "1f", "1L"):
            self.bad(SYMMETRIC + f"2 2 2\n1 1 1\n2 2 {value}\n", "line 4")
        self.bad(SYMMETRIC + "2 2 2\n1 1.5 1\n2 2 1\n", "line 3")
        self.bad(SYMMETRIC + "2 2 2\n1 1\n2 2\n", "line 3")

    def test_malformed_sizes(self):
        for sizes in ("2 2", "2 2 2 2", "-2 -2 2", "2 2 -1", "two two two", "2 2 2.0"):
            self.bad(SYMMETRIC + sizes + "\n1 1 1\n2 2 1\n", "size line")
        self.bad(SYMMETRIC + "3000000000 3000000000 2\n1 1 1\n2 2 1\n", "too large")
        self.bad(SYMMETRIC + "99999999999999999999 1 2\n1 1 1\n2 2 1\n", "size line")

    def test_no_unknowns(self):
        self.bad(SYMMETRIC + "0 0 0\n", "empty")
        self.bad(BANNER + "array real general\n0 0\n", "empty")

    def test_not_square(self):
        self.bad(GENERAL + "2 3 1\n1 1 1\n", "not square (2 x 3)")
        self.bad(SYMMETRIC + "2 3 1\n1 1 1\n", "must be square")

    def test_indices_out_of_range(self):
        for entry in ("0 1 5", "1 0 5", "3 1 5", "1 3 5", "-1 1 5", "99999999999 1 5", "2147483648 1 5", "4294967297 1 5",
                      "1 18446744073709551617 5", "-9223372036854775809 1 5"):
            self.bad(GENERAL + f"2 2 2\n1 1 1\n{entry}\n", "line 4", "outside")

    def test_both_triangles_of_a_symmetric_file(self):
        self.bad(SYMMETRIC + "2 2 4\n1 1 2\n1 2 1\n2 1 1\n2 2 2\n", "both sides")

    def test_unsymmetric_where_a_symmetric_matrix_is_asked_for(self):
        self.bad(GENERAL + "2 2 3\n1 1 2\n1 2 1\n2 2 2\n", "not symmetric", options=["--method", "ldlt"])

    def test_diagonal_of_a_skew_symmetric_file(self):
        self.bad(BANNER + "coordinate real skew-symmetric\n2 2 2\n1 1 1\n2 1 1\n", "line 3", "diagonal")

    def test_bad_right_hand_sides(self):
        a = self.write("a.mtx", SMALL)

        def bad(text, *says):
            self.refused(a, "--rhs", self.write("b.mtx", text), says=["b.mtx", *says])
        bad(BANNER + "array real general\n2 1\n1\n2\n", "2 rows", "3")
        bad(BANNER + "array real general\n3 1\n1\n2\n", "truncated")
        bad(BANNER + "array real general\n3 1\n1\nnan\n2\n", "NaN")
        bad(BANNER + "array complex general\n3 1\n1 0\n2 0\n2 0\n", "complex")
        bad(BANNER + "array real general\n3 0\n", "empty")
        expected = "a right-hand side is a real Matrix Market file of 3 rows"
        bad(BANNER + "array complex general\n3 1\n1 0\n2 0\n2 0\n", "the right-hand side is complex", expected)
        bad(BANNER + "coordinate pattern general\n3 1 1\n1 1\n", "the right-hand side is a pattern", expected)
        bad("12\n14\n22\n", "not a Matrix Market file", expected)
        bad(BANNER + "array real general\n3000000000 1\n1\n", "the right-hand side is too large")
        bad(GENERAL + "3 1 2\n1 1 9.9e307\n1 1 9.9e307\n", "infinity")
        bad(gzip.compress(SMALL.encode()), "gzip")
        for text in (BANNER + "array complex general\n3 1\n", "", "1 2 3\n", BANNER + "array real general\n2 1\n1\n2\n",
                     BANNER + "array real general\n0 1\n"):
            done = self.run_program(a, "--rhs", self.write("b.mtx", text))
            self.assertEqual(done.returncode, 2)
            self.assertNotIn("a.mtx", done.stderr)
            self.assertNotIn("the matrix is", done.stderr)
        self.refused(a, "--rhs", "nowhere.mtx", says=["nowhere.mtx", "No such file"])

    def test_nonsense_options(self):
        a = self.write("a.mtx", SMALL)
        for options, word in ((["--nb", "0"], "--nb"), (["--nb", "-3"], "--nb"), (["--nb", "x"], "--nb"),
                              (["--nb", "3x"], "--nb"), (["--nb"], "--nb"), (["--nb", ""], "--nb"),
                              (["--nb", "99999999999"], "--nb"), (["--tolerance", "-1"], "--tolerance"),
                              (["--tolerance", "nan"], "--tolerance"), (["--tolerance", "2"], "--tolerance"),
                              (["--threads", "0"], "--threads"), (["--refine", "-1"], "--refine"),
                              (["--columns", "0"], "--columns"), (["--method", "qr"], "--method"),
                              (["--frobnicate"], "--frobnicate"), (["-x"], "-x"), ([""], "empty"),
                              (["b.mtx"], "b.mtx"), (["--mesh", "4x4x4"], "--mesh"), (["--vtk", "v"], "--vtk"),
                              (["--rhs", ""], "--rhs"), (["--rhs", a, "--columns", "2"], "--columns")):
            with self.subTest(options):
                self.refused(a, *options, says=[word])
        for options, word in ((["--mesh", "4x4"], "--mesh"), (["--mesh", "0x4x4"], "--mesh"),
                              (["--mesh", "4x4x-4"], "--mesh"), (["--mesh", "4x4x4x4"], "--mesh"),
                              (["--mesh", "999999x99999x99999"], "--mesh"), (["--rhs", "ones"], "--rhs"),
                              (["--columns", "2"], "--columns")):
            with self.subTest(options):
                self.refused(*options, says=[word])

    def test_output_that_cannot_be_written(self):
        a = self.write("a.mtx", SMALL)
        self.refused(a, "--solution", "no/such/folder/x.mtx", says=["no/such/folder/x.mtx"])
        self.refused("--mesh", "2x1x1", "--vtk", "no/such/folder/b.vtu", says=["no/such/folder/b.vtu"])
        self.refused(a, "--solution", self.folder, says=[self.folder])
        self.refused("--mesh", "2x1x1", "--vtk", "b.vtu", "--solution", "no/such/folder/x.mtx",
                     says=["no/such/folder/x.mtx"])


class Help(runner.Case):
    def test_help(self):
        done = self.run_program("--help")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        for option in ("--mesh", "--method", "--rhs", "--columns", "--tolerance", "--nb", "--refine", "--threads",
                       "--json", "--trace", "--simulate", "--condense", "--condensed", "--solution", "--vtk", "--no-vtk", "--version", "--help", "exit status"):
            self.assertIn(option, done.stdout)


if __name__ == "__main__":
    runner.main()
