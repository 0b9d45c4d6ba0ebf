/* SPDX-License-Identifier: BSD-3-Clause */
/**
 * @file TOVBlaModule.h
 * Dense linear algebra for sparse direct solvers: everything that libZEFTOVBlaModule exports.
 *
 * @section conventions Conventions
 *
 * **Calling.** Routines with a lower-case name and a trailing underscore follow the Fortran calling
 * convention: every argument by reference. The hidden character lengths that Fortran callers append are
 * accepted and not looked at, so C and C++ callers leave them out (the one exception says so). Entry points
 * in mixed case take their scalars by value.
 *
 * **Types.** `int` is a signed 32-bit integer, `double` an IEEE binary64 number, #blac_complex a pair of
 * doubles (real part first), a Fortran logical a 32-bit integer, an option one character, upper or lower
 * case.
 *
 * **Matrices** are column-major with a leading dimension: a(i,j), counted from 1, lies at a[(i-1) +
 * (j-1)*lda]. Rows beyond the matrix, up to the leading dimension, are neither read nor written. Offsets are
 * formed in 64 bits.
 *
 * **Vectors with an increment** start at the first element given, whatever the sign of the increment; only
 * the BLAS and LAPACK routines (`blac_` + a library name) keep the BLAS convention.
 *
 * **Errors.** Nothing is checked, printed or raised, unless a routine says otherwise. A count below 1 makes a
 * routine return before it looks at anything but counts, increments and leading dimensions included, unless
 * it says otherwise. Arguments must not overlap, unless a routine says that they may. Arrays may start at any
 * address, 8-byte aligned or not.
 *
 * **Undefined memory.** What a routine does not read by its description (the other triangle, rows up to the
 * leading dimension, elements between increments, results before the call) does not enter its arithmetic: it
 * may hold signalling NaNs, and invalid operations may be trapped. The exceptions are the diagonal blocks of
 * lower block trapezoids, which are formed in full: see blac_dsyrk_scaled_, blac_dhamm_, blac_selim_ and
 * blaC_selimC. What the library beneath does with the arguments it is handed is its own.
 *
 * **Bits.** Every operation named in a formula is rounded on its own; there is no fused multiply-add and no
 * reordering of sums. Results do not depend on the processor, on the alignment of the arrays or on what
 * surrounds them; of routines that call the BLAS (the blocked eliminations, the scaled products, blac_dhamm_,
 * blac_dchud_, blac_dchdd_) that holds for what they add to its results. NaN and infinities go through the
 * formulas as IEEE 754 has it: no product is skipped because a factor is zero. That a computed result is NaN
 * is promised, its sign and payload are not: of two NaN operands the order decides, which IEEE 754 leaves
 * open.
 *
 * **Threads.** Every routine but the lifecycle calls may run at the same time on distinct output arrays. No
 * routine keeps anything between calls (blac_zdotc_ and blac_zladiv_ remember how the library beneath returns
 * complex values).
 */
#ifndef TOVBLAMODULE_H
#define TOVBLAMODULE_H

#include <stddef.h>
#include <stdint.h>

#define BLA_VERSION_MAJOR 1 /**< Of this header: changes when callers have to be compiled again. */
#define BLA_VERSION_MINOR 0 /**< Changes when routines are added. */
#define BLA_VERSION_PATCH 0 /**< Changes with anything else. */

#ifdef __cplusplus
#    include <complex>
/** A complex number of two doubles, real part first. */
typedef std::complex<double> blac_complex;
#else
/** A complex number of two doubles, real part first. */
typedef double _Complex blac_complex;
#endif

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup module Module: lifecycle and threads
 *
 * No routine needs initialisation. The lifecycle only counts, in a tally of the caller's, how many components
 * were brought up on its behalf: each call adds 1 for every component (the module, its core, and a third that
 * has no entry points) that goes from unused to used, and takes 1 away for every one that goes back. Callers
 * serialise these calls.
 *
 * The counts are not guarded: a finalisation too many takes a count to -1 and changes nothing else, and then
 * swallows the next initialisation.
 * @{
 */
#ifdef __cplusplus

/** Brings up the module: the first call in the process adds 3 to the tally (2 if the core was in use
 * already). */
void TOVBlaModule_initialize(int& tally);

/** Takes down the module: the call that matches the first initialisation takes away what that one added. */
void TOVBlaModule_finalize(int& tally);

/** Brings up the core component alone: adds 1 to the tally if it was unused. */
void TOVBlaCore_initialize(int& tally);

/** Takes down the core component: subtracts 1 from the tally if it is unused afterwards. */
void TOVBlaCore_finalize(int& tally);

extern "C" {
#endif

/** TOVBlaModule_initialize with a tally private to the module. */
void TOVBlaModule_initializeC(void);

/** TOVBlaModule_finalize with the same private tally. */
void TOVBlaModule_finalizeC(void);

#ifdef __cplusplus
}
/* The following are exported under their plain names as well, for callers from C and Fortran. */
#endif

/**
 * Number of threads that the BLAS library beneath may use, as that library reports it; 1 for a library
 * without threads.
 */
int blaC_get_num_threads(
#ifndef __cplusplus
    void
#endif
);

/**
 * Hands the thread count to the BLAS library beneath, unchanged and unchecked; a library without threads
 * ignores it.
 * @param count number of threads
 */
void blaC_set_num_threads(int count);

/** Does nothing. */
void blaC_formalize(
#ifndef __cplusplus
    void
#endif
);

/** @} */

#ifdef __cplusplus
extern "C" {
#endif

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup blas BLAS
 *
 * One entry point `blac_name_` for each library routine `name_`: the same arguments in the same order, handed
 * on by address. The hidden length of every option character is passed on as 1, whatever the caller gave:
 * only its first character counts. Argument errors are reported by the library's error handler under the
 * library's name.
 *
 * **Shapes.** A matrix `a` comes with its leading dimension `lda` and is [lda × columns as stored], lda being
 * at least its rows as stored. A packed matrix (`ap`) is one triangle, column by column: [n·(n+1)/2]. A
 * vector `x` with an increment is [1 + (n-1)·|incx|]; with a negative increment it is walked from its far
 * end. `const` arguments are in; the others are out, or in/out where the formula reads them.
 *
 * **Options.** op(A) is A, Aᵀ or Aᴴ for trans 'N', 'T', 'C'. uplo 'U' or 'L' names the triangle that is used;
 * the other is not touched. side 'L' or 'R': the side on which A or op(A) stands. diag 'U': the diagonal is
 * taken as 1 and not read.
 *
 * **Edges.** Whether a zero alpha or beta keeps an operand from being read, NaN and all, and what a count of
 * 0 does, is up to the library beneath; as a rule nothing is read, and nothing done. Negative counts and
 * leading dimensions that are too small are argument errors.
 * @{
 */

/** @name Level 1: vectors
 * @{ */

/** Sum of the absolute values: returns Σ |x(i)|. */
double blac_dasum_(const int* n, const double* x, const int* incx);

/**
 * y := a·x + b·y.
 *
 * An extension: where the library has no `daxpby_`, the module forms the sum itself, each operation rounded
 * once.
 */
void blac_daxpby_(const int* n, const double* a, const double* x, const int* incx, const double* b, double* y,
                  const int* incy);

/** y := a·x + y. */
void blac_daxpy_(const int* n, const double* a, const double* x, const int* incx, double* y, const int* incy);

/** y := x. */
void blac_dcopy_(const int* n, const double* x, const int* incx, double* y, const int* incy);

/** Returns xᵀ·y. */
double blac_ddot_(const int* n, const double* x, const int* incx, const double* y, const int* incy);

/** Returns the Euclidean norm of x. */
double blac_dnrm2_(const int* n, const double* x, const int* incx);

/** Plane rotation: x := c·x + s·y, y := c·y - s·x, with the old x in both. */
void blac_drot_(const int* n, double* x, const int* incx, double* y, const int* incy, const double* c,
                const double* s);

/** x := a·x. */
void blac_dscal_(const int* n, const double* a, double* x, const int* incx);

/** Exchanges x and y. */
void blac_dswap_(const int* n, double* x, const int* incx, double* y, const int* incy);

/** Returns the first index, from 1, of the largest |x(i)|; 0 for n < 1. */
int blac_idamax_(const int* n, const double* x, const int* incx);

/** Returns the first index, from 1, of the largest |Re x(i)| + |Im x(i)|; 0 for n < 1. */
int blac_izamax_(const int* n, const blac_complex* x, const int* incx);

/** y := a·x + y, complex. */
void blac_zaxpy_(const int* n, const blac_complex* a, const blac_complex* x, const int* incx, blac_complex* y,
                 const int* incy);

/** y := x, complex. */
void blac_zcopy_(const int* n, const blac_complex* x, const int* incx, blac_complex* y, const int* incy);

/** x := a·x, x complex, a real. */
void blac_zdscal_(const int* n, const double* a, blac_complex* x, const int* incx);

/** x := a·x, complex. */
void blac_zscal_(const int* n, const blac_complex* a, blac_complex* x, const int* incx);

/** Exchanges x and y, complex. */
void blac_zswap_(const int* n, blac_complex* x, const int* incx, blac_complex* y, const int* incy);

/**
 * result := Σ conj(zx(i))·zy(i).
 *
 * Libraries return complex values in registers or through a hidden first argument; both give the same here.
 * Which one it is shows in a trial call, made by the first call in the process.
 * @param result out: where Fortran callers of this module pass the address of a complex function's result
 * @param n      number of elements
 * @param zx     first vector, conjugated, in
 * @param incx   its increment
 * @param zy     second vector, in
 * @param incy   its increment
 */
void blac_zdotc_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                 const blac_complex* zy, const int* incy);

/**
 * result := the first four bytes of what `zdotu_` returns, read as single precision, + 0i.
 *
 * This is not the product Σ zx(i)·zy(i): `zdotu_` is called as a function of single-precision result, with
 * the five arguments alone, and the imaginary part is set to 0. With a library that returns complex values
 * through a hidden first argument the arguments stand at the wrong place: do not call it there. Use
 * blac_zgemv_ for the product.
 * @param result out, as in blac_zdotc_
 * @param n, zx, incx, zy, incy as in blac_zdotc_
 */
void blac_zdotu_(blac_complex* result, const int* n, const blac_complex* zx, const int* incx,
                 const blac_complex* zy, const int* incy);

/**
 * |Re z| + |Im z|, read as single precision.
 *
 * Of this and the next two routines the library's double result is taken as a single-precision one and
 * widened: the low 32 bits of the double decide, and any result whose low 32 bits are zero (0.5, 1.0, 2.0
 * ...) comes out as 0.0. Use blac_zlange_ for norms.
 */
double blac_dcabs1_(const blac_complex* z);

/** Σ |Re zx(i)| + |Im zx(i)|, read as single precision like blac_dcabs1_. */
double blac_dzasum_(const int* n, const blac_complex* zx, const int* incx);

/** The Euclidean norm of x, read as single precision like blac_dcabs1_. */
double blac_dznrm2_(const int* n, const blac_complex* x, const int* incx);

/** @} */

/** @name Level 2: matrix and vector
 * @{ */

/** y := alpha·op(A)·x + beta·y, A general m × n. */
void blac_dgemv_(const char* trans, const int* m, const int* n, const double* alpha, const double* a,
                 const int* lda, const double* x, const int* incx, const double* beta, double* y,
                 const int* incy);

/** A := alpha·x·yᵀ + A, A general m × n. */
void blac_dger_(const int* m, const int* n, const double* alpha, const double* x, const int* incx,
                const double* y, const int* incy, double* a, const int* lda);

/** y := alpha·A·x + beta·y, A symmetric with k off-diagonals, in band storage. */
void blac_dsbmv_(const char* uplo, const int* n, const int* k, const double* alpha, const double* a,
                 const int* lda, const double* x, const int* incx, const double* beta, double* y,
                 const int* incy);

/** y := alpha·A·x + beta·y, A symmetric, one triangle packed. */
void blac_dspmv_(const char* uplo, const int* n, const double* alpha, const double* ap, const double* x,
                 const int* incx, const double* beta, double* y, const int* incy);

/** A := alpha·x·xᵀ + A, A symmetric, one triangle packed. */
void blac_dspr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                double* ap);

/** A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle packed. */
void blac_dspr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                 const double* y, const int* incy, double* ap);

