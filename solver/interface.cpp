// SPDX-License-Identifier: BSD-3-Clause
// The C interface: arguments are checked here, before anything is changed, and no exception gets past.
#include "failure.h"
#include "handle.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <string>

namespace {

// Runs a call, and turns what it throws into a status and a sentence.
template <class Call>
int guarded(const bla_solver* solver, Call call)
{
    if (!solver)
        return BLA_SOLVER_BAD_ARGUMENT;
    solver->message.clear();
    try {
        call();
        return BLA_SOLVER_OK;
    } catch (const Failure& failure) {
        solver->message.set(failure.what());
        return failure.status;
    } catch (const std::bad_alloc&) {
        solver->message.set("there is not enough memory");
        return BLA_SOLVER_OUT_OF_MEMORY;
    } catch (const std::length_error&) { // a container larger than there can be
        solver->message.set("there is not enough memory");
        return BLA_SOLVER_OUT_OF_MEMORY;
    } catch (const std::exception& error) {
        solver->message.set(error.what());
    } catch (...) {
        solver->message.set("an unknown fault");
    }
    return BLA_SOLVER_INTERNAL;
}

void require(bool condition, const char* otherwise)
{
    if (!condition)
        throw Failure(BLA_SOLVER_BAD_ARGUMENT, otherwise);
}

// A block of columns of length n.
void requireBlock(const void* data, std::int64_t ld, std::int64_t n, std::int64_t columns, const char* name)
{
    require(columns >= 0, "the number of columns is negative");
    if (ld < std::max<std::int64_t>(n, 1))
        throw Failure(BLA_SOLVER_BAD_ARGUMENT,
                      std::string("the leading dimension of ") + name + " is too small");
    if (!data && n > 0 && columns > 0)
        throw Failure(BLA_SOLVER_BAD_ARGUMENT, std::string(name) + " is missing");
}

// A permutation, or a set of different numbers, of 0 ... n-1
void requireDifferent(const std::int32_t* numbers, std::int64_t count, std::int64_t n, const char* name)
{
    std::vector<char> seen(n, 0);
    for (std::int64_t k = 0; k < count; ++k) {
        if (numbers[k] < 0 || numbers[k] >= n || seen[numbers[k]])
            throw Failure(BLA_SOLVER_BAD_ARGUMENT, std::string(name) + "[" + std::to_string(k) +
                                                       "] = " + std::to_string(numbers[k]) +
                                                       " is out of range or there before");
        seen[numbers[k]] = 1;
    }
}

} // namespace

int bla_solver_create(bla_solver** solver)
{
    if (!solver)
        return BLA_SOLVER_BAD_ARGUMENT;
    *solver = new (std::nothrow) bla_solver;
    return *solver ? BLA_SOLVER_OK : BLA_SOLVER_OUT_OF_MEMORY;
}

void bla_solver_destroy(bla_solver* solver)
{
    delete solver;
}

const char* bla_solver_message(const bla_solver* solver)
{
    return solver ? solver->message.text() : "there is no handle";
}

int bla_solver_set(bla_solver* solver, const char* option, double value)
{
    return guarded(solver, [&] {
        require(option, "the name of the option is missing");
        solver->options.set(option, value);
    });
}

int bla_solver_get(const bla_solver* solver, const char* quantity, double* value)
{
    return guarded(solver, [&] {
        require(quantity && value, "the name of the quantity, or the place for its value, is missing");
        *value = solver->quantity(quantity);
    });
}

int bla_solver_set_order(bla_solver* solver, std::int32_t n, const std::int32_t* order)
{
    return guarded(solver, [&] {
        require(n >= 0, "the number of unknowns is negative");
        require(order || n == 0, "the order is missing");
        requireDifferent(order, n, n, "order");
        solver->order.assign(order, order + n);
        solver->options.ordering = n > 0 ? 3.0 : 0.0;
    });
}

int bla_solver_set_schur(bla_solver* solver, std::int32_t count, const std::int32_t* unknowns)
{
    return guarded(solver, [&] {
        require(count >= 0, "the number of unknowns is negative");
        require(unknowns || count == 0, "the unknowns are missing");
        for (std::int32_t k = 0; k < count; ++k)
            require(unknowns[k] >= 0, "an unknown is negative");
        solver->kept.assign(unknowns, unknowns + count);
    });
}

