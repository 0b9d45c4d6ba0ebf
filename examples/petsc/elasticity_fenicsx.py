#!/usr/bin/env python3
# SPDX-License-Identifier: BSD-3-Clause
"""Linear elasticity with FEniCSx: a steel cantilever under its end load, solved by tovbla through PETSc.

    export PETSC_OPTIONS="-dll_append /usr/lib/x86_64-linux-gnu/libpetsc_tovbla"
    python3 elasticity_fenicsx.py               one process, direct
    mpirun -n 4 python3 elasticity_fenicsx.py   conjugate gradients, tovbla on the subdomains of additive Schwarz

Prints the deflection of the end beside MUMPS's, which is direct on any number of processes. With --picture FILE.png one
process draws the deformed shape.
"""
import sys

import numpy as np
import ufl
from dolfinx import fem, mesh
from dolfinx.fem.petsc import LinearProblem
from mpi4py import MPI
from petsc4py import PETSc

YOUNG, POISSON, TRACTION = 210e9, 0.3, 1e6   # Pa, -, Pa
world = MPI.COMM_WORLD
beam = mesh.create_box(world, [[0, 0, 0], [1, 0.1, 0.1]], [40, 4, 4], mesh.CellType.hexahedron)
space = fem.VectorFunctionSpace(beam, ("Lagrange", 1))
clamped = fem.locate_dofs_geometrical(space, lambda x: np.isclose(x[0], 0))
fixed = fem.dirichletbc(np.zeros(3), clamped, space)
end = mesh.locate_entities_boundary(beam, 2, lambda x: np.isclose(x[0], 1))
marks = mesh.meshtags(beam, 2, np.sort(end), np.ones(len(end), dtype=np.int32))
surface = ufl.Measure("ds", domain=beam, subdomain_data=marks)(1)

u, v = ufl.TrialFunction(space), ufl.TestFunction(space)


def stress(w):
    lame, shear = YOUNG * POISSON / ((1 + POISSON) * (1 - 2 * POISSON)), YOUNG / (2 * (1 + POISSON))
    return lame * ufl.div(w) * ufl.Identity(3) + 2 * shear * ufl.sym(ufl.grad(w))


stiffness = ufl.inner(stress(u), ufl.sym(ufl.grad(v))) * ufl.dx
load = ufl.dot(fem.Constant(beam, np.array([0.0, 0.0, -TRACTION])), v) * surface

DIRECT = {"ksp_type": "preonly", "pc_type": "cholesky"}
ours = {**DIRECT, "pc_factor_mat_solver_type": "tovbla"} if world.size == 1 else {
    "ksp_type": "cg", "ksp_rtol": 1e-12, "pc_type": "asm", "pc_asm_type": "basic", "pc_asm_overlap": 2,
    "sub_pc_type": "cholesky", "sub_pc_factor_mat_solver_type": "tovbla"}
answers = {}
for name, options in {"tovbla": ours, "mumps": {**DIRECT, "pc_factor_mat_solver_type": "mumps"}}.items():
    problem = LinearProblem(stiffness, load, bcs=[fixed], petsc_options=options)
    solution = problem.solve()
    deflection = world.allreduce(fem.assemble_scalar(fem.form(-solution[2] * surface))) / 0.01
    answers[name] = (solution, deflection)
    if world.rank == 0:
        print(f"{name}: deflection {deflection * 1e3:.9f} mm, {problem.solver.getIterationNumber()} iterations, "
              f"reason {problem.solver.getConvergedReason()}")

difference = answers["tovbla"][0].vector.copy()
difference.axpy(-1.0, answers["mumps"][0].vector)
relative = difference.norm(PETSc.NormType.NORM_2) / answers["mumps"][0].vector.norm(PETSc.NormType.NORM_2)
if world.rank == 0:
    print(f"relative difference {relative:.1e}")

if "--picture" in sys.argv and world.size == 1:
    import matplotlib
    matplotlib.use("Agg")
    import matplotlib.pyplot as plot
    x, w = space.tabulate_dof_coordinates(), answers["tovbla"][0].x.array.reshape(-1, 3)
    side = np.flatnonzero(np.isclose(x[:, 1], 0))                              # the face y = 0, 41 x 5 nodes
    side = side[np.lexsort((x[side, 2].round(9), x[side, 0].round(9)))].reshape(41, 5)
    factor = 50
    at = x + factor * w
    axes = plot.figure(figsize=(9, 2.6), layout="constrained").add_subplot()
    for ends in (side[0], side[-1], side[:, 0], side[:, -1]):
        axes.plot(x[ends, 0], x[ends, 2], color="grey", linestyle="--", linewidth=1)
    shown = axes.pcolormesh(at[side, 0], at[side, 2], -w[side, 2] * 1e3, shading="gouraud")
    for lines in (side, side.T):
        axes.plot(at[lines, 0], at[lines, 2], color="white", linewidth=0.4)
    axes.set(aspect="equal", xlim=(-0.03, 1.05), ylim=(-0.12, 0.13), xlabel="x, m", ylabel="z, m",
             title=f"Steel cantilever under 10 kN: at rest (dashed), and its motion {factor} times as large")
    plot.colorbar(shown, label="deflection, mm", shrink=0.8)
    plot.savefig(sys.argv[sys.argv.index("--picture") + 1], dpi=90)
sys.exit(relative > 1e-8)
