// SPDX-License-Identifier: Apache-2.0
// An edit against the datastore that it is made for.
#pragma once

#include "instance/check/run.h"

namespace zr::data {

// What an operation finds there, or does not (RFC 6241, section 7.2; RFC 7950,
// sections 7.5.8, 7.6.7, 7.7.9, 7.8.6 and 15.7). Nothing is asked of an edit without a datastore.
void CheckTargets(Run &run);

} // namespace zr::data
