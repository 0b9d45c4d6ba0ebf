# SPDX-License-Identifier: BSD-3-Clause
"""bla_solve --trace and --simulate: the file, the table, what is refused; and the peak of the memory."""
import json
import os
import re
import subprocess
import sys
import xml.etree.ElementTree

import made
import runner

SVG = "{http://www.w3.org/2000/svg}"
BEAM = ("--mesh", "12x10x10", "--no-vtk")


def nanoseconds(microseconds):
    return round(1000 * microseconds)


def begin(event):
    return nanoseconds(event["ts"])


def end(event):
    return nanoseconds(event["ts"]) + nanoseconds(event["dur"])


class Tasks(runner.Case):
    def trace(self, *arguments, status=0):
        report = self.report(*arguments, "--trace", "t.json", status=status)
        self.assertEqual(report["trace_file"], "t.json")
        with open(self.path("t.json")) as file:
            events = json.load(file)
        self.assertEqual({event["ph"] for event in events}, {"X", "M"})
        tasks = [event for event in events if event["ph"] == "X"]
        threads = {event["tid"]: event["args"]["name"] for event in events if event.get("name") == "thread_name"}
        self.assertEqual([event["args"]["task"] for event in tasks], list(range(report["tasks"])))
        self.assertEqual(threads, {k: f"thread {k}" for k in range(max(event["tid"] for event in tasks) + 1)})
        return report, tasks

    def test_the_trace_is_of_all_tasks_and_they_waited_for_each_other(self):
        for threads in (1, 2, 3):
            report, tasks = self.trace(*BEAM, "--threads", threads)
            self.assertEqual(report["task_edges"], sum(len(task["args"]["next"]) for task in tasks))
            self.assertGreater(report["task_edges"], report["tasks"])
            self.assertLess(max(task["tid"] for task in tasks), threads)
            for task in tasks:
                self.assertEqual(task["pid"], 1)
                self.assertGreaterEqual(min(begin(task), task["dur"]), 0)
                for t in task["args"]["next"]:
                    self.assertLessEqual(end(task), begin(tasks[t]))
            for thread in range(threads):
                own = sorted((begin(task), end(task)) for task in tasks if task["tid"] == thread)
                for (_, ended), (began, _) in zip(own, own[1:]):
                    self.assertLessEqual(ended, began)
            self.assertEqual({task["name"] for task in tasks},
                             {"branch", "assemble", "eliminate", "lower", "update", "finish"})
            fronts = {front for task in tasks for front in range(
                task["args"]["front"] - task["args"].get("fronts", 1) + 1, task["args"]["front"] + 1)}
            self.assertEqual(fronts, set(range(report["fronts"])))
            places = [(task["name"], *[task["args"].get(key) for key in ("front", "row", "column", "step")])
                      for task in tasks]
            self.assertEqual(len(set(places)), len(places))
            self.assertTrue(all(None not in place for place in places if place[0] in ("eliminate", "lower", "update")))

    def test_other_matrices_and_condensation_are_traced_too(self):
        matrix = os.path.join(runner.DATA, "utm300.mtx")
        self.trace(matrix)
        kept = self.write("k.txt", "1 2 3")
        self.trace(matrix, "--condense", kept, "--condensed", "c.mtx")
        self.assertGreater(os.path.getsize(self.path("c.mtx")), 0)

    def test_the_simulation_stays_within_its_bounds(self):
        report, tasks = self.trace(*BEAM, "--threads", 1, "--simulate", "64,1,2,2,16,1000000")
        longest = [0] * len(tasks)
        for t in reversed(range(len(tasks))):
            behind = [longest[s] for s in tasks[t]["args"]["next"]]
            longest[t] = end(tasks[t]) - begin(tasks[t]) + max(behind, default=0)
        total = sum(end(task) - begin(task) for task in tasks)
        rounding = 2e-9 * len(tasks)
        self.assertAlmostEqual(report["critical_path_seconds"], 1e-9 * max(longest), delta=rounding)
        self.assertAlmostEqual(report["task_seconds"], 1e-9 * total, delta=rounding)
        self.assertAlmostEqual(report["task_span_seconds"],
                               1e-9 * (max(map(end, tasks)) - min(map(begin, tasks))), delta=rounding)
        simulated = {int(key.split("_")[-1]): value for key, value in report.items() if key.startswith("simulated_")}
        self.assertEqual(list(simulated), [1, 2, 16, 64, 1000000])
        self.assertAlmostEqual(simulated[1], report["task_seconds"], delta=rounding)
        self.assertAlmostEqual(simulated[1000000], report["critical_path_seconds"], delta=rounding)
        for workers, seconds in simulated.items():
            share = report["task_seconds"] / workers
            self.assertGreaterEqual(seconds, max(share, report["critical_path_seconds"]) - rounding)
            self.assertLessEqual(seconds, share + report["critical_path_seconds"] + rounding)
        self.assertLess(simulated[2], 0.75 * simulated[1])

    def test_the_table_in_words(self):
        done = self.run_program(*BEAM, "--threads", 1, "--simulate", "1,4")
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertRegex(done.stdout, r"\n  tasks +\d")
        self.assertRegex(done.stdout, r"\n  critical path +\d+\.\d{3} s  [a-z]+ \d+ %")
        rows = re.findall(r"^  (\d+) +(\d+\.\d{3}) s +(\d+\.\d\d) +(\d+\.\d) %$", done.stdout, re.M)
        self.assertEqual([row[0] for row in rows], ["1", "4"])
        self.assertEqual(rows[0][2:], ("1.00", "100.0"))
        self.assertAlmostEqual(float(rows[1][3]), 25 * float(rows[1][2]), delta=0.2)
        self.assertNotIn("written to", done.stdout)

    def test_nothing_is_said_of_tasks_unless_asked(self):
        self.assertNotIn("tasks", self.report(*BEAM))

    def test_the_same_answer(self):
        for name, options in (("x.mtx", ()), ("y.mtx", ("--trace", "t.json", "--simulate", "3"))):
            self.report(*BEAM, *options, "--solution", name)
        self.assertEqual(runner.read_vectors(self.path("x.mtx")), runner.read_vectors(self.path("y.mtx")))


