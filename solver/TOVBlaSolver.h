/* SPDX-License-Identifier: BSD-3-Clause */
/**
 * @file TOVBlaSolver.h
 * A sparse direct solver: everything that libZEFTOVBlaSolver exports.
 *
 * Solves A·X = B for real matrices A, sparse, square and symmetric (positive definite or not) or general, by
 * a multifrontal factorisation A = L·D·Lᵀ or L·D·U without exchanges of rows on the way: the matrix is
 * brought to entries of order one first, a general one with large entries on its diagonal; a tiny pivot is
 * replaced or shifted; iterative refinement takes out what that did, and an error bound tells whether it did.
 *
 *     bla_solver* solver;
 *     double bound;
 *     bla_solver_create(&solver);
 *     bla_solver_analyse(solver, BLA_SOLVER_SYMMETRIC_LOWER, n, start, column);
 *     bla_solver_factorise(solver, value);
 *     memcpy(x, b, n * sizeof(double));
 *     bla_solver_solve(solver, 0, 1, x, n);
 *     bla_solver_refine(solver, value, 1, b, n, x, n);
 *     bla_solver_get(solver, "error_estimate", &bound);
 *     bla_solver_destroy(solver);
 *
 * **Handles** are independent of each other. One handle belongs to one thread at a time.
 *
 * **Arrays** belong to the caller; nothing is kept of them after a call. Blocks of vectors are column-major
 * with a leading dimension in elements: element i of vector j, both counted from 0, at b[i + j*ldb]. Unknowns
 * and rows are counted from 0. Elements between n and the leading dimension are neither read nor written.
 *
 * **Failures.** Every function but bla_solver_destroy and bla_solver_message returns a status, 0 for success;
 * bla_solver_message then has a sentence on it. A failure leaves the handle in the state before the call:
 * what was analysed and factorised may still be used; of a block of vectors some may have been worked on
 * already. Nothing is printed (but by METIS, on standard error, where it gets no memory), no exception leaves
 * a call. A matrix that cannot be solved is not a failure but an answer: see `error_estimate` and
 * `replaced_pivots`.
 *
 * **Bits.** Pivots, factor and solutions are the same, bit for bit, with any number of threads and at every
 * run, over the same BLAS on the same processor. The order of elimination depends on the pattern (and, as
 * bla_solver_factorise says, on some of the numbers) alone, not on what other handles or threads do; the
 * stream of the C library's rand() goes on after a call as if it had not been made. A thread that draws from
 * it, or seeds it, during an analysis may get numbers of the analysis's private stream.
 *
 * **Threads.** Work is shared out by oneTBB, whose workers join the calling thread; that may be one of them.
 * The BLAS beneath has one thread meanwhile: its number, which is the process's, is set during
 * bla_solver_factorise, bla_solver_solve and bla_solver_refine, and put back when the last of them ends. A
 * rounding mode, or denormals flushed to zero, that the calling thread has set hold for its workers too.
 */
