# SPDX-License-Identifier: BSD-3-Clause
"""What the programs leave behind when something cannot be written, and how ./run.sh starts them."""
import json
import os
import pty
import re
import resource
import shutil
import stat
import subprocess

import runner

INFO = os.environ["BLA_INFO"]
with open(os.path.join(runner.SOURCE, "CMakeLists.txt")) as project:
    VERSION = re.search(r"project\(.* VERSION (\S+)", project.read())[1]
MATRIX = "%%MatrixMarket matrix coordinate real symmetric\n2 2 3\n1 1 2\n2 1 1\n2 2 2\n"
BEAM = ("--mesh", "2x1x1")


class Case(runner.Case):
    def setUp(self):
        super().setUp()
        self.matrix = self.write("a.mtx", MATRIX)

    def start(self, *command, **keywords):
        keywords = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "stdin": subprocess.DEVNULL, **keywords}
        return subprocess.run(list(map(str, command)), cwd=self.folder, text=True, timeout=300, **keywords)

    def unprivileged(self, *command):
        """Runs with the permissions of the files, which root does not heed otherwise."""
        drop = ["setpriv", "--bounding-set=-dac_override,-dac_read_search"] if os.geteuid() == 0 else []
        return self.start(*drop, *command)

    def files(self):
        return sorted(os.listdir(self.folder))


class Reports(Case):
    COMMANDS = ((runner.PROGRAM, "a.mtx"), (runner.PROGRAM, "--json", "a.mtx"), (runner.PROGRAM, "--help"),
                (runner.PROGRAM, "--version"), (INFO,), (INFO, "--json"), (INFO, "--help"), (INFO, "--version"))

    def not_written(self, command, why, **keywords):
        with self.subTest(command[1:]):
            done = self.start(*command, **keywords)
            self.assertEqual(done.returncode, 1)
            self.assertIn(os.path.basename(command[0]) + ": the output cannot be written: " + why, done.stderr)
            self.assertEqual(done.stderr.count("\n"), 1)

    def test_a_full_disk(self):
        for command in self.COMMANDS:
            with open("/dev/full", "w") as full:
                self.not_written(command, "No space left on device", stdout=full)

    def test_a_closed_output(self):
        for command in self.COMMANDS:
            self.not_written(command, "Bad file descriptor", stdout=None, preexec_fn=lambda: os.close(1))

    def test_a_limit_on_the_size_of_files(self):
        for command in self.COMMANDS:
            with open(self.path("out"), "w") as out:
                self.not_written(command, "File too large", stdout=out, preexec_fn=lambda: resource.setrlimit(
                    resource.RLIMIT_FSIZE, (4, 4)))

    def test_a_reader_that_is_gone(self):
        for command in self.COMMANDS:
            there, here = os.pipe()
            os.close(there)
            with os.fdopen(here, "w") as pipe:
                self.not_written(command, "Broken pipe", stdout=pipe)

    def test_a_closed_output_is_not_taken_for_the_solution(self):
        done = self.start(runner.PROGRAM, "a.mtx", "--solution", "x.mtx", stdout=None, preexec_fn=lambda: os.close(1))
        self.assertEqual(done.returncode, 1)
        x, = runner.read_vectors(self.path("x.mtx"))
        self.assertEqual(len(x), 2)
        everything = self.start(runner.PROGRAM, "a.mtx", "--solution", "y.mtx", stdin=None, stdout=None, stderr=None,
                                preexec_fn=lambda: os.closerange(0, 3))
        self.assertEqual(everything.returncode, 1)
        self.assertEqual(runner.read_vectors(self.path("y.mtx")), [x])


