#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Weak scaling of BDDC with tovbla on the subdomains: elasticity in three dimensions, PETSc's example ksp/tutorials/ex71,
as many elements for each process whatever their number; what does not depend on how many processors there are.

    benchmarks/petsc_weak.py PLUGIN [EDGE [PROCESSES...]]

PLUGIN: the library's path without .so. EDGE (10): elements of a subdomain along each axis. One process at a time works in
the solver (one_at_a_time.c), and its processor time is taken: that of the process that needs most is shown.
"""
import glob
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
CUTTINGS = {1: (1, 1, 1), 2: (2, 1, 1), 4: (2, 2, 1), 8: (2, 2, 2), 27: (3, 3, 3), 64: (4, 4, 4)}
CHOLESKY = ["-pc_type", "cholesky", "-pc_factor_mat_solver_type", "tovbla"]


def built(folder):
    """The example, and the library that lets one process at a time work."""
    source = sorted(glob.glob("/usr/share/petsc/*/share/petsc/examples/src/ksp/ksp/tutorials/ex71.c"))[-1]
    flags = subprocess.run(["pkg-config", "--cflags", "--libs", "petsc"], check=True, capture_output=True, text=True).stdout
    program, library = os.path.join(folder, "ex71"), os.path.join(folder, "one_at_a_time.so")
    subprocess.run(["mpicc", "-w", "-O1", source, "-o", program, *flags.split(), "-lm"], check=True)
    subprocess.run(["cc", "-D_GNU_SOURCE", "-O2", "-fPIC", "-shared", "-I", os.path.join(HERE, "..", "solver"),
                    os.path.join(HERE, "one_at_a_time.c"), "-o", library, "-ldl"], check=True)
    return program, library


def run(program, preloaded, plugin, processes, edge):
    """Iterations, unknowns (all, on interfaces, coarse), and per process: seconds of three phases, number of solutions."""
    cells = ",".join(str(edge * parts) for parts in CUTTINGS[processes])
    subdomains = CHOLESKY if processes == 1 else [
        f"-pc_bddc_{part}_{word[1:]}" if word.startswith("-") else word for part in ("dirichlet", "neumann") for word in CHOLESKY]
    alone = ["-mat_type", "aij", "-dm_mat_type", "aij"] if processes == 1 else []
    with tempfile.TemporaryDirectory() as folder:
        settings = {"OPENBLAS_NUM_THREADS": "1", "OMPI_ALLOW_RUN_AS_ROOT": "1", "OMPI_ALLOW_RUN_AS_ROOT_CONFIRM": "1",
                    "OMPI_MCA_rmaps_base_oversubscribe": "1", "OMPI_MCA_mpi_yield_when_idle": "1",
                    "OMPI_MCA_hwloc_base_binding_policy": "none", "BLA_ONE_AT_A_TIME": folder}
        done = subprocess.run(["mpirun", "-n", str(processes), "-x", f"LD_PRELOAD={preloaded}", program, "-dim", "3", "-pde_type",
                               "Elasticity", "-cells", cells, "-ksp_view", "-ksp_converged_reason", "-dll_append", plugin,
                               *alone, *subdomains],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, env={**os.environ, **settings})
        times = []
        for name in glob.glob(os.path.join(folder, "*.times")):
            with open(name) as file:
                times.append([float(word) for word in file.read().split()])
    steps = re.search(r"converged due to \S+ iterations (\d+)", done.stdout)
    if not steps or len(times) != processes:
        sys.exit(f"{processes} processes: no answer, or {len(times)} processes that used tovbla\n{done.stdout[-2000:]}{done.stderr}")
    sizes = re.search(r"all (\d+) interface (\d+) coarse (\d+)", done.stdout)
    unknowns = [int(size) for size in sizes.groups()] if sizes else [3 * (edge + 1) ** 3, 0, 0]
    return int(steps.group(1)), unknowns, times


def main():
    plugin = os.path.abspath(sys.argv[1])
    edge = int(sys.argv[2]) if len(sys.argv) > 2 else 10
    numbers = [int(word) for word in sys.argv[3:]] or list(CUTTINGS)
    print("| processes | unknowns | on interfaces | coarse | iterations | analyse | factorise | one solution |\n" + 8 * "|---" + "|")
    with tempfile.TemporaryDirectory() as folder:
        program, library = built(folder)
        solver = sorted(glob.glob(os.path.join(os.path.dirname(plugin), "libZEFTOVBlaSolver.so")))[0]
        for processes in numbers:
            steps, unknowns, times = run(program, f"{library}:{solver}", plugin, processes, edge)
            most = [max(time[phase] for time in times) for phase in (0, 1)]
            solution = max(time[2] / time[3] for time in times)
            print(f"| {processes} | {unknowns[0]} | {unknowns[1]} | {unknowns[2]} | {steps} | "
                  f"{1e3 * most[0]:.0f} ms | {1e3 * most[1]:.0f} ms | {1e3 * solution:.1f} ms |", flush=True)


if __name__ == "__main__":
    main()
