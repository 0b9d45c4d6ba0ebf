# SPDX-License-Identifier: BSD-3-Clause
"""Whole solutions: our solver beside CHOLMOD, MUMPS and PARDISO, each by its own interface and in its own best order.

usage: table.py FOLDER [--threads 1,2] [--cubes 16,20,24,28,32] [--repetitions N] [--clock wall|cpu]
                [--json FILE] [--earlier FILE] [--markdown FILE] [FILE.mtx...]

FOLDER has the programs. Every contender is a process of its own; they take turns, and the fastest run of each counts.
Ours runs over OpenBLAS and over MKL, as CHOLMOD and MUMPS run over OpenBLAS and PARDISO over MKL: the shorter time of
the two is held against the best of the peers. MKL is fetched by scripts/fetch_mkl.sh; without it its lines are missing.
Factorisations have the pattern of the one before and other values. --cubes are those of elasticity, of M^3 nodes, ""
for none. --clock cpu measures the processor's time, for one thread on a busy machine. --earlier takes what --json wrote
of another run on the same machine: of both times of a contender the shorter one counts, ours as theirs.
"""
import argparse
import datetime
import json
import os
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
MKL = os.environ.get("BLA_MKL", os.path.join(ROOT, "build", "mkl"))
WITH_BLAS = os.path.join(ROOT, "scripts", "with_blas.sh")

# name: program, BLAS, its environment. One OpenMP run time a process: METIS brings libgomp into ours, PARDISO is at its
# best over MKL's own; CHOLMOD asks for four threads of its own, whatever OMP_NUM_THREADS says.
CONTENDERS = {
    "ours, OpenBLAS": ("ours", "openblas-pthread", {}),
    "ours, MKL": ("ours", "mkl", {"MKL_THREADING_LAYER": "GNU"}),
    "CHOLMOD": ("cholmod", "openblas-pthread", {"OMP_THREAD_LIMIT": "{threads}"}),
    "MUMPS": ("mumps", "openblas-pthread", {}),
    "PARDISO": ("pardiso", "mkl", {"MKL_THREADING_LAYER": "INTEL"}),
}
THREADS = ("OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS", "MKL_NUM_THREADS")
PHASES = {"factorise": "factorise {}", "solve 1": "solve 1 {}", "solve 8": "solve 8 {}"}
TURN = 0.1  # seconds of one contender's turn, at least one run
LONG = 60  # seconds of all turns after which two rounds have to do
WRONG = 1e-10  # a backward error above this is no solution
QUIET = 0.25  # seconds between turns of several threads: idle ones go on spinning for up to 0.2


def is_ours(name):
    return name.startswith("ours")


class Contender:
    """A running program; `facts` is what it said when it was ready."""

    def __init__(self, folder, name, threads, problem, clock):
        program, blas, environment = CONTENDERS[name]
        environment = {key: value.format(threads=threads) for key, value in environment.items()}
        self.process = subprocess.Popen(
            [WITH_BLAS, blas, os.path.join(folder, "bla_measure_" + program), str(threads), problem, clock],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
            env=os.environ | dict.fromkeys(THREADS, str(threads)) | {"BLA_MKL": MKL} | environment)
        self.name, self.best = name, {}
        self.facts = self.answer()

    def answer(self):
        """What the program says next; None where its library is not on this machine, or a peer's ends the process."""
        line = self.process.stdout.readline()
        if line.startswith("{"):
            return json.loads(line)
        if self.process.wait() != 77:
            if is_ours(self.name):
                sys.exit(f"{self.name} failed")
            print(f"{self.name} failed")
        return None

    def begin(self, command):
        print(command, file=self.process.stdin, flush=True)

    def ask(self, command):
        self.begin(command)
        return self.answer()

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def take_turns(contenders, repetitions, threads):
    begin = time.monotonic()
    for turn in range(repetitions):
        if turn >= 2 and time.monotonic() - begin > LONG:
            break
        for phase, command in PHASES.items():
            for contender in contenders:
                # 512-bit instructions lower the clock for what runs right after them.
                time.sleep(QUIET if threads > 1 else 0.002)
                seconds = contender.ask(command.format(TURN))["seconds"]
                contender.best[phase] = min(seconds, contender.best.get(phase, seconds))


