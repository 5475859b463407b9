// The module "m" (namespace urn:m) that most tests of this folder validate against.
#pragma once

#include <string>

#include "support/context.h"

namespace zrtest {

using namespace yin;

// A context with the module "m" of that body; the body must load.
class Schema : public TestContext {
public:
    explicit Schema(const std::string &body) { status = LoadBody("m", body); }
    uint32_t status;
};

} // namespace zrtest
