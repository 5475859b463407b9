// SPDX-License-Identifier: Apache-2.0
// What an augment's "when" becomes on the choices and cases that it adds. The engine passes it to
// each node of the augment, rewritten to begin one level below the augment's target; but a choice
// or case has no level of its own, so that its condition is evaluated at the parent (RFC 7950,
// section 7.21.5).
#pragma once

#include <memory_resource>
#include <string>
#include <string_view>

namespace zr::data {

// The condition of a choice or case at its parent: `given` is what the engine has for it,
// `augments` the condition of the augment. What does not come from there is given back as it is.
std::pmr::string AtParent(std::string_view given, std::string_view augments,
                          std::pmr::memory_resource *memory);

} // namespace zr::data
