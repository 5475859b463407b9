// SPDX-License-Identifier: Apache-2.0
// Patterns and values, both from the input, where compiled patterns are kept and where they are
// not: a leaf's own patterns, those of a typedef and its leaf, of a union's member, and of a type
// that a deviation has put in the place of another.
//
// Input: a line with a sign for each pattern, "+" or "-" for one that is inverted; a line for each
// pattern; the values, a line each.
#include "support.h"

#include <algorithm>
#include <iterator>

namespace {

using namespace zrfuzz;

Goal g_taken("a value is taken");
Goal g_refused("a value is refused by a pattern");
Goal g_inverted("a value is refused by an inverted pattern alone");
Goal g_broken("a pattern does not compile");
Goal g_member("the other member of the union takes a value");
Goal g_replaced("a deviation's type refuses a value");
Goal g_notKept("a compiled pattern cannot be kept for want of memory");

// Patterns of a few characters make libxml2 work for hours: the texts are short, and so are the
// numbers of repetitions.
constexpr size_t kMaxPatterns = 4;
constexpr size_t kMaxPattern = 40;
constexpr size_t kMaxValue = 20;
constexpr size_t kMaxValues = 8;
constexpr size_t kMaxCounts = 2;
constexpr size_t kMaxAllocations = 4;

bool MayTakeLong(const std::string &pattern)
{
    size_t digits = 0;
    for (char ch : pattern) {
        digits = ch >= '0' && ch <= '9' ? digits + 1 : 0;
        if (digits > 2)
            return true;
    }
    return std::count(pattern.begin(), pattern.end(), '{') > static_cast<long>(kMaxCounts);
}

struct Input {
    std::string patterns; // as statements
    std::string first;    // the first of them
    std::string others;
    std::string signs;
    std::vector<std::string> values;
};

bool Read(std::string_view rest, Input &input)
{
    input.signs = TakeLine(rest);
    input.signs.resize(std::min(input.signs.size(), kMaxPatterns));
    for (char sign : input.signs) {
        std::string pattern = TakeLine(rest);
        pattern.resize(std::min(pattern.size(), kMaxPattern));
        if (MayTakeLong(pattern))
            return false;
        std::string inverted = sign == '-' ? "<modifier value=\"invert-match\"/>" : "";
        std::string statement =
            "<pattern value=\"" + AttributeText(pattern) + "\">" + inverted + "</pattern>";
        (input.patterns.empty() ? input.first : input.others) += statement;
        input.patterns += statement;
    }
    while (!rest.empty() && input.values.size() < kMaxValues) {
        std::string value = TakeLine(rest).substr(0, kMaxValue);
        input.values.push_back(value.substr(0, value.find('\0')));
    }
    return !input.patterns.empty();
}

std::string Type(const std::string &name, const std::string &inside)
{
    return "<type name=\"" + name + "\">" + inside + "</type>";
}

std::string Fixed(const Input &input)
{
    return ModuleText("m", "<typedef name=\"t\">" + Type("string", input.first) +
                               "</typedef><leaf name=\"own\">" + Type("string", input.patterns) +
                               "</leaf><leaf name=\"derived\">" + Type("t", input.others) +
                               "</leaf><leaf name=\"member\">" +
                               Type("union", Type("string", input.patterns) + Type("int8", "")) +
                               "</leaf><leaf name=\"replaced\">" + Type("int8", "") + "</leaf>");
}

std::string Deviating(const Input &input)
{
    return ModuleText("n", "<import module=\"m\"><prefix value=\"m\"/></import>"
                           "<deviation target-node=\"/m:replaced\"><deviate value=\"replace\">" +
                               Type("string", input.patterns) + "</deviate></deviation>");
}

void Load(ZrCtx *ctx, const Input &input)
{
    LoadOrDie(ctx, Fixed(input));
    LoadOrDie(ctx, Deviating(input));
}

constexpr const char *kLeaves[] = {"/m:own", "/m:derived", "/m:member", "/m:replaced"};
constexpr size_t kOwn = 0, kDerived = 1, kMember = 2, kReplaced = 3;

uint32_t Validate(ZrCtx *ctx, size_t leaf, const std::string &value)
{
    const ZrNode *node = ZR_CTX_GetTargetNode(ctx, kLeaves[leaf], nullptr);
    uint32_t status = ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, value.c_str());
    Check(status == ZR_OK || status == ZR_ERR_VALUE_PATTERN || status == ZR_ERR_VALUE_UNION ||
              status == ZR_ERR_NO_MEMORY,
          "a value check has a stated status");
    return status;
}

// Where patterns are kept, the first check of a leaf's values may run out of memory. Whatever it
// answers, it takes no value that is refused otherwise, and later checks are right.
void ValidateShortOfMemory(ZrCtx *keeping, size_t leaf, const std::string &value, uint32_t expected)
{
    int64_t before = LiveBlocks();
    FailAllocation(PickBy(value, kMaxAllocations));
    uint32_t status = Validate(keeping, leaf, value);
    FailAllocation(-1);
    Check(expected == ZR_OK || status != ZR_OK, "a failure never makes a value valid");
    g_notKept.MeetIf(LiveBlocks() == before);
}

void ValidateEverywhere(ZrCtx *plain, ZrCtx *keeping, const std::string &value, const Input &input)
{
    uint32_t statuses[std::size(kLeaves)];
    for (size_t leaf = 0; leaf < std::size(kLeaves); ++leaf) {
        {
            BlockBalance balance("a value check keeps no block");
            statuses[leaf] = Validate(plain, leaf, value);
        }
        ValidateShortOfMemory(keeping, leaf, value, statuses[leaf]);
        for (int time = 0; time < 2; ++time)
            Check(Validate(keeping, leaf, value) == statuses[leaf],
                  "kept patterns give the same answer");
    }
    // A type that a deviation brings is a copy, and a copy's patterns are never inverted.
    bool inverts = input.signs.find('-') != std::string::npos;
    Check(inverts || statuses[kOwn] == statuses[kReplaced],
          "a deviation's type is like a leaf's own");
    Check(statuses[kOwn] == statuses[kDerived], "patterns of a typedef add to those of a leaf");
    Check(statuses[kOwn] != ZR_OK || statuses[kMember] == ZR_OK,
          "a union takes what a member does");
    g_taken.MeetIf(statuses[kOwn] == ZR_OK);
    g_refused.MeetIf(statuses[kOwn] == ZR_ERR_VALUE_PATTERN);
    g_inverted.MeetIf(statuses[kOwn] == ZR_ERR_VALUE_PATTERN && input.signs == "-" &&
                      input.first.find("[") == std::string::npos);
    g_broken.MeetIf(statuses[kOwn] == ZR_ERR_VALUE_PATTERN &&
                    input.first.find("\"[\"") != std::string::npos);
    g_member.MeetIf(statuses[kOwn] != ZR_OK && statuses[kMember] == ZR_OK);
    g_replaced.MeetIf(statuses[kReplaced] == ZR_ERR_VALUE_PATTERN);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SetUp();
    Input input;
    if (!Read({reinterpret_cast<const char *>(data), size}, input))
        return 0;
    Context plain(0);
    Load(plain, input);
    Context keeping(ZR_CTX_KEEP_PATTERNS);
    Load(keeping, input);
    for (const std::string &value : input.values)
        ValidateEverywhere(plain, keeping, value, input);
    return 0;
}
