// SPDX-License-Identifier: Apache-2.0
// Writing checked data.
#pragma once

#include <libxml/tree.h>

#include "instance/tree/parse.h"
#include "instance/write/output.h"
#include "instance/write/walk.h"

namespace zr::data {

struct WriteJob {
    const Plan &plan;
    const Tree &tree;
    const xmlNode &wrapper; // of the data as it was read
    uint32_t defaults;      // a ZrDataDefaults
    uint32_t indent;
    std::pmr::memory_resource *memory;
};

// These throw std::bad_alloc, and Stopped.
void WriteXml(const WriteJob &job, Output &out);
void WriteJson(const WriteJob &job, Output &out);
// Null for data that XML cannot write.
XmlDoc WriteXmlTree(const WriteJob &job);

} // namespace zr::data
