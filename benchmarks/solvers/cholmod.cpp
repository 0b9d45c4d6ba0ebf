// SPDX-License-Identifier: BSD-3-Clause
// CHOLMOD, supernodal, in the better of its METIS and AMD orders.
#include "contender.h"

#include <cholmod.h>

#include <algorithm>

namespace {

// The threads are the BLAS's, and those of OpenMP that the environment allows.
class Cholmod : public Contender
{
public:
    explicit Cholmod(const Problem& problem) : start_(problem.start.begin(), problem.start.end())
    {
        cholmod_start(&common_);
        common_.supernodal = CHOLMOD_SUPERNODAL;
        common_.print = 0;
        a_.nrow = a_.ncol = problem.n;
        a_.nzmax = problem.column.size();
        a_.p = start_.data();
        a_.i = const_cast<std::int32_t*>(problem.column.data());
        a_.x = const_cast<double*>(problem.value.data());
        a_.stype = -1; // the upper triangle by rows is the lower one by columns
        a_.itype = CHOLMOD_INT;
        a_.xtype = CHOLMOD_REAL;
        a_.sorted = a_.packed = 1;
    }
    ~Cholmod() override
    {
        cholmod_free_dense(&x_, &common_);
        cholmod_free_dense(&y_, &common_);
        cholmod_free_dense(&e_, &common_);
        cholmod_free_factor(&factor_, &common_);
        cholmod_finish(&common_);
    }
    Cholmod(const Cholmod&) = delete;
    Cholmod& operator=(const Cholmod&) = delete;

    void tryOrders() override
    {
        double least = 0.0;
        for (int order : {CHOLMOD_METIS, CHOLMOD_AMD}) {
            order_ = order;
            analyse();
            if (const double flops = cost().flops; least == 0.0 || flops < least) {
                least = flops;
                best_ = order;
            }
        }
        order_ = best_;
    }
    void analyse() override
    {
        cholmod_free_factor(&factor_, &common_);
        common_.nmethods = 1;
        common_.method[0].ordering = order_;
        factor_ = cholmod_analyze(&a_, &common_);
        check();
    }
    void factorise(const double* value) override
    {
        a_.x = const_cast<double*>(value);
        cholmod_factorize(&a_, factor_, &common_);
        check();
    }
    void solve(int columns, const double* b, double* x) override
    {
        cholmod_dense right{};
        right.nrow = right.d = a_.nrow;
        right.ncol = columns;
        right.nzmax = a_.nrow * columns;
        right.x = const_cast<double*>(b);
        right.xtype = CHOLMOD_REAL;
        cholmod_solve2(CHOLMOD_A, factor_, &right, nullptr, &x_, nullptr, &y_, &e_, &common_);
        check();
        std::copy_n(static_cast<const double*>(x_->x), right.nzmax, x);
    }
    Cost cost() const override
    {
        Cost cost{factor_->ordering == CHOLMOD_METIS ? "METIS" : "AMD"};
        const int* super = static_cast<const int*>(factor_->super);
        const int* rows = static_cast<const int*>(factor_->pi);
        for (std::size_t f = 0; f < factor_->nsuper; ++f) {
            const double pivots = super[f + 1] - super[f], order = rows[f + 1] - rows[f];
            cost.entries += pivots * (order - (pivots - 1) / 2);
            for (double m = order - pivots; m < order; ++m)
                cost.flops += m * (m + 2);
        }
        return cost;
    }

private:
    void check() const
    {
        if (common_.status != CHOLMOD_OK)
            throw std::runtime_error("CHOLMOD: status " + std::to_string(common_.status));
    }

    std::vector<int> start_;
    cholmod_common common_;
    cholmod_sparse a_{};
    cholmod_factor* factor_ = nullptr;
    cholmod_dense *x_ = nullptr, *y_ = nullptr, *e_ = nullptr; // kept from one solution to the next
    int order_ = CHOLMOD_METIS, best_ = CHOLMOD_METIS;
};

} // namespace

std::unique_ptr<Contender> makeContender(const Problem& problem, int)
{
    return std::make_unique<Cholmod>(problem);
}
