// SPDX-License-Identifier: BSD-3-Clause
// A solver as its users call it. Each is a source of its own, and with measure.cpp a program of its own: so
// each runs over the BLAS and the OpenMP run time that it wants, whatever the others bring.
#pragma once

#include "problem.h"

#include <memory>
#include <stdexcept>
#include <string>

// What the factorisation is, in the order of elimination that the solver took.
struct Cost
{
    std::string order;
    double entries = 0.0; // of L, zeros that are stored included
    double flops = 0.0;   // products and sums counted each
};

// Failures are thrown as std::runtime_error.
class Contender
{
public:
    virtual ~Contender() = default;

    // Finds out, where a solver cannot do that by itself, in which of its orders it is best. Not measured.
    virtual void tryOrders() {}

    // The pattern of the problem, in that order.
    virtual void analyse() = 0;

    // New values for the pattern, in the sequence of the problem's.
    virtual void factorise(const double* value) = 0;

    // X := A^-1 * B for vectors of length n, one after the other
    virtual void solve(int columns, const double* b, double* x) = 0;

    virtual Cost cost() const = 0; // after factorise
};

// The solver behind a contender is not on this machine.
struct Missing : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

// Defined once in each program. The problem outlives the contender.
std::unique_ptr<Contender> makeContender(const Problem& problem, int threads);
