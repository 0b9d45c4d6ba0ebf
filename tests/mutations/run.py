#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Are the tests worth something? Applies each mutation of mutations.py (the library), programs.py, solver.py and petsc.py
to a copy of the tree, builds the programs that should notice, and runs them; each must be caught by a failing program. A
mutation that no longer applies to the source fails the run, and so does one that does not compile: it says nothing about
the tests.

    run.py [--build DIRECTORY] [--sample N] [--seed SEED] [WORD...]
    run.py --apply

--apply only asks whether each mutation still applies to the source. --sample N takes N of them at random; words pick those
whose description or file contains one. The first run builds everything and takes its time, later ones only what a mutation
touches. Those of petsc.py need PETSc and its examples.
"""
import argparse
import glob
import os
import random
import shlex
import shutil
import subprocess
import sys
import time

import mutations
import petsc
import programs
import solver

MUTATIONS = mutations.MUTATIONS + programs.MUTATIONS + solver.MUTATIONS + petsc.MUTATIONS
ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


# The numbers of inputs that the tests give them.
FUZZERS = {"fuzz_kernels": "6000", "fuzz_matrix_market": "20000", "fuzz_solver": "4000"}


def applied(text, old, new, file):
    if text.count(old) != 1:
        sys.exit(f"{file}: found {text.count(old)} times instead of once, the mutation no longer applies:\n{old}")
    return text.replace(old, new)


def check_that_all_apply():
    for what, file, old, new, _ in MUTATIONS:
        with open(os.path.join(ROOT, file)) as source:
            applied(source.read(), old, new, f"{file} ({what})")


def write(path, text):
    with open(path, "w") as file:
        file.write(text)


class Copy:
    """A copy of the tree with a build beside it."""

    def __init__(self, directory, petsc_too):
        self.tree, self.build = os.path.join(directory, "tree"), os.path.join(directory, "build")
        os.makedirs(self.tree, exist_ok=True)
        for part in os.scandir(ROOT):
            if not part.name.startswith((".", "build")):
                target = os.path.join(self.tree, part.name)
                self.refresh(part.path, target) if part.is_dir() else self.refresh_file(part.path, target)
        self.run("cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                 "-DBLA_BUILD_EXAMPLES=OFF", "-DBLA_BUILD_TESTS=ON", f"-DBLA_BUILD_PETSC={'ON' if petsc_too else 'OFF'}",
                 check=True)

    def refresh(self, source, target):
        os.makedirs(target, exist_ok=True)
        for entry in os.scandir(source):
            to = os.path.join(target, entry.name)
            self.refresh(entry.path, to) if entry.is_dir() else self.refresh_file(entry.path, to)

    @staticmethod
    def refresh_file(source, target):
        """Copies what differs, so that a second run rebuilds nothing."""
        with open(source, "rb") as file:
            wanted = file.read()
        if os.path.exists(target):
            with open(target, "rb") as file:
                if file.read() == wanted:
                    return
        shutil.copy(source, target)

    def run(self, *command, check=False, timeout=None):
        environment = dict(os.environ, OPENBLAS_NUM_THREADS="1", BLA_TEST_SEED="1", PYTHONDONTWRITEBYTECODE="1",
                           BLA_SOLVE=self.program("bla_solve"), BLA_INFO=self.program("bla_info"),
                           **self.petsc_environment())
        result = subprocess.run(command, cwd=self.tree, env=environment, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT, timeout=timeout)
        if check and result.returncode:
            sys.exit(f"{' '.join(command)} failed:\n" + result.stdout.decode(errors="replace")[-3000:])
        return result.returncode

    def program(self, name):
        return os.path.join(self.build, "bin", name)

    def petsc_environment(self):
        library = os.path.join(self.build, "lib", "lib")
        examples = sorted(glob.glob("/usr/share/petsc/*/share/petsc/examples/src")) or [""]
        programs = {"BLA_PETSC_" + name.upper(): self.program("petsc_" + name)
                    for name in ("faults", "indefinite", "operations", "values")}
        return {**programs,
                "BLA_PETSC_PLUGIN": library + "petsc_tovbla", "BLA_PETSC_INSTEAD": library + "petsc_tovbla_instead",
                "BLA_PETSC_OTHER_FLAVOUR": library + "petsc_other_flavour.so", "BLA_PETSC_EXAMPLES": examples[-1]}

    def compile(self, program, check=False):
        targets = ["ZEFTOVBlaModule"] if program == "instructions" else [program]
        if program.startswith("tests/petsc/"):
            targets = ["petsc_tovbla", "petsc_tovbla_instead", "petsc_other_flavour", "petsc_faults", "petsc_indefinite",
                       "petsc_operations", "petsc_values"]
        elif program.endswith(".py"):
            targets = ["bla_solve", "bla_info"]
        return self.run("cmake", "--build", self.build, "--target", *targets, check=check)

    def fails(self, program, arguments):
        if program == "instructions":
            library = os.path.join(self.build, "lib", "libZEFTOVBlaModule.so")
            return self.run(sys.executable, "-B", "tests/library/instructions_check.py", library)
        if program in FUZZERS:
            arguments = ("--seed", "1", "--runs", FUZZERS[program], "tests/fuzz/corpus/" + program[len("fuzz_"):])
        command = (sys.executable, program) if program.endswith(".py") else (self.program(program),)
        try:
            return self.run(*command, *arguments, timeout=600)
        except subprocess.TimeoutExpired: # an endless loop is noticed as well
            return "timeout"


def split(lines):
    """("a", "b --x", "c.py D.e", "--y") as [("a", []), ("b", ["--x"]), ("c.py", ["D.e", "--y"])]."""
    commands = []
    for line in lines:
        words = shlex.split(line)
        if not line.startswith("-"):
            commands.append((words.pop(0), []))
        commands[-1][1].extend(words)
    return commands


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", default=os.path.join(ROOT, "build", "mutations"))
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seed", type=int, default=int(time.time()))
    parser.add_argument("words", nargs="*")
    parser.add_argument("--apply", action="store_true")
    options = parser.parse_args()

    check_that_all_apply()
    if options.apply:
        print(f"all {len(MUTATIONS)} apply")
        return 0
    chosen = [m for m in MUTATIONS if not options.words or any(w in m[0] or w in m[1] for w in options.words)]
    if options.sample is not None:
        print(f"seed {options.seed}")
        chosen = random.Random(options.seed).sample(chosen, min(options.sample, len(chosen)))
    if not chosen:
        sys.exit("no such mutation")

    copy = Copy(os.path.abspath(options.build), any(m in petsc.MUTATIONS for m in chosen))
    for command in sorted({(p, tuple(a)) for m in chosen for p, a in split(m[4])}):
        copy.compile(command[0], check=True)
        if copy.fails(*command):
            sys.exit(f"{command[0]} fails without any mutation")

    survived = []
    for what, file, old, new, programs in chosen:
        path = os.path.join(copy.tree, file)
        with open(path) as source:
            original = source.read()
        write(path, applied(original, old, new, file))
        caught = None
        try:
            for program, arguments in split(programs):
                if copy.compile(program):
                    print(f"does not compile: {what}")
                    break
                if copy.fails(program, arguments):
                    caught = program
                    break
        finally:
            write(path, original)
        print(f"{'caught by ' + caught if caught else 'SURVIVED':<36} {what} ({os.path.basename(file)})", flush=True)
        if not caught:
            survived.append(what)
    print(f"{len(chosen) - len(survived)} of {len(chosen)} mutations caught")
    return 1 if survived else 0


if __name__ == "__main__":
    sys.exit(main())
