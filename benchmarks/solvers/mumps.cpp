// SPDX-License-Identifier: BSD-3-Clause
// MUMPS, sequential, for positive definite matrices, in that of its orders that takes the fewest flops.
#include "contender.h"

#include <dmumps_c.h>

#include <algorithm>

namespace {

// ICNTL(7)
constexpr struct
{
    int number;
    const char* name;
} orders[] = {{5, "METIS"}, {3, "SCOTCH"}, {4, "PORD"}, {0, "AMD"}, {2, "AMF"}, {6, "QAMD"}};

class Mumps : public Contender
{
public:
    Mumps(const Problem& problem, int threads) : problem_(problem), value_(problem.value), threads_(threads)
    {
        for (int i = 0; i < problem.n; ++i)
            for (std::int64_t p = problem.start[i]; p < problem.start[i + 1]; ++p) {
                row_.push_back(i + 1);
                column_.push_back(problem.column[p] + 1);
            }
        begin();
    }
    ~Mumps() override
    {
        id_.job = -2;
        dmumps_c(&id_);
    }
    Mumps(const Mumps&) = delete;
    Mumps& operator=(const Mumps&) = delete;

    void tryOrders() override
    {
        double least = 0.0;
        int best = order_;
        for (order_ = 0; order_ < static_cast<int>(std::size(orders)); ++order_) {
            analyse();
            // An order that was not compiled in is replaced by another one.
            if (id_.infog[6] == orders[order_].number && (least == 0.0 || id_.rinfog[0] < least)) {
                least = id_.rinfog[0];
                best = order_;
            }
        }
        order_ = best;
        call(-2);
        begin();
    }
    void analyse() override
    {
        id_.icntl[6] = orders[order_].number;
        call(1);
    }
    void factorise(const double* value) override
    {
        id_.a = const_cast<double*>(value);
        call(2);
    }
    void solve(int columns, const double* b, double* x) override
    {
        std::copy_n(b, std::int64_t{id_.n} * columns, x);
        id_.rhs = x;
        id_.nrhs = columns;
        id_.lrhs = id_.n;
        call(3);
    }
    Cost cost() const override
    {
        const int entries = id_.infog[28]; // in millions where negative
        return {orders[order_].name, entries < 0 ? -1e6 * entries : entries, id_.rinfog[2]};
    }

private:
    void begin()
    {
        id_ = {};
        id_.sym = 1;
        id_.par = 1;
        call(-1);
        for (int output = 0; output < 3; ++output)
            id_.icntl[output] = -1;
        id_.icntl[3] = 0;
        id_.icntl[15] = threads_;
        id_.n = problem_.n;
        id_.nnz = static_cast<MUMPS_INT8>(value_.size());
        id_.irn = row_.data();
        id_.jcn = column_.data();
        id_.a = value_.data();
    }
    void call(int job)
    {
        id_.job = job;
        dmumps_c(&id_);
        if (id_.infog[0] < 0)
            throw std::runtime_error("MUMPS, job " + std::to_string(job) + ": error " +
                                     std::to_string(id_.infog[0]) + ", " + std::to_string(id_.infog[1]));
    }

    const Problem& problem_;
    std::vector<int> row_, column_;
    std::vector<double> value_;
    DMUMPS_STRUC_C id_{};
    int order_ = 0, threads_;
};

} // namespace

std::unique_ptr<Contender> makeContender(const Problem& problem, int threads)
{
    return std::make_unique<Mumps>(problem, threads);
}
