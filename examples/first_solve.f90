! SPDX-License-Identifier: BSD-3-Clause
! A sparse symmetric system: analyse the pattern, factorise the values, solve, refine, and ask how good it is.
program first_solve
    use, intrinsic :: iso_c_binding
    use tovbla_solver
    implicit none
    ! The lower triangle of a chain of four springs, row by row, counted from 0.
    integer(c_int32_t), parameter :: n = 4, column(7) = [0, 0, 1, 1, 2, 2, 3]
    integer(c_int64_t), parameter :: start(5) = [0, 1, 3, 5, 7], ld = n
    real(c_double), parameter :: values(7) = [2d0, -1d0, 2d0, -1d0, 2d0, -1d0, 1d0]
    real(c_double) :: b(n, 1), x(n, 1), bound
    type(c_ptr) :: solver

    b(:, 1) = [0d0, 0d0, 0d0, 1d0] ! a load at the free end
    x = b
    call check(bla_solver_create(solver))
    call check(bla_solver_analyse(solver, bla_solver_symmetric_lower, n, start, column))
    call check(bla_solver_factorise(solver, values))
    call check(bla_solver_solve(solver, 0, 1, x, ld))
    call check(bla_solver_refine(solver, values, 1, b, ld, x, ld))
    call check(bla_solver_get(solver, 'error_estimate' // c_null_char, bound))
    call bla_solver_destroy(solver)

    print '(a, 4f7.3, a, es8.1)', 'x =', x, ', relative error at most', bound
    if (.not. bound < 1d-14) error stop

contains

    subroutine check(status)
        integer(c_int), intent(in) :: status
        if (status /= bla_solver_ok) error stop 'the solver failed'
    end subroutine
end program
