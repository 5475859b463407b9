// SPDX-License-Identifier: Apache-2.0
// Checks of data that is text.
#pragma once

#include "instance/check/run.h"
#include "instance/tree/parse.h"

namespace zr::data {

// A text that cannot be read is one fault. They return the wrapper of the data, or null. `doc`
// receives what the run's elements refer to; it must live as long as the run.
const xmlNode *CheckXml(Run &run, std::string_view text, XmlDoc &doc);
const xmlNode *CheckJson(Run &run, std::string_view text);

} // namespace zr::data