/** y := alpha·A·x + beta·y, A symmetric, one triangle read. */
void blac_dsymv_(const char* uplo, const int* n, const double* alpha, const double* a, const int* lda,
                 const double* x, const int* incx, const double* beta, double* y, const int* incy);

/** A := alpha·x·xᵀ + A, A symmetric, one triangle updated. */
void blac_dsyr_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                double* a, const int* lda);

/** A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle updated. */
void blac_dsyr2_(const char* uplo, const int* n, const double* alpha, const double* x, const int* incx,
                 const double* y, const int* incy, double* a, const int* lda);

/** x := op(A)·x, A triangular, packed. */
void blac_dtpmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap,
                 double* x, const int* incx);

/** x := op(A)⁻¹·x, A triangular, packed. */
void blac_dtpsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* ap,
                 double* x, const int* incx);

/** x := op(A)·x, A triangular. */
void blac_dtrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                 const int* lda, double* x, const int* incx);

/** x := op(A)⁻¹·x, A triangular. */
void blac_dtrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const double* a,
                 const int* lda, double* x, const int* incx);

/** y := alpha·op(A)·x + beta·y, complex, A general m × n. */
void blac_zgemv_(const char* trans, const int* m, const int* n, const blac_complex* alpha,
                 const blac_complex* a, const int* lda, const blac_complex* x, const int* incx,
                 const blac_complex* beta, blac_complex* y, const int* incy);

/** A := alpha·x·yᴴ + A, complex. */
void blac_zgerc_(const int* m, const int* n, const blac_complex* alpha, const blac_complex* x,
                 const int* incx, const blac_complex* y, const int* incy, blac_complex* a, const int* lda);

/** A := alpha·x·yᵀ + A, complex. */
void blac_zgeru_(const int* m, const int* n, const blac_complex* alpha, const blac_complex* x,
                 const int* incx, const blac_complex* y, const int* incy, blac_complex* a, const int* lda);

/** x := op(A)·x, complex, A triangular. */
void blac_ztrmv_(const char* uplo, const char* trans, const char* diag, const int* n, const blac_complex* a,
                 const int* lda, blac_complex* x, const int* incx);

/** x := op(A)⁻¹·x, complex, A triangular. */
void blac_ztrsv_(const char* uplo, const char* trans, const char* diag, const int* n, const blac_complex* a,
                 const int* lda, blac_complex* x, const int* incx);

/** @} */

/** @name Level 3: matrix and matrix
 * @{ */

/** C := alpha·op(A)·op(B) + beta·C. */
void blac_dgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                 const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                 const double* beta, double* c, const int* ldc);

/** C := alpha·A·B + beta·C or alpha·B·A + beta·C, A symmetric. */
void blac_dsymm_(const char* side, const char* uplo, const int* m, const int* n, const double* alpha,
                 const double* a, const int* lda, const double* b, const int* ldb, const double* beta,
                 double* c, const int* ldc);

/** C := alpha·A·Aᵀ + beta·C or alpha·Aᵀ·A + beta·C, one triangle of C. */
void blac_dsyrk_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
                 const double* a, const int* lda, const double* beta, double* c, const int* ldc);

/** C := alpha·A·Bᵀ + alpha·B·Aᵀ + beta·C or with AᵀB + BᵀA, one triangle of C. */
void blac_dsyr2k_(const char* uplo, const char* trans, const int* n, const int* k, const double* alpha,
                  const double* a, const int* lda, const double* b, const int* ldb, const double* beta,
                  double* c, const int* ldc);

/** B := alpha·op(A)·B or alpha·B·op(A), A triangular. */
void blac_dtrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                 const int* n, const double* alpha, const double* a, const int* lda, double* b,
                 const int* ldb);

/** B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, A triangular. */
void blac_dtrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                 const int* n, const double* alpha, const double* a, const int* lda, double* b,
                 const int* ldb);

/** C := alpha·op(A)·op(B) + beta·C, complex. */
void blac_zgemm_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                 const blac_complex* alpha, const blac_complex* a, const int* lda, const blac_complex* b,
                 const int* ldb, const blac_complex* beta, blac_complex* c, const int* ldc);

/** B := alpha·op(A)·B or alpha·B·op(A), complex, A triangular. */
void blac_ztrmm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                 const int* n, const blac_complex* alpha, const blac_complex* a, const int* lda,
                 blac_complex* b, const int* ldb);

/** B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, complex, A triangular. */
void blac_ztrsm_(const char* side, const char* uplo, const char* transa, const char* diag, const int* m,
                 const int* n, const blac_complex* alpha, const blac_complex* a, const int* lda,
                 blac_complex* b, const int* ldb);

/** @} */

/** @name Options and errors
 * @{ */

/** Logical: the first characters of ca and cb are the same letter, case aside. */
int blac_lsame_(const char* ca, const char* cb);

/**
 * Reports a bad argument through the library's error handler, in the library's words; some libraries end the
 * process there.
 * @param srname [6] name of the routine: exactly six characters are read, pad it with blanks
 * @param info   number of the argument, from 1
 */
void blac_xerbla_(const char* srname, const int* info);

/** @} */

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup lapack LAPACK
 *
 * One entry point `blac_name_` for each LAPACK routine `name_`, on the same terms as the BLAS ones: the same
 * arguments in the same order, hidden lengths of 1. The library's own manual describes the arguments;
 * logicals are passed as `int`. Arrays that the library changes for the duration of a call, and restores, are
 * not const. Status comes back in info, as the library sets it.
 *
 * **Shapes and options** are those of the BLAS group. Work arrays are [lwork], or as the library's manual
 * says; lwork = -1 asks for the best length, which comes back in work[0]. Pivots ipiv count rows from 1. info
 * is 0 for success, -i if argument i was bad, and positive where the computation could not be carried
 * through.
 * @{
 */

/** @name Linear systems
 * @{ */

/** Solves A·X = B by LU with partial pivoting. */
void blac_dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b,
                 const int* ldb, int* info);

/** A = P·L·U of a general m × n matrix. */
void blac_dgetrf_(const int* m, const int* n, double* a, const int* lda, int* ipiv, int* info);

/** Solves op(A)·X = B from the factors of dgetrf. */
void blac_dgetrs_(const char* trans, const int* n, const int* nrhs, const double* a, const int* lda,
                  const int* ipiv, double* b, const int* ldb, int* info);

/** A⁻¹ from the factors of dgetrf. */
void blac_dgetri_(const int* n, double* a, const int* lda, const int* ipiv, double* work, const int* lwork,
                  int* info);

/** Solves A·X = B for a band matrix. */
void blac_dgbsv_(const int* n, const int* kl, const int* ku, const int* nrhs, double* ab, const int* ldab,
                 int* ipiv, double* b, const int* ldb, int* info);

/** Cholesky factor of a symmetric positive definite matrix. */
void blac_dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info);

/** Solves A·X = B, A positive definite and packed, by Cholesky. */
void blac_dppsv_(const char* uplo, const int* n, const int* nrhs, double* ap, double* b, const int* ldb,
                 int* info);

/** Cholesky factor of a packed positive definite matrix. */
void blac_dpptrf_(const char* uplo, const int* n, double* ap, int* info);

