// SPDX-License-Identifier: Apache-2.0
// Names that somebody may have meant.
#pragma once

#include <string>
#include <vector>

namespace tool {

// The candidates closest to a name that is not there, at most three, the closest first: those that
// take few changes of a letter to become it, and those that hold it whole.
std::vector<std::string> CloseNames(const std::string &name,
                                    const std::vector<std::string> &candidates);
// "; did you mean A, B?", or "" when nothing is close.
std::string DidYouMean(const std::vector<std::string> &names);

} // namespace tool
