// SPDX-License-Identifier: Apache-2.0
// Faults as XML (RFC 6241, section 4.3 and appendix A; RFC 7950, section 15).
#pragma once

#include <memory_resource>
#include <string>

#include "instance/errors/faults.h"

namespace zr::data {

// The text of an error tag (RFC 6241, appendix A); null for a number that is none.
const char *NameOfTag(uint32_t tag);

// Appends the <rpc-error> of a fault whose record is `error`.
void AppendRpcError(std::pmr::string &out, const Fault &fault, const ZrDataError &error);

} // namespace zr::data
