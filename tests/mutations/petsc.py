# SPDX-License-Identifier: BSD-3-Clause
"""Small wrong changes to the solver type of PETSc, in the form of mutations.py. They need PETSc, and its examples."""
PETSC = "petsc/"
REGISTER, OPTIONS, FACTORISE, VERDICT = (PETSC + name + ".c" for name in ("register", "options", "factorise", "verdict"))
CONDITION, SOLVE, SCHUR, INERTIA, VIEW = (PETSC + name + ".c" for name in ("condition", "solve", "schur", "inertia", "view"))

TESTS = "tests/petsc/test_"
OPERATIONS = (TESTS + "faults.py Faults.test_operations",)
INDEFINITE = (TESTS + "faults.py Faults.test_indefinite",)
SINGULAR = (TESTS + "faults.py Faults.test_singular_or_not_a_number",)
FLOATING = (TESTS + "faults.py Faults.test_floating",)
SENTENCES = (TESTS + "faults.py Faults.test_sentence_of_an_error",)
SHOWN = (TESTS + "faults.py Faults.test_view",)
FLAVOURS = (TESTS + "flavours.py",)

MUTATIONS = [
    # the solver type
    ("PETSc's own solver types vanish", REGISTER, "    PetscCall(MatInitializePackage()); /*", "    /*",
     (TESTS + "faults.py Faults.test_other_solvers",)),
    ("a factor does not name its solver", REGISTER, "*type = MATSOLVERTOVBLA;", "*type = MATSOLVERPETSC;", SHOWN),
    ("no order is handed over", REGISTER, "made->canuseordering = PETSC_TRUE;", "made->canuseordering = PETSC_FALSE;", SHOWN),
    ("the blocked symmetric format is not served", REGISTER,
     "{MATSEQBAIJ, MAT_FACTOR_CHOLESKY},\n                  {MATSEQSBAIJ, MAT_FACTOR_CHOLESKY}",
     "{MATSEQBAIJ, MAT_FACTOR_CHOLESKY},\n                  {MATSEQBAIJ, MAT_FACTOR_CHOLESKY}", OPERATIONS),
    ("PETSc of other scalars is taken", REGISTER, "found && scalar == PETSC_SCALAR", "found", FLAVOURS),
    ("PETSc of longer integers is taken", REGISTER, "bytes == sizeof(PetscInt)", "bytes >= sizeof(PetscInt)", FLAVOURS),
    ("complex PETSc is compiled against", PETSC + "petsc_tovbla.h", "defined(PETSC_USE_COMPLEX) ||", "0 ||", FLAVOURS),
    ("complex PETSc is configured for", "cmake/petsc.cmake", "petsc_scalars MATCHES COMPLEX OR ", "", FLAVOURS),
    ("a factor keeps its residual", REGISTER, "        PetscCall(VecDestroy(&data->residual));\n", "", OPERATIONS),
    # options
    ("a process takes all processors", OPTIONS, '"threads", 1.0)', '"threads", 0.0)', SHOWN),
    ("options have no prefix", OPTIONS, "((PetscObject)F)->prefix", "NULL", (TESTS + "faults.py Faults.test_memory_limit",)),
    # the two phases
    ("LU takes both triangles of a definite matrix", FACTORISE, "    if (known && definite)", "    if (0)", OPERATIONS),
    ("LU keeps to one triangle of a matrix that is symmetric no more", FACTORISE, "if (kind == BLA_SOLVER_GENERAL &&",
     "if (0 &&", OPERATIONS),
    ("definite is enough where symmetry is forgotten", FACTORISE, "    if (!known || !symmetric)", "    if (0)", OPERATIONS),
    ("an old error stays with new values", FACTORISE,
     "    F->factorerrortype = MAT_FACTOR_NOERROR;\n    PetscCall(Points", "    PetscCall(Points", OPERATIONS),
    ("the matrix entry by entry is lost", FACTORISE, "    PetscCall(MatDestroy(&data->points));\n", "", OPERATIONS),
    # what cannot be factorised
    ("not a number is an error for ever", VERDICT, "case BLA_SOLVER_BAD_MATRIX: /* not a number; PC forgets this error when new values come, and no other */\n        PetscCall(Declare(F, A, MAT_FACTOR_NUMERIC_ZEROPIVOT,",
     "case BLA_SOLVER_BAD_MATRIX:\n        PetscCall(Declare(F, A, MAT_FACTOR_OTHER,", SINGULAR),
    ("zero pivots are no reason", VERDICT, "} else if (count > 0) {", "} else if (count < 0) {", SENTENCES),
    ("rows that cannot be matched are no reason", VERDICT, "if (rank < n) {", "if (rank < 0.0) {", SENTENCES),
    ("motions that nothing holds are no reason", VERDICT, '"unheld_motions") > 0.0', '"unheld_motions") < 0.0', FLOATING),
    ("an eigenvalue of rounding is no reason", CONDITION, "PETSC_MACHINE_EPSILON", "0.0", OPERATIONS),
    ("a shift is no wish", VERDICT, "    if (shifted)\n        PetscFunctionReturn(0);\n", "", (TESTS + "faults.py Faults.test_shift_type",)),
    ("a floating structure cannot be condensed", VERDICT, "if (place >= 0)", "if (place >= 1)", OPERATIONS),
    # solutions
    ("what has no solution has a finite one", SOLVE, "(PetscScalar)INFINITY;", "(PetscScalar)0.0;", OPERATIONS),
    ("columns of X are as far apart as those of B", SOLVE, "x[i + (size_t)ldx * j] =", "x[i + (size_t)ldb * j] =", OPERATIONS),
    ("indefinite matrices are trusted", SOLVE, "if (definite || !asked ||", "if (definite || asked ||", INDEFINITE),
    ("what is not solved is finite", SOLVE, "        PetscCall(VecSetInf(x));\n", "", INDEFINITE),
    ("the residual is that of A where it is of its transpose", SOLVE, "    if (transposed)\n        PetscCall(MatMultTranspose(",
     "    if (0)\n        PetscCall(MatMultTranspose(", OPERATIONS),
    # Schur complements and inertia
    ("the last factor of a Schur complement stays", SCHUR, "    PetscCall(MatSetUnfactored(F->schur));", "    ", OPERATIONS),
    ("the kept unknowns are forgotten by their owner", SCHUR, "    PetscCall(PetscObjectReference((PetscObject)kept));\n", "", OPERATIONS),
    ("shifted pivots are zeros", INERTIA, "if (counted) {", "if (0) {", INDEFINITE),
    ("shifted pivots count whatever they hide", INERTIA, "*contracts = (PetscBool)(after <= before / 2.0);",
     "*contracts = PETSC_TRUE;", INDEFINITE),
    ("above and below are exchanged", INERTIA, '"negative_pivots"),\n             above = (PetscInt)MatTOVBlaQuantity(F, "positive_pivots")',
     '"positive_pivots"),\n             above = (PetscInt)MatTOVBlaQuantity(F, "negative_pivots")', OPERATIONS),
    # what is shown
    ("a Cholesky factor is called another", VIEW, "->kind == BLA_SOLVER_GENERAL", "->kind != BLA_SOLVER_GENERAL", SHOWN),
    ("the memory is not told", VIEW, '    info->memory = MatTOVBlaQuantity(F, "memory");\n', "", OPERATIONS),
]
