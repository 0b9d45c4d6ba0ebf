// SPDX-License-Identifier: BSD-3-Clause
#include "analysis.h"

#include <cholmod.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>

namespace {

struct Cholmod
{
    cholmod_common common;
    cholmod_factor* factor = nullptr;

    Cholmod()
    {
        cholmod_start(&common);
        common.print = 0;
        common.supernodal = CHOLMOD_SUPERNODAL;
        common.method[1].ordering = CHOLMOD_AMD;
        common.method[0].ordering = CHOLMOD_METIS;
    }
    ~Cholmod()
    {
        cholmod_free_factor(&factor, &common);
        cholmod_finish(&common);
    }
    Cholmod(const Cholmod&) = delete;
    Cholmod& operator=(const Cholmod&) = delete;

    // Ordering, elimination tree, column counts and supernodes of the upper half of the pattern.
    void run(const SparseMatrix& a, std::vector<int>* order)
    {
        cholmod_sparse pattern{};
        pattern.nrow = pattern.ncol = a.n;
        pattern.nzmax = a.entries();
        pattern.p = const_cast<int*>(a.start.data());
        pattern.i = const_cast<int*>(a.column.data());
        pattern.stype = 1;
        pattern.itype = CHOLMOD_INT;
        pattern.xtype = CHOLMOD_PATTERN;
        pattern.sorted = pattern.packed = 1;
        cholmod_free_factor(&factor, &common);
        if (order) {
            common.nmethods = 1;
            common.method[0].ordering = CHOLMOD_GIVEN;
            factor = cholmod_analyze_p(&pattern, order->data(), nullptr, 0, &common);
        } else {
            common.nmethods = a.n > 30000 ? 1 : 2;
            factor = cholmod_analyze(&pattern, &common);
        }
        if (!factor || common.status != CHOLMOD_OK)
            throw std::runtime_error("the symbolic analysis failed: " +
                                     std::string(common.status == CHOLMOD_TOO_LARGE ? "problem too large"
                                                 : common.status == CHOLMOD_OUT_OF_MEMORY
                                                     ? "out of memory"
                                                     : "internal error"));
    }
};

// The given order, with every late unknown moved behind the last of its neighbours that are not late.
std::vector<int> postponed(const SparseMatrix& a, const int* order, const std::vector<char>& late)
{
    std::vector<int> place(a.n), key(a.n), result(order, order + a.n);
    for (int k = 0; k < a.n; ++k)
        place[order[k]] = k;
    for (int i = 0; i < a.n; ++i) {
        key[i] = place[i];
        if (late[i])
            for (int p = a.start[i]; p < a.start[i + 1]; ++p)
                if (!late[a.column[p]])
                    key[i] = std::max(key[i], place[a.column[p]]);
    }
    std::stable_sort(result.begin(), result.end(),
                     [&](int x, int y) { return key[x] != key[y] ? key[x] < key[y] : late[x] < late[y]; });
    return result;
}

} // namespace

// A pivot with m rows below it: m multipliers, and m(m + 1)/2 entries updated by a product and a difference.
double Front::flops() const
{
    double sum = 0.0;
    for (double m = rest(); m < order; ++m)
        sum += m * (m + 2);
    return sum;
}

Analysis analyse(const SparseMatrix& a, const std::vector<char>& late)
{
    Cholmod cholmod;
    cholmod.run(a, nullptr);
    Analysis result;
    result.ordering = cholmod.factor->ordering == CHOLMOD_METIS ? "METIS" : "AMD";
    if (std::find(late.begin(), late.end(), 1) != late.end()) {
        std::vector<int> order = postponed(a, static_cast<const int*>(cholmod.factor->Perm), late);
        cholmod.run(a, &order);
    }

    const cholmod_factor& l = *cholmod.factor;
    const int* super = static_cast<const int*>(l.super);
    const int* rowStart = static_cast<const int*>(l.pi);
    const int* rows = static_cast<const int*>(l.s);
    const int* order = static_cast<const int*>(l.Perm);
    result.n = a.n;
    result.permutation.assign(order, order + a.n);
    result.inverse.resize(a.n);
    for (int k = 0; k < a.n; ++k)
        result.inverse[order[k]] = k;
    result.rows.assign(rows, rows + l.ssize);

    const int count = static_cast<int>(l.nsuper);
    std::vector<int> frontOf(a.n);
    for (int f = 0; f < count; ++f)
        std::fill(frontOf.begin() + super[f], frontOf.begin() + super[f + 1], f);
    for (int f = 0; f < count; ++f) {
        Front front{};
        front.first = super[f];
        front.pivots = super[f + 1] - super[f];
        front.order = rowStart[f + 1] - rowStart[f];
        front.rows = rowStart[f];
        front.parent = front.rest() > 0 ? frontOf[result.rows[front.rows + front.pivots]] : -1;
        front.panel = result.panelEntries;
        result.panelEntries += static_cast<std::int64_t>(front.order) * front.pivots;
        result.largestFront = std::max(result.largestFront, front.order);
        front.right = result.rightEntries;
        const std::int64_t pivots = front.pivots, rest = front.rest();
        result.rightEntries += pivots * rest;
        result.lowerEntries += pivots * (pivots + 1) / 2 + pivots * rest;
        result.flops += front.flops();
        result.fronts.push_back(front);
    }

    for (int f = count - 1; f >= 0; --f) {
        Front& front = result.fronts[f];
        front.depth = front.parent < 0 ? 0 : result.fronts[front.parent].depth + 1;
    }
    // Contributions are stacked, one stack for even depths and one for odd: those of a front's children lie
    // on top of the other stack, so that its own can be put down before they are taken away.
    std::int64_t used[2] = {0, 0};
    std::vector<std::int64_t> children(count, 0);
    for (int f = 0; f < count; ++f) {
        const Front& front = result.fronts[f];
        const int parity = front.depth % 2;
        const std::int64_t size = static_cast<std::int64_t>(front.rest()) * front.rest();
        used[parity] += size;
        result.stack[parity] = std::max(result.stack[parity], used[parity]);
        used[1 - parity] -= children[f];
        if (front.parent >= 0)
            children[front.parent] += size;
    }
    return result;
}
