// SPDX-License-Identifier: Apache-2.0
#include "close_names.h"

#include <algorithm>
#include <numeric>

namespace tool {

namespace {

constexpr size_t kMostNames = 3;
constexpr size_t kLettersPerChange = 3; // a change is allowed for so many letters
constexpr size_t kLeastHeld = 3;        // a shorter name is held by too many others

// How many letters have to be added, dropped or replaced to turn one name into the other.
size_t EditDistance(const std::string &from, const std::string &to)
{
    std::vector<size_t> row(to.size() + 1); // distances from what was read of `from` so far
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 1; i <= from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t k = 1; k <= to.size(); ++k) {
            size_t replaced = diagonal + (from[i - 1] == to[k - 1] ? 0 : 1);
            diagonal = row[k];
            row[k] = std::min({replaced, row[k] + 1, row[k - 1] + 1});
        }
    }
    return row[to.size()];
}

bool IsClose(const std::string &name, const std::string &candidate, size_t distance)
{
    return distance <= std::max<size_t>(1, name.size() / kLettersPerChange) ||
           (name.size() >= kLeastHeld && candidate.find(name) != std::string::npos);
}

} // namespace

std::vector<std::string> CloseNames(const std::string &name,
                                    const std::vector<std::string> &candidates)
{
    std::vector<std::pair<size_t, std::string>> close;
    for (const std::string &candidate : candidates) {
        size_t distance = EditDistance(name, candidate);
        if (IsClose(name, candidate, distance))
            close.emplace_back(distance, candidate);
    }
    std::sort(close.begin(), close.end());
    close.erase(std::unique(close.begin(), close.end()), close.end());
    std::vector<std::string> names;
    for (size_t i = 0; i < close.size() && i < kMostNames; ++i)
        names.push_back(close[i].second);
    return names;
}

std::string DidYouMean(const std::vector<std::string> &names)
{
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "; did you mean " : ", ") + name;
    return text.empty() ? "" : text + "?";
}

} // namespace tool