class Outputs(Case):
    def half_done(self, done, *says, trusted=True):
        """The report is there, a line on stderr says what is missing, status 1."""
        self.assertEqual(done.returncode, 1, done)
        self.assertEqual(json.loads(done.stdout)["trusted"], trusted)
        self.assertEqual(done.stderr.count("\n"), 1, done.stderr)
        for word in says:
            self.assertIn(word, done.stderr)

    def limited(self, size, *arguments):
        return self.start(runner.PROGRAM, "--json", *arguments,
                          preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size)))

    def test_a_full_device(self):
        self.half_done(self.start(runner.PROGRAM, "--json", "a.mtx", "--solution", "/dev/full"),
                       "/dev/full", "not written", "No space left")
        self.half_done(self.start(runner.PROGRAM, "--json", *BEAM, "--vtk", "/dev/full"), "/dev/full", "No space left")

    def test_no_part_of_a_file_stays(self):
        before = self.files()
        self.half_done(self.limited(20, "a.mtx", "--solution", "x.mtx"), "x.mtx", "not written", "File too large")
        self.half_done(self.limited(20, "a.mtx", "--columns", 5000, "--solution", "x.mtx"), "x.mtx", "File too large")
        self.half_done(self.limited(600, *BEAM, "--vtk", "b.vtu"), "b.vtu", "File too large")
        self.assertEqual(self.files(), before)

    def test_a_picture_that_is_missing_is_not_reported(self):
        done = self.limited(600, *BEAM, "--vtk", "b.vtu")
        self.assertNotIn("vtk_file", json.loads(done.stdout))
        self.assertIn("tip_deflection", json.loads(done.stdout))

    def test_an_older_file_outlives_a_failure(self):
        old = self.write("x.mtx", "old")
        self.limited(20, "a.mtx", "--solution", "x.mtx")
        with open(old) as file:
            self.assertEqual(file.read(), "old")

    def test_the_picture_fails_and_the_solution_does_not(self):
        done = self.start(runner.PROGRAM, "--json", *BEAM, "--vtk", "/dev/full", "--solution", "x.mtx")
        self.half_done(done, "/dev/full")
        self.assertEqual(len(runner.read_vectors(self.path("x.mtx"))[0]), 24)

    def test_a_new_file_has_the_usual_permissions_and_an_older_one_keeps_its_own(self):
        done = self.start(runner.PROGRAM, "a.mtx", "--solution", "x.mtx", preexec_fn=lambda: os.umask(0o027))
        self.assertEqual(done.returncode, 0)
        self.assertEqual(stat.S_IMODE(os.stat(self.path("x.mtx")).st_mode), 0o640)
        os.chmod(self.path("x.mtx"), 0o604)
        self.start(runner.PROGRAM, "a.mtx", "--solution", "x.mtx")
        self.assertEqual(stat.S_IMODE(os.stat(self.path("x.mtx")).st_mode), 0o604)
        self.assertEqual(self.files(), ["a.mtx", "x.mtx"])

    def test_a_link_stays_one(self):
        os.mkdir(self.path("elsewhere"))
        self.write("elsewhere/x.mtx", "old")
        os.symlink("elsewhere/x.mtx", self.path("link"))
        self.assertEqual(self.start(runner.PROGRAM, "a.mtx", "--solution", "link").returncode, 0)
        self.assertTrue(os.path.islink(self.path("link")))
        self.assertEqual(len(runner.read_vectors(self.path("elsewhere/x.mtx"))[0]), 2)

    def test_standard_output_as_a_file(self):
        """The solution, then the report, wherever standard output leads."""
        start = "%%MatrixMarket matrix array real general\n2 1\n"
        done = self.start(runner.PROGRAM, "a.mtx", "--solution", "/dev/stdout")
        self.assertTrue(done.stdout.startswith(start))
        self.assertIn("verdict", done.stdout)
        for mode in ("w", "a"):
            with open(self.path("out"), mode) as out:
                done = self.start(runner.PROGRAM, "a.mtx", "--solution", "/dev/stdout", stdout=out)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
        with open(self.path("out")) as file:
            text = file.read()
        self.assertEqual((text.count(start), text.count("verdict")), (2, 2))
        self.assertEqual(self.files(), ["a.mtx", "out"])

    def test_a_pipe(self):
        os.mkfifo(self.path("pipe"))
        reader = subprocess.Popen(["cat", self.path("pipe")], stdout=subprocess.PIPE, text=True)
        done = self.start(runner.PROGRAM, "a.mtx", "--solution", "pipe")
        self.assertEqual(done.returncode, 0)
        self.assertTrue(reader.communicate(timeout=60)[0].startswith("%%MatrixMarket"))
        self.assertTrue(stat.S_ISFIFO(os.stat(self.path("pipe")).st_mode))

    def test_a_pipe_whose_reader_leaves(self):
        os.mkfifo(self.path("pipe"))
        reader = subprocess.Popen(["sh", "-c", f"head -c 1 '{self.path('pipe')}' >/dev/null"])
        done = self.start(runner.PROGRAM, "--json", "a.mtx", "--columns", 9999, "--solution", "pipe")
        reader.wait(timeout=60)
        self.half_done(done, "pipe", "Broken pipe")

    def test_a_folder_without_permission_is_refused_before_the_work(self):
        os.mkdir(self.path("locked"))
        self.write("locked/x.mtx", "old")
        os.chmod(self.path("locked"), 0o555)
        self.addCleanup(os.chmod, self.path("locked"), 0o755)
        for arguments in (("a.mtx", "--solution", "locked/y.mtx"), ("a.mtx", "--solution", "locked/x.mtx"),
                          (*BEAM, "--vtk", "locked/b.vtu")):
            done = self.unprivileged(runner.PROGRAM, *arguments)
            self.assertEqual((done.returncode, done.stdout), (2, ""), done)
            self.assertIn("cannot be written: Permission denied", done.stderr)
        self.assertEqual(os.listdir(self.path("locked")), ["x.mtx"])

    def test_a_file_that_may_not_be_written_is_refused_before_the_work(self):
        os.chmod(self.write("x.mtx", "old"), 0o444)
        done = self.unprivileged(runner.PROGRAM, "a.mtx", "--solution", "x.mtx")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("x.mtx: cannot be written: Permission denied", done.stderr)

    def test_an_unreadable_matrix(self):
        os.chmod(self.matrix, 0)
        done = self.unprivileged(runner.PROGRAM, "a.mtx")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertIn("a.mtx: Permission denied", done.stderr)


