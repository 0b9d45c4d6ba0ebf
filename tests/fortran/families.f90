! SPDX-License-Identifier: BSD-3-Clause
! One call or more of every family from Fortran, through the interfaces: arguments by reference and by value,
! characters with their hidden lengths, logicals, complex results. The numbers are small, so that every result
! is exact.
program families
    use tovbla
    implicit none
    integer :: failures = 0

    call module_and_threads()
    call blas()
    call complex_results()
    call lapack()
    call vectors()
    call blocks()
    call scaling_and_products()
    call elimination()
    call cholesky()
    call sparse()
    if (failures > 0) error stop 1
    print '(a)', 'every family answers'

contains

    subroutine check(right, what)
        logical, intent(in) :: right
        character(*), intent(in) :: what
        if (right) return
        print '(2a)', 'wrong: ', what
        failures = failures + 1
    end subroutine

    pure function square(values) result(a)
        integer, intent(in) :: values(9)
        real(8) :: a(3, 3)
        a = reshape(dble(values), [3, 3])
    end function

    subroutine module_and_threads()
        integer(4) :: tally
        tally = 0
        call TOVBlaCore_initialize(tally)
        call TOVBlaModule_initialize(tally)
        call check(tally == 3, 'initialize')
        call TOVBlaModule_initializeC()
        call TOVBlaModule_finalizeC()
        call TOVBlaModule_finalize(tally)
        call TOVBlaCore_finalize(tally)
        call check(tally == 0, 'finalize')
        call blaC_formalize()
        call blaC_set_num_threads(1)
        call check(blaC_get_num_threads() == 1, 'threads')
    end subroutine

    subroutine blas()
        real(8) :: a(3, 3), x(3), y(3), c(3, 3)
        complex(8) :: z(2), u(2, 2), v(2)
        a = square([1, 2, 3, 4, 5, 6, 7, 8, 10])
        x = [1d0, 2d0, -3d0]
        y = 1d0
        call check(blac_ddot(3, x, 1, a(1, 2), 1) == -4d0, 'ddot')
        call check(blac_dasum(3, x, 1) == 6d0, 'dasum')
        call check(blac_idamax(3, x, 1) == 3, 'idamax')
        call blac_daxpby(3, 2d0, x, 1, 3d0, y, 1)
        call check(all(y == [5d0, 7d0, -3d0]), 'daxpby')
        call blac_dgemv('N', 3, 3, 1d0, a, 3, x, 1, 0d0, y, 1)
        call check(all(y == matmul(a, x)), 'dgemv N')
        call blac_dgemv('Transpose', 3, 3, 1d0, a, 3, x, 1, 0d0, y, 1)
        call check(all(y == matmul(transpose(a), x)), 'dgemv T')
        call blac_dgemm('t', 'n', 3, 3, 3, 1d0, a, 3, a, 3, 0d0, c, 3)
        call check(all(c == matmul(transpose(a), a)), 'dgemm')
        y = [1d0, 8d0, 33d0] ! lower triangle of a: x(1) = 1, x(2) = (8-2)/5 ...
        y(2) = 12d0
        y(3) = 3d0 + 12d0 + 20d0
        call blac_dtrsm('L', 'L', 'N', 'N', 3, 1, 1d0, a, 3, y, 3)
        call check(all(y == [1d0, 2d0, 2d0]), 'dtrsm')
        z = [(1d0, 1d0), (2d0, 0d0)]
        u = reshape([(1d0, 0d0), (0d0, 1d0), (0d0, 0d0), (1d0, 0d0)], [2, 2])
        call blac_zgemv('C', 2, 2, (1d0, 0d0), u, 2, z, 1, (0d0, 0d0), v, 1)
        call check(all(v == matmul(transpose(conjg(u)), z)), 'zgemv')
        call check(blac_lsame('u', 'U'), 'lsame, same')
        call check(.not. blac_lsame('u', 'L'), 'lsame, different')
    end subroutine

    subroutine complex_results()
        complex(8) :: x(2), y(2), w
        x = [(1d0, 1d0), (0d0, 2d0)]
        y = [(1d0, 0d0), (3d0, 0d0)]
        call blac_zdotc(w, 2, x, 1, y, 1)
        call check(w == (1d0, -7d0), 'zdotc')
        call blac_zladiv(w, (4d0, 2d0), (1d0, 1d0))
        call check(w == (3d0, -1d0), 'zladiv')
        x = (0d0, 0d0)
        w = (7d0, 7d0)
        call blac_zdotu(w, 2, x, 1, y, 1) ! as documented: not the product, but 0 for 0
        call check(w == (0d0, 0d0), 'zdotu')
    end subroutine

    subroutine lapack()
        real(8) :: a(3, 3), b(3), w(3), work(100)
        complex(8) :: z(2, 2)
        integer :: info, ipiv(3)
        integer, external :: ilaenv
        a = square([4, 2, 2, 2, 5, 3, 2, 3, 6])
        b = [8d0, 10d0, 11d0]
        call blac_dgesv(3, 1, a, 3, ipiv, b, 3, info)
        call check(info == 0 .and. all(abs(b - 1d0) < 1d-14), 'dgesv')
        a = square([4, 2, 2, 0, 2, 1, 0, 0, 3])
        call blac_dpotrf('Lower', 3, a, 3, info)
        call check(info == 0 .and. a(1, 1) == 2d0 .and. a(2, 2) == 1d0, 'dpotrf L')
        a = square([-1, 0, 0, 0, 1, 0, 0, 0, 1])
        call blac_dpotrf('U', 3, a, 3, info)
        call check(info == 1, 'dpotrf U, not positive definite')
        a = square([1, 0, 0, 0, 2, 0, 0, 0, 3])
        call blac_dsyev('V', 'U', 3, a, 3, w, work, size(work), info)
        call check(info == 0 .and. all(w == [1d0, 2d0, 3d0]), 'dsyev')
        z = reshape([(3d0, 4d0), (0d0, 0d0), (0d0, 0d0), (0d0, 1d0)], [2, 2])
        call check(blac_zlange('M', 2, 2, z, 2, work) == 5d0, 'zlange')
        call check(blac_dlamch('B') == 2d0, 'dlamch')
        call check(blac_hdmcon(12) == acos(-1d0), 'hdmcon')
        call check(blac_ieeeck(1, 0.0, 1.0) == 1, 'ieeeck')
        call check(blac_ilaenv(1, 'DGETRF', ' ', 500, 500, -1, -1) == ilaenv(1, 'DGETRF', ' ', 500, 500, -1, -1), &
            'ilaenv')
        call check(blac_ilaenv(1, 'DGETRF', ' ', 500, 500, -1, -1) > 1, 'ilaenv sees the whole name')
    end subroutine

    subroutine vectors()
        real(8) :: x(6), y(6)
        complex(8) :: z(2)
        x = 0d0
        call tovbla_vdasn(3, x, 7d0)
        call check(all(x == [7, 7, 7, 0, 0, 0]), 'vdasn')
        call tovbla_bvdscale(2_8, x, 2d0)
        call check(all(x == [14, 14, 7, 0, 0, 0]), 'bvdscale')
        y = 1d0
        call tovbla_vdnegaddi(3, x, 1, y, 2, y, 2)
        call check(all(y == [-15, 1, -15, 1, -8, 1]), 'vdnegaddi')
        z = [(1d0, 2d0), (3d0, -4d0)]
        call tovbla_vzconj(2, z, z)
        call check(all(z == [(1d0, -2d0), (3d0, 4d0)]), 'vzconj')
    end subroutine

    subroutine blocks()
        real(8) :: front(5, 5), child(3, 3), b(3, 3), d(3), dinv(3)
        front = 0d0
        child = square([1, 2, 3, 4, 5, 6, 7, 8, 9])
        call blac_addrectblock(3, 3, front(2, 3), 5, child, 3)
        call check(all(front(2:4, 3:5) == child) .and. sum(front) == 45d0, 'addrectblock')
        call blac_datcpy(3, 3, child, 3, b, 3)
        call check(all(b == transpose(child)), 'datcpy')
        call blac_reflect('L', 3, b, 3)
        call check(b(1, 3) == b(3, 1) .and. b(3, 1) == 7d0, 'reflect')
        call blac_copydiag(3, child, 3, d, dinv)
        call check(all(d == [1, 5, 9]) .and. dinv(1) == 1d0, 'copydiag')
        call blac_dset(2, 0.5d0, d, 2)
        call check(all(d == [0.5d0, 5d0, 0.5d0]), 'dset')
        call blaC_copyrect_intr(2, 3, front, 5, child, 3)
        call check(all(front(1:2, 1:3) == child(1:2, :)), 'copyrect_intr')
        call blaC_zerotriC(3, 1, 2, child, 3)
        call check(all(child == square([1, 2, 3, 4, 0, 0, 7, 8, 0])), 'zerotriC')
    end subroutine

    subroutine scaling_and_products()
        real(8) :: a(3, 2), b(3, 2), c(3, 3)
        a = reshape([1d0, 2d0, 3d0, 4d0, 5d0, 6d0], [3, 2])
        call blac_scale(3, 2, [2d0, 3d0], a, 3, b, 3)
        call check(all(b(:, 1) == 2d0 * a(:, 1)) .and. all(b(:, 2) == 3d0 * a(:, 2)), 'scale')
        c = 0d0
        call blac_dgemm_scaled2('N', 'T', 3, 3, 2, 1d0, a, 3, a, 3, 0d0, c, 3, [2d0, 3d0])
        call check(all(c == matmul(b, transpose(a))), 'dgemm_scaled2')
    end subroutine

    subroutine elimination()
        real(8) :: a(3, 3), d(3), dinv(3), dcorr(3), packed(9 + 6 + 4)
        ! L = [1; 1/2 1; -1/4 1/2 1], D = diag(4, 2, 8)
        real(8), parameter :: lower(3, 3) = reshape([4d0, 2d0, -1d0, 0d0, 3d0, 0.5d0, 0d0, 0d0, 8.75d0], [3, 3])
        real(8), parameter :: factors(3, 3) = reshape([4d0, 2d0, -1d0, 0.5d0, 2d0, 1d0, -0.25d0, 0.5d0, 8d0], [3, 3])
        a = lower
        call blac_selim_small(3, a, 3, d, dinv, 1d-14)
        call check(all(a == factors) .and. all(d == [4, 2, 8]) .and. all(dinv == 1d0 / d), 'selim_small')
        a = lower
        call blac_selim(3, 2, 1d-14, a, 3, d, dinv)
        call check(all(d == [4, 2, 8]) .and. a(3, 2) == 1d0 .and. a(1, 3) == 0d0, 'selim')
        a = lower
        call blac_selim_reg(3, 2, a, 3, d, dinv, [1d-14, 1d-14, 8d0], [0, 0, 1], [0d0, 0d0, 4d0], dcorr)
        call check(all(d == [4, 2, 4]) .and. all(dcorr == [0, 0, 4]), 'selim_reg')
        a = lower
        call blac_reflect('L', 3, a, 3)
        call blac_uelim(3, 2, 1d-14, a, 3, d, dinv)
        call check(all(a == factors), 'uelim')
        a(1, 1) = 0d0
        call blac_uelim_small(1, a, 3, d, dinv, 0d0)
        call check(d(1) == 1d36 .and. dinv(1) == 1d-36, 'uelim_small, zero pivot')
        packed(1:9) = reshape(lower, [9])
        call blaC_selimC(3, 3, 1d-14, packed)
        call check(all(packed(1:9) == reshape(factors, [9])) .and. all(packed(10:12) == [4, 2, 8]), 'selimC')
    end subroutine

    subroutine cholesky()
        real(8) :: l(2, 2), x(2), c(2), s(2)
        integer :: info
        l = reshape([3d0, 0d0, 0d0, 1d0], [2, 2])
        x = [4d0, 0d0]
        call blac_cholupd('P', 2, 2, 2, l, 2, x, 0d0, info)
        call check(info == 0 .and. abs(l(1, 1) - 5d0) < 1d-14, 'cholupd P')
        x = [6d0, 0d0]
        call blac_cholupd('N', 2, 2, 2, l, 2, x, 0d0, info)
        call check(info == 1, 'cholupd N, refused')
        call blac_dchud(l, 2, 2, [0d0, 0d0], c, s)
        call check(all(c == 1d0) .and. all(s == 0d0), 'dchud')
        call blac_dchdd(l, 2, 2, [6d0, 0d0], c, s, info)
        call check(info == -1, 'dchdd, refused')
    end subroutine

    subroutine sparse()
        ! [10  0 20]
        ! [ 0 30  0]
        integer, parameter :: ia(3) = [0, 2, 3], ja(3) = [0, 2, 1]
        real(8), parameter :: a(3) = [10d0, 20d0, 30d0]
        real(8) :: y(2), t(3)
        call blac_sparse_umv(a, [1d0, 2d0, 3d0], ia, ja, y, 2, 3, 1)
        call check(all(y == [70, 60]), 'sparse_umv')
        call blac_sparse_umtv(a, [1d0, 2d0], ia, ja, t, 2, 3, 1)
        call check(all(t == [10, 60, 20]), 'sparse_umtv')
        call blac_sparse_sparse_umtv(a, [2d0], ia, ja, t, 1, 3, 1, [1])
        call check(all(t == [0, 60, 0]), 'sparse_sparse_umtv')
    end subroutine
end program families
