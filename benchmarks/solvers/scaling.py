# SPDX-License-Identifier: BSD-3-Clause
"""What threads gain our solver, beside what the machine has to give at that time.

usage: scaling.py FOLDER [--threads N] [--cubes 16,20,24,28,32] [--rounds N] [--blas openblas|mkl] [--markdown FILE]
                  [FILE.mtx...]

FOLDER has the programs. In every round one process works with one thread, then one with N threads, then N processes
with one thread each at the same time, the slowest of which counts. Those have nothing to share or to wait for, only
caches, memory and the clock: what N processors of this machine can do is N times the first time over the last. On a
virtual machine, whose processors are others' as well, that is seldom N. Times are the least, ratios the median of the
rounds.
"""
import argparse
import os
import statistics
import subprocess
import tempfile
import time

import table

BLAS = {"openblas": "ours, OpenBLAS", "mkl": "ours, MKL"}


def measure(folder, matrix, name, threads, rounds):
    """{phase: [(seconds of one thread, of several, of several processes)] of all rounds}"""
    with tempfile.TemporaryDirectory() as temporary:
        problem = os.path.join(temporary, "problem")
        subprocess.run([os.path.join(folder, "bla_make_problem"), matrix, problem], check=True)
        one, several, *others = [table.Contender(folder, name, count, problem, "wall")
                                 for count in [1, threads] + [1] * (threads - 1)]
    processes = [one, *others]

    def together(contenders, command):
        time.sleep(table.QUIET)
        for contender in contenders:
            contender.begin(command)
        return max(contender.answer()["seconds"] for contender in contenders)

    times = {phase: [] for phase in table.PHASES}
    for _ in range(rounds):
        for phase, command in table.PHASES.items():
            times[phase].append([together(who, command.format(table.TURN)) for who in ([one], [several], processes)])
    for contender in (*processes, several):
        contender.end()
    return times


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("folder")
    parser.add_argument("files", nargs="*", help="Matrix Market files of symmetric positive definite matrices")
    parser.add_argument("--threads", type=int, default=2)
    parser.add_argument("--cubes", default="16,20,24,28,32")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--blas", choices=BLAS, default="openblas")
    parser.add_argument("--markdown", help="write the table to this file")
    arguments = parser.parse_intermixed_args()
    table.choose_core(arguments.folder)

    n = arguments.threads
    head = ["matrix", "phase", "1 thread, ms", f"{n} threads, ms", "times as fast", f"{n} processes", "share of it"]
    lines = ["| " + " | ".join(head) + " |", "|---|---|" + "--:|" * (len(head) - 2)]
    print(f"{table.machine_name()}, {BLAS[arguments.blas]}")
    print(*lines, sep="\n", flush=True)
    for name, matrix in table.matrices(arguments.cubes, arguments.files):
        times = measure(arguments.folder, matrix, BLAS[arguments.blas], n, arguments.rounds)
        for phase, rounds in times.items():
            one, several, _ = (1e3 * min(column) for column in zip(*rounds))
            gained = statistics.median(a / b for a, b, _ in rounds)
            attainable = statistics.median(n * a / c for a, _, c in rounds)
            share = statistics.median(c / (n * b) for _, b, c in rounds)
            lines.append(f"| {name} | {phase} | {one:.3g} | {several:.3g} | {gained:.2f} | {attainable:.2f} | {share:.2f} |")
            print(lines[-1], flush=True)
    if arguments.markdown:
        with open(arguments.markdown, "w", encoding="utf-8") as out:
            print(*lines, sep="\n", file=out)


if __name__ == "__main__":
    main()
