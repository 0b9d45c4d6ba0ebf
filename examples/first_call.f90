! SPDX-License-Identifier: BSD-3-Clause
! Factorise a small symmetric matrix and solve a system with it.
program first_call
    use tovbla
    implicit none
    integer, parameter :: n = 3
    double precision :: a(n, n), x(n), d(n), dinv(n)
    integer :: i

    ! Only the lower triangle is read.
    a = reshape([4d0, 1d0, 2d0, 0d0, 5d0, 1d0, 0d0, 0d0, 6d0], [n, n])
    x = [12d0, 14d0, 22d0] ! the right-hand side, then the solution (1, 2, 3)

    ! A = L*D*L^T: a holds L*D from the diagonal down, and L^T (unit diagonal) above it.
    call blac_selim_small(n, a, n, d, dinv, 1d-14)
    call blac_dtrsm('L', 'L', 'N', 'N', n, 1, 1d0, a, n, x, n) ! x := (L*D)^-1 * x
    call blac_dtrsm('L', 'U', 'N', 'U', n, 1, 1d0, a, n, x, n) ! x := L^-T * x

    print '(a, 3f8.4)', 'pivots   ', d
    print '(a, 3f8.4)', 'solution ', x
    if (any(abs(x - [(dble(i), i = 1, n)]) > 1d-14)) error stop 1
end program first_call
