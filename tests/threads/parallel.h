// SPDX-License-Identifier: Apache-2.0
// Eight threads that start together.
#pragma once

#include <array>
#include <functional>
#include <latch>
#include <thread>
#include <vector>

namespace zrtest {

constexpr int kThreads = 8;

// Runs `work`(number) on every thread; the numbers are 0 to 7.
inline void InParallel(const std::function<void(int)> &work)
{
    std::latch start(kThreads);
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&start, &work, number] {
            start.arrive_and_wait();
            work(number);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

// What `work` gives on each thread.
template <typename Result>
std::array<Result, kThreads> CollectInParallel(const std::function<Result(int)> &work)
{
    std::array<Result, kThreads> results;
    InParallel([&](int number) { results[static_cast<size_t>(number)] = work(number); });
    return results;
}

} // namespace zrtest
