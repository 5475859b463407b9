// SPDX-License-Identifier: Apache-2.0
// Checking whole data and messages by RFC 7950 with libzrdata.
#pragma once

#include <zrdata/zrdata.h>

#include <string>
#include <vector>

#include "session.h"

namespace tool {

// What the files are and what they are held against.
struct DataChecks {
    uint32_t kind = 0;     // a ::ZrDataKind; 0 for none
    std::string operation; // of a reply
    std::string datastore; // a file; "" for none
    std::vector<std::string> files;
};

// Checks the files, one after another. Each fault is said with its place. The exit status.
int CheckDataFiles(Run &run, const ModuleOptions &modules, const DataChecks &checks);

} // namespace tool
