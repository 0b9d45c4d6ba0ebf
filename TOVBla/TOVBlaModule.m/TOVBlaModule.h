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
 * routine return without touching memory, unless it says otherwise. Arguments must not overlap, unless a
 * routine says that they may. Arrays may start at any address, 8-byte aligned or not.
 *
 * **Bits.** Every operation named in a formula is rounded on its own; there is no fused multiply-add and no
 * reordering of sums. Results do not depend on the processor, on the alignment of the arrays or on what
 * surrounds them. NaN and infinities go through the formulas as IEEE 754 has it: no product is skipped
 * because a factor is zero.
 *
 * **Threads.** Every routine but the lifecycle calls may run at the same time on distinct output arrays. No
 * routine keeps anything between calls (blac_zdotc_ and blac_zladiv_ remember how the library beneath returns
 * complex values).
 */
#ifndef TOVBLAMODULE_H
#define TOVBLAMODULE_H

#include <stddef.h>

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
/* @LAPACK@ */

/* -------------------------------------------------------------------------------------------------------------
 */
/* @VECTORS@ */

/* -------------------------------------------------------------------------------------------------------------
 */
/* @BLOCKS@ */

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
 * Scratch is n·k doubles: from the stack up to 48 KiB, from the heap beyond (from the stack again if the heap
 * has none). Nothing is checked; `dgemm_` is called even for empty products and reports their leading
 * dimension of 0 (k, or n when transposed) through the library's error handler.
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
 * written.
 *
 * Results depend on nb in their last bits. n = 0 is not empty here: it eliminates an nb × nb block; do not
 * pass it.
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

/** @} */

/* -------------------------------------------------------------------------------------------------------------
 */
/* @CHOLESKY@ */

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
 * The dense matrices have their row count as leading dimension. Each column of the result is the same whatever
 * columns stand beside it.
 * @{
 */

/**
 * Y := A·X.
 *
 * y(i,k) is the sum, from +0 on and in storage order, of a[p]·x(ja[p],k) over the entries of row i. All of Y is
 * written, empty rows get +0; what Y held before is not read.
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

/** @} */

#ifdef __cplusplus
}
#endif

#endif
