// SPDX-License-Identifier: Apache-2.0
// A range or length expression on a type, and one on a typedef below it.
//
// Input: a line that picks the type, a line with the typedef's expression, and the leaf's
// expression. An empty expression leaves the restriction out.
#include "support.h"

#include <cstring>

namespace {

using namespace zrfuzz;

Goal g_loaded("a restriction of a restriction is taken");
Goal g_refused("an expression is refused");
Goal g_segments("a leaf has two segments");
Goal g_inside("a value is inside");
Goal g_outside("a number is outside");
Goal g_length("a length is outside");

struct Kind {
    const char *type;
    const char *inside;
    const char *statement;
};

// clang-format off
//  the type       what stands in it                     its restriction
constexpr Kind kKinds[] = {
    {"int8",      "",                                   "range"},
    {"int16",     "",                                   "range"},
    {"int32",     "",                                   "range"},
    {"int64",     "",                                   "range"},
    {"uint8",     "",                                   "range"},
    {"uint16",    "",                                   "range"},
    {"uint32",    "",                                   "range"},
    {"uint64",    "",                                   "range"},
    {"decimal64", "<fraction-digits value=\"1\"/>",     "range"},
    {"decimal64", "<fraction-digits value=\"18\"/>",    "range"},
    {"string",    "",                                   "length"},
    {"binary",    "",                                   "length"},
    {"boolean",   "",                                   "range"},
};
// clang-format on

std::string Restriction(const Kind &kind, const std::string &expression)
{
    if (expression.empty())
        return "";
    return std::string("<") + kind.statement + " value=\"" + AttributeText(expression) + "\"/>";
}

std::string Type(const std::string &name, const std::string &inside)
{
    return "<type name=\"" + name + "\">" + inside + "</type>";
}

struct Bounds {
    std::string values;
    int segments = 0;
};

uint32_t CollectBounds(uint64_t start, uint64_t end, void *userData)
{
    auto *bounds = static_cast<Bounds *>(userData);
    bounds->values += std::to_string(start) + "\n" + std::to_string(end) + "\n" +
                      std::to_string(static_cast<int64_t>(start)) + "\n" +
                      std::to_string(static_cast<int64_t>(end)) + "\n";
    ++bounds->segments;
    return 0;
}

void CheckValues(const ZrNode *leaf, std::string_view values)
{
    while (!values.empty()) {
        std::string value = TakeLine(values);
        uint32_t status = ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, value.c_str());
        g_inside.MeetIf(status == ZR_OK);
        g_outside.MeetIf(status == ZR_ERR_VALUE_RANGE);
        g_length.MeetIf(status == ZR_ERR_VALUE_LENGTH);
        Check(status == ZR_OK || status == ZR_ERR_VALUE_RANGE || status == ZR_ERR_VALUE_LENGTH ||
                  status == ZR_ERR_VALUE_BINARY || status == ZR_ERR_VALUE_BOOLEAN,
              "a value check has a stated status");
    }
}

void RunLeaf(ZrCtx *ctx, const char *path)
{
    const ZrNode *leaf = ZR_CTX_GetTargetNode(ctx, path, nullptr);
    if (leaf == nullptr)
        return;
    Bounds bounds;
    Check(ZR_TYPE_ScanStartEndPair(ZR_NODE_GetRealType(leaf), CollectBounds, &bounds) == ZR_OK,
          "bounds are scanned");
    g_segments.MeetIf(bounds.segments > 1);
    CheckValues(leaf, bounds.values);
    CheckValues(leaf, "0\n-1\n255\n32768\n-9223372036854775808\n18446744073709551615\n0.5\nQUJD\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    std::string_view rest(reinterpret_cast<const char *>(data), size);
    std::string pick = TakeLine(rest);
    const Kind &kind = kKinds[pick.empty() ? 0 : static_cast<unsigned char>(pick[0] - 'a') % 13];
    std::string inherited = TakeLine(rest);
    std::string own(rest);

    Context ctx(0);
    std::string base = Type(kind.type, kind.inside + Restriction(kind, inherited));
    uint32_t status = ZR_CTX_LoadMemory(
        ctx, ModuleText("m", "<typedef name=\"t\">" + base + "</typedef><leaf name=\"v\">" +
                                 Type("t", Restriction(kind, own)) + "</leaf><leaf name=\"w\">" +
                                 Type(kind.type, kind.inside + Restriction(kind, own)) + "</leaf>")
                 .c_str());
    Check(status == ZR_OK || status == ZR_ERR_FAILED, "loading has a stated status");
    g_loaded.MeetIf(status == ZR_OK && !inherited.empty() && !own.empty());
    g_refused.MeetIf(status == ZR_ERR_FAILED);
    RunLeaf(ctx, "/m:v");
    RunLeaf(ctx, "/m:w");
    return 0;
}