/** A⁻¹ from the factor of dpptrf. */
void blac_dpptri_(const char* uplo, const int* n, double* ap, int* info);

/** Solves A·X = B from the factor of dpptrf. */
void blac_dpptrs_(const char* uplo, const int* n, const int* nrhs, const double* ap, double* b,
                  const int* ldb, int* info);

/** Solves A·X = B, A symmetric indefinite, by pivoted LDLᵀ. */
void blac_dsysv_(const char* uplo, const int* n, const int* nrhs, double* a, const int* lda, int* ipiv,
                 double* b, const int* ldb, double* work, const int* lwork, int* info);

/** Pivoted LDLᵀ of a symmetric matrix (1 × 1 and 2 × 2 pivots). */
void blac_dsytrf_(const char* uplo, const int* n, double* a, const int* lda, int* ipiv, double* work,
                  const int* lwork, int* info);

/** Solves A·X = B from the factors of dsytrf. */
void blac_dsytrs_(const char* uplo, const int* n, const int* nrhs, const double* a, const int* lda,
                  const int* ipiv, double* b, const int* ldb, int* info);

/** Inverse of a packed triangular matrix. */
void blac_dtptri_(const char* uplo, const char* diag, const int* n, double* ap, int* info);

/** Inverse of a triangular matrix, unblocked. */
void blac_dtrti2_(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info);

/** Inverse of a triangular matrix. */
void blac_dtrtri_(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info);

/** Solves a 1 × 1 or 2 × 2 system (ca·A - w·D)·X = scale·B; ltrans is a logical. */
void blac_dlaln2_(const int* ltrans, const int* na, const int* nw, const double* smin, const double* ca,
                  const double* a, const int* lda, const double* d1, const double* d2, const double* b,
                  const int* ldb, const double* wr, const double* wi, double* x, const int* ldx,
                  double* scale, double* xnorm, int* info);

/** dgesv, complex. */
void blac_zgesv_(const int* n, const int* nrhs, blac_complex* a, const int* lda, int* ipiv, blac_complex* b,
                 const int* ldb, int* info);

/** dgetrf, complex. */
void blac_zgetrf_(const int* m, const int* n, blac_complex* a, const int* lda, int* ipiv, int* info);

/** dgetrs, complex. */
void blac_zgetrs_(const char* trans, const int* n, const int* nrhs, const blac_complex* a, const int* lda,
                  const int* ipiv, blac_complex* b, const int* ldb, int* info);

/** dsysv, complex symmetric (A = Aᵀ). */
void blac_zsysv_(const char* uplo, const int* n, const int* nrhs, blac_complex* a, const int* lda, int* ipiv,
                 blac_complex* b, const int* ldb, blac_complex* work, const int* lwork, int* info);

/** Solves op(A)·x = scale·b, A complex triangular, with scaling against overflow. */
void blac_zlatrs_(const char* uplo, const char* trans, const char* diag, const char* normin, const int* n,
                  const blac_complex* a, const int* lda, blac_complex* x, double* scale, double* cnorm,
                  int* info);

/** Solves op(A)·X = B, A complex triangular, with a check for singularity. */
void blac_ztrtrs_(const char* uplo, const char* trans, const char* diag, const int* n, const int* nrhs,
                  const blac_complex* a, const int* lda, blac_complex* b, const int* ldb, int* info);

/** @} */

/** @name Least squares and singular values
 * @{ */

/** Minimum-norm least squares by the singular value decomposition. */
void blac_dgelss_(const int* m, const int* n, const int* nrhs, double* a, const int* lda, double* b,
                  const int* ldb, double* s, const double* rcond, int* rank, double* work, const int* lwork,
                  int* info);

/** A = U·diag(s)·Vᵀ, divide and conquer. */
void blac_dgesdd_(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s,
                  double* u, const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork,
                  int* iwork, int* info);

/** A = U·diag(s)·Vᵀ. */
void blac_dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda,
                  double* s, double* u, const int* ldu, double* vt, const int* ldvt, double* work,
                  const int* lwork, int* info);

/** @} */

/** @name Orthogonal factors
 * @{ */

/** A = Q·R. */
void blac_dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work,
                  const int* lwork, int* info);

/** Q of dgeqrf, formed. */
void blac_dorgqr_(const int* m, const int* n, const int* k, double* a, const int* lda, const double* tau,
                  double* work, const int* lwork, int* info);

/** Multiplies C by Q of dgehrd; a is changed during the call and restored. */
void blac_dormhr_(const char* side, const char* trans, const int* m, const int* n, const int* ilo,
                  const int* ihi, double* a, const int* lda, const double* tau, double* c, const int* ldc,
                  double* work, const int* lwork, int* info);

/** Multiplies C by Q of dsytrd; a is changed during the call and restored. */
void blac_dormtr_(const char* side, const char* uplo, const char* trans, const int* m, const int* n,
                  double* a, const int* lda, const double* tau, double* c, const int* ldc, double* work,
                  const int* lwork, int* info);

/** Applies a block reflector to C. */
void blac_dlarfb_(const char* side, const char* trans, const char* direct, const char* storev, const int* m,
                  const int* n, const int* k, const double* v, const int* ldv, const double* t,
                  const int* ldt, double* c, const int* ldc, double* work, const int* ldwork);

/** Generates an elementary reflector. */
void blac_dlarfg_(const int* n, double* alpha, double* x, const int* incx, double* tau);

/** Triangular factor T of a block reflector; older libraries change v during the call. */
void blac_dlarft_(const char* direct, const char* storev, const int* n, const int* k, double* v,
                  const int* ldv, const double* tau, double* t, const int* ldt);

/** Applies a complex elementary reflector to C. */
void blac_zlarf_(const char* side, const int* m, const int* n, const blac_complex* v, const int* incv,
                 const blac_complex* tau, blac_complex* c, const int* ldc, blac_complex* work);

/** dlarfb, complex. */
void blac_zlarfb_(const char* side, const char* trans, const char* direct, const char* storev, const int* m,
                  const int* n, const int* k, const blac_complex* v, const int* ldv, const blac_complex* t,
                  const int* ldt, blac_complex* c, const int* ldc, blac_complex* work, const int* ldwork);

/** dlarfg, complex. */
void blac_zlarfg_(const int* n, blac_complex* alpha, blac_complex* x, const int* incx, blac_complex* tau);

/** dlarft, complex. */
void blac_zlarft_(const char* direct, const char* storev, const int* n, const int* k, blac_complex* v,
                  const int* ldv, const blac_complex* tau, blac_complex* t, const int* ldt);

/** Q of a complex QR factorisation, formed, unblocked. */
void blac_zung2r_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                  const blac_complex* tau, blac_complex* work, int* info);

/** Q of zgehrd, formed. */
void blac_zunghr_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                  const blac_complex* tau, blac_complex* work, const int* lwork, int* info);

/** Q of a complex QR factorisation, formed. */
void blac_zungqr_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                  const blac_complex* tau, blac_complex* work, const int* lwork, int* info);

/** Q of a complex RQ factorisation, formed, unblocked. */
void blac_zungr2_(const int* m, const int* n, const int* k, blac_complex* a, const int* lda,
                  const blac_complex* tau, blac_complex* work, int* info);

/** Multiplies C by Q of a complex QR factorisation, unblocked; a is changed during the call and restored. */
void blac_zunm2r_(const char* side, const char* trans, const int* m, const int* n, const int* k,
                  blac_complex* a, const int* lda, const blac_complex* tau, blac_complex* c, const int* ldc,
                  blac_complex* work, int* info);

/** Multiplies C by Q of zgehrd; a is changed during the call and restored. */
void blac_zunmhr_(const char* side, const char* trans, const int* m, const int* n, const int* ilo,
                  const int* ihi, blac_complex* a, const int* lda, const blac_complex* tau, blac_complex* c,
                  const int* ldc, blac_complex* work, const int* lwork, int* info);

/** Multiplies C by Q of a complex QR factorisation; a is changed during the call and restored. */
void blac_zunmqr_(const char* side, const char* trans, const int* m, const int* n, const int* k,
                  blac_complex* a, const int* lda, const blac_complex* tau, blac_complex* c, const int* ldc,
                  blac_complex* work, const int* lwork, int* info);

/** @} */

/** @name Symmetric eigenvalues
 * @{ */

/** Eigenvalues w and, if asked, eigenvectors of a symmetric matrix. */
void blac_dsyev_(const char* jobz, const char* uplo, const int* n, double* a, const int* lda, double* w,
                 double* work, const int* lwork, int* info);

/** Selected eigenvalues and eigenvectors of a symmetric matrix. */
void blac_dsyevx_(const char* jobz, const char* range, const char* uplo, const int* n, double* a,
                  const int* lda, const double* vl, const double* vu, const int* il, const int* iu,
                  const double* abstol, int* m, double* w, double* z, const int* ldz, double* work,
                  const int* lwork, int* iwork, int* ifail, int* info);

/** dsyevx for packed storage. */
void blac_dspevx_(const char* jobz, const char* range, const char* uplo, const int* n, double* ap,
                  const double* vl, const double* vu, const int* il, const int* iu, const double* abstol,
                  int* m, double* w, double* z, const int* ldz, double* work, int* iwork, int* ifail,
                  int* info);

/** Eigenvalues and eigenvectors of A·x = λ·B·x and its kin, B positive definite. */
void blac_dsygv_(const int* itype, const char* jobz, const char* uplo, const int* n, double* a,
                 const int* lda, double* b, const int* ldb, double* w, double* work, const int* lwork,
                 int* info);

/** Reduces A·x = λ·B·x to standard form, with B factorised by dpotrf. */
void blac_dsygst_(const int* itype, const char* uplo, const int* n, double* a, const int* lda,
                  const double* b, const int* ldb, int* info);