class Inputs(Case):
    def contents(self):
        result = {}
        for name in self.files():
            with open(self.path(name), "rb") as file:
                result[name] = file.read()
        return result

    def kept(self, *arguments, says="would overwrite the input"):
        before = self.contents()
        self.refused(*arguments, says=[says])
        self.assertEqual(self.contents(), before)

    def test_the_solution_never_replaces_the_matrix(self):
        os.symlink("a.mtx", self.path("soft"))
        os.link(self.matrix, self.path("hard"))
        for name in ("a.mtx", "./a.mtx", self.matrix, "soft", "hard"):
            self.kept("a.mtx", "--solution", name)
        self.kept("soft", "--solution", "a.mtx")

    def test_nor_the_right_hand_side(self):
        self.write("b.mtx", "%%MatrixMarket matrix array real general\n2 1\n1\n2\n")
        os.symlink("b.mtx", self.path("soft"))
        for name in ("b.mtx", "./b.mtx", "soft"):
            self.kept("a.mtx", "--rhs", "b.mtx", "--solution", name)

    def test_nor_before_the_matrix_was_read(self):
        self.write("a.mtx", "nonsense")
        self.kept("a.mtx", "--solution", "a.mtx")

    def test_the_picture_is_not_the_solution(self):
        for name in ("out", "./out", self.path("out")):
            self.kept(*BEAM, "--solution", "out", "--vtk", name, says="the same file")
        self.write("out", "old")
        self.kept(*BEAM, "--solution", "out", "--vtk", "./out", says="the same file")
        done = self.start(runner.PROGRAM, *BEAM, "--solution", "/dev/null", "--vtk", "/dev/null")
        self.assertEqual((done.returncode, done.stderr), (0, ""))


class Terminal(Case):
    def test_a_refusal_does_not_follow_the_progress(self):
        """At a terminal: what is being done is wiped off before the message."""
        self.write("a.mtx", MATRIX + "1 1 1\n")
        ours, theirs = pty.openpty()
        self.start(runner.PROGRAM, "a.mtx", stdout=theirs, stderr=theirs)
        os.close(theirs)
        shown = os.read(ours, 10000).decode()
        os.close(ours)
        self.assertIn("reading", shown)
        self.assertIn("\r\033[Kbla_solve: a.mtx: line 6", shown)


class Version(Case):
    def test_version(self):
        for program in (runner.PROGRAM, INFO):
            done = self.start(program, "--version")
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout, f"{os.path.basename(program)} {VERSION}\n")
            self.assertIn("--version", self.start(program, "--help").stdout)


class RunScript(Case):
    """run.sh in a tree of its own, over a cmake and a ninja that only say what they were asked."""

    def setUp(self):
        super().setUp()
        os.makedirs(self.path("tree/scripts"))
        for name in ("run.sh", "scripts/prepare.sh"):
            shutil.copy(os.path.join(runner.SOURCE, name), self.path("tree/" + name))
        self.write("tree/packages.txt", "# none\n")
        os.mkdir(self.path("bin"))
        self.program("bin/cmake", 'mkdir -p build/bin && touch build/build.ninja\n'
                     'printf "#!/bin/sh\\necho solved \\"\\$@\\"\\n" >build/bin/bla_solve && chmod +x build/bin/bla_solve')
        self.environment = dict(os.environ, PATH=self.path("bin") + ":" + os.environ["PATH"])

    def program(self, name, text):
        os.chmod(self.write(name, "#!/bin/sh\n" + text + "\n"), 0o755)

    def run_script(self, answer):
        self.program("bin/ninja", f"echo '{answer}'")
        done = self.start("tree/run.sh", "a.mtx", env=self.environment)
        self.assertEqual((done.returncode, done.stdout), (0, "solved a.mtx\n"), done.stderr)
        return done.stderr

    def test_it_says_that_it_builds_where_there_is_something_to_build(self):
        self.assertEqual(self.run_script("ninja: no work to do."), "Building (once; a few minutes) ...\n")
        self.assertEqual(self.run_script("ninja: no work to do."), "")
        self.assertEqual(self.run_script("[1/9] Building CXX object"), "Building (once; a few minutes) ...\n")


if __name__ == "__main__":
    runner.main()
