! SPDX-License-Identifier: BSD-3-Clause
! Interfaces of everything that libZEFTOVBlaModule exports, so that a wrong argument is a compile error:
!
!     use tovbla
!     call blac_selim_small(n, a, n, d, dinv, 1d-14)
!
! The header TOVBlaModule.h describes the routines; here stands what each is for in a line. A module of
! interfaces only: there is nothing to link but the library.
!
! - Kinds are written out (integer(4), real(8), complex(8), logical(4)), so that compiler options that change
!   the default kinds show as errors and not as wrong results.
! - Arrays are assumed-size: whole arrays of any rank fit, and so does an element, as the start of a block:
!   a(i, j) with the leading dimension of the array around it. What a routine may write is intent(inout), be
!   it result or work space: elements that a routine skips keep their values.
! - Complex results come back through a hidden first argument in this library, and not as gfortran returns
!   them. So blac_zdotc, blac_zdotu and blac_zladiv are subroutines here, with the result first.
! - Routines that Fortran could not call by itself (arguments by value, C++ names) are bound by bind(c).
module tovbla
    use, intrinsic :: iso_c_binding, only: c_double, c_int
    implicit none
    private :: c_double, c_int

    interface
        ! ----------------------------------------------------------------------------------------------------
        ! Module: lifecycle and threads
        ! ----------------------------------------------------------------------------------------------------

        ! Brings up the module: the first call in the process adds 3 to the tally (2 if the core was in use
        ! already).
        subroutine tovblamodule_initialize(tally) bind(c, name='_Z23TOVBlaModule_initializeRi')
            import :: c_int
            integer(c_int), intent(inout) :: tally
        end subroutine

        ! Takes down the module: the call that matches the first initialisation takes away what that one
        ! added.
        subroutine tovblamodule_finalize(tally) bind(c, name='_Z21TOVBlaModule_finalizeRi')
            import :: c_int
            integer(c_int), intent(inout) :: tally
        end subroutine

        ! Brings up the core component alone: adds 1 to the tally if it was unused.
        subroutine tovblacore_initialize(tally) bind(c, name='_Z21TOVBlaCore_initializeRi')
            import :: c_int
            integer(c_int), intent(inout) :: tally
        end subroutine

        ! Takes down the core component: subtracts 1 from the tally if it is unused afterwards.
        subroutine tovblacore_finalize(tally) bind(c, name='_Z19TOVBlaCore_finalizeRi')
            import :: c_int
            integer(c_int), intent(inout) :: tally
        end subroutine

        ! TOVBlaModule_initialize with a tally private to the module.
        subroutine tovblamodule_initializec() bind(c, name='TOVBlaModule_initializeC')
        end subroutine

        ! TOVBlaModule_finalize with the same private tally.
        subroutine tovblamodule_finalizec() bind(c, name='TOVBlaModule_finalizeC')
        end subroutine

        ! Number of threads that the BLAS library beneath may use, as that library reports it; 1 for a
        ! library without threads.
        integer(c_int) function blac_get_num_threads() bind(c, name='blaC_get_num_threads')
            import :: c_int
        end function

        ! Hands the thread count to the BLAS library beneath, unchanged and unchecked; a library without
        ! threads ignores it.
        subroutine blac_set_num_threads(count) bind(c, name='blaC_set_num_threads')
            import :: c_int
            integer(c_int), value :: count
        end subroutine

        ! Does nothing.
        subroutine blac_formalize() bind(c, name='blaC_formalize')
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! BLAS
        ! ----------------------------------------------------------------------------------------------------

        ! Level 1: vectors

        ! Sum of the absolute values: returns Σ |x(i)|.
        real(8) function blac_dasum(n, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: x(*)
        end function

        ! y := a·x + b·y.
        subroutine blac_daxpby(n, a, x, incx, b, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: a, x(*), b
            real(8), intent(inout) :: y(*)
        end subroutine

        ! y := a·x + y.
        subroutine blac_daxpy(n, a, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: a, x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! y := x.
        subroutine blac_dcopy(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! Returns xᵀ·y.
        real(8) function blac_ddot(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: x(*), y(*)
        end function

        ! Returns the Euclidean norm of x.
        real(8) function blac_dnrm2(n, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: x(*)
        end function

        ! Plane rotation: x := c·x + s·y, y := c·y - s·x, with the old x in both.
        subroutine blac_drot(n, x, incx, y, incy, c, s)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(inout) :: x(*), y(*)
            real(8), intent(in) :: c, s
        end subroutine

        ! x := a·x.
        subroutine blac_dscal(n, a, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: a
            real(8), intent(inout) :: x(*)
        end subroutine

        ! Exchanges x and y.
        subroutine blac_dswap(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(inout) :: x(*), y(*)
        end subroutine

        ! Returns the first index, from 1, of the largest |x(i)|; 0 for n < 1.
        integer(4) function blac_idamax(n, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: x(*)
        end function

        ! Returns the first index, from 1, of the largest |Re x(i)| + |Im x(i)|; 0 for n < 1.
        integer(4) function blac_izamax(n, x, incx)
            integer(4), intent(in) :: n, incx
            complex(8), intent(in) :: x(*)
        end function

        ! y := a·x + y, complex.
        subroutine blac_zaxpy(n, a, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(in) :: a, x(*)
            complex(8), intent(inout) :: y(*)
        end subroutine

        ! y := x, complex.
        subroutine blac_zcopy(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(in) :: x(*)
            complex(8), intent(inout) :: y(*)
        end subroutine

        ! x := a·x, x complex, a real.
        subroutine blac_zdscal(n, a, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: a
            complex(8), intent(inout) :: x(*)
        end subroutine

        ! x := a·x, complex.
        subroutine blac_zscal(n, a, x, incx)
            integer(4), intent(in) :: n, incx
            complex(8), intent(in) :: a
            complex(8), intent(inout) :: x(*)
        end subroutine

        ! Exchanges x and y, complex.
        subroutine blac_zswap(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(inout) :: x(*), y(*)
        end subroutine

        ! result := Σ conj(zx(i))·zy(i).
        subroutine blac_zdotc(result, n, zx, incx, zy, incy)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(out) :: result
            complex(8), intent(in) :: zx(*), zy(*)
        end subroutine

        ! result := the first four bytes of what `zdotu_` returns, read as single precision, + 0i.
        subroutine blac_zdotu(result, n, zx, incx, zy, incy)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(out) :: result
            complex(8), intent(in) :: zx(*), zy(*)
        end subroutine

        ! |Re z| + |Im z|, read as single precision.
        real(8) function blac_dcabs1(z)
            complex(8), intent(in) :: z
        end function

        ! Σ |Re zx(i)| + |Im zx(i)|, read as single precision like blac_dcabs1_.
        real(8) function blac_dzasum(n, zx, incx)
            integer(4), intent(in) :: n, incx
            complex(8), intent(in) :: zx(*)
        end function

        ! The Euclidean norm of x, read as single precision like blac_dcabs1_.
        real(8) function blac_dznrm2(n, x, incx)
            integer(4), intent(in) :: n, incx
            complex(8), intent(in) :: x(*)
        end function

        ! Level 2: matrix and vector

        ! y := alpha·op(A)·x + beta·y, A general m × n.
        subroutine blac_dgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy)
            integer(4), intent(in) :: m, n, lda, incx, incy
            character, intent(in) :: trans
            real(8), intent(in) :: alpha, a(lda, *), x(*), beta
            real(8), intent(inout) :: y(*)
        end subroutine

        ! A := alpha·x·yᵀ + A, A general m × n.
        subroutine blac_dger(m, n, alpha, x, incx, y, incy, a, lda)
            integer(4), intent(in) :: m, n, incx, incy, lda
            real(8), intent(in) :: alpha, x(*), y(*)
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! y := alpha·A·x + beta·y, A symmetric with k off-diagonals, in band storage.
        subroutine blac_dsbmv(uplo, n, k, alpha, a, lda, x, incx, beta, y, incy)
            integer(4), intent(in) :: n, k, lda, incx, incy
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, a(lda, *), x(*), beta
            real(8), intent(inout) :: y(*)
        end subroutine

        ! y := alpha·A·x + beta·y, A symmetric, one triangle packed.
        subroutine blac_dspmv(uplo, n, alpha, ap, x, incx, beta, y, incy)
            integer(4), intent(in) :: n, incx, incy
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, ap(*), x(*), beta
            real(8), intent(inout) :: y(*)
        end subroutine

        ! A := alpha·x·xᵀ + A, A symmetric, one triangle packed.
        subroutine blac_dspr(uplo, n, alpha, x, incx, ap)
            integer(4), intent(in) :: n, incx
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, x(*)
            real(8), intent(inout) :: ap(*)
        end subroutine

        ! A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle packed.
        subroutine blac_dspr2(uplo, n, alpha, x, incx, y, incy, ap)
            integer(4), intent(in) :: n, incx, incy
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, x(*), y(*)
            real(8), intent(inout) :: ap(*)
        end subroutine

        ! y := alpha·A·x + beta·y, A symmetric, one triangle read.
        subroutine blac_dsymv(uplo, n, alpha, a, lda, x, incx, beta, y, incy)
            integer(4), intent(in) :: n, lda, incx, incy
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, a(lda, *), x(*), beta
            real(8), intent(inout) :: y(*)
        end subroutine

        ! A := alpha·x·xᵀ + A, A symmetric, one triangle updated.
        subroutine blac_dsyr(uplo, n, alpha, x, incx, a, lda)
            integer(4), intent(in) :: n, incx, lda
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, x(*)
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! A := alpha·x·yᵀ + alpha·y·xᵀ + A, A symmetric, one triangle updated.
        subroutine blac_dsyr2(uplo, n, alpha, x, incx, y, incy, a, lda)
            integer(4), intent(in) :: n, incx, incy, lda
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, x(*), y(*)
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! x := op(A)·x, A triangular, packed.
        subroutine blac_dtpmv(uplo, trans, diag, n, ap, x, incx)
            integer(4), intent(in) :: n, incx
            character, intent(in) :: uplo, trans, diag
            real(8), intent(in) :: ap(*)
            real(8), intent(inout) :: x(*)
        end subroutine

        ! x := op(A)⁻¹·x, A triangular, packed.
        subroutine blac_dtpsv(uplo, trans, diag, n, ap, x, incx)
            integer(4), intent(in) :: n, incx
            character, intent(in) :: uplo, trans, diag
            real(8), intent(in) :: ap(*)
            real(8), intent(inout) :: x(*)
        end subroutine

        ! x := op(A)·x, A triangular.
        subroutine blac_dtrmv(uplo, trans, diag, n, a, lda, x, incx)
            integer(4), intent(in) :: n, lda, incx
            character, intent(in) :: uplo, trans, diag
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: x(*)
        end subroutine

        ! x := op(A)⁻¹·x, A triangular.
        subroutine blac_dtrsv(uplo, trans, diag, n, a, lda, x, incx)
            integer(4), intent(in) :: n, lda, incx
            character, intent(in) :: uplo, trans, diag
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: x(*)
        end subroutine

        ! y := alpha·op(A)·x + beta·y, complex, A general m × n.
        subroutine blac_zgemv(trans, m, n, alpha, a, lda, x, incx, beta, y, incy)
            integer(4), intent(in) :: m, n, lda, incx, incy
            character, intent(in) :: trans
            complex(8), intent(in) :: alpha, a(lda, *), x(*), beta
            complex(8), intent(inout) :: y(*)
        end subroutine

        ! A := alpha·x·yᴴ + A, complex.
        subroutine blac_zgerc(m, n, alpha, x, incx, y, incy, a, lda)
            integer(4), intent(in) :: m, n, incx, incy, lda
            complex(8), intent(in) :: alpha, x(*), y(*)
            complex(8), intent(inout) :: a(lda, *)
        end subroutine

        ! A := alpha·x·yᵀ + A, complex.
        subroutine blac_zgeru(m, n, alpha, x, incx, y, incy, a, lda)
            integer(4), intent(in) :: m, n, incx, incy, lda
            complex(8), intent(in) :: alpha, x(*), y(*)
            complex(8), intent(inout) :: a(lda, *)
        end subroutine

        ! x := op(A)·x, complex, A triangular.
        subroutine blac_ztrmv(uplo, trans, diag, n, a, lda, x, incx)
            integer(4), intent(in) :: n, lda, incx
            character, intent(in) :: uplo, trans, diag
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: x(*)
        end subroutine

        ! x := op(A)⁻¹·x, complex, A triangular.
        subroutine blac_ztrsv(uplo, trans, diag, n, a, lda, x, incx)
            integer(4), intent(in) :: n, lda, incx
            character, intent(in) :: uplo, trans, diag
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: x(*)
        end subroutine

        ! Level 3: matrix and matrix

        ! C := alpha·op(A)·op(B) + beta·C.
        subroutine blac_dgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
            integer(4), intent(in) :: m, n, k, lda, ldb, ldc
            character, intent(in) :: transa, transb
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha·A·B + beta·C or alpha·B·A + beta·C, A symmetric.
        subroutine blac_dsymm(side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, ldc)
            integer(4), intent(in) :: m, n, lda, ldb, ldc
            character, intent(in) :: side, uplo
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha·A·Aᵀ + beta·C or alpha·Aᵀ·A + beta·C, one triangle of C.
        subroutine blac_dsyrk(uplo, trans, n, k, alpha, a, lda, beta, c, ldc)
            integer(4), intent(in) :: n, k, lda, ldc
            character, intent(in) :: uplo, trans
            real(8), intent(in) :: alpha, a(lda, *), beta
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := alpha·A·Bᵀ + alpha·B·Aᵀ + beta·C or with AᵀB + BᵀA, one triangle of C.
        subroutine blac_dsyr2k(uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
            integer(4), intent(in) :: n, k, lda, ldb, ldc
            character, intent(in) :: uplo, trans
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! B := alpha·op(A)·B or alpha·B·op(A), A triangular.
        subroutine blac_dtrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: side, uplo, transa, diag
            real(8), intent(in) :: alpha, a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, A triangular.
        subroutine blac_dtrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: side, uplo, transa, diag
            real(8), intent(in) :: alpha, a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! C := alpha·op(A)·op(B) + beta·C, complex.
        subroutine blac_zgemm(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
            integer(4), intent(in) :: m, n, k, lda, ldb, ldc
            character, intent(in) :: transa, transb
            complex(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            complex(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! B := alpha·op(A)·B or alpha·B·op(A), complex, A triangular.
        subroutine blac_ztrmm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: side, uplo, transa, diag
            complex(8), intent(in) :: alpha, a(lda, *)
            complex(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! B := alpha·op(A)⁻¹·B or alpha·B·op(A)⁻¹, complex, A triangular.
        subroutine blac_ztrsm(side, uplo, transa, diag, m, n, alpha, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: side, uplo, transa, diag
            complex(8), intent(in) :: alpha, a(lda, *)
            complex(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! Options and errors

        ! Logical: the first characters of ca and cb are the same letter, case aside.
        logical(4) function blac_lsame(ca, cb)
            character, intent(in) :: ca, cb
        end function

        ! Reports a bad argument through the library's error handler, in the library's words; some libraries
        ! end the process there.
        subroutine blac_xerbla(srname, info)
            integer(4), intent(in) :: info
            character(6), intent(in) :: srname
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! LAPACK
        ! ----------------------------------------------------------------------------------------------------

        ! Linear systems

        ! Solves A·X = B by LU with partial pivoting.
        subroutine blac_dgesv(n, nrhs, a, lda, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ldb
            real(8), intent(inout) :: a(lda, *), b(ldb, *)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! A = P·L·U of a general m × n matrix.
        subroutine blac_dgetrf(m, n, a, lda, ipiv, info)
            integer(4), intent(in) :: m, n, lda
            real(8), intent(inout) :: a(lda, *)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves op(A)·X = B from the factors of dgetrf.
        subroutine blac_dgetrs(trans, n, nrhs, a, lda, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            character, intent(in) :: trans
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! A⁻¹ from the factors of dgetrf.
        subroutine blac_dgetri(n, a, lda, ipiv, work, lwork, info)
            integer(4), intent(in) :: n, lda, ipiv(*), lwork
            real(8), intent(inout) :: a(lda, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves A·X = B for a band matrix.
        subroutine blac_dgbsv(n, kl, ku, nrhs, ab, ldab, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, kl, ku, nrhs, ldab, ldb
            real(8), intent(inout) :: ab(ldab, *), b(ldb, *)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Cholesky factor of a symmetric positive definite matrix.
        subroutine blac_dpotrf(uplo, n, a, lda, info)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves A·X = B, A positive definite and packed, by Cholesky.
        subroutine blac_dppsv(uplo, n, nrhs, ap, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, ldb
            character, intent(in) :: uplo
            real(8), intent(inout) :: ap(*), b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Cholesky factor of a packed positive definite matrix.
        subroutine blac_dpptrf(uplo, n, ap, info)
            integer(4), intent(in) :: n
            character, intent(in) :: uplo
            real(8), intent(inout) :: ap(*)
            integer(4), intent(out) :: info
        end subroutine

        ! A⁻¹ from the factor of dpptrf.
        subroutine blac_dpptri(uplo, n, ap, info)
            integer(4), intent(in) :: n
            character, intent(in) :: uplo
            real(8), intent(inout) :: ap(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves A·X = B from the factor of dpptrf.
        subroutine blac_dpptrs(uplo, n, nrhs, ap, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, ldb
            character, intent(in) :: uplo
            real(8), intent(in) :: ap(*)
            real(8), intent(inout) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves A·X = B, A symmetric indefinite, by pivoted LDLᵀ.
        subroutine blac_dsysv(uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info)
            integer(4), intent(in) :: n, nrhs, lda, ldb, lwork
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Pivoted LDLᵀ of a symmetric matrix (1 × 1 and 2 × 2 pivots).
        subroutine blac_dsytrf(uplo, n, a, lda, ipiv, work, lwork, info)
            integer(4), intent(in) :: n, lda, lwork
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *), work(*)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves A·X = B from the factors of dsytrf.
        subroutine blac_dsytrs(uplo, n, nrhs, a, lda, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            character, intent(in) :: uplo
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Inverse of a packed triangular matrix.
        subroutine blac_dtptri(uplo, diag, n, ap, info)
            integer(4), intent(in) :: n
            character, intent(in) :: uplo, diag
            real(8), intent(inout) :: ap(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Inverse of a triangular matrix, unblocked.
        subroutine blac_dtrti2(uplo, diag, n, a, lda, info)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: uplo, diag
            real(8), intent(inout) :: a(lda, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Inverse of a triangular matrix.
        subroutine blac_dtrtri(uplo, diag, n, a, lda, info)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: uplo, diag
            real(8), intent(inout) :: a(lda, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves a 1 × 1 or 2 × 2 system (ca·A - w·D)·X = scale·B; ltrans is a logical.
        subroutine blac_dlaln2(ltrans, na, nw, smin, ca, a, lda, d1, d2, b, ldb, wr, wi, x, ldx, scale, &
            xnorm, info)
            integer(4), intent(in) :: na, nw, lda, ldb, ldx
            logical(4), intent(in) :: ltrans
            real(8), intent(in) :: smin, ca, a(lda, *), d1, d2, b(ldb, *), wr, wi
            real(8), intent(inout) :: x(ldx, *), scale, xnorm
            integer(4), intent(out) :: info
        end subroutine

        ! dgesv, complex.
        subroutine blac_zgesv(n, nrhs, a, lda, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ldb
            complex(8), intent(inout) :: a(lda, *), b(ldb, *)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! dgetrf, complex.
        subroutine blac_zgetrf(m, n, a, lda, ipiv, info)
            integer(4), intent(in) :: m, n, lda
            complex(8), intent(inout) :: a(lda, *)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! dgetrs, complex.
        subroutine blac_zgetrs(trans, n, nrhs, a, lda, ipiv, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ipiv(*), ldb
            character, intent(in) :: trans
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! dsysv, complex symmetric (A = Aᵀ).
        subroutine blac_zsysv(uplo, n, nrhs, a, lda, ipiv, b, ldb, work, lwork, info)
            integer(4), intent(in) :: n, nrhs, lda, ldb, lwork
            character, intent(in) :: uplo
            complex(8), intent(inout) :: a(lda, *), b(ldb, *), work(*)
            integer(4), intent(inout) :: ipiv(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves op(A)·x = scale·b, A complex triangular, with scaling against overflow.
        subroutine blac_zlatrs(uplo, trans, diag, normin, n, a, lda, x, scale, cnorm, info)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: uplo, trans, diag, normin
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: x(*)
            real(8), intent(inout) :: scale, cnorm(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Solves op(A)·X = B, A complex triangular, with a check for singularity.
        subroutine blac_ztrtrs(uplo, trans, diag, n, nrhs, a, lda, b, ldb, info)
            integer(4), intent(in) :: n, nrhs, lda, ldb
            character, intent(in) :: uplo, trans, diag
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Least squares and singular values

        ! Minimum-norm least squares by the singular value decomposition.
        subroutine blac_dgelss(m, n, nrhs, a, lda, b, ldb, s, rcond, rank, work, lwork, info)
            integer(4), intent(in) :: m, n, nrhs, lda, ldb, lwork
            real(8), intent(inout) :: a(lda, *), b(ldb, *), s(*), work(*)
            real(8), intent(in) :: rcond
            integer(4), intent(inout) :: rank
            integer(4), intent(out) :: info
        end subroutine

        ! A = U·diag(s)·Vᵀ, divide and conquer.
        subroutine blac_dgesdd(jobz, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, iwork, info)
            integer(4), intent(in) :: m, n, lda, ldu, ldvt, lwork
            character, intent(in) :: jobz
            real(8), intent(inout) :: a(lda, *), s(*), u(ldu, *), vt(ldvt, *), work(*)
            integer(4), intent(inout) :: iwork(*)
            integer(4), intent(out) :: info
        end subroutine

        ! A = U·diag(s)·Vᵀ.
        subroutine blac_dgesvd(jobu, jobvt, m, n, a, lda, s, u, ldu, vt, ldvt, work, lwork, info)
            integer(4), intent(in) :: m, n, lda, ldu, ldvt, lwork
            character, intent(in) :: jobu, jobvt
            real(8), intent(inout) :: a(lda, *), s(*), u(ldu, *), vt(ldvt, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Orthogonal factors

        ! A = Q·R.
        subroutine blac_dgeqrf(m, n, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: m, n, lda, lwork
            real(8), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Q of dgeqrf, formed.
        subroutine blac_dorgqr(m, n, k, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: m, n, k, lda, lwork
            real(8), intent(inout) :: a(lda, *), work(*)
            real(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Multiplies C by Q of dgehrd; a is changed during the call and restored.
        subroutine blac_dormhr(side, trans, m, n, ilo, ihi, a, lda, tau, c, ldc, work, lwork, info)
            integer(4), intent(in) :: m, n, ilo, ihi, lda, ldc, lwork
            character, intent(in) :: side, trans
            real(8), intent(inout) :: a(lda, *), c(ldc, *), work(*)
            real(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Multiplies C by Q of dsytrd; a is changed during the call and restored.
        subroutine blac_dormtr(side, uplo, trans, m, n, a, lda, tau, c, ldc, work, lwork, info)
            integer(4), intent(in) :: m, n, lda, ldc, lwork
            character, intent(in) :: side, uplo, trans
            real(8), intent(inout) :: a(lda, *), c(ldc, *), work(*)
            real(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Applies a block reflector to C.
        subroutine blac_dlarfb(side, trans, direct, storev, m, n, k, v, ldv, t, ldt, c, ldc, work, ldwork)
            integer(4), intent(in) :: m, n, k, ldv, ldt, ldc, ldwork
            character, intent(in) :: side, trans, direct, storev
            real(8), intent(in) :: v(ldv, *), t(ldt, *)
            real(8), intent(inout) :: c(ldc, *), work(ldwork, *)
        end subroutine

        ! Generates an elementary reflector.
        subroutine blac_dlarfg(n, alpha, x, incx, tau)
            integer(4), intent(in) :: n, incx
            real(8), intent(inout) :: alpha, x(*), tau
        end subroutine

        ! Triangular factor T of a block reflector; older libraries change v during the call.
        subroutine blac_dlarft(direct, storev, n, k, v, ldv, tau, t, ldt)
            integer(4), intent(in) :: n, k, ldv, ldt
            character, intent(in) :: direct, storev
            real(8), intent(inout) :: v(ldv, *), t(ldt, *)
            real(8), intent(in) :: tau(*)
        end subroutine

        ! Applies a complex elementary reflector to C.
        subroutine blac_zlarf(side, m, n, v, incv, tau, c, ldc, work)
            integer(4), intent(in) :: m, n, incv, ldc
            character, intent(in) :: side
            complex(8), intent(in) :: v(*), tau
            complex(8), intent(inout) :: c(ldc, *), work(*)
        end subroutine

        ! dlarfb, complex.
        subroutine blac_zlarfb(side, trans, direct, storev, m, n, k, v, ldv, t, ldt, c, ldc, work, ldwork)
            integer(4), intent(in) :: m, n, k, ldv, ldt, ldc, ldwork
            character, intent(in) :: side, trans, direct, storev
            complex(8), intent(in) :: v(ldv, *), t(ldt, *)
            complex(8), intent(inout) :: c(ldc, *), work(ldwork, *)
        end subroutine

        ! dlarfg, complex.
        subroutine blac_zlarfg(n, alpha, x, incx, tau)
            integer(4), intent(in) :: n, incx
            complex(8), intent(inout) :: alpha, x(*), tau
        end subroutine

        ! dlarft, complex.
        subroutine blac_zlarft(direct, storev, n, k, v, ldv, tau, t, ldt)
            integer(4), intent(in) :: n, k, ldv, ldt
            character, intent(in) :: direct, storev
            complex(8), intent(inout) :: v(ldv, *), t(ldt, *)
            complex(8), intent(in) :: tau(*)
        end subroutine

        ! Q of a complex QR factorisation, formed, unblocked.
        subroutine blac_zung2r(m, n, k, a, lda, tau, work, info)
            integer(4), intent(in) :: m, n, k, lda
            complex(8), intent(inout) :: a(lda, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Q of zgehrd, formed.
        subroutine blac_zunghr(n, ilo, ihi, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, lda, lwork
            complex(8), intent(inout) :: a(lda, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Q of a complex QR factorisation, formed.
        subroutine blac_zungqr(m, n, k, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: m, n, k, lda, lwork
            complex(8), intent(inout) :: a(lda, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Q of a complex RQ factorisation, formed, unblocked.
        subroutine blac_zungr2(m, n, k, a, lda, tau, work, info)
            integer(4), intent(in) :: m, n, k, lda
            complex(8), intent(inout) :: a(lda, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Multiplies C by Q of a complex QR factorisation, unblocked; a is changed during the call and
        ! restored.
        subroutine blac_zunm2r(side, trans, m, n, k, a, lda, tau, c, ldc, work, info)
            integer(4), intent(in) :: m, n, k, lda, ldc
            character, intent(in) :: side, trans
            complex(8), intent(inout) :: a(lda, *), c(ldc, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Multiplies C by Q of zgehrd; a is changed during the call and restored.
        subroutine blac_zunmhr(side, trans, m, n, ilo, ihi, a, lda, tau, c, ldc, work, lwork, info)
            integer(4), intent(in) :: m, n, ilo, ihi, lda, ldc, lwork
            character, intent(in) :: side, trans
            complex(8), intent(inout) :: a(lda, *), c(ldc, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Multiplies C by Q of a complex QR factorisation; a is changed during the call and restored.
        subroutine blac_zunmqr(side, trans, m, n, k, a, lda, tau, c, ldc, work, lwork, info)
            integer(4), intent(in) :: m, n, k, lda, ldc, lwork
            character, intent(in) :: side, trans
            complex(8), intent(inout) :: a(lda, *), c(ldc, *), work(*)
            complex(8), intent(in) :: tau(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Symmetric eigenvalues

        ! Eigenvalues w and, if asked, eigenvectors of a symmetric matrix.
        subroutine blac_dsyev(jobz, uplo, n, a, lda, w, work, lwork, info)
            integer(4), intent(in) :: n, lda, lwork
            character, intent(in) :: jobz, uplo
            real(8), intent(inout) :: a(lda, *), w(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Selected eigenvalues and eigenvectors of a symmetric matrix.
        subroutine blac_dsyevx(jobz, range, uplo, n, a, lda, vl, vu, il, iu, abstol, m, w, z, ldz, work, &
            lwork, iwork, ifail, info)
            integer(4), intent(in) :: n, lda, il, iu, ldz, lwork
            character, intent(in) :: jobz, range, uplo
            real(8), intent(inout) :: a(lda, *), w(*), z(ldz, *), work(*)
            real(8), intent(in) :: vl, vu, abstol
            integer(4), intent(inout) :: m, iwork(*), ifail(*)
            integer(4), intent(out) :: info
        end subroutine

        ! dsyevx for packed storage.
        subroutine blac_dspevx(jobz, range, uplo, n, ap, vl, vu, il, iu, abstol, m, w, z, ldz, work, iwork, &
            ifail, info)
            integer(4), intent(in) :: n, il, iu, ldz
            character, intent(in) :: jobz, range, uplo
            real(8), intent(inout) :: ap(*), w(*), z(ldz, *), work(*)
            real(8), intent(in) :: vl, vu, abstol
            integer(4), intent(inout) :: m, iwork(*), ifail(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Eigenvalues and eigenvectors of A·x = λ·B·x and its kin, B positive definite.
        subroutine blac_dsygv(itype, jobz, uplo, n, a, lda, b, ldb, w, work, lwork, info)
            integer(4), intent(in) :: itype, n, lda, ldb, lwork
            character, intent(in) :: jobz, uplo
            real(8), intent(inout) :: a(lda, *), b(ldb, *), w(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Reduces A·x = λ·B·x to standard form, with B factorised by dpotrf.
        subroutine blac_dsygst(itype, uplo, n, a, lda, b, ldb, info)
            integer(4), intent(in) :: itype, n, lda, ldb
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: b(ldb, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Reduces a symmetric matrix to tridiagonal form.
        subroutine blac_dsytrd(uplo, n, a, lda, d, e, tau, work, lwork, info)
            integer(4), intent(in) :: n, lda, lwork
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *), d(*), e(*), tau(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! One panel of dsytrd.
        subroutine blac_dlatrd(uplo, n, nb, a, lda, e, tau, w, ldw)
            integer(4), intent(in) :: n, nb, lda, ldw
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *), e(*), tau(*), w(ldw, *)
        end subroutine

        ! Eigenvalues and eigenvectors of a symmetric tridiagonal matrix.
        subroutine blac_dsteqr(compz, n, d, e, z, ldz, work, info)
            integer(4), intent(in) :: n, ldz
            character, intent(in) :: compz
            real(8), intent(inout) :: d(*), e(*), z(ldz, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Selected eigenvalues and eigenvectors of a symmetric tridiagonal matrix; tryrac is a logical.
        subroutine blac_dstemr(jobz, range, n, d, e, vl, vu, il, iu, m, w, z, ldz, nzc, isuppz, tryrac, work, &
            lwork, iwork, liwork, info)
            integer(4), intent(in) :: n, il, iu, ldz, nzc, lwork, liwork
            character, intent(in) :: jobz, range
            real(8), intent(inout) :: d(*), e(*), w(*), z(ldz, *), work(*)
            real(8), intent(in) :: vl, vu
            integer(4), intent(inout) :: m, isuppz(*), iwork(*)
            logical(4), intent(inout) :: tryrac
            integer(4), intent(out) :: info
        end subroutine

        ! Driver of dstemr.
        subroutine blac_dstevr(jobz, range, n, d, e, vl, vu, il, iu, abstol, m, w, z, ldz, isuppz, work, &
            lwork, iwork, liwork, info)
            integer(4), intent(in) :: n, il, iu, ldz, lwork, liwork
            character, intent(in) :: jobz, range
            real(8), intent(inout) :: d(*), e(*), w(*), z(ldz, *), work(*)
            real(8), intent(in) :: vl, vu, abstol
            integer(4), intent(inout) :: m, isuppz(*), iwork(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Unsymmetric eigenvalues

        ! Eigenvalues and eigenvectors of a general matrix.
        subroutine blac_dgeev(jobvl, jobvr, n, a, lda, wr, wi, vl, ldvl, vr, ldvr, work, lwork, info)
            integer(4), intent(in) :: n, lda, ldvl, ldvr, lwork
            character, intent(in) :: jobvl, jobvr
            real(8), intent(inout) :: a(lda, *), wr(*), wi(*), vl(ldvl, *), vr(ldvr, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Reduces a general matrix to Hessenberg form.
        subroutine blac_dgehrd(n, ilo, ihi, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, lda, lwork
            real(8), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Eigenvectors of a quasi-triangular matrix; select holds logicals.
        subroutine blac_dtrevc(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, info)
            integer(4), intent(in) :: n, ldt, ldvl, ldvr, mm
            character, intent(in) :: side, howmny
            logical(4), intent(inout) :: select(*)
            real(8), intent(in) :: t(ldt, *)
            real(8), intent(inout) :: vl(ldvl, *), vr(ldvr, *), work(*)
            integer(4), intent(inout) :: m
            integer(4), intent(out) :: info
        end subroutine

        ! Eigenvalues and eigenvectors of a complex general matrix.
        subroutine blac_zgeev(jobvl, jobvr, n, a, lda, w, vl, ldvl, vr, ldvr, work, lwork, rwork, info)
            integer(4), intent(in) :: n, lda, ldvl, ldvr, lwork
            character, intent(in) :: jobvl, jobvr
            complex(8), intent(inout) :: a(lda, *), w(*), vl(ldvl, *), vr(ldvr, *), work(*)
            real(8), intent(inout) :: rwork(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Balances a complex general matrix.
        subroutine blac_zgebal(job, n, a, lda, ilo, ihi, scale, info)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: job
            complex(8), intent(inout) :: a(lda, *)
            integer(4), intent(inout) :: ilo, ihi
            real(8), intent(inout) :: scale(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Turns eigenvectors of the balanced matrix back.
        subroutine blac_zgebak(job, side, n, ilo, ihi, scale, m, v, ldv, info)
            integer(4), intent(in) :: n, ilo, ihi, m, ldv
            character, intent(in) :: job, side
            real(8), intent(in) :: scale(*)
            complex(8), intent(inout) :: v(ldv, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Reduces a complex general matrix to Hessenberg form, unblocked.
        subroutine blac_zgehd2(n, ilo, ihi, a, lda, tau, work, info)
            integer(4), intent(in) :: n, ilo, ihi, lda
            complex(8), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Reduces a complex general matrix to Hessenberg form.
        subroutine blac_zgehrd(n, ilo, ihi, a, lda, tau, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, lda, lwork
            complex(8), intent(inout) :: a(lda, *), tau(*), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! One panel of zgehrd.
        subroutine blac_zlahr2(n, k, nb, a, lda, tau, t, ldt, y, ldy)
            integer(4), intent(in) :: n, k, nb, lda, ldt, ldy
            complex(8), intent(inout) :: a(lda, *), tau(*), t(ldt, *), y(ldy, *)
        end subroutine

        ! Eigenvalues and Schur form of a complex Hessenberg matrix.
        subroutine blac_zhseqr(job, compz, n, ilo, ihi, h, ldh, w, z, ldz, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, ldh, ldz, lwork
            character, intent(in) :: job, compz
            complex(8), intent(inout) :: h(ldh, *), w(*), z(ldz, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! zhseqr by double-shift QR for small matrices; wantt and wantz are logicals.
        subroutine blac_zlahqr(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, info)
            integer(4), intent(in) :: n, ilo, ihi, ldh, iloz, ihiz, ldz
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: h(ldh, *), w(*), z(ldz, *)
            integer(4), intent(out) :: info
        end subroutine

        ! zhseqr by aggressive early deflation for large matrices.
        subroutine blac_zlaqr0(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, ldh, iloz, ihiz, ldz, lwork
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: h(ldh, *), w(*), z(ldz, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! First column of (H - s1·I)·(H - s2·I), n = 2 or 3, up to a factor.
        subroutine blac_zlaqr1(n, h, ldh, s1, s2, v)
            integer(4), intent(in) :: n, ldh
            complex(8), intent(in) :: h(ldh, *), s1, s2
            complex(8), intent(inout) :: v(*)
        end subroutine

        ! Aggressive early deflation on a window.
        subroutine blac_zlaqr2(wantt, wantz, n, ktop, kbot, nw, h, ldh, iloz, ihiz, z, ldz, ns, nd, sh, v, &
            ldv, nh, t, ldt, nv, wv, ldwv, work, lwork)
            integer(4), intent(in) :: n, ktop, kbot, nw, ldh, iloz, ihiz, ldz, ldv, nh, ldt, nv, ldwv, lwork
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: h(ldh, *), z(ldz, *), sh(*), v(ldv, *), t(ldt, *), wv(ldwv, *), &
                work(*)
            integer(4), intent(inout) :: ns, nd
        end subroutine

        ! zlaqr2 with recursion into zlaqr4.
        subroutine blac_zlaqr3(wantt, wantz, n, ktop, kbot, nw, h, ldh, iloz, ihiz, z, ldz, ns, nd, sh, v, &
            ldv, nh, t, ldt, nv, wv, ldwv, work, lwork)
            integer(4), intent(in) :: n, ktop, kbot, nw, ldh, iloz, ihiz, ldz, ldv, nh, ldt, nv, ldwv, lwork
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: h(ldh, *), z(ldz, *), sh(*), v(ldv, *), t(ldt, *), wv(ldwv, *), &
                work(*)
            integer(4), intent(inout) :: ns, nd
        end subroutine

        ! zlaqr0 without recursion.
        subroutine blac_zlaqr4(wantt, wantz, n, ilo, ihi, h, ldh, w, iloz, ihiz, z, ldz, work, lwork, info)
            integer(4), intent(in) :: n, ilo, ihi, ldh, iloz, ihiz, ldz, lwork
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: h(ldh, *), w(*), z(ldz, *), work(*)
            integer(4), intent(out) :: info
        end subroutine

        ! One multi-shift QR sweep.
        subroutine blac_zlaqr5(wantt, wantz, kacc22, n, ktop, kbot, nshfts, s, h, ldh, iloz, ihiz, z, ldz, v, &
            ldv, u, ldu, nv, wv, ldwv, nh, wh, ldwh)
            integer(4), intent(in) :: kacc22, n, ktop, kbot, nshfts, ldh, iloz, ihiz, ldz, ldv, ldu, nv, &
                ldwv, nh, ldwh
            logical(4), intent(in) :: wantt, wantz
            complex(8), intent(inout) :: s(*), h(ldh, *), z(ldz, *), v(ldv, *), u(ldu, *), wv(ldwv, *), &
                wh(ldwh, *)
        end subroutine

        ! Eigenvectors of a complex triangular matrix; t is changed during the call and restored, select
        ! holds logicals.
        subroutine blac_ztrevc(side, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, mm, m, work, rwork, info)
            integer(4), intent(in) :: n, ldt, ldvl, ldvr, mm
            character, intent(in) :: side, howmny
            logical(4), intent(in) :: select(*)
            complex(8), intent(inout) :: t(ldt, *), vl(ldvl, *), vr(ldvr, *), work(*)
            integer(4), intent(inout) :: m
            real(8), intent(inout) :: rwork(*)
            integer(4), intent(out) :: info
        end subroutine

        ! Reorders a complex Schur factorisation.
        subroutine blac_ztrexc(compq, n, t, ldt, q, ldq, ifst, ilst, info)
            integer(4), intent(in) :: n, ldt, ldq, ifst, ilst
            character, intent(in) :: compq
            complex(8), intent(inout) :: t(ldt, *), q(ldq, *)
            integer(4), intent(out) :: info
        end subroutine

        ! Auxiliary

        ! B := A, all of it or one triangle.
        subroutine blac_dlacpy(uplo, m, n, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: uplo
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! Sets the off-diagonal entries to alpha and the diagonal to beta.
        subroutine blac_dlaset(uplo, m, n, alpha, beta, a, lda)
            integer(4), intent(in) :: m, n, lda
            character, intent(in) :: uplo
            real(8), intent(in) :: alpha, beta
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! Machine parameters as the library states them; see blac_hdmcon_ for the module's own.
        real(8) function blac_dlamch(cmach)
            character, intent(in) :: cmach
        end function

        ! Returns sqrt(x² + y² + z²) without needless overflow.
        real(8) function blac_dlapy3(x, y, z)
            real(8), intent(in) :: x, y, z
        end function

        ! p + i·q := (a + i·b)/(c + i·d) without needless overflow.
        subroutine blac_dladiv(a, b, c, d, p, q)
            real(8), intent(in) :: a, b, c, d
            real(8), intent(inout) :: p, q
        end subroutine

        ! result := x/y without needless overflow.
        subroutine blac_zladiv(result, x, y)
            complex(8), intent(out) :: result
            complex(8), intent(in) :: x, y
        end subroutine

        ! Returns 1 if infinities (ispec = 0), and NaNs too (ispec = 1), can be trusted, else 0; zero and
        ! one are single-precision.
        integer(4) function blac_ieeeck(ispec, zero, one)
            integer(4), intent(in) :: ispec
            real(4), intent(in) :: zero, one
        end function

        ! Tuning parameters (block sizes and the like) as the library states them.
        integer(4) function blac_ilaenv(ispec, name, opts, n1, n2, n3, n4)
            integer(4), intent(in) :: ispec, n1, n2, n3, n4
            character(*), intent(in) :: name, opts
        end function

        ! Returns the last column that is not zero, from 1.
        integer(4) function blac_ilazlc(m, n, a, lda)
            integer(4), intent(in) :: m, n, lda
            complex(8), intent(in) :: a(lda, *)
        end function

        ! Returns the last row that is not zero, from 1.
        integer(4) function blac_ilazlr(m, n, a, lda)
            integer(4), intent(in) :: m, n, lda
            complex(8), intent(in) :: a(lda, *)
        end function

        ! Conjugates a complex vector.
        subroutine blac_zlacgv(n, x, incx)
            integer(4), intent(in) :: n, incx
            complex(8), intent(inout) :: x(*)
        end subroutine

        ! dlacpy, complex.
        subroutine blac_zlacpy(uplo, m, n, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            character, intent(in) :: uplo
            complex(8), intent(in) :: a(lda, *)
            complex(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! Returns the largest entry, one-, infinity- or Frobenius norm of a complex matrix.
        real(8) function blac_zlange(norm, m, n, a, lda, work)
            integer(4), intent(in) :: m, n, lda
            character, intent(in) :: norm
            complex(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: work(*)
        end function

        ! Generates a plane rotation with real cosine and complex sine.
        subroutine blac_zlartg(f, g, c, s, r)
            complex(8), intent(in) :: f, g
            real(8), intent(inout) :: c
            complex(8), intent(inout) :: s, r
        end subroutine

        ! A := A·cto/cfrom without needless overflow.
        subroutine blac_zlascl(type, kl, ku, cfrom, cto, m, n, a, lda, info)
            integer(4), intent(in) :: kl, ku, m, n, lda
            character, intent(in) :: type
            real(8), intent(in) :: cfrom, cto
            complex(8), intent(inout) :: a(lda, *)
            integer(4), intent(out) :: info
        end subroutine

        ! dlaset, complex.
        subroutine blac_zlaset(uplo, m, n, alpha, beta, a, lda)
            integer(4), intent(in) :: m, n, lda
            character, intent(in) :: uplo
            complex(8), intent(in) :: alpha, beta
            complex(8), intent(inout) :: a(lda, *)
        end subroutine

        ! Updates scale²·sumsq by the squares of a complex vector.
        subroutine blac_zlassq(n, x, incx, scale, sumsq)
            integer(4), intent(in) :: n, incx
            complex(8), intent(in) :: x(*)
            real(8), intent(inout) :: scale, sumsq
        end subroutine

        ! Plane rotation of complex vectors, real cosine and complex sine.
        subroutine blac_zrot(n, cx, incx, cy, incy, c, s)
            integer(4), intent(in) :: n, incx, incy
            complex(8), intent(inout) :: cx(*), cy(*)
            real(8), intent(in) :: c
            complex(8), intent(in) :: s
        end subroutine

        ! Constants

        ! Machine and mathematical constants of the module's own, from a fixed table.
        real(8) function blac_hdmcon(i)
            integer(4), intent(in) :: i
        end function

        ! ----------------------------------------------------------------------------------------------------
        ! Vector utilities
        ! ----------------------------------------------------------------------------------------------------

        ! x(k) := a, k = 1..n.
        subroutine tovbla_vdasn(n, x, a)
            integer(4), intent(in) :: n
            real(8), intent(inout) :: x(*)
            real(8), intent(in) :: a
        end subroutine

        ! x(k) := a, k = 1..n, for any length.
        subroutine tovbla_bvdasn(n, x, a)
            integer(8), intent(in) :: n
            real(8), intent(inout) :: x(*)
            real(8), intent(in) :: a
        end subroutine

        ! x(k) := x(k)·a, k = 1..n.
        subroutine tovbla_vdscale(n, x, a)
            integer(4), intent(in) :: n
            real(8), intent(inout) :: x(*)
            real(8), intent(in) :: a
        end subroutine

        ! x(k) := x(k)·a, k = 1..n, for any length.
        subroutine tovbla_bvdscale(n, x, a)
            integer(8), intent(in) :: n
            real(8), intent(inout) :: x(*)
            real(8), intent(in) :: a
        end subroutine

        ! y(k) := x(k), k = 1..n.
        subroutine tovbla_vdcopyi(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! y(k) := -x(k), k = 1..n: every sign bit is flipped, also of zeros and NaN.
        subroutine tovbla_vdnegcopyi(n, x, incx, y, incy)
            integer(4), intent(in) :: n, incx, incy
            real(8), intent(in) :: x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! z(k) := x(k) + y(k), k = 1..n.
        subroutine tovbla_vdaddi(n, x, incx, y, incy, z, incz)
            integer(4), intent(in) :: n, incx, incy, incz
            real(8), intent(in) :: x(*), y(*)
            real(8), intent(inout) :: z(*)
        end subroutine

        ! z(k) := -(x(k) + y(k)), k = 1..n: the rounded sum with its sign bit flipped. So 0 + 0 and 1 + -1
        ! give -0, and a NaN the opposite sign of that which the sum has.
        subroutine tovbla_vdnegaddi(n, x, incx, y, incy, z, incz)
            integer(4), intent(in) :: n, incx, incy, incz
            real(8), intent(in) :: x(*), y(*)
            real(8), intent(inout) :: z(*)
        end subroutine

        ! y(k) := conj(x(k)), k = 1..n: real parts are copied, the sign bits of the imaginary parts flipped.
        subroutine tovbla_vzconj(n, x, y)
            integer(4), intent(in) :: n
            complex(8), intent(in) :: x(*)
            complex(8), intent(inout) :: y(*)
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Block kernels
        ! ----------------------------------------------------------------------------------------------------

        ! A := A + B.
        subroutine blac_addrectblock(m, n, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: b(ldb, *)
        end subroutine

        ! A := A + Bᵀ: a(i,j) := a(i,j) + b(j,i).
        subroutine blac_addrectblockt(m, n, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: b(ldb, *)
        end subroutine

        ! A := A + B on the lower triangles with their diagonals; neither upper triangle is read or written.
        subroutine blac_addtriblock(n, a, lda, b, ldb)
            integer(4), intent(in) :: n, lda, ldb
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: b(ldb, *)
        end subroutine

        ! Copies a diagonal and forms its reciprocals: d(i) := a(i,i), dinv(i) := 1/d(i).
        subroutine blac_copydiag(n, a, lda, d, dinv)
            integer(4), intent(in) :: n, lda
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: d(*), dinv(*)
        end subroutine

        ! B := Aᵀ: b(i,j) := a(j,i), in tiles as blac_addrectblockt_.
        subroutine blac_datcpy(m, n, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            real(8), intent(in) :: a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! B := A·diag(s): b(i,j) := a(i,j)·s(j). The plain product also for s(j) = 0: an infinite or NaN
        ! a(i,j) gives NaN.
        subroutine blac_dlacpysc(m, n, a, lda, s, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            real(8), intent(in) :: a(lda, *), s(*)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! x(k) := a, k = 1..n, with an increment.
        subroutine blac_dset(n, a, x, incx)
            integer(4), intent(in) :: n, incx
            real(8), intent(in) :: a
            real(8), intent(inout) :: x(*)
        end subroutine

        ! a(i,j) := +0 on the lower triangle with the diagonal; the strict upper triangle is not touched.
        subroutine blac_zerotri(n, a, lda)
            integer(4), intent(in) :: n, lda
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! C := beta·C + alpha·A·Bᵀ on the lower block trapezoid of C.
        subroutine blac_dhamm(nb, n, k, alpha, a, lda, b, ldb, beta, c, ldc)
            integer(4), intent(in) :: nb, n, k, lda, ldb, ldc
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! Makes a symmetric matrix whole: copies one triangle onto the other. The diagonal and the source
        ! triangle are not written.
        subroutine blac_reflect(uplo, n, a, lda)
            integer(4), intent(in) :: n, lda
            character, intent(in) :: uplo
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! B := A, one block copy a column.
        subroutine blac_copyrect_intr(m, n, b, ldb, a, lda) bind(c, name='blaC_copyrect_intr')
            import :: c_int, c_double
            integer(c_int), value :: m, n, ldb, lda
            real(c_double), intent(inout) :: b(ldb, *)
            real(c_double), intent(in) :: a(lda, *)
        end subroutine

        ! a(i,j) := +0 for j = k0+1..k0+m and i = j..n: m columns of the lower triangle with the diagonal.
        subroutine blac_zerotric(n, k0, m, a, lda) bind(c, name='blaC_zerotriC')
            import :: c_int, c_double
            integer(c_int), value :: n, k0, m, lda
            real(c_double), intent(inout) :: a(lda, *)
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Diagonal scaling
        ! ----------------------------------------------------------------------------------------------------

        ! B := A·diag(d), into a separate array.
        subroutine blac_scale(m, n, d, a, lda, b, ldb)
            integer(4), intent(in) :: m, n, lda, ldb
            real(8), intent(in) :: d(*), a(lda, *)
            real(8), intent(inout) :: b(ldb, *)
        end subroutine

        ! A := diag(d)·A in place: a(i,j) := a(i,j)·d(i).
        subroutine blac_scale2(m, n, a, lda, d)
            integer(4), intent(in) :: m, n, lda
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: d(*)
        end subroutine

        ! X := diag(d)·X in place for an m × n matrix X that is stored transposed: a(r,c) := a(r,c)·d(c).
        subroutine blac_scale2t(m, n, a, lda, d)
            integer(4), intent(in) :: m, n, lda
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: d(*)
        end subroutine

        ! L := L·diag(d) on the strictly lower triangle: a(i,j) := a(i,j)·d(j), i > j.
        subroutine blac_scale_low(n, a, lda, d)
            integer(4), intent(in) :: n, lda
            real(8), intent(inout) :: a(lda, *)
            real(8), intent(in) :: d(*)
        end subroutine

        ! Divides the columns of the strictly lower triangle by their pivots: a(i,j) := a(i,j)·r, i > j,
        ! with the reciprocal r = 1/a(j,j) rounded once per column.
        subroutine blac_scale_low2(n, a, lda)
            integer(4), intent(in) :: n, lda
            real(8), intent(inout) :: a(lda, *)
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Scaled products
        ! ----------------------------------------------------------------------------------------------------

        ! C := beta·C + alpha·op(A)·D·op(B), with D read off the diagonal of a matrix.
        subroutine blac_dgemm_scaled(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d, ldd)
            integer(4), intent(in) :: m, n, k, lda, ldb, ldc, ldd
            character, intent(in) :: transa, transb
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta, d(*)
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := beta·C + alpha·op(A)·diag(d)·op(B): as blac_dgemm_scaled_, with the diagonal in a plain
        ! vector.
        subroutine blac_dgemm_scaled2(transa, transb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d)
            integer(4), intent(in) :: m, n, k, lda, ldb, ldc
            character, intent(in) :: transa, transb
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta, d(*)
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := beta·C + alpha·A·diag(d)·Bᵀ on the lower block trapezoid of C.
        subroutine blac_dsyrk_scaled(nb, n, k, alpha, a, lda, b, ldb, beta, c, ldc, d)
            integer(4), intent(in) :: nb, n, k, lda, ldb, ldc
            real(8), intent(in) :: alpha, a(lda, *), b(ldb, *), beta, d(*)
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! C := beta·C + alpha·A·D·Aᵀ on the lower block trapezoid of C, with D read off the diagonal of a
        ! matrix.
        subroutine blac_dsyrk_scaled2(nb, n, k, alpha, a, lda, beta, c, ldc, d, ldd)
            integer(4), intent(in) :: nb, n, k, lda, ldc, ldd
            real(8), intent(in) :: alpha, a(lda, *), beta, d(*)
            real(8), intent(inout) :: c(ldc, *)
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Elimination of fronts
        ! ----------------------------------------------------------------------------------------------------

        ! A = L·D·Lᵀ of a block, unblocked.
        subroutine blac_selim_small(n, a, lda, d, dinv, tol)
            integer(4), intent(in) :: n, lda
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*)
            real(8), intent(in) :: tol
        end subroutine

        ! A + E = L·D·Lᵀ of a block, unblocked, with regularised pivots; E = diag(-dcorr).
        subroutine blac_selim_small_reg(n, a, lda, d, dinv, tol, negpiv, reg, dcorr)
            integer(4), intent(in) :: n, lda, negpiv(*)
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*), dcorr(*)
            real(8), intent(in) :: tol(*), reg(*)
        end subroutine

        ! A = L·D·Lᵀ of a front, in panels of width nb.
        subroutine blac_selim(n, nb, tol, a, lda, d, dinv)
            integer(4), intent(in) :: n, nb, lda
            real(8), intent(in) :: tol
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*)
        end subroutine

        ! A + E = L·D·Lᵀ of a front, in panels of width nb, with regularised pivots.
        subroutine blac_selim_reg(n, nb, a, lda, d, dinv, tol, negpiv, reg, dcorr)
            integer(4), intent(in) :: n, nb, lda, negpiv(*)
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*), dcorr(*)
            real(8), intent(in) :: tol(*), reg(*)
        end subroutine

        ! A = L·D·Lᵀ of a front in packed block columns, and the inverse of L·D in the blocks below the
        ! diagonal.
        subroutine blac_selimc(n, nb, tol, a) bind(c, name='blaC_selimC')
            import :: c_int, c_double
            integer(c_int), value :: n, nb
            real(c_double), value :: tol
            real(c_double), intent(inout) :: a(*)
        end subroutine

        ! A = L·D·U of a block, unblocked.
        subroutine blac_uelim_small(n, a, lda, d, dinv, tol)
            integer(4), intent(in) :: n, lda
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*)
            real(8), intent(in) :: tol
        end subroutine

        ! A + E = L·D·U of a block, unblocked, with regularised pivots; E = diag(-dcorr).
        subroutine blac_uelim_small_reg(n, a, lda, d, dinv, tol, negpiv, reg, dcorr)
            integer(4), intent(in) :: n, lda, negpiv(*)
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*), dcorr(*)
            real(8), intent(in) :: tol(*), reg(*)
        end subroutine

        ! A = L·D·U of a front, in panels of width nb.
        subroutine blac_uelim(n, nb, tol, a, lda, d, dinv)
            integer(4), intent(in) :: n, nb, lda
            real(8), intent(in) :: tol
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*)
        end subroutine

        ! A + E = L·D·U of a front, in panels of width nb, with regularised pivots.
        subroutine blac_uelim_reg(n, nb, a, lda, d, dinv, tol, negpiv, reg, dcorr)
            integer(4), intent(in) :: n, nb, lda, negpiv(*)
            real(8), intent(inout) :: a(lda, *), d(*), dinv(*), dcorr(*)
            real(8), intent(in) :: tol(*), reg(*)
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Cholesky modification
        ! ----------------------------------------------------------------------------------------------------

        ! L·S·Lᵀ := L·S·Lᵀ ± x·xᵀ for a factor with signs, S = diag(+1 for the first nlead columns, -1 for
        ! the rest).
        subroutine blac_cholupd(job, n, nlead, ncol, l, ldl, x, tol, info)
            integer(4), intent(in) :: n, nlead, ncol, ldl
            character, intent(in) :: job
            real(8), intent(inout) :: l(ldl, *), x(*)
            real(8), intent(in) :: tol
            integer(4), intent(out) :: info
        end subroutine

        ! L·Lᵀ := L·Lᵀ + x·xᵀ by Givens rotations, row by row of L.
        subroutine blac_dchud(l, ldl, p, x, c, s)
            integer(4), intent(in) :: ldl, p
            real(8), intent(inout) :: l(ldl, *), c(*), s(*)
            real(8), intent(in) :: x(*)
        end subroutine

        ! L·Lᵀ := L·Lᵀ - x·xᵀ by Givens rotations, if the result is positive definite.
        subroutine blac_dchdd(l, ldl, p, x, c, s, info)
            integer(4), intent(in) :: ldl, p
            real(8), intent(inout) :: l(ldl, *), c(*), s(*)
            real(8), intent(in) :: x(*)
            integer(4), intent(out) :: info
        end subroutine

        ! ----------------------------------------------------------------------------------------------------
        ! Sparse products
        ! ----------------------------------------------------------------------------------------------------

        ! Y := A·X.
        subroutine blac_sparse_umv(a, x, ia, ja, y, m, n, nrhs)
            integer(4), intent(in) :: ia(*), ja(*), m, n, nrhs
            real(8), intent(in) :: a(*), x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! Y := Aᵀ·X.
        subroutine blac_sparse_umtv(a, x, ia, ja, y, m, n, nrhs)
            integer(4), intent(in) :: ia(*), ja(*), m, n, nrhs
            real(8), intent(in) :: a(*), x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

        ! Y := A(list,:)ᵀ·X: the product with some rows of A, of which X holds just the partners.
        subroutine blac_sparse_sparse_umtv(a, x, ia, ja, y, nl, n, nrhs, list)
            integer(4), intent(in) :: ia(*), ja(*), nl, n, nrhs, list(*)
            real(8), intent(in) :: a(*), x(*)
            real(8), intent(inout) :: y(*)
        end subroutine

    end interface
end module tovbla