/** Reduces a symmetric matrix to tridiagonal form. */
void blac_dsytrd_(const char* uplo, const int* n, double* a, const int* lda, double* d, double* e,
                  double* tau, double* work, const int* lwork, int* info);

/** One panel of dsytrd. */
void blac_dlatrd_(const char* uplo, const int* n, const int* nb, double* a, const int* lda, double* e,
                  double* tau, double* w, const int* ldw);

/** Eigenvalues and eigenvectors of a symmetric tridiagonal matrix. */
void blac_dsteqr_(const char* compz, const int* n, double* d, double* e, double* z, const int* ldz,
                  double* work, int* info);

/** Selected eigenvalues and eigenvectors of a symmetric tridiagonal matrix; tryrac is a logical. */
void blac_dstemr_(const char* jobz, const char* range, const int* n, double* d, double* e, const double* vl,
                  const double* vu, const int* il, const int* iu, int* m, double* w, double* z,
                  const int* ldz, const int* nzc, int* isuppz, int* tryrac, double* work, const int* lwork,
                  int* iwork, const int* liwork, int* info);

/** Driver of dstemr. */
void blac_dstevr_(const char* jobz, const char* range, const int* n, double* d, double* e, const double* vl,
                  const double* vu, const int* il, const int* iu, const double* abstol, int* m, double* w,
                  double* z, const int* ldz, int* isuppz, double* work, const int* lwork, int* iwork,
                  const int* liwork, int* info);

/** @} */

/** @name Unsymmetric eigenvalues
 * @{ */

/** Eigenvalues and eigenvectors of a general matrix. */
void blac_dgeev_(const char* jobvl, const char* jobvr, const int* n, double* a, const int* lda, double* wr,
                 double* wi, double* vl, const int* ldvl, double* vr, const int* ldvr, double* work,
                 const int* lwork, int* info);

/** Reduces a general matrix to Hessenberg form. */
void blac_dgehrd_(const int* n, const int* ilo, const int* ihi, double* a, const int* lda, double* tau,
                  double* work, const int* lwork, int* info);

/** Eigenvectors of a quasi-triangular matrix; select holds logicals. */
void blac_dtrevc_(const char* side, const char* howmny, int* select, const int* n, const double* t,
                  const int* ldt, double* vl, const int* ldvl, double* vr, const int* ldvr, const int* mm,
                  int* m, double* work, int* info);

/** Eigenvalues and eigenvectors of a complex general matrix. */
void blac_zgeev_(const char* jobvl, const char* jobvr, const int* n, blac_complex* a, const int* lda,
                 blac_complex* w, blac_complex* vl, const int* ldvl, blac_complex* vr, const int* ldvr,
                 blac_complex* work, const int* lwork, double* rwork, int* info);

/** Balances a complex general matrix. */
void blac_zgebal_(const char* job, const int* n, blac_complex* a, const int* lda, int* ilo, int* ihi,
                  double* scale, int* info);

/** Turns eigenvectors of the balanced matrix back. */
void blac_zgebak_(const char* job, const char* side, const int* n, const int* ilo, const int* ihi,
                  const double* scale, const int* m, blac_complex* v, const int* ldv, int* info);

/** Reduces a complex general matrix to Hessenberg form, unblocked. */
void blac_zgehd2_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                  blac_complex* tau, blac_complex* work, int* info);

/** Reduces a complex general matrix to Hessenberg form. */
void blac_zgehrd_(const int* n, const int* ilo, const int* ihi, blac_complex* a, const int* lda,
                  blac_complex* tau, blac_complex* work, const int* lwork, int* info);

/** One panel of zgehrd. */
void blac_zlahr2_(const int* n, const int* k, const int* nb, blac_complex* a, const int* lda,
                  blac_complex* tau, blac_complex* t, const int* ldt, blac_complex* y, const int* ldy);

/** Eigenvalues and Schur form of a complex Hessenberg matrix. */
void blac_zhseqr_(const char* job, const char* compz, const int* n, const int* ilo, const int* ihi,
                  blac_complex* h, const int* ldh, blac_complex* w, blac_complex* z, const int* ldz,
                  blac_complex* work, const int* lwork, int* info);

/** zhseqr by double-shift QR for small matrices; wantt and wantz are logicals. */
void blac_zlahqr_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                  blac_complex* h, const int* ldh, blac_complex* w, const int* iloz, const int* ihiz,
                  blac_complex* z, const int* ldz, int* info);

/** zhseqr by aggressive early deflation for large matrices. */
void blac_zlaqr0_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                  blac_complex* h, const int* ldh, blac_complex* w, const int* iloz, const int* ihiz,
                  blac_complex* z, const int* ldz, blac_complex* work, const int* lwork, int* info);

/** First column of (H - s1·I)·(H - s2·I), n = 2 or 3, up to a factor. */
void blac_zlaqr1_(const int* n, const blac_complex* h, const int* ldh, const blac_complex* s1,
                  const blac_complex* s2, blac_complex* v);

/** Aggressive early deflation on a window. */
void blac_zlaqr2_(const int* wantt, const int* wantz, const int* n, const int* ktop, const int* kbot,
                  const int* nw, blac_complex* h, const int* ldh, const int* iloz, const int* ihiz,
                  blac_complex* z, const int* ldz, int* ns, int* nd, blac_complex* sh, blac_complex* v,
                  const int* ldv, const int* nh, blac_complex* t, const int* ldt, const int* nv,
                  blac_complex* wv, const int* ldwv, blac_complex* work, const int* lwork);

/** zlaqr2 with recursion into zlaqr4. */
void blac_zlaqr3_(const int* wantt, const int* wantz, const int* n, const int* ktop, const int* kbot,
                  const int* nw, blac_complex* h, const int* ldh, const int* iloz, const int* ihiz,
                  blac_complex* z, const int* ldz, int* ns, int* nd, blac_complex* sh, blac_complex* v,
                  const int* ldv, const int* nh, blac_complex* t, const int* ldt, const int* nv,
                  blac_complex* wv, const int* ldwv, blac_complex* work, const int* lwork);

/** zlaqr0 without recursion. */
void blac_zlaqr4_(const int* wantt, const int* wantz, const int* n, const int* ilo, const int* ihi,
                  blac_complex* h, const int* ldh, blac_complex* w, const int* iloz, const int* ihiz,
                  blac_complex* z, const int* ldz, blac_complex* work, const int* lwork, int* info);

/** One multi-shift QR sweep. */
void blac_zlaqr5_(const int* wantt, const int* wantz, const int* kacc22, const int* n, const int* ktop,
                  const int* kbot, const int* nshfts, blac_complex* s, blac_complex* h, const int* ldh,
                  const int* iloz, const int* ihiz, blac_complex* z, const int* ldz, blac_complex* v,
                  const int* ldv, blac_complex* u, const int* ldu, const int* nv, blac_complex* wv,
                  const int* ldwv, const int* nh, blac_complex* wh, const int* ldwh);

/** Eigenvectors of a complex triangular matrix; t is changed during the call and restored, select holds
 * logicals. */
void blac_ztrevc_(const char* side, const char* howmny, const int* select, const int* n, blac_complex* t,
                  const int* ldt, blac_complex* vl, const int* ldvl, blac_complex* vr, const int* ldvr,
                  const int* mm, int* m, blac_complex* work, double* rwork, int* info);

/** Reorders a complex Schur factorisation. */
void blac_ztrexc_(const char* compq, const int* n, blac_complex* t, const int* ldt, blac_complex* q,
                  const int* ldq, const int* ifst, const int* ilst, int* info);

/** @} */

/** @name Auxiliary
 * @{ */

/** B := A, all of it or one triangle. */
void blac_dlacpy_(const char* uplo, const int* m, const int* n, const double* a, const int* lda, double* b,
                  const int* ldb);

/** Sets the off-diagonal entries to alpha and the diagonal to beta. */
void blac_dlaset_(const char* uplo, const int* m, const int* n, const double* alpha, const double* beta,
                  double* a, const int* lda);

/** Machine parameters as the library states them; see blac_hdmcon_ for the module's own. */
double blac_dlamch_(const char* cmach);

/** Returns sqrt(x² + y² + z²) without needless overflow. */
double blac_dlapy3_(const double* x, const double* y, const double* z);

/** p + i·q := (a + i·b)/(c + i·d) without needless overflow. */
void blac_dladiv_(const double* a, const double* b, const double* c, const double* d, double* p, double* q);

/**
 * result := x/y without needless overflow.
 *
 * Complex results as in blac_zdotc_; the LAPACK library is tried by itself, for it need not be the BLAS.
 * @param result out, as in blac_zdotc_
 * @param x      numerator, in
 * @param y      denominator, in
 */
void blac_zladiv_(blac_complex* result, const blac_complex* x, const blac_complex* y);

/** Returns 1 if infinities (ispec = 0), and NaNs too (ispec = 1), can be trusted, else 0; zero and one are
 * single-precision. */
int blac_ieeeck_(const int* ispec, const float* zero, const float* one);

/**
 * Tuning parameters (block sizes and the like) as the library states them.
 *
 * The one routine that reads hidden lengths: C and C++ callers pass those of name and opts as the last
 * arguments.
 * @param ispec       which parameter
 * @param name        [name_length] name of the routine asked for
 * @param opts        [opts_length] its options, in one string
 * @param n1,n2,n3,n4 its dimensions; -1 where unused
 * @param name_length length of name, by value, handed on unchanged
 * @param opts_length length of opts, by value, handed on unchanged
 */
int blac_ilaenv_(const int* ispec, const char* name, const char* opts, const int* n1, const int* n2,
                 const int* n3, const int* n4, size_t name_length, size_t opts_length);

/** Returns the last column that is not zero, from 1. */
int blac_ilazlc_(const int* m, const int* n, const blac_complex* a, const int* lda);