def measure(folder, matrix, threads, repetitions, clock):
    """{contender: what it said and its times}"""
    with tempfile.TemporaryDirectory() as temporary:
        problem = os.path.join(temporary, "problem")
        subprocess.run([os.path.join(folder, "bla_make_problem"), matrix, problem], check=True)
        contenders = []
        for name in CONTENDERS:
            contender = Contender(folder, name, threads, problem, clock)
            if contender.facts:
                if "+" in contender.facts["openmp"]:
                    sys.exit(f"{name} has several OpenMP run times: {contender.facts['openmp']}")
                contenders.append(contender)
    take_turns(contenders, repetitions, threads)
    results = {}
    for contender in contenders:
        results[contender.name] = result = contender.facts | contender.best | contender.ask("verify")
        if not float(result["error"]) <= WRONG:
            sys.exit(f"{contender.name} does not solve {matrix}: backward error {result['error']}")
        contender.end()
    return results


def shorten(results, earlier):
    """Of the times of two runs the shorter ones."""
    for name, result in results.items():
        if name in earlier:
            for phase in PHASES:
                result[phase] = min(result[phase], earlier[name][phase])


def first_solution(result):
    return result["factorise"] + result["solve 1"]


MEASURES = {phase: (lambda result, phase=phase: result[phase]) for phase in PHASES} | {"sum": first_solution}


def compare(results):
    """(our better result, {measure: (time of the best peer over our best, that peer)})"""
    ours, peers = ([name for name in results if is_ours(name) == own] for own in (True, False))
    ratios = {}
    for measure, time_of in MEASURES.items():
        peer = min(peers, key=lambda name: time_of(results[name]))
        ratios[measure] = (time_of(results[peer]) / min(time_of(results[name]) for name in ours), peer)
    return min(ours, key=lambda name: first_solution(results[name])), ratios


def show(title, results):
    print(f"\n{title}")
    print(f"{'':16} {'order':6} {'analysis':>9} {'factorise':>10} {'solve 1':>8} {'solve 8':>8} ms {'fill 1e6':>9} "
          f"{'Gflop':>8} {'GF/s':>6} {'error':>8}")
    for name in CONTENDERS:
        if name not in results:
            print(f"{name:16} -")
            continue
        r = results[name]
        print(f"{name:16} {r['order']:6} {1e3 * r['analysis']:9.1f} {1e3 * r['factorise']:10.3f} {1e3 * r['solve 1']:8.3f} "
              f"{1e3 * r['solve 8']:8.3f}    {1e-6 * r['entries']:9.3f} {1e-9 * r['flops']:8.3f} "
              f"{1e-9 * r['flops'] / r['factorise']:6.1f} {r['error']:>8}")
    ours, ratios = compare(results)
    print(f"best peer / {ours}: " + "   ".join(f"{measure} {ratio:.2f} ({peer})" for measure, (ratio, peer) in ratios.items()),
          flush=True)


def write_markdown(path, machine, lines):
    head = ["matrix", "n", "threads", *CONTENDERS, "our Gflop", "Gflop/s", *MEASURES, "worst error"]
    with open(path, "w", encoding="utf-8") as out:
        out.write(f"{machine}. Written by `./bench.sh --end-to-end`. Milliseconds: factorise / solve 1 / solve 8 right-hand "
                  "sides. The ratios: the best peer's time over ours; *sum* is factorise and solve 1.\n\n")
        out.write("| " + " | ".join(head) + " |\n|---|" + "--:|" * (len(head) - 1) + "\n")
        for matrix, threads, results in lines:
            ours, ratios = compare(results)
            r = results[ours]
            times = [" / ".join(f"{1e3 * results[name][phase]:.3g}" for phase in PHASES) if name in results else "-"
                     for name in CONTENDERS]
            row = [matrix, str(r["n"]), str(threads), *times, f"{1e-9 * r['flops']:.3g}",
                   f"{1e-9 * r['flops'] / r['factorise']:.1f}",
                   *(f"{'**' if ratio >= 1 else ''}{ratio:.2f}{'**' if ratio >= 1 else ''}" for ratio, _ in ratios.values()),
                   max((result["error"] for result in results.values()), key=float)]
            out.write("| " + " | ".join(row) + " |\n")


