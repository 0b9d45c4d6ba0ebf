// SPDX-License-Identifier: BSD-3-Clause
#include "simulation.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <queue>
#include <utility>

Simulation::Simulation(std::vector<double> seconds, std::vector<std::int64_t> start,
                       std::vector<std::int32_t> next)
    : seconds_(std::move(seconds)), start_(std::move(start)), next_(std::move(next)),
      waits_(seconds_.size(), 0), toEnd_(seconds_)
{
    for (int t = count() - 1; t >= 0; --t) {
        double behind = 0.0;
        for (std::int64_t e = start_[t]; e < start_[t + 1]; ++e) {
            behind = std::max(behind, toEnd_[next_[e]]);
            ++waits_[next_[e]];
        }
        toEnd_[t] += behind;
    }
}

double Simulation::on(int workers) const
{
    std::priority_queue<std::pair<double, int>> ready; // of equal ones the first
    using Running = std::pair<double, int>;            // until when
    std::priority_queue<Running, std::vector<Running>, std::greater<>> running;
    std::vector<int> waits = waits_;
    const auto enter = [&](int t) { ready.emplace(toEnd_[t], -t); };
    for (int t = 0; t < count(); ++t)
        if (waits[t] == 0)
            enter(t);
    double now = 0.0;
    while (!ready.empty() || !running.empty()) {
        for (; !ready.empty() && static_cast<int>(running.size()) < workers; ready.pop()) {
            const int t = -ready.top().second;
            running.emplace(now + seconds_[t], t);
        }
        now = running.top().first;
        for (; !running.empty() && running.top().first == now; running.pop()) {
            const int t = running.top().second;
            for (std::int64_t e = start_[t]; e < start_[t + 1]; ++e)
                if (--waits[next_[e]] == 0)
                    enter(next_[e]);
        }
    }
    return now;
}

std::vector<int> Simulation::criticalPath() const
{
    std::vector<int> path;
    if (count() == 0)
        return path;
    path.push_back(static_cast<int>(std::max_element(toEnd_.begin(), toEnd_.end()) - toEnd_.begin()));
    while (start_[path.back()] < start_[path.back() + 1])
        path.push_back(*std::max_element(next_.begin() + start_[path.back()],
                                         next_.begin() + start_[path.back() + 1],
                                         [&](int s, int t) { return toEnd_[s] < toEnd_[t]; }));
    return path;
}

double Simulation::criticalSeconds() const
{
    return count() == 0 ? 0.0 : *std::max_element(toEnd_.begin(), toEnd_.end());
}

double Simulation::sum() const
{
    return std::accumulate(seconds_.begin(), seconds_.end(), 0.0);
}
