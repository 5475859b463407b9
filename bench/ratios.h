// SPDX-License-Identifier: Apache-2.0
// The ratios that a run of the benchmarks ends with.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace bench {

// The processor time of one iteration of a benchmark of this run, in nanoseconds; nothing when it
// did not run.
std::optional<double> CpuTime(const std::string &name);

// Adds a line to the closing table. `value` is computed after the run and gives nothing when what
// it needs did not run; `aim` is the largest value that meets the aim, 0 for none.
void AddRatio(const std::string &name, double aim, std::function<std::optional<double>()> value);

// Adds the ratio of two benchmarks' processor times.
void AddTimeRatio(const std::string &name, double aim, const std::string &measured,
                  const std::string &base);

} // namespace bench