/** Returns the last row that is not zero, from 1. */
int blac_ilazlr_(const int* m, const int* n, const blac_complex* a, const int* lda);

/** Conjugates a complex vector. */
void blac_zlacgv_(const int* n, blac_complex* x, const int* incx);

/** dlacpy, complex. */
void blac_zlacpy_(const char* uplo, const int* m, const int* n, const blac_complex* a, const int* lda,
                  blac_complex* b, const int* ldb);

/** Returns the largest entry, one-, infinity- or Frobenius norm of a complex matrix. */
double blac_zlange_(const char* norm, const int* m, const int* n, const blac_complex* a, const int* lda,
                    double* work);

/** Generates a plane rotation with real cosine and complex sine. */
void blac_zlartg_(const blac_complex* f, const blac_complex* g, double* c, blac_complex* s, blac_complex* r);

/** A := A·cto/cfrom without needless overflow. */
void blac_zlascl_(const char* type, const int* kl, const int* ku, const double* cfrom, const double* cto,
                  const int* m, const int* n, blac_complex* a, const int* lda, int* info);

/** dlaset, complex. */
void blac_zlaset_(const char* uplo, const int* m, const int* n, const blac_complex* alpha,
                  const blac_complex* beta, blac_complex* a, const int* lda);

/** Updates scale²·sumsq by the squares of a complex vector. */
void blac_zlassq_(const int* n, const blac_complex* x, const int* incx, double* scale, double* sumsq);

/** Plane rotation of complex vectors, real cosine and complex sine. */
void blac_zrot_(const int* n, blac_complex* cx, const int* incx, blac_complex* cy, const int* incy,
                const double* c, const blac_complex* s);

/** @} */

/** @name Constants
 * @{ */

/**
 * Machine and mathematical constants of the module's own, from a fixed table.
 *
 * |  i | value               | what                                  | bits               |
 * |---:|:--------------------|:--------------------------------------|:-------------------|
 * |  1 | NaN                 | returned for any i outside 1..16, too | 0x7FFFFFFFFFFFFFFF |
 * |  2 | 4.49423283715579e307 | 2^1022                               | 0x7FD0000000000000 |
 * |  3 | 1.7976931348623157e308 | largest double                     | 0x7FEFFFFFFFFFFFFF |
 * |  4 | 2.2250738585072014e-308 | smallest normalised double        | 0x0010000000000000 |
 * |  5 | 2.220446049250313e-16 | 2^-52, spacing of doubles at 1      | 0x3CB0000000000000 |
 * |  6 | 1.1102230246251568e-16 | next double above 2^-53            | 0x3CA0000000000001 |
 * |  7 | 2                   | radix                                 | 0x4000000000000000 |
 * |  8 | 53                  | digits of the significand             | 0x404A800000000000 |
 * |  9 | 709                 |                                       | 0x4086280000000000 |
 * | 10 | -708                |                                       | 0xC086200000000000 |
 * | 11 | 2147483647          | largest signed 32-bit integer         | 0x41DFFFFFFFC00000 |
 * | 12 | 3.141592653589793   | pi                                    | 0x400921FB54442D18 |
 * | 13 | 2.718281828459045   | e                                     | 0x4005BF0A8B145769 |
 * | 14 | 0.5772156649015329  | Euler's constant                      | 0x3FE2788CFC6FB619 |
 * | 15 | 0.017453292519943295 | pi/180                               | 0x3F91DF46A2529D39 |
 * | 16 | 57.29577951308232   | 180/pi                                | 0x404CA5DC1A63C1F8 |
 * @param i index, from 1
 */
double blac_hdmcon_(const int* i);

/** @} */

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup vectors Vector utilities
 *
 * Fill, scale, copy, add and conjugate vectors of doubles. In the names, a trailing `i` means that each
 * vector has its own increment, a leading `b` a 64-bit length. n < 1 reads and writes nothing; the increments
 * do not matter then.
 *
 * Element k of a vector with increment inc lies at position 1 + (k-1)·inc: the walk starts at the first
 * element given and goes down for a negative increment. The results are those of the loop over k = 1..n, one
 * element after the other, whatever the increments: with 0, every k reads, or writes, the first element, and
 * the last write stays. An output may be the same array as an input with the same increment; with other
 * overlaps the loop reads what it has written before.
 *
 * Copies and negations move bits: a NaN keeps its payload and its signalling bit, and a negation flips its
 * sign too. Sums and products treat NaN as IEEE 754 has it.
 * @{
 */

/**
 * x(k) := a, k = 1..n.
 * @param n number of elements
 * @param x [n] vector, out
 * @param a value, in; not read when n < 1
 */
void tovbla_vdasn_(const int* n, double* x, const double* a);

/**
 * x(k) := a, k = 1..n, for any length.
 * @param n    number of elements, a 64-bit integer
 * @param x, a as in tovbla_vdasn_
 */
void tovbla_bvdasn_(const int64_t* n, double* x, const double* a);

/**
 * x(k) := x(k)·a, k = 1..n.
 * @param n number of elements
 * @param x [n] vector, in/out
 * @param a factor, in; not read when n < 1; must not be an element of x
 */
void tovbla_vdscale_(const int* n, double* x, const double* a);

/**
 * x(k) := x(k)·a, k = 1..n, for any length.
 * @param n    number of elements, a 64-bit integer
 * @param x, a as in tovbla_vdscale_
 */
void tovbla_bvdscale_(const int64_t* n, double* x, const double* a);

/**
 * y(k) := x(k), k = 1..n.
 * @param n    number of elements
 * @param x    vector, in
 * @param incx increment of x, any sign
 * @param y    vector, out; elements between those of the walk are not touched
 * @param incy increment of y, any sign
 */
void tovbla_vdcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy);

/**
 * y(k) := -x(k), k = 1..n: every sign bit is flipped, also of zeros and NaN.
 * @param n, x, incx, y, incy as in tovbla_vdcopyi_
 */
void tovbla_vdnegcopyi_(const int* n, const double* x, const int* incx, double* y, const int* incy);

/**
 * z(k) := x(k) + y(k), k = 1..n.
 * @param n    number of elements
 * @param x    vector, in
 * @param incx increment of x, any sign
 * @param y    vector, in
 * @param incy increment of y, any sign
 * @param z    vector, out; elements between those of the walk are not touched
 * @param incz increment of z, any sign
 */
void tovbla_vdaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                    double* z, const int* incz);

/**
 * z(k) := -(x(k) + y(k)), k = 1..n: the rounded sum with its sign bit flipped. So 0 + 0 and 1 + -1 give -0,
 * and a NaN the opposite sign of that which the sum has.
 * @param n, x, incx, y, incy, z, incz as in tovbla_vdaddi_
 */
void tovbla_vdnegaddi_(const int* n, const double* x, const int* incx, const double* y, const int* incy,
                       double* z, const int* incz);

/**
 * y(k) := conj(x(k)), k = 1..n: real parts are copied, the sign bits of the imaginary parts flipped.
 * @param n number of complex elements
 * @param x [n] vector, in
 * @param y [n] vector, out; may be x
 */
void tovbla_vzconj_(const int* n, const blac_complex* x, blac_complex* y);

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup blocks Block kernels
 *
 * Addition of one dense block into another, copies, fills and triangle utilities. The caller passes the first
 * element of a block and the leading dimension of the storage around it; nothing outside the block is
 * touched.
 *
 * Each entry of a sum receives exactly one rounded addition, each scaled entry one rounded multiplication.
 * What is copied or filled keeps its bits, those of signalling NaN and of signed zeros included.
 * @{
 */

/**
 * A := A + B.
 * @param m   rows
 * @param n   columns
 * @param a   [lda × n] target, in/out
 * @param lda leading dimension of a, at least m
 * @param b   [ldb × n] source, in
 * @param ldb leading dimension of b, at least m
 */
void blac_addrectblock_(const int* m, const int* n, double* a, const int* lda, const double* b,
                        const int* ldb);

/**
 * A := A + Bᵀ: a(i,j) := a(i,j) + b(j,i).
 *
 * Goes through the blocks in small tiles, so that neither is read or written with a long stride.
 * @param m   rows of A, columns of B
 * @param n   columns of A, rows of B
 * @param a   [lda × n] target, in/out
 * @param lda leading dimension of a, at least m
 * @param b   [ldb × m] source, in
 * @param ldb leading dimension of b, at least n
 */
void blac_addrectblockt_(const int* m, const int* n, double* a, const int* lda, const double* b,
                         const int* ldb);

/**
 * A := A + B on the lower triangles with their diagonals; neither upper triangle is read or written.
 * @param n   order
 * @param a   [lda × n] target, in/out
 * @param lda leading dimension of a, at least n
 * @param b   [ldb × n] source, in
 * @param ldb leading dimension of b, at least n
 */
void blac_addtriblock_(const int* n, double* a, const int* lda, const double* b, const int* ldb);

/**
 * Copies a diagonal and forms its reciprocals: d(i) := a(i,i), dinv(i) := 1/d(i).
 *
 * A pivot with |a(i,i)| <= 1e-36, or NaN, is tiny: it gives d(i) = 1e36 and dinv(i) = 1e-36 instead. The test
 * is strict, a pivot of exactly ±1e-36 is tiny. A is not changed; the output shows which pivots were
 * replaced.
 * @param n    order
 * @param a    [lda × n] matrix, in; only its diagonal is read
 * @param lda  leading dimension, at least n
 * @param d    [n] pivots, out
 * @param dinv [n] reciprocals, out
 */
void blac_copydiag_(const int* n, const double* a, const int* lda, double* d, double* dinv);

/**
 * B := Aᵀ: b(i,j) := a(j,i), in tiles as blac_addrectblockt_.
 * @param m   rows of B, columns of A
 * @param n   columns of B, rows of A
 * @param a   [lda × m] source, in
 * @param lda leading dimension of a, at least n
 * @param b   [ldb × n] transpose, out
 * @param ldb leading dimension of b, at least m
 */
void blac_datcpy_(const int* m, const int* n, const double* a, const int* lda, double* b, const int* ldb);

/**
 * B := A·diag(s): b(i,j) := a(i,j)·s(j). The plain product also for s(j) = 0: an infinite or NaN a(i,j) gives
 * NaN.
 * @param m   rows
 * @param n   columns
 * @param a   [lda × n] source, in
 * @param lda leading dimension of a, at least m
 * @param s   [n] factors of the columns, in; not read when m < 1
 * @param b   [ldb × n] scaled copy, out; may be a, if ldb = lda
 * @param ldb leading dimension of b, at least m
 */
void blac_dlacpysc_(const int* m, const int* n, const double* a, const int* lda, const double* s, double* b,
                    const int* ldb);

/**
 * x(k) := a, k = 1..n, with an increment.
 * @param n    number of elements
 * @param a    value, in; not read when n < 1
 * @param x    vector, out; elements between those of the walk are not touched
 * @param incx increment; the walk starts at x[0] and goes down if it is negative; 0 writes x[0] n times
 */
void blac_dset_(const int* n, const double* a, double* x, const int* incx);

/**
 * a(i,j) := +0 on the lower triangle with the diagonal; the strict upper triangle is not touched.
 * @param n   order
 * @param a   [lda × n] matrix, in/out
 * @param lda leading dimension, at least n
 */
void blac_zerotri_(const int* n, double* a, const int* lda);

/**
 * C := beta·C + alpha·A·Bᵀ on the lower block trapezoid of C.
 *
 * C is cut into column blocks of width nb, the last one narrower; each block takes the rows from its own
 * first column down to n, in one call of the library's `dgemm_`, which also judges the arguments. So the
 * diagonal blocks are formed in full, upper triangles included, and nothing above them is read or written. nb
 * >= n forms the whole square in one call; n = 0 makes one call with m = n = 0, which does nothing.
 * blac_dsyrk_scaled_ does the same with a diagonal between the factors.
 * @param nb    width of the column blocks; must not be 0; negative: one block of width n
 * @param n     order of C, rows of A and B
 * @param k     columns of A and B
 * @param alpha factor of the product
 * @param a     [lda × k] left factor, in
 * @param lda   leading dimension of a, at least n
 * @param b     [ldb × k] right factor, in; may be a
 * @param ldb   leading dimension of b, at least n
 * @param beta  factor of the old C, as `dgemm_` takes it
 * @param c     [ldc × n] result, in/out
 * @param ldc   leading dimension of c, at least n
 */
void blac_dhamm_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                 const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                 const int* ldc);

