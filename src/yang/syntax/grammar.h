// SPDX-License-Identifier: Apache-2.0
// Which sub-statements a statement takes, and how often (RFC 7950, sections 7, 9 and 14).
#pragma once

#include "yang/base/reports.h"
#include "yang/syntax/statement.h"

namespace zr::yang {

enum class Version : uint8_t { Yang1, Yang11 };

// The version that a module or submodule says it is written in.
Version VersionOf(const Statement &root);

// Reports every sub-statement in `root` that may not stand where it stands, is missing, or stands
// there too often, and statements of a module's body that are out of order. What an extension
// instance holds is looked at, but anything may stand directly in one.
void CheckGrammar(Statement &root, Reports &reports);

} // namespace zr::yang
