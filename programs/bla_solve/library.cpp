// SPDX-License-Identifier: BSD-3-Clause
#include "library.h"

#include <new>
#include <stdexcept>

Library::Library(const Monitor& monitor)
{
    bla_solver* solver = nullptr;
    bla_solver_create(&solver);
    solver_.reset(solver);
    if (!solver)
        throw std::bad_alloc();
    const auto call = [](void* context, const char* phase, double share) {
        (*static_cast<const Monitor*>(context))(phase, share);
        return 0;
    };
    check(bla_solver_set_monitor(solver, call, const_cast<Monitor*>(&monitor)));
}

void Library::check(int status) const
{
    if (status == BLA_SOLVER_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (status != BLA_SOLVER_OK)
        throw std::runtime_error(bla_solver_message(solver_.get()));
}

void Library::set(const char* option, double value)
{
    check(bla_solver_set(solver_.get(), option, value));
}

double Library::get(const char* quantity) const
{
    double value = 0.0;
    check(bla_solver_get(solver_.get(), quantity, &value));
    return value;
}

void Library::keep(const std::vector<int>& unknowns)
{
    check(bla_solver_set_schur(solver_.get(), static_cast<int>(unknowns.size()), unknowns.data()));
}

void Library::analyse(const Matrix& a, bool symmetric)
{
    check(bla_solver_analyse(solver_.get(), symmetric ? BLA_SOLVER_SYMMETRIC_LOWER : BLA_SOLVER_GENERAL, a.n,
                             a.start.data(), a.column.data()));
}

void Library::factorise(const Matrix& a)
{
    check(bla_solver_factorise(solver_.get(), a.value.data()));
}

Block Library::solve(const Block& b)
{
    Block x = b;
    check(bla_solver_solve(solver_.get(), 0, x.columns, x.value.data(), x.n));
    return x;
}

void Library::refine(const Matrix& a, const Block& b, Block& x)
{
    check(bla_solver_refine(solver_.get(), a.value.data(), x.columns, b.value.data(), b.n, x.value.data(),
                            x.n));
}

std::string Library::verdict() const
{
    return bla_solver_verdict(solver_.get());
}

Block Library::condensed(int count) const
{
    Block c(count, count);
    check(bla_solver_schur(solver_.get(), c.value.data(), count));
    return c;
}

std::vector<int> Library::replaced() const
{
    std::vector<int> unknowns(static_cast<std::size_t>(get("replaced_pivots")));
    check(bla_solver_replaced(solver_.get(), unknowns.data()));
    return unknowns;
}

Tasks Library::tasks() const
{
    const auto count = static_cast<std::size_t>(get("tasks"));
    Tasks tasks{std::vector<bla_solver_task>(count), std::vector<std::int64_t>(count + 1),
                std::vector<std::int32_t>(static_cast<std::size_t>(get("task_edges")))};
    check(bla_solver_tasks(solver_.get(), tasks.task.data(), tasks.start.data(), tasks.next.data()));
    return tasks;
}