class Pictures(runner.Case):
    def drawn(self, what, source):
        script = os.path.join(runner.SOURCE, "scripts", "draw_tasks.py")
        subprocess.run([sys.executable, script, what, source, "p"], cwd=self.folder, check=True, timeout=300)
        with open(self.path("p")) as file:
            return file.read() if what == "table" else xml.etree.ElementTree.parse(file).getroot()

    def words(self, picture):
        return [text.text for text in picture.iter(SVG + "text")]

    def test_a_trace(self):
        self.report(*BEAM, "--threads", 2, "--trace", "t.json")
        with open(self.path("t.json")) as file:
            tasks = [event for event in json.load(file) if event["ph"] == "X"]
        picture = self.drawn("trace", "t.json")
        self.assertEqual(sum(word.startswith("thread ") for word in self.words(picture)),
                         1 + max(task["tid"] for task in tasks))
        self.assertTrue(any(re.match(r"branch \d+\.\d %", word) for word in self.words(picture)))
        widths = re.findall(r"h(\d+)v", "".join(path.get("d") for path in picture.iter(SVG + "path")))
        busy = sum(task["dur"] for task in tasks) / max(task["ts"] + task["dur"] for task in tasks)
        self.assertAlmostEqual(sum(map(int, widths)) / 900, busy, delta=0.1)

    def test_a_curve(self):
        report = self.report(*BEAM, "--threads", 1, "--simulate", "1,2,8")
        self.write("r.json", json.dumps(report))
        picture = self.drawn("curve", "r.json")
        self.assertEqual(len(list(picture.iter(SVG + "circle"))), 3)
        speedup = report["task_seconds"] / report["simulated_seconds_8"]
        self.assertIn(f"{speedup:.1f}", self.words(picture))
        row = f"| 8 | {report['simulated_seconds_8']:.3f} | {speedup:.2f} | {100 * speedup / 8:.0f} % |\n"
        self.assertIn(row, self.drawn("table", "r.json"))


class Refusals(runner.Case):
    def setUp(self):
        super().setUp()
        self.a = self.write("a.mtx", made.matrix_market(3, {(i, i): 1.0 for i in range(3)}))

    def test_lists_that_are_none(self):
        for text in ("0", "1,0", "x", "1;2", "1,,2", "1,", ",1", "-1", "1.5", "1 2", "99999999999"):
            with self.subTest(text):
                self.refused(self.a, "--simulate", text, says=["--simulate", "is not a sensible value"])
        self.refused(self.a, "--simulate", says=["--simulate: a value is missing"])
        self.refused(self.a, "--trace", says=["--trace: a value is missing"])

    def test_a_trace_that_cannot_be_written(self):
        self.refused(self.a, "--trace", "no/such/t.json", says=["no/such/t.json", "cannot be written"])
        self.refused(self.a, "--trace", self.folder, says=[self.folder])
        done = self.run_program("--json", self.a, "--trace", "/dev/full")
        self.assertEqual(done.returncode, 1)
        self.assertIn("/dev/full: not written: No space left", done.stderr)
        self.assertEqual(done.stderr.count("\n"), 1)
        report = json.loads(done.stdout)
        self.assertTrue(report["trusted"])
        self.assertNotIn("trace_file", report)

    def test_no_file_is_two_things(self):
        self.refused(self.a, "--trace", "a.mtx", says=["would overwrite the input"])
        self.refused(self.a, "--trace", "x", "--solution", "./x", says=["--solution and --trace name the same file"])
        self.refused(*BEAM[:2], "--trace", "x", "--vtk", "x", says=["--trace and --vtk name the same file"])
        kept = self.write("k.txt", "1")
        self.refused(self.a, "--condense", kept, "--condensed", "x", "--trace", "x",
                     says=["--condensed and --trace name the same file"])
        self.refused(self.a, "--condense", kept, "--condensed", "x", "--trace", "k.txt", says=["would overwrite the input"])


class Memory(runner.Case):
    def test_the_peak_is_that_of_the_process(self):
        child = subprocess.Popen(["sh", "-c", 'exec "$0" "$@"', runner.PROGRAM, "--json", *BEAM], cwd=self.folder,
                                 stdout=subprocess.PIPE)
        report = json.loads(child.stdout.read())
        child.stdout.close()
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        self.assertEqual(child.returncode, 0)
        self.assertLessEqual(report["peak_memory"], 1024 * usage.ru_maxrss)
        self.assertGreaterEqual(report["peak_memory"], 0.9 * 1024 * usage.ru_maxrss)
        self.assertGreaterEqual(report["peak_memory"], 8 * report["factor_entries"])


if __name__ == "__main__":
    runner.main()
