// SPDX-License-Identifier: BSD-3-Clause
// Our solver by its C interface.
#include "contender.h"

#include "TOVBlaSolver.h"

#include <algorithm>

namespace {

class Ours : public Contender
{
public:
    Ours(const Problem& problem, int threads) : problem_(problem)
    {
        check(bla_solver_create(&solver_));
        check(bla_solver_set(solver_, "threads", threads));
    }
    ~Ours() override { bla_solver_destroy(solver_); }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;

    void analyse() override
    {
        check(bla_solver_analyse(solver_, BLA_SOLVER_SYMMETRIC_UPPER, problem_.n, problem_.start.data(),
                                 problem_.column.data()));
    }
    void factorise(const double* value) override { check(bla_solver_factorise(solver_, value)); }
    void solve(int columns, const double* b, double* x) override
    {
        std::copy_n(b, std::int64_t{problem_.n} * columns, x);
        check(bla_solver_solve(solver_, 0, columns, x, problem_.n));
    }
    Cost cost() const override
    {
        const char* const orders[] = {"?", "METIS", "AMD", "given"};
        return {orders[static_cast<int>(get("ordering_used"))], get("factor_entries"), get("flops")};
    }

private:
    double get(const char* quantity) const
    {
        double value = 0.0;
        check(bla_solver_get(solver_, quantity, &value));
        return value;
    }
    void check(int status) const
    {
        if (status != BLA_SOLVER_OK)
            throw std::runtime_error(bla_solver_message(solver_));
    }

    const Problem& problem_;
    bla_solver* solver_ = nullptr;
};

} // namespace

std::unique_ptr<Contender> makeContender(const Problem& problem, int threads)
{
    return std::make_unique<Ours>(problem, threads);
}