#ifndef TOVBLASOLVER_H
#define TOVBLASOLVER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/**
 * @defgroup sparse_solver Sparse direct solver
 *
 * Handles, options and answers are described in TOVBlaSolver.h.
 * @{
 */

/** A solver: options, analysis and factor. */
typedef struct bla_solver bla_solver;

/** What a function returns. */
enum {
    BLA_SOLVER_OK = 0,
    BLA_SOLVER_BAD_ARGUMENT, /**< an argument that makes no sense; an unknown name; a missing array */
    BLA_SOLVER_BAD_MATRIX, /**< row pointers that descend, a column outside the matrix, a value not finite */
    BLA_SOLVER_OUT_OF_MEMORY, /**< there is none, or `memory_limit` allows no more */
    BLA_SOLVER_TOO_LARGE,     /**< more entries than the ordering can count */
    BLA_SOLVER_CANCELLED,     /**< the monitor asked for it */
    BLA_SOLVER_NOT_READY,     /**< what the call needs has not been done: no analysis, no factor, no bound */
    BLA_SOLVER_INTERNAL       /**< a fault of the solver's own */
};

/** How the rows given to bla_solver_analyse are meant. */
enum {
    BLA_SOLVER_SYMMETRIC_LOWER, /**< symmetric; entries with row >= column are read, others ignored */
    BLA_SOLVER_SYMMETRIC_UPPER, /**< symmetric; entries with row <= column are read, others ignored */
    BLA_SOLVER_GENERAL          /**< every entry is read */
};

/**
 * Makes a solver with default options.
 * @param[out] solver the handle; NULL where there is no memory
 */
int bla_solver_create(bla_solver** solver);

/** Gives everything back. NULL is fine. */
void bla_solver_destroy(bla_solver* solver);

/**
 * One sentence on the last call that failed, "" if the last call succeeded. Valid until the next call with
 * this handle. With NULL: a sentence on the missing handle.
 */
const char* bla_solver_message(const bla_solver* solver);

/**
 * Sets an option. It holds from the next call that it concerns.
 *
 * - `threads` (0): at most so many, of everything but refinement's own sums, and no more than there are
 *   processors; 0: one per processor. Each takes some memory, which `memory` counts. One is used over a BLAS
 *   that several threads may not call at once: an OpenBLAS built without threads and without USE_LOCKING.
 * - `tolerance` (1e-14): a pivot of at most this magnitude in the scaled matrix, whose largest entries are
 *   about 1, is tiny; 0 to 1.
 * - `shift` (0): by how much tiny pivots of the scaled matrix are moved away from zero, 0 to 1. 0: they are
 *   replaced by 1e36, which takes their unknowns out of the system; where that does not give a solvable one,
 *   they are moved by 2^-26 instead.
 * - `refinements` (10): most steps of iterative refinement; where they stall above rounding, GMRES follows.
 *   0: neither; the bound is computed all the same.
 * - `panel_width` (0): columns eliminated at once in a front; 0: by the size of the front.
 * - `ordering` (0): 0 the better of METIS and AMD (METIS above 30 000 unknowns), 1 METIS, 2 AMD, 3 as given
 *   to bla_solver_set_order.
 * - `memory_limit` (0): bytes that a factorisation may take; 0: no limit.
 * - `record` (0): 1: the next factorisations note when and on which thread each of their tasks runs, for
 *   bla_solver_tasks.
 *
 * `ordering` concerns bla_solver_analyse, `refinements` bla_solver_refine, `threads` everything, the others
 * bla_solver_factorise and what follows.
 */
int bla_solver_set(bla_solver* solver, const char* option, double value);

/**
 * Reads an option or one of these quantities. Counts beyond 2^53 are rounded.
 *
 * After bla_solver_analyse: `n`; `entries` of A, both triangles, duplicates counted once; `fronts`;
 * `largest_front` (its order); `factor_entries` (L and D, or L, D and U); `flops` of a factorisation,
 * products and sums counted each; `memory` (bytes that the handle has at most while it factorises, factor
 * included; what it takes to look into a singular matrix, or to analyse again, comes on top);
 * `ordering_used` (1, 2 or 3, as for the option); `seconds_analyse`.
 *
 * After bla_solver_factorise: `positive_pivots` and `negative_pivots` (used as they came: with no others, the
 * inertia of a symmetric A), `replaced_pivots`, `shifted_pivots`; `unheld_motions`, the dimension of the null
 * space where A was found singular, else 0; `structural_rank` (entries of the diagonal that can be made
 * nonzero by exchanging rows; of a symmetric matrix the rows that are not zero); `threads_used`;
 * `seconds_factorise`; `tasks` and `task_edges`, what bla_solver_tasks tells of, 0 where it was not recorded.
 *
 * After bla_solver_solve: `seconds_solve` of the last call.
 *
 * After bla_solver_refine, the worst of its columns: `residual`, |b - A·x| / (|A|·|x| + |b|) in maximum
 * norms; `backward_error`, the componentwise one (Arioli, Demmel, Duff 1989); `error_estimate`, a bound on
 * the relative error of x in the maximum norm from that and an estimated condition number, infinity where A
 * is not found regular; `condition`, the estimate in it; `trusted`, 1 or 0 (see bla_solver_verdict);
 * `refinement_steps`; `seconds_refine`.
 */
int bla_solver_get(const bla_solver* solver, const char* quantity, double* value);

/**
 * The order of elimination for the next bla_solver_analyse: order[k] is eliminated k-th. Unknowns that do not
 * depend on each other may be taken in another sequence, which changes neither pivots nor fill. Sets the
 * option `ordering` to 3.
 * @param solver the handle
 * @param n number of unknowns; 0 forgets the order
 * @param order [n] a permutation of 0 ... n-1
 */
int bla_solver_set_order(bla_solver* solver, int32_t n, const int32_t* order);

/**
 * Unknowns that the next analyses keep, for static condensation: factorise eliminates all others first and
 * makes the Schur complement of these available. Solutions are those of the whole system all the same. With
 * unknowns kept, tiny pivots are replaced, or shifted as `shift` says, and nothing else is tried.
 * @param solver the handle
 * @param count their number; 0 forgets them
 * @param unknowns [count] different ones; their order is that of bla_solver_schur
 */
int bla_solver_set_schur(bla_solver* solver, int32_t count, const int32_t* unknowns);

/**
 * Order of elimination, fronts and memory, from the pattern of A alone.
 *
 * Rows are compressed: row i has the entries start[i] ... start[i+1]-1, in any order; entries at one place
 * are added. An analysis that exists is replaced, its factor dropped.
 * @param solver the handle
 * @param kind one of BLA_SOLVER_SYMMETRIC_LOWER, BLA_SOLVER_SYMMETRIC_UPPER, BLA_SOLVER_GENERAL
 * @param n number of rows and columns, 0 or more
 * @param start [n+1] positions in `column`, not descending
 * @param column [start[n]] columns, 0 ... n-1; entries before start[0] are not read
 */
int bla_solver_analyse(bla_solver* solver, int kind, int32_t n, const int64_t* start, const int32_t* column);

/**
 * Factorises. May be called again and again with new values for the same pattern.
 *
 * Some numbers ask for another order than the pattern told: a diagonal entry of a symmetric matrix that is
 * stored and zero is eliminated behind its neighbours; rows of a general matrix are exchanged for large
 * entries on the diagonal. The first factorisation that finds this analyses again by itself, and the later
 * ones keep that analysis as long as it serves their values.
 *
 * A factor that exists is overwritten; while a monitor is set, which may cancel, it is kept until the new one
 * is complete (twice the memory). Once it is overwritten nothing can fail any more: where memory is missing
 * to look for a better one, the factor that `tolerance` and `shift` make stands.
 * @param solver the handle
 * @param value [start[n]] values in the sequence of the entries given to bla_solver_analyse
 */
int bla_solver_factorise(bla_solver* solver, const double* value);

/**
 * B := A⁻¹·B or A⁻ᵀ·B, without refinement.
 * @param solver the handle
 * @param transposed 1: with the transposed matrix, 0: not
 * @param nrhs number of right-hand sides, 0 or more
 * @param b [ldb × nrhs] right-hand sides, then solutions
 * @param ldb leading dimension, at least n and 1
 */
int bla_solver_solve(bla_solver* solver, int transposed, int32_t nrhs, double* b, int64_t ldb);

/**
 * Improves solutions of A·X = B by iterative refinement, and computes their backward errors and error bounds.
 * @param solver the handle
 * @param value [start[n]] the values that were factorised, or others near them: the answer is theirs
 * @param nrhs number of right-hand sides, 0 or more
 * @param b [ldb × nrhs] right-hand sides
 * @param ldb leading dimension, at least n and 1
 * @param x [ldx × nrhs] solutions as bla_solver_solve left them, or others near them; then better ones
 * @param ldx leading dimension, at least n and 1
 */
int bla_solver_refine(bla_solver* solver, const double* value, int32_t nrhs, const double* b, int64_t ldb,
                      double* x, int64_t ldx);

/**
 * The pivots of a symmetric matrix as it was given, not scaled: A = Pᵀ·L·D·Lᵀ·P. BLA_SOLVER_BAD_ARGUMENT for
 * a general one.
 * @param solver the handle
 * @param[out] d [n] the pivot of every unknown; 1e36 for a replaced one
 */
int bla_solver_pivots(const bla_solver* solver, double* d);

/**
 * The unknowns whose pivots were replaced, ascending.
 * @param solver the handle
 * @param[out] unknowns as many as `replaced_pivots` says
 */
int bla_solver_replaced(const bla_solver* solver, int32_t* unknowns);

/**
 * Unknowns of a singular matrix that, if they were held, would leave no motion free: of a structure, where
 * supports are missing.
 * @param solver the handle
 * @param[out] unknowns as many as `unheld_motions` says, ascending
 */
int bla_solver_unheld(const bla_solver* solver, int32_t* unknowns);

/**
 * A sentence on what bla_solver_refine found, for people: "solved", "solved; ill-conditioned: ...", or one
 * that begins with "NOT TO BE TRUSTED: " (no digit is certain, or this is one of many answers) or "NOT
 * SOLVED: " (the residual is larger than rounding explains), and why; unknowns are counted from 1 in it.
 * Valid until the next call with this handle; "" where nothing was refined.
 */
const char* bla_solver_verdict(const bla_solver* solver);

/**
 * The Schur complement of the unknowns given to bla_solver_set_schur: A(k,k) - A(k,e)·A(e,e)⁻¹·A(e,k), k the
 * kept unknowns and e the others; of a symmetric matrix both triangles.
 * @param solver the handle
 * @param[out] c [ldc × count] in the order given to bla_solver_set_schur
 * @param ldc leading dimension, at least count and 1
 */
int bla_solver_schur(const bla_solver* solver, double* c, int64_t ldc);

/** A task of a recorded factorisation. */
typedef struct bla_solver_task
{
    const char* name; /**< what was done, see bla_solver_tasks; valid as long as the library is loaded */
    int32_t front;    /**< the front, counted from 0 from the leaves of the tree to its roots */
    int32_t row;      /**< the row of tiles in the front, counted from 0; -1: no single one */
    int32_t column;   /**< the column of tiles; -1: no single one */
    int32_t step;     /**< the column of tiles whose pivots take part; -1: none */
    int32_t thread;   /**< the thread, 0 ... `threads_used`-1 */
    int32_t fronts;   /**< 1; of a branch how many there are, the last of which is `front` */
    double begin;     /**< seconds since the begin of the elimination */
    double end;       /**< as `begin` */
} bla_solver_task;

/**
 * The tasks of the last factorisation, made with the option `record` set, and which of them wait for which:
 * those that wait for task t are next[start[t]] ... next[start[t+1]-1], all of them behind t. Where the
 * elimination was done more than once (pivots shifted after they had been replaced) those of the last time.
 * BLA_SOLVER_NOT_READY where nothing was recorded.
 *
 * The cut into tasks, and all of the sequence but threads and times, depend on the analysis alone. Each task
 * is called by what it does: `branch`, all of some neighbouring subtrees; and of the large fronts above them,
 * whose rows and columns are cut into tiles, `assemble` (entries and children of a column of tiles), `keep`
 * (the Schur complement of bla_solver_set_schur is put aside), `eliminate` (the pivots of a diagonal tile),
 * `lower` and `upper` (a tile of L or U beside them), `update` (what a step takes from a tile), `finish` (all
 * of the front is done).
 * @param solver the handle
 * @param[out] tasks [`tasks`]
 * @param[out] start [`tasks`+1] positions in `next`
 * @param[out] next [`task_edges`] tasks, ascending for each t
 */
int bla_solver_tasks(const bla_solver* solver, bla_solver_task* tasks, int64_t* start, int32_t* next);

/**
 * Calls monitor(context, phase, share) from time to time during bla_solver_analyse ("analysing"),
 * bla_solver_factorise ("factorising"), bla_solver_solve ("solving") and bla_solver_refine ("refining"), on
 * the caller's thread, with the share of the phase that is done, 0 to 1. A result other than 0 makes the call
 * return BLA_SOLVER_CANCELLED. The monitor must not throw, nor use the handle.
 * @param solver the handle
 * @param monitor NULL: none
 * @param context what the monitor is given
 */
int bla_solver_set_monitor(bla_solver* solver, int (*monitor)(void* context, const char* phase, double share),
                           void* context);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