int bla_solver_analyse(bla_solver* solver, int kind, std::int32_t n, const std::int64_t* start,
                       const std::int32_t* column)
{
    return guarded(solver, [&] {
        require(kind == BLA_SOLVER_SYMMETRIC_LOWER || kind == BLA_SOLVER_SYMMETRIC_UPPER ||
                    kind == BLA_SOLVER_GENERAL,
                "the kind of the matrix is none of those there are");
        require(n >= 0, "the number of rows is negative");
        require(start, "the row pointers are missing");
        require(column || start[n] <= start[0], "the columns are missing");
        solver->analyse(static_cast<Kind>(kind), n, start, column);
    });
}

int bla_solver_factorise(bla_solver* solver, const double* value)
{
    return guarded(solver, [&] {
        solver->requireAnalysis();
        require(value || solver->rows->pattern().entries() == 0, "the values are missing");
        solver->factorise(value);
    });
}

int bla_solver_solve(bla_solver* solver, int transposed, std::int32_t nrhs, double* b, std::int64_t ldb)
{
    return guarded(solver, [&] {
        require(transposed == 0 || transposed == 1, "transposed is neither 0 nor 1");
        solver->requireFactor();
        requireBlock(b, ldb, solver->n(), nrhs, "b");
        solver->solve(transposed == 1, nrhs, b, ldb);
    });
}

int bla_solver_refine(bla_solver* solver, const double* value, std::int32_t nrhs, const double* b,
                      std::int64_t ldb, double* x, std::int64_t ldx)
{
    return guarded(solver, [&] {
        solver->requireFactor();
        require(value || solver->rows->pattern().entries() == 0, "the values are missing");
        requireBlock(b, ldb, solver->n(), nrhs, "b");
        requireBlock(x, ldx, solver->n(), nrhs, "x");
        solver->refine(value, nrhs, b, ldb, x, ldx);
    });
}

int bla_solver_pivots(const bla_solver* solver, double* d)
{
    return guarded(solver, [&] {
        solver->requireFactor();
        require(d || solver->n() == 0, "the place for the pivots is missing");
        require(solver->rows->pattern().symmetric, "pivots are given of symmetric matrices only");
        solver->pivots(d);
    });
}

int bla_solver_replaced(const bla_solver* solver, std::int32_t* unknowns)
{
    return guarded(solver, [&] {
        solver->requireFactor();
        const std::vector<int>& replaced = solver->numbers->replaced;
        require(unknowns || replaced.empty(), "the place for the unknowns is missing");
        std::copy(replaced.begin(), replaced.end(), unknowns);
    });
}

int bla_solver_unheld(const bla_solver* solver, std::int32_t* unknowns)
{
    return guarded(solver, [&] {
        solver->requireFactor();
        const std::vector<int>& unheld = solver->numbers->unheld.unknowns;
        require(unknowns || unheld.empty(), "the place for the unknowns is missing");
        std::copy(unheld.begin(), unheld.end(), unknowns);
    });
}

const char* bla_solver_verdict(const bla_solver* solver)
{
    return solver && solver->answer ? solver->answer->verdict.c_str() : "";
}

int bla_solver_schur(const bla_solver* solver, double* c, std::int64_t ldc)
{
    return guarded(solver, [&] {
        solver->requireFactor();
        const std::int64_t count = static_cast<std::int64_t>(solver->wishes.kept.size());
        if (count == 0)
            throw Failure(BLA_SOLVER_NOT_READY, "no unknowns were kept (bla_solver_set_schur, then analyse)");
        requireBlock(c, ldc, count, count, "c");
        solver->schur(c, ldc);
    });
}

int bla_solver_tasks(const bla_solver* solver, bla_solver_task* tasks, std::int64_t* start,
                     std::int32_t* next)
{
    return guarded(solver, [&] {
        solver->requireTasks();
        require(tasks || solver->numbers->times->empty(), "the place for the tasks is missing");
        require(start, "the place for the starts is missing");
        require(next || solver->plan->schedule->graph.edges() == 0,
                "the place for those that wait is missing");
        solver->tasks(tasks, start, next);
    });
}

int bla_solver_set_monitor(bla_solver* solver, int (*monitor)(void*, const char*, double), void* context)
{
    return guarded(solver, [&] {
        solver->monitor = monitor;
        solver->monitorContext = context;
    });
}