/**
 * Makes a symmetric matrix whole: copies one triangle onto the other. The diagonal and the source triangle
 * are not written.
 * @param uplo 'L' or 'l': a(i,j) := a(j,i) for i < j, the lower triangle holds the data; 'U' or 'u': for i >
 * j, the upper one does; anything else: nothing happens
 * @param n    order; below 2 nothing is written
 * @param a    [lda × n] matrix, in/out
 * @param lda  leading dimension, at least n
 */
void blac_reflect_(const char* uplo, const int* n, double* a, const int* lda);

#ifdef __cplusplus
}
#endif
/**
 * B := A, one block copy a column.
 * @param m   rows; must not be negative
 * @param n   columns
 * @param b   [ldb × n] copy, out; stands first
 * @param ldb leading dimension of b, at least m
 * @param a   [lda × n] source, in
 * @param lda leading dimension of a, at least m
 */
void blaC_copyrect_intr(int m, int n, double* b, int ldb, const double* a, int lda);

/**
 * a(i,j) := +0 for j = k0+1..k0+m and i = j..n: m columns of the lower triangle with the diagonal.
 * @param n   order
 * @param k0  columns to the left that are not touched
 * @param m   columns to clear; k0 + m must not exceed n
 * @param a   [lda × n] matrix, in/out: its first element, not that of column k0+1
 * @param lda leading dimension, at least n
 */
void blaC_zerotriC(int n, int k0, int m, double* a, int lda);
#ifdef __cplusplus
extern "C" {
#endif

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup scaling Diagonal scaling
 *
 * Multiplication of a block by a diagonal matrix that is held as a vector. Each entry receives exactly one
 * multiplication.
 * @{
 */

/**
 * B := A·diag(d), into a separate array.
 *
 * b(i,j) := a(i,j)·d(j). With b = a and ldb = lda the scaling is done in place; other overlaps are not
 * supported.
 * @param m   rows
 * @param n   columns
 * @param d   [n] diagonal, in; not read when m < 1
 * @param a   [lda × n] matrix, in
 * @param lda leading dimension of a, at least m
 * @param b   [ldb × n] scaled matrix, out
 * @param ldb leading dimension of b, at least m
 */
void blac_scale_(const int* m, const int* n, const double* d, const double* a, const int* lda, double* b,
                 const int* ldb);

/**
 * A := diag(d)·A in place: a(i,j) := a(i,j)·d(i).
 * @param m   rows
 * @param n   columns
 * @param a   [lda × n] matrix, in/out
 * @param lda leading dimension, at least m
 * @param d   [m] diagonal, in
 */
void blac_scale2_(const int* m, const int* n, double* a, const int* lda, const double* d);

/**
 * X := diag(d)·X in place for an m × n matrix X that is stored transposed: a(r,c) := a(r,c)·d(c).
 *
 * Seen on the stored array, its m columns of length n are scaled. Mind the order of the counts.
 * @param m   rows of X, columns of the array
 * @param n   columns of X, rows of the array
 * @param a   [lda × m] Xᵀ, in/out
 * @param lda leading dimension, at least n
 * @param d   [m] diagonal, in; not read when n < 1
 */
void blac_scale2t_(const int* m, const int* n, double* a, const int* lda, const double* d);

/**
 * L := L·diag(d) on the strictly lower triangle: a(i,j) := a(i,j)·d(j), i > j.
 *
 * The diagonal and the upper triangle are neither read nor written.
 * @param n   order
 * @param a   [lda × n] matrix, in/out
 * @param lda leading dimension, at least n
 * @param d   [n] diagonal, in; d(n) is never read
 */
void blac_scale_low_(const int* n, double* a, const int* lda, const double* d);

/**
 * Divides the columns of the strictly lower triangle by their pivots: a(i,j) := a(i,j)·r, i > j, with the
 * reciprocal r = 1/a(j,j) rounded once per column.
 *
 * A pivot with |a(j,j)| <= 1e-36, or NaN, is tiny and gives r = +0: finite entries below become zeros of
 * their sign, others NaN. Nothing is reported. The diagonal keeps its values, the upper triangle is neither
 * read nor written.
 * @param n   order
 * @param a   [lda × n] matrix, in/out
 * @param lda leading dimension, at least n
 */
void blac_scale_low2_(const int* n, double* a, const int* lda);

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup products Scaled products
 *
 * Products with a diagonal matrix D between the factors. The second factor is scaled into scratch memory, one
 * rounding an entry, and one call of the library's `dgemm_` does the rest: the result is that of `dgemm_` on
 * the rounded D·op(B).
 *
 * Scratch is n·k doubles: from the stack up to 48 KiB, from the heap beyond. Where the heap has no memory,
 * the product is made within those 48 KiB, in several calls of `dgemm_` on column blocks of C, and for a k
 * beyond 3072 on parts of the sum as well: the same result, up to the last bits of the sums. Nothing is
 * checked; `dgemm_` is called even for empty products and reports their leading dimension of 0 (k, or n when
 * transposed) through the library's error handler. An exception that the caller's own error handler throws
 * through `dgemm_` passes, but leaves scratch on the heap behind.
 * @{
 */

/**
 * C := beta·C + alpha·op(A)·D·op(B), with D read off the diagonal of a matrix.
 *
 * @param transa op(A), handed to `dgemm_` unchanged
 * @param transb 'T' or 't': op(B) = Bᵀ; 'N': B as stored. Do not use 'C': the scaling takes it for 'N',
 * `dgemm_` for 'T'
 * @param m      rows of op(A) and of C
 * @param n      columns of op(B) and of C
 * @param k      columns of op(A), rows of op(B), order of D
 * @param alpha  factor of the product
 * @param a      first factor, in: [lda × k] as stored, [lda × m] transposed
 * @param lda    leading dimension of a
 * @param b      second factor, in: k × n as stored, n × k for 'T'; must not overlap c
 * @param ldb    leading dimension of b
 * @param beta   factor of the old C, as `dgemm_` takes it
 * @param c      [ldc × n] result, in/out
 * @param ldc    leading dimension of c, at least m
 * @param d      matrix whose diagonal is D, in: D(l,l) = d[(l-1)·(ldd+1)]; used as it is, no threshold
 * @param ldd    leading dimension of d; 0 reads d as a plain vector
 */
void blac_dgemm_scaled_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                        const double* alpha, const double* a, const int* lda, const double* b, const int* ldb,
                        const double* beta, double* c, const int* ldc, const double* d, const int* ldd);

/**
 * C := beta·C + alpha·op(A)·diag(d)·op(B): as blac_dgemm_scaled_, with the diagonal in a plain vector.
 * @param transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc as in blac_dgemm_scaled_
 * @param d      [k] diagonal, in
 */
void blac_dgemm_scaled2_(const char* transa, const char* transb, const int* m, const int* n, const int* k,
                         const double* alpha, const double* a, const int* lda, const double* b,
                         const int* ldb, const double* beta, double* c, const int* ldc, const double* d);

/**
 * C := beta·C + alpha·A·diag(d)·Bᵀ on the lower block trapezoid of C.
 *
 * C is cut into column blocks of width nb, the last one narrower; each block takes the rows from its own
 * first column down to n, in one blac_dgemm_scaled2_. So the diagonal blocks are formed in full, upper
 * triangles included, and nothing above them is read or written. n = 0 makes one call with empty dimensions,
 * which `dgemm_` rejects.
 *
 * Speed (OpenBLAS): nb of 24 to 32 while n·nb·k stays below 10^6, which is a faster path of its matrix
 * product; otherwise 96, and up to 192 from n of about 2000. With two threads 96 from n of about 1000 on,
 * whatever k.
 * @param nb    width of the column blocks; must not be 0; negative: one block of width n
 * @param n     order of C, rows of A and B
 * @param k     columns of A and B, order of D
 * @param alpha factor of the product
 * @param a     [lda × k] left factor, in
 * @param lda   leading dimension of a, at least n
 * @param b     [ldb × k] right factor, in; may be a
 * @param ldb   leading dimension of b, at least n
 * @param beta  factor of the old C
 * @param c     [ldc × n] result, in/out
 * @param ldc   leading dimension of c, at least n
 * @param d     [k] diagonal, in
 */
void blac_dsyrk_scaled_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                        const int* lda, const double* b, const int* ldb, const double* beta, double* c,
                        const int* ldc, const double* d);

/**
 * C := beta·C + alpha·A·D·Aᵀ on the lower block trapezoid of C, with D read off the diagonal of a matrix.
 *
 * As blac_dsyrk_scaled_, one factor used on both sides, each block in one blac_dgemm_scaled_.
 * @param nb, n, k, alpha, a, lda, beta, c, ldc as in blac_dsyrk_scaled_
 * @param d     matrix whose diagonal is D, in: D(l,l) = d[(l-1)·(ldd+1)]
 * @param ldd   leading dimension of d; 0 reads d as a plain vector
 */
void blac_dsyrk_scaled2_(const int* nb, const int* n, const int* k, const double* alpha, const double* a,
                         const int* lda, const double* beta, double* c, const int* ldc, const double* d,
                         const int* ldd);

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup elimination Elimination of fronts
 *
 * In-place factorisation of a dense front without pivoting: A = L·D·Lᵀ (`selim`) or A = L·D·U (`uelim`), with
 * unit triangular L and U and diagonal D.
 *
 * Front of order 3, symmetric, before and after (x is not read, l and u multipliers, p pivots):
 *
 *     a11  x    x          p1     l21  l31
 *     a21  a22  x    ->    l21·p1 p2   l32
 *     a31  a32  a33        l31·p1 l32·p2 p3
 *
 * **Tiny pivots.** The plain routines replace a pivot with -tol <= p <= tol, or NaN, by 1e36 (reciprocal
 * 1e-36), which decouples its unknown; the test is strict, so a pivot of exactly ±tol is replaced, and tol =
 * 0 replaces only zeros and NaN. A replacement shows as d(k) = 1e36 and nowhere else. The regularised
 * routines (`_reg`) shift a tiny pivot by ±reg(k) instead and report it in dcorr(k).
 *
 * **Order of operations.** Pivots are taken in the order of the columns; each element receives, per pivot,
 * one rounded product of the unscaled column element and the rounded multiplier, subtracted at once.
 * Multipliers are products with the rounded reciprocal, never quotients.
 *
 * @par Symmetric, worked
 * @snippet eliminations.cpp symmetric
 * @par In panels
 * @snippet eliminations.cpp panels
 * @par Unsymmetric
 * @snippet eliminations.cpp unsymmetric
 * @par A tiny pivot, replaced
 * @snippet eliminations.cpp tiny
 * @par A tiny pivot, shifted
 * @snippet eliminations.cpp regularised
 * @{
 */

/**
 * A = L·D·Lᵀ of a block, unblocked.
 *
 * On return the diagonal holds the pivots, the strict lower triangle L·D, the strict upper triangle Lᵀ.
 * @param n    order; below 1 nothing is written
 * @param a    [lda × n] in: lower triangle with the diagonal (the strict upper triangle is not read); out:
 * factors
 * @param lda  leading dimension, at least n
 * @param d    [n] pivots as used, out
 * @param dinv [n] their reciprocals, 1e-36 for a replaced pivot, out
 * @param tol  absolute pivot tolerance
 */
void blac_selim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol);

/**
 * A + E = L·D·Lᵀ of a block, unblocked, with regularised pivots; E = diag(-dcorr).
 *
 * Pivot p is tested as q = p/reg(k) if reg(k) > 0, else q = p. Accepted, if q > tol(k) or -tol(k) > q, with
 * dcorr(k) = 0. Otherwise (NaN included) p is moved down by reg(k) if negpiv(k) = 1, else up, and dcorr(k) is
 * minus the shift (reg(k) = +0 moved up gives dcorr(k) = -0). The reciprocal is then formed as it falls: a
 * pivot still zero gives an infinite dinv(k).
 * @param n      order; below 1 nothing is written
 * @param a      [lda × n] in: lower triangle with the diagonal; out: factors as in blac_selim_small_
 * @param lda    leading dimension, at least n
 * @param d      [n] pivots, regularised, out
 * @param dinv   [n] their reciprocals, out
 * @param tol    [n] tolerances, in: relative to reg(k) where that is positive
 * @param negpiv [n] 1: shift downward; otherwise upward, in
 * @param reg    [n] size of the shift and scale of the test, in
 * @param dcorr  [n] 0 or minus the shift, out
 */
void blac_selim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                           const double* tol, const int* negpiv, const double* reg, double* dcorr);

