# SPDX-License-Identifier: BSD-3-Clause
"""PETSc of other scalars is refused with one sentence, when configuring, compiling and loading; integers of 64 bits are
fine, but where the process's PETSc has others than the one compiled against."""
import glob
import os
import subprocess
import tempfile
import unittest

import runner

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
FAULTS = os.environ["BLA_PETSC_FAULTS"]
DOUBLE, SINGLE = "#define PETSC_USE_REAL_DOUBLE 1", "#define PETSC_USE_REAL_SINGLE 1"
COMPLEX, LONG = "#define PETSC_USE_COMPLEX 1", "#define PETSC_USE_64BIT_INDICES 1"


class Configuring(unittest.TestCase):
    def configure(self, *settings):
        """Output and status of a project that asks for PETSc and finds one of these settings."""
        with tempfile.TemporaryDirectory() as folder:
            for name, lines in (("petscconf.h", settings),
                                ("PETSc.pc", ("Name: PETSc", "Description: trial", "Version: 3.18.5",
                                              f"Cflags: -I{folder}", "Libs:")),
                                ("CMakeLists.txt", ("cmake_minimum_required(VERSION 3.25)", "project(trial LANGUAGES C)",
                                                    f"include({ROOT}/cmake/petsc.cmake)"))):
                with open(os.path.join(folder, name), "w") as file:
                    file.write("\n".join(lines) + "\n")
            done = subprocess.run(["cmake", "-S", folder, "-B", os.path.join(folder, "build")], capture_output=True,
                                  text=True, env={**os.environ, "PKG_CONFIG_PATH": folder})
            return " ".join(done.stderr.split()), done.returncode

    def test_scalars(self):
        for settings in (COMPLEX, DOUBLE), (SINGLE,):
            said, status = self.configure(*settings)
            self.assertNotEqual(status, 0)
            self.assertIn("solves real systems in double precision, and this PETSc has other scalars", said)

    def test_integers(self):
        self.assertEqual(self.configure(DOUBLE, LONG), ("", 0))


class Compiling(unittest.TestCase):
    def compile(self, source, *settings):
        """The errors of a source where petscconf.h says this as well."""
        flags = subprocess.run(["pkg-config", "--cflags-only-I", "PETSc"], check=True, capture_output=True, text=True).stdout
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "petscconf.h"), "w") as file:
                file.write("\n".join(("#include_next <petscconf.h>", *settings)) + "\n")
            done = subprocess.run(["mpicc", "-std=c11", "-fsyntax-only", "-Wall", "-Wextra", "-Wshadow", "-Werror",
                                   f"-I{ROOT}/petsc", f"-I{ROOT}/solver", "-isystem", folder,
                                   *flags.replace("-I", "-isystem ").split(), source],
                                  capture_output=True, text=True, env={**os.environ, "LC_ALL": "C"})
        return [line for line in done.stderr.splitlines() if "error" in line]

    def test_scalars(self):
        for settings in (COMPLEX,), ("#undef PETSC_USE_REAL_DOUBLE", SINGLE):
            errors = self.compile(f"{ROOT}/petsc/register.c", *settings)
            self.assertIn("tovbla solves real systems in double precision", errors[0])

    def test_integers(self):
        sources = glob.glob(f"{ROOT}/petsc/*.c")
        self.assertGreater(len(sources), 5)
        for source in sources:
            self.assertEqual(self.compile(source, LONG), [])


class Loading(unittest.TestCase):
    """A process whose PETSc is not the one compiled against."""

    def load(self, flavour):
        return runner.run(FAULTS, 1, "-ksp_type", "preonly", "-pc_type", "lu", "-pc_factor_mat_solver_type", "tovbla", plugin=False,
                          environment={"LD_PRELOAD": os.environ["BLA_PETSC_OTHER_FLAVOUR"], "FLAVOUR": flavour})

    def test_refused(self):
        for flavour, sentence in (("complex", "tovbla solves real systems in double precision; this PETSc has other scalars"),
                                  ("long", "tovbla was compiled for a PETSc with integers of 4 bytes; this one has 8")):
            done = self.load(flavour)
            self.assertNotEqual(done.status, 0)
            self.assertIn(sentence, done.output)
            self.assertNotIn("CONVERGED", done.output)

    def test_taken(self):
        self.assertEqual(self.load("real").output, "CONVERGED_ITS, right\n")


if __name__ == "__main__":
    unittest.main()
