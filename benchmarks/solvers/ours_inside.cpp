// SPDX-License-Identifier: BSD-3-Clause
// Our solver by the classes within it, for as long as the library with the C interface is not there.
#include "contender.h"

#include "TOVBlaModule.h"
#include "analysis.h"
#include "factor.h"
#include "scaling.h"

#include <algorithm>

namespace {

class Ours : public Contender
{
public:
    explicit Ours(const Problem& problem)
    {
        std::vector<Triplet> entries;
        for (int i = 0; i < problem.n; ++i)
            for (std::int64_t p = problem.start[i]; p < problem.start[i + 1]; ++p) {
                entries.push_back({i, problem.column[p], static_cast<double>(p)});
                if (problem.column[p] != i)
                    entries.push_back({problem.column[p], i, static_cast<double>(p)});
            }
        a_ = fromTriplets(problem.n, std::move(entries));
        a_.symmetric = true;
        source_.assign(a_.value.begin(), a_.value.end());
    }
    void analyse() override { analysis_ = ::analyse(a_, std::vector<char>(a_.n, 0)); }
    void factorise(const double* value) override
    {
        for (std::size_t p = 0; p < source_.size(); ++p)
            a_.value[p] = value[source_[p]];
        equilibrated_ = equilibrateSymmetric(a_);
        if (!factor_)
            factor_ = std::make_unique<Factor>(analysis_, true);
        factor_->factorise(equilibrated_.matrix, PivotRule{1e-14, 0.0, 0}, Progress());
    }
    void solve(int columns, const double* b, double* x) override
    {
        Vectors block(a_.n, columns);
        std::copy_n(b, block.value.size(), block.value.begin());
        equilibrated_.enter(block);
        factor_->solve(block);
        equilibrated_.leave(block);
        std::copy(block.value.begin(), block.value.end(), x);
    }
    Cost cost() const override
    {
        return {analysis_.ordering, static_cast<double>(analysis_.lowerEntries), analysis_.flops};
    }

private:
    SparseMatrix a_;
    std::vector<std::int64_t> source_; // in the problem, of every entry of both triangles
    Analysis analysis_;
    Equilibrated equilibrated_;
    std::unique_ptr<Factor> factor_;
};

} // namespace

std::unique_ptr<Contender> makeContender(const Problem& problem, int threads)
{
    blaC_set_num_threads(threads);
    return std::make_unique<Ours>(problem);
}