/**
 * A = L·D·Lᵀ of a front, in panels of width nb.
 *
 * Full panels from the top left, one narrower (or equally wide) block last. Per panel: blac_selim_small_ on
 * the diagonal block; the library's `dtrsm_`("R","U","N","U") makes L·D of the rows below; blac_dsyrk_scaled_
 * with dinv updates the lower block trapezoid behind. Storage as in blac_selim_small_, except that
 * multipliers stand above the diagonal inside the diagonal blocks only; above those nothing is read or
 * written. The update computes with what stands above the diagonal of the blocks behind the first, though no
 * result depends on it: a caller who traps invalid operations puts numbers there.
 *
 * Speed (OpenBLAS): nb >= n up to an order of about 256, then with one thread 32 to 48, from 4000 on 96 to
 * 192; with two threads 48 to 96 up to 500, 96 beyond.
 *
 * Results depend on nb in their last bits. The panel count is a truncating division: n = 0, -1 ... 1 - nb are
 * not empty here but eliminate a block of order nb + n; do not pass them.
 * @param n    order, at least 1
 * @param nb   panel width; not 0; nb >= n eliminates unblocked
 * @param tol  absolute pivot tolerance
 * @param a    [lda × n] in: lower triangle with the diagonal; out: factors
 * @param lda  leading dimension, at least n
 * @param d    [n] pivots, out
 * @param dinv [n] reciprocals, out
 */
void blac_selim_(const int* n, const int* nb, const double* tol, double* a, const int* lda, double* d,
                 double* dinv);

/**
 * A + E = L·D·Lᵀ of a front, in panels of width nb, with regularised pivots.
 *
 * As blac_selim_, with blac_selim_small_reg_ on the diagonal blocks and blac_dtrsm_ for the solve. Mind that
 * the arguments stand in another order.
 * @param n, nb, a, lda as in blac_selim_
 * @param d, dinv, tol, negpiv, reg, dcorr [n] as in blac_selim_small_reg_
 */
void blac_selim_reg_(const int* n, const int* nb, double* a, const int* lda, double* d, double* dinv,
                     const double* tol, const int* negpiv, const double* reg, double* dcorr);

#ifdef __cplusplus
}
#endif
/**
 * A = L·D·Lᵀ of a front in packed block columns, and the inverse of L·D in the blocks below the diagonal.
 *
 * **Storage.** Let p = (n + nb - 1)/nb - 1 and r = n - p·nb. Block column q = 1..p has width nb and holds the
 * rows from its own diagonal block down, column-major with leading dimension n - (q-1)·nb; they follow one
 * another, and the last block, r × r with leading dimension r, follows them. That is S = n² - ((p-1)·p/2)·nb²
 * - p·nb·r doubles. Behind them stand d [n], dinv [n] and a work area of nb² doubles, whose content on entry
 * does not matter: S + 2·n + nb² doubles in all, which the caller provides.
 *
 * **Result.** Diagonal blocks, d and dinv are as blac_selim_small_ leaves them, panel by panel. With M = L·D
 * and N = M⁻¹ the off-diagonal blocks hold -N. The diagonal blocks N(q,q) = (L(q,q)·D(q))⁻¹ are not stored;
 * they are applied as triangular solves with the diagonal blocks. Then A⁻¹ = Nᵀ·D·N: x = A⁻¹·b is y := N·b, x
 * := Nᵀ·(d∘y).
 *
 * With n <= nb this is one blac_selim_small_ with lda = n; d starts at a + n².
 * @param n   order, at least 1
 * @param nb  panel width, at least 1
 * @param tol absolute pivot tolerance
 * @param a   storage as above; in: the lower triangle, block column by block column
 */