def known_core(folder):
    """The core for an OpenBLAS that does not know this processor and falls back to one without AVX; else None."""
    flags = next(line for line in open("/proc/cpuinfo", encoding="utf-8") if line.startswith("flags")).split()
    said = subprocess.run([WITH_BLAS, "openblas-pthread", os.path.join(folder, "bla_measure_cholmod")],
                          env=os.environ | {"OPENBLAS_VERBOSE": "2"}, capture_output=True, text=True).stderr
    core = said.partition("Core: ")[2].split("\n")[0].strip()
    if core in ("Prescott", "Core2", "Nehalem") and "avx2" in flags:
        better = "SkylakeX" if "avx512vl" in flags else "Haswell"
        print(f"OpenBLAS takes this processor for a {core}: OPENBLAS_CORETYPE={better}")
        return better
    return None


def machine_name():
    said = subprocess.run(["lscpu"], capture_output=True, text=True, env=os.environ | {"LC_ALL": "C"}).stdout
    facts = {key.strip(): value.strip() for key, _, value in (line.partition(":") for line in said.splitlines())}
    return (f"{facts.get('Model name', '?')} (family {facts.get('CPU family', '?')}, model {facts.get('Model', '?')}), "
            f"{os.cpu_count()} processors, {datetime.date.today()}")


def choose_core(folder):
    core = None if "OPENBLAS_CORETYPE" in os.environ else known_core(folder)
    if core:
        os.environ["OPENBLAS_CORETYPE"] = core


def matrices(cubes, files):
    """(name, what bla_make_problem takes) of each"""
    return [(f"elasticity {m}^3", m) for m in cubes.split(",") if m] + [
        (os.path.splitext(os.path.basename(file))[0], file) for file in files]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("folder")
    parser.add_argument("files", nargs="*", help="Matrix Market files of symmetric positive definite matrices")
    parser.add_argument("--end-to-end", action="store_true", help=argparse.SUPPRESS)
    parser.add_argument("--threads", default="1")
    parser.add_argument("--cubes", help="default: 16,20,24,28,32 where no files are given, none where there are")
    parser.add_argument("--repetitions", type=int, default=5)
    parser.add_argument("--clock", choices=("wall", "cpu"), default="wall")
    parser.add_argument("--json", help="write what was measured to this file")
    parser.add_argument("--earlier", help="such a file of another run on this machine")
    parser.add_argument("--markdown", help="write the table to this file")
    arguments = parser.parse_intermixed_args()
    cubes = arguments.cubes
    if cubes is None:
        cubes = "" if arguments.files else "16,20,24,28,32"

    if arguments.clock == "cpu" and arguments.threads != "1":
        parser.error("--clock cpu adds the times of all threads: it is for one")

    machine = machine_name() + ("" if arguments.clock == "wall" else ", processor time")
    print(machine)
    choose_core(arguments.folder)
    earlier = {}
    if arguments.earlier:
        with open(arguments.earlier, encoding="utf-8") as file:
            earlier = {(line["matrix"], line["threads"]): line["results"] for line in json.load(file)}
    lines = []
    for name, matrix in matrices(cubes, arguments.files):
        for threads in map(int, arguments.threads.split(",")):
            results = measure(arguments.folder, matrix, threads, arguments.repetitions, arguments.clock)
            shorten(results, earlier.get((name, threads), {}))
            lines.append((name, threads, results))
            n = next(iter(results.values()))["n"]
            show(f"{name}: {n} unknowns, {threads} thread{'s' if threads > 1 else ''}", results)
            if arguments.markdown:
                write_markdown(arguments.markdown, machine, lines)
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as out:
            json.dump([{"matrix": name, "threads": threads, "results": results} for name, threads, results in lines],
                      out, indent=1)


if __name__ == "__main__":
    main()
