# SPDX-License-Identifier: BSD-3-Clause
"""Elasticity in three dimensions with PETSc's example ksp/tutorials/ex71: BDDC, and one direct solve; seconds that PETSc
logs in factorisations and solutions, with tovbla and with the others, in one run.

    benchmarks/petsc_bddc.py EX71 PLUGIN [CELLS [DIRECT_CELLS]]

EX71: that example, compiled. PLUGIN: the library's path without .so. Without other work on the machine; every process has
one thread.
"""
import os
import re
import subprocess
import sys

SOLVERS = ["tovbla", "mumps", "cholmod", "petsc"]
EVENTS = ("MatCholFctrSym", "MatCholFctrNum", "MatLUFactorSym", "MatLUFactorNum", "MatSolve", "MatMatSolve")
ENVIRONMENT = {**os.environ, "OPENBLAS_NUM_THREADS": "1", "OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1",
               "OMPI_MCA_rmaps_base_oversubscribe": "1"}


def run(program, plugin, processes, *arguments):
    """Seconds of the events (the slowest process of each), of the whole solve, and iterations."""
    command = ["mpirun", "-n", str(processes), program, "-dim", "3", "-pde_type", "Elasticity", "-log_view",
               "-ksp_converged_reason", "-dll_append", plugin, *arguments]
    text = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, env=ENVIRONMENT).stdout
    seconds = {}
    for line in text.splitlines():
        words = line.split()
        if len(words) > 4 and words[0] in EVENTS + ("KSPSolve", "PCSetUp", "KSPSetUp"):
            seconds[words[0]] = seconds.get(words[0], 0.0) + float(words[3])
    steps = re.search(r"iterations (\d+)", text)
    if not steps or "converged due" not in text:
        return None
    return sum(seconds.get(event, 0.0) for event in EVENTS), seconds, int(steps.group(1))


def table(title, program, plugin, processes, arguments):
    print(f"{title}\n{'':10}{'events':>9}{'symbolic':>10}{'numeric':>9}{'solve':>8}{'KSPSolve':>10}  iterations", flush=True)
    for solver in SOLVERS:
        done = run(program, plugin, processes, *[word.replace("SOLVER", solver) for word in arguments])
        if not done:
            print(f"{solver:10}    did not converge", flush=True)
            continue
        total, of, steps = done
        print(f"{solver:10}{total:9.2f}{of.get('MatCholFctrSym', 0.0):10.2f}{of.get('MatCholFctrNum', 0.0):9.2f}"
              f"{of.get('MatSolve', 0.0):8.2f}{of.get('KSPSolve', 0.0):10.2f}  {steps}", flush=True)


def main():
    program, plugin, *cells = sys.argv[1:]
    edge = int(cells[0]) if cells else 20
    direct = int(cells[1]) if len(cells) > 1 else 16
    parts = [f"-pc_bddc_{part}_{option}" for part in ("dirichlet", "neumann")
             for option in ("pc_type cholesky", "pc_factor_mat_solver_type SOLVER")]
    table(f"BDDC, {edge}^3 cells, 2 processes", program, plugin, 2,
          ["-cells", f"{edge},{edge},{edge}", *" ".join(parts).split()])
    table(f"direct, {direct}^3 cells, 1 process", program, plugin, 1,
          ["-cells", f"{direct},{direct},{direct}", "-mat_type", "aij", "-dm_mat_type", "aij", "-ksp_type", "preonly", "-pc_type",
           "cholesky", "-pc_factor_mat_solver_type", "SOLVER"])


if __name__ == "__main__":
    main()
