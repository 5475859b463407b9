// SPDX-License-Identifier: Apache-2.0
// From prepared YIN to a tree of statements: a source may import a module of which there is no
// other file. The XML is libxml2's to read.
#pragma once

#include "yang/base/reports.h"
#include "yang/syntax/statement.h"

namespace zr::yang {

// Reads the module or submodule of a document. Null when it cannot be read, which is reported.
Statement *ReadYin(Source &source, Reports &reports, Arena &arena);

} // namespace zr::yang