void blaC_selimC(int n, int nb, double tol, double* a);
#ifdef __cplusplus
extern "C" {
#endif

/**
 * A = L·D·U of a block, unblocked.
 *
 * The whole square is read and written. On return the diagonal holds the pivots, the strict lower triangle
 * L·D (columns times their pivots, not divided), the strict upper triangle U (rows times their reciprocals).
 * Row k right of the pivot is scaled in place, so a symmetric block is not factorised to the same bits as by
 * blac_selim_small_. The row of a replaced pivot is scaled by 1e-36, its column stays as it is.
 * @param n    order; below 1 nothing is written
 * @param a    [lda × n] block, in; factors, out
 * @param lda  leading dimension, at least n
 * @param d    [n] pivots as used, out
 * @param dinv [n] their reciprocals, 1e-36 for a replaced pivot, out
 * @param tol  absolute pivot tolerance
 */
void blac_uelim_small_(const int* n, double* a, const int* lda, double* d, double* dinv, const double* tol);

/**
 * A + E = L·D·U of a block, unblocked, with regularised pivots; E = diag(-dcorr).
 *
 * Storage as in blac_uelim_small_, pivots as in blac_selim_small_reg_.
 * @param n, a, lda, d, dinv as in blac_uelim_small_
 * @param tol, negpiv, reg, dcorr [n] as in blac_selim_small_reg_
 */
void blac_uelim_small_reg_(const int* n, double* a, const int* lda, double* d, double* dinv,
                           const double* tol, const int* negpiv, const double* reg, double* dcorr);

/**
 * A = L·D·U of a front, in panels of width nb.
 *
 * Full panels from the top left, one narrower (or equally wide) block last. Per panel: blac_uelim_small_ on
 * the diagonal block; the library's `dtrsm_`("R","U","N","U") makes L·D of the rows below,
 * `dtrsm_`("L","L","N","N") makes U of the columns to the right; `dgemm_` subtracts their product from the
 * square behind. Storage as in blac_uelim_small_, over the whole front.
 *
 * Speed (OpenBLAS): nb >= n up to an order of about 256, then with one thread 32 to 48, from 4000 on 96 to
 * 192; with two threads 48 to 96 up to 500, 96 beyond.
 *
 * Results depend on nb in their last bits. The panel count is a truncating division: n = 0, -1 ... 1 - nb are
 * not empty here but eliminate a block of order nb + n; do not pass them.
 * @param n    order, at least 1
 * @param nb   panel width; not 0; nb >= n eliminates unblocked
 * @param tol  absolute pivot tolerance
 * @param a    [lda × n] front, in; factors, out
 * @param lda  leading dimension, at least n
 * @param d    [n] pivots, out
 * @param dinv [n] reciprocals, out
 */
void blac_uelim_(const int* n, const int* nb, const double* tol, double* a, const int* lda, double* d,
                 double* dinv);

/**
 * A + E = L·D·U of a front, in panels of width nb, with regularised pivots.
 *
 * As blac_uelim_, with blac_uelim_small_reg_ on the diagonal blocks. Mind that the arguments stand in another
 * order.
 * @param n, nb, a, lda as in blac_uelim_
 * @param d, dinv, tol, negpiv, reg, dcorr [n] as in blac_selim_small_reg_
 */
void blac_uelim_reg_(const int* n, const int* nb, double* a, const int* lda, double* d, double* dinv,
                     const double* tol, const int* negpiv, const double* reg, double* dcorr);

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup cholesky Cholesky modification
 *
 * A lower triangular factor follows its matrix when a rank-one term is added or subtracted: O(n²) work
 * instead of a new factorisation. The strict upper triangle of the array is neither read nor written.
 * @{
 */

/**
 * L·S·Lᵀ := L·S·Lᵀ ± x·xᵀ for a factor with signs, S = diag(+1 for the first nlead columns, -1 for the rest).
 *
 * Column by column, j = 1..ncol, a plane rotation moves x(j) into the diagonal, with t = x(j)/l(j,j):
 * - signs of the column and of the term agree: c = sqrt(t² + 1), l(i,j) := (t·x(i) + l(i,j))/c;
 * - they differ: refused if |t| >= 1 - tol, else c = sqrt(1 - t²), l(i,j) := (l(i,j) - t·x(i))/c;
 * - both: l(j,j) := l(j,j)·c, and with the new l(i,j) x(i) := x(i)·c - t·l(i,j), for i = j+1..n.
 *
 * So nlead >= n is the update ("P") or downdate ("N") of a plain Cholesky factor. With ncol < n, x(ncol+1..n)
 * returns what the trailing columns have yet to absorb. A zero diagonal element gives infinities and NaN that
 * run on; a NaN t is not refused.
 * @param job   'P': add x·xᵀ; 'N': subtract it; any other: nothing is done, info = 0
 * @param n     order of L
 * @param nlead columns with sign +1, at least 0
 * @param ncol  columns to modify, at most n; below 1 nothing changes
 * @param l     [ldl × n] factor, in/out: lower triangle of the first ncol columns
 * @param ldl   leading dimension, at least n
 * @param x     [n] in: the vector; out: x(i) as the rotations left it. x(j) stays as column j found it
 * @param tol   safety margin of the second kind of rotation
 * @param info  0; or the column j that was refused: columns 1..j-1 and x are then modified as far as j-1,
 * column j is unchanged
 */
void blac_cholupd_(const char* job, const int* n, const int* nlead, const int* ncol, double* l,
                   const int* ldl, double* x, const double* tol, int* info);

/**
 * L·Lᵀ := L·Lᵀ + x·xᵀ by Givens rotations, row by row of L.
 *
 * Each row is turned by the rotations of the rows above, t = c(i)·l(j,i) + ξ·s(i), ξ := ξ·c(i) - s(i)·l(j,i),
 * l(j,i) := t from ξ = x(j) on; then the library's `drotg_` zeroes ξ against l(j,j). Diagonal elements may
 * come out negative, as `drotg_` has it. Never fails.
 * @param l   [ldl × p] factor, in/out
 * @param ldl leading dimension, at least p
 * @param p   order of L; below 1 nothing is touched
 * @param x   [p] in
 * @param c   [p] cosines of the rotations, out
 * @param s   [p] sines, out
 */
void blac_dchud_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s);

/**
 * L·Lᵀ := L·Lᵀ - x·xᵀ by Givens rotations, if the result is positive definite.
 *
 * Solves L·a = x with the library's `ddot_` on the rows of L; refuses unless `dnrm2_` of a is below 1; turns
 * a into rotations from the last row up, and applies them to the rows of L.
 * @param l    [ldl × p] factor, in/out; unchanged when refused
 * @param ldl  leading dimension, at least p
 * @param p    order of L; below 1 only s(1) = x(1)/l(1,1) is formed (all three must exist)
 * @param x    [p] in
 * @param c    [p] cosines, out; unchanged when refused
 * @param s    [p] sines, out; L⁻¹·x when refused
 * @param info 0; or -1: refused, the norm of L⁻¹·x is 1 or more, or NaN
 */
void blac_dchdd_(double* l, const int* ldl, const int* p, const double* x, double* c, double* s, int* info);

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/**
 * @defgroup sparse Sparse products
 *
 * Products of a sparse matrix A, m × n, or of its transpose, with blocks of dense vectors.
 *
 * **Storage of A.** Compressed rows, and here everything counts from zero: the entries of row i = 0..m-1 are
 * a[p], in column ja[p] = 0..n-1, for the offsets p = ia[i]..ia[i+1]-1. ia[0] need not be 0. A row with
 * ia[i+1] <= ia[i] is empty. Columns need not be in order within a row, and may repeat. Nothing of this is
 * checked.
 *
 * The dense matrices have their row count as leading dimension. Each column of the result is the same
 * whatever columns stand beside it.
 * @{
 */

/**
 * Y := A·X.
 *
 * y(i,k) is the sum, from +0 on and in storage order, of a[p]·x(ja[p],k) over the entries of row i. All of Y
 * is written, empty rows get +0; what Y held before is not read.
 * @param a    [largest offset + 1] values of the entries, in
 * @param x    [n × nrhs] in
 * @param ia   [m + 1] row pointers, in
 * @param ja   [largest offset + 1] column numbers, in
 * @param y    [m × nrhs] out; untouched when m < 1 or nrhs < 1
 * @param m    rows of A
 * @param n    columns of A; serves only as the leading dimension of x
 * @param nrhs columns of X and Y
 */
void blac_sparse_umv_(const double* a, const double* x, const int* ia, const int* ja, double* y, const int* m,
                      const int* n, const int* nrhs);

/**
 * Y := Aᵀ·X.
 *
 * Y is cleared to +0, and then each entry, row by row and in storage order, adds to it: y(ja[p],k) :=
 * (a[p]·x(i,k)
 * + 0.0) + y(ja[p],k). Empty rows read nothing of X.
 * @param a    [largest offset + 1] values of the entries, in
 * @param x    [m × nrhs] in
 * @param ia   [m + 1] row pointers, in
 * @param ja   [largest offset + 1] column numbers, in
 * @param y    [n × nrhs] out; all +0 when m < 1, untouched when nrhs < 1; with n < 1 it is added to without
 * being cleared
 * @param m    rows of A and of X
 * @param n    columns of A, rows of Y
 * @param nrhs columns of X and Y
 */
void blac_sparse_umtv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                       const int* m, const int* n, const int* nrhs);

/**
 * Y := A(list,:)ᵀ·X: the product with some rows of A, of which X holds just the partners.
 *
 * As blac_sparse_umtv_, over the rows list[r] of A and the rows r of X, r = 0..nl-1.
 * @param a    [largest offset + 1] values of the entries, in
 * @param x    [nl × nrhs] in: row r belongs to row list[r] of A
 * @param ia   row pointers of A, in
 * @param ja   [largest offset + 1] column numbers, in
 * @param y    [n × nrhs] out; all +0 when nl < 1, untouched when nrhs < 1; with n < 1 it is added to without
 * being cleared
 * @param nl   number of listed rows, rows of X
 * @param n    columns of A, rows of Y
 * @param nrhs columns of X and Y
 * @param list [nl] row numbers of A from zero, in any order, repeats allowed, in
 */
void blac_sparse_sparse_umtv_(const double* a, const double* x, const int* ia, const int* ja, double* y,
                              const int* nl, const int* n, const int* nrhs, const int* list);

/** @} */

#ifdef __cplusplus
}
#endif

#endif
