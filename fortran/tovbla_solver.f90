! SPDX-License-Identifier: BSD-3-Clause
! Interfaces of everything that libZEFTOVBlaSolver exports:
!
!     use tovbla_solver
!     type(c_ptr) :: solver
!     call check(bla_solver_create(solver))
!     call check(bla_solver_analyse(solver, bla_solver_symmetric_lower, n, start, column))
!
! The header TOVBlaSolver.h describes the functions. As there, rows, columns and unknowns are counted from 0, the
! entries of row i lie at start(i + 1) ... start(i + 2) - 1 counted from 0, and every function returns a status,
! bla_solver_ok for success. Names of options and quantities end with c_null_char:
!
!     call check(bla_solver_set(solver, 'threads' // c_null_char, 1d0))
!
! A module of interfaces only: there is nothing to link but the library.
module tovbla_solver
    use, intrinsic :: iso_c_binding
    implicit none

    enum, bind(c)
        enumerator :: bla_solver_ok = 0, bla_solver_bad_argument, bla_solver_bad_matrix, bla_solver_out_of_memory, &
            bla_solver_too_large, bla_solver_cancelled, bla_solver_not_ready, bla_solver_internal
    end enum
    enum, bind(c)
        enumerator :: bla_solver_symmetric_lower = 0, bla_solver_symmetric_upper, bla_solver_general
    end enum

    ! A task of a recorded factorisation; its name is ended by a null character.
    type, bind(c) :: bla_solver_task
        type(c_ptr) :: name
        integer(c_int32_t) :: front, row, column, step, thread, fronts
        real(c_double) :: begin, end
    end type

    interface
        ! Makes a solver with default options.
        integer(c_int) function bla_solver_create(solver) bind(c)
            import :: c_int, c_ptr
            type(c_ptr), intent(out) :: solver
        end function

        ! Gives everything back.
        subroutine bla_solver_destroy(solver) bind(c)
            import :: c_ptr
            type(c_ptr), value :: solver
        end subroutine

        ! One sentence on the last failure, ended by a null character.
        type(c_ptr) function bla_solver_message(solver) bind(c)
            import :: c_ptr
            type(c_ptr), value :: solver
        end function

        ! Sets an option.
        integer(c_int) function bla_solver_set(solver, option, value) bind(c)
            import :: c_char, c_double, c_int, c_ptr
            type(c_ptr), value :: solver
            character(kind=c_char), intent(in) :: option(*)
            real(c_double), value :: value
        end function

        ! Reads an option or a quantity.
        integer(c_int) function bla_solver_get(solver, quantity, value) bind(c)
            import :: c_char, c_double, c_int, c_ptr
            type(c_ptr), value :: solver
            character(kind=c_char), intent(in) :: quantity(*)
            real(c_double), intent(out) :: value
        end function

        ! The order of elimination for the next analysis: order(k) is eliminated k-th.
        integer(c_int) function bla_solver_set_order(solver, n, order) bind(c)
            import :: c_int, c_int32_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int32_t), value :: n
            integer(c_int32_t), intent(in) :: order(*)
        end function

        ! Unknowns that are kept, for static condensation.
        integer(c_int) function bla_solver_set_schur(solver, count, unknowns) bind(c)
            import :: c_int, c_int32_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int32_t), value :: count
            integer(c_int32_t), intent(in) :: unknowns(*)
        end function

        ! Order of elimination, fronts and memory, from the pattern alone.
        integer(c_int) function bla_solver_analyse(solver, kind, n, start, column) bind(c)
            import :: c_int, c_int32_t, c_int64_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int), value :: kind
            integer(c_int32_t), value :: n
            integer(c_int64_t), intent(in) :: start(*)
            integer(c_int32_t), intent(in) :: column(*)
        end function

        ! Factorises, as often as values change.
        integer(c_int) function bla_solver_factorise(solver, value) bind(c)
            import :: c_double, c_int, c_ptr
            type(c_ptr), value :: solver
            real(c_double), intent(in) :: value(*)
        end function

        ! B := A^-1 * B or A^-T * B.
        integer(c_int) function bla_solver_solve(solver, transposed, nrhs, b, ldb) bind(c)
            import :: c_double, c_int, c_int32_t, c_int64_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int), value :: transposed
            integer(c_int32_t), value :: nrhs
            integer(c_int64_t), value :: ldb
            real(c_double), intent(inout) :: b(ldb, *)
        end function

        ! Improves solutions of A * X = B, and bounds their errors.
        integer(c_int) function bla_solver_refine(solver, value, nrhs, b, ldb, x, ldx) bind(c)
            import :: c_double, c_int, c_int32_t, c_int64_t, c_ptr
            type(c_ptr), value :: solver
            real(c_double), intent(in) :: value(*)
            integer(c_int32_t), value :: nrhs
            integer(c_int64_t), value :: ldb, ldx
            real(c_double), intent(in) :: b(ldb, *)
            real(c_double), intent(inout) :: x(ldx, *)
        end function

        ! The pivots of a symmetric matrix.
        integer(c_int) function bla_solver_pivots(solver, d) bind(c)
            import :: c_double, c_int, c_ptr
            type(c_ptr), value :: solver
            real(c_double), intent(out) :: d(*)
        end function

        ! The unknowns whose pivots were replaced.
        integer(c_int) function bla_solver_replaced(solver, unknowns) bind(c)
            import :: c_int, c_int32_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int32_t), intent(out) :: unknowns(*)
        end function

        ! Unknowns of a singular matrix that, if held, would leave no motion free.
        integer(c_int) function bla_solver_unheld(solver, unknowns) bind(c)
            import :: c_int, c_int32_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int32_t), intent(out) :: unknowns(*)
        end function

        ! A sentence on what bla_solver_refine found, ended by a null character.
        type(c_ptr) function bla_solver_verdict(solver) bind(c)
            import :: c_ptr
            type(c_ptr), value :: solver
        end function

        ! The Schur complement of the unknowns that were kept.
        integer(c_int) function bla_solver_schur(solver, c, ldc) bind(c)
            import :: c_double, c_int, c_int64_t, c_ptr
            type(c_ptr), value :: solver
            integer(c_int64_t), value :: ldc
            real(c_double), intent(inout) :: c(ldc, *)
        end function

        ! The tasks of a recorded factorisation; next(start(t) + 1) ... next(start(t + 1)) wait for tasks(t), themselves
        ! counted from 0.
        integer(c_int) function bla_solver_tasks(solver, tasks, start, next) bind(c)
            import :: bla_solver_task, c_int, c_int32_t, c_int64_t, c_ptr
            type(c_ptr), value :: solver
            type(bla_solver_task), intent(out) :: tasks(*)
            integer(c_int64_t), intent(out) :: start(*)
            integer(c_int32_t), intent(out) :: next(*)
        end function

        ! Calls monitor(context, phase, share) from time to time; a result other than 0 cancels.
        integer(c_int) function bla_solver_set_monitor(solver, monitor, context) bind(c)
            import :: c_funptr, c_int, c_ptr
            type(c_ptr), value :: solver
            type(c_funptr), value :: monitor
            type(c_ptr), value :: context
        end function
    end interface
end module
