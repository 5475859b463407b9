// SPDX-License-Identifier: Apache-2.0
// A reader that asks a module everything that can be asked.
#include "support.h"

#include <cstring>

namespace zrfuzz {

namespace {

// Reads a text to its end, so that the sanitizer sees every byte of it.
void Touch(const char *text)
{
    volatile size_t length = text != nullptr ? std::strlen(text) : 0;
    (void)length;
}

uint32_t TouchPiece(const char *text, uint32_t length, void *)
{
    Check(std::strlen(text) == length, "a printed piece has the stated length");
    Check(length != 0 && text[length - 1] == '\n', "a printed piece ends with a line");
    return 0;
}

uint32_t TouchText(const char *text, void *)
{
    Touch(text);
    return 0;
}

uint32_t TouchMust(const char *condition, const char *message, const char *tag, void *)
{
    Check(condition != nullptr, "a must has a condition");
    Touch(condition);
    Touch(message);
    Touch(tag);
    return 0;
}

uint32_t TouchFeature(const char *module, const char *feature, void *userData)
{
    ZR_CTX_IsModFeatureEnable(static_cast<ZrCtx *>(userData), module, feature);
    return 0;
}

uint32_t TouchExtInst(const ZrsExtInst *instance, const char *module, const char *extension,
                      const char *argument, void *userData)
{
    Check(module != nullptr && extension != nullptr, "an extension instance has both names");
    Touch(argument);
    return ZR_EXT_ScanAllChildExtInsts(instance, TouchExtInst, userData);
}

uint32_t TouchNameValue(const char *name, const char *description, int64_t, void *)
{
    Check(name != nullptr, "an enum or bit has a name");
    Touch(description);
    return 0;
}

uint32_t TouchBounds(uint64_t, uint64_t, void *)
{
    return 0;
}

uint32_t TouchBase(const char *module, const char *identity, void *, const ZrsIdentBase *)
{
    Check(module != nullptr && identity != nullptr, "a base has both names");
    return 0;
}

uint32_t TouchPattern(const char *pattern, uint32_t invert, void *, const ZrtPatternItem *)
{
    Check(invert <= 1, "the invert mark is 0 or 1");
    Touch(pattern);
    return 0;
}

uint32_t TouchLink(const char *module, const char *name, const ZrtRealType *, void *)
{
    Touch(module);
    Touch(name);
    return 0;
}

void WalkType(const ZrtRealType *type, ZrCtx *ctx);

uint32_t WalkMember(const char *, const char *, const ZrtRealType *member, void *userData)
{
    WalkType(member, static_cast<ZrCtx *>(userData));
    return 0;
}

void WalkType(const ZrtRealType *type, ZrCtx *ctx)
{
    if (type == nullptr)
        return;
    Check(ZR_TYPE_GetBuiltInBaseType(type) < ZRT_TYPE_NONE, "a type has a base type");
    Check(ZR_TYPE_GetDecimal64Fraction(type) <= 18, "fraction digits are at most 18");
    Touch(ZR_TYPE_GetTypeConsDataLeafrefPath(type));
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, TouchLink, nullptr);
    ZR_TYPE_ScanNameValuePair(type, TouchNameValue, nullptr);
    ZR_TYPE_ScanStartEndPair(type, TouchBounds, nullptr);
    ZR_TYPE_ScanIdentRefBase(type, TouchBase, nullptr);
    ZR_TYPE_ScanPatternInvertMatch(type, TouchPattern, nullptr);
    ZR_TYPE_ScanUnionSubType(type, WalkMember, ctx);
}

struct NodeWalk {
    ZrCtx *ctx;
    uint32_t count;
};

void WalkPaths(const ZrNode *node, const ZrCtx *ctx)
{
    char path[3096];
    uint32_t status = ZR_NODE_GetNodePath(node, path, sizeof path);
    Check(status == ZR_OK || status == ZR_ERR_NO_MEMORY, "a node has a path");
    if (status == ZR_OK)
        ZR_CTX_GetTargetNode(ctx, path, nullptr);
    char small[8];
    ZR_NODE_GetNodePath(node, small, sizeof small);
    Check(std::memchr(small, '\0', sizeof small) != nullptr, "a path is terminated");
}

void WalkValues(const ZrNode *node, ZrCtx *ctx)
{
    const ZrtRealType *type = ZR_NODE_GetRealType(node);
    if (type == nullptr)
        return;
    WalkType(type, ctx);
    ZR_NODE_ScanDerivedType(node, TouchLink, nullptr);
    ZR_NODE_GetLeafrefTargetNode(node, 0);
    ZR_NODE_GetLeafrefTargetNode(node, 1);
    for (const char *value : {"", "0", "-1", "true", "a", "m:a", "1.5", "0 0"}) {
        uint32_t status = ZR_NODE_ValidateValue(node, ZR_VALUE_STRING, value);
        Check(status == ZR_OK || status == ZR_ERR_INVALID ||
                  (status >= ZR_ERR_VALUE_NO_BODY && status <= ZR_ERR_VALUE_EMPTY),
              "a value check has a stated status");
        Check((ZR_NODE_FindRealTypeMatchedValue(node, ZR_VALUE_STRING, value) != nullptr) ==
                  (status == ZR_OK),
              "a type is found for a value that is taken, and only then");
    }
}

bool IsData(const ZrNode *node)
{
    switch (ZR_NODE_GetNodeType(node)) {
    case ZR_NODE_CONTAINER:
    case ZR_NODE_LIST:
    case ZR_NODE_LEAF:
    case ZR_NODE_LEAF_LIST:
    case ZR_NODE_ANYDATA:
    case ZR_NODE_ANYXML:
        return true;
    default:
        return false;
    }
}

// A node of data is found by its name where its element would stand.
void FindAsData(const ZrNode *node, const ZrCtx *ctx)
{
    const ZrNode *parent = ZR_NODE_GetNonChoiceCaseParent(node);
    const char *module = ZR_MOD_GetModuleName(ZR_NODE_GetModule(node));
    const char *name = ZR_NODE_GetNodeName(node);
    const ZrNode *found = parent == nullptr ? ZR_CTX_FindTopDataNode(ctx, module, name)
                                            : ZR_NODE_FindDataChild(parent, module, name);
    bool isPlain = IsData(node) && (parent == nullptr || IsData(parent));
    Check(!isPlain || found != nullptr, "a node of data is found by its name");
    Check(found == nullptr || std::strcmp(ZR_NODE_GetNodeName(found), name) == 0,
          "what is found has the name");
    ZR_NODE_GetInputNode(node);
    ZR_NODE_GetOutputNode(node);
}

uint32_t WalkNode(ZrNode *node, uint32_t arrival, void *userData)
{
    auto *walk = static_cast<NodeWalk *>(userData);
    if (arrival == ZR_ARRIVAL_PARENT)
        return 0;
    Check(ZR_NODE_GetNodeName(node) != nullptr, "a node has a name");
    Check(ZR_NODE_GetModule(node) != nullptr, "a node has a module");
    Check(ZR_NODE_GetNodeType(node) - 1 < ZR_NODE_AUGMENT, "a node has a kind");
    Touch(ZR_NODE_GetNodeName(node));
    Touch(ZR_NODE_GetDescription(node));
    Touch(ZR_NODE_GetWhenCond(node));
    Touch(ZR_NODE_GetUnitsValueStr(node));
    Touch(ZR_NODE_GetDefaultValueStr(node));
    Touch(ZR_NODE_GetTypedefUnitsStr(node));
    Touch(ZR_NODE_GetTypedefDefaultStr(node));
    ZR_NODE_IsKey(node);
    ZR_NODE_IsRwConfig(node);
    ZR_NODE_IsEnabled(node);
    ZR_NODE_GetNonChoiceCaseParent(node);
    ZR_NODE_GetAugmentTargetNode(node);
    ZR_NODE_ScanAllMusts(node, TouchMust, nullptr);
    ZR_NODE_ScanAllIfFeatures(node, TouchFeature, walk->ctx);
    ZR_NODE_ScanAllDefaults(node, TouchText, nullptr);
    ZR_NODE_ScanAllExtInsts(node, TouchExtInst, nullptr);
    WalkPaths(node, walk->ctx);
    FindAsData(node, walk->ctx);
    WalkValues(node, walk->ctx);
    // The cost of printing every node with its siblings would be the square of their number.
    if (++walk->count % 16 == 1) {
        uint32_t status = ZR_NODE_PrintNodesTree(node, TouchPiece, nullptr);
        Check(status == ZR_OK || status == ZR_ERR_FAILED, "a node is printed or refused");
    }
    return 0;
}

uint32_t WalkTree(ZrNode *root, uint32_t, void *userData)
{
    Check(ZR_NODE_TreeScanAllNode(root, WalkNode, userData) == ZR_OK, "a tree is scanned");
    return 0;
}

uint32_t WalkIdentity(const ZrsIdentity *identity, void *)
{
    Touch(ZR_MOD_GetIdentityName(identity));
    Touch(ZR_MOD_GetIdentityDescription(identity));
    return ZR_MOD_ScanIdentityBase(identity, TouchBase, nullptr);
}

uint32_t TouchError(const char *module, const char *file, uint32_t kind, const char *message,
                    uint32_t, void *)
{
    Check(module != nullptr && message != nullptr && *message != '\0', "an error has a text");
    Check(kind <= ZR_LOAD_WARNING, "an error has a kind");
    Touch(file);
    return 0;
}

uint32_t TouchOwnFeature(const char *feature, uint32_t enabled, void *)
{
    Check(feature != nullptr && enabled <= 1, "a feature has a name and is on or off");
    return 0;
}

uint32_t TouchImport(const char *module, const char *prefix, const char *revision, void *)
{
    Check(module != nullptr, "an import has a module");
    Touch(prefix);
    Touch(revision);
    return 0;
}

uint32_t TouchDeviation(const char *path, const char *module, uint32_t applied, void *)
{
    Check(path != nullptr && applied <= 1, "a deviation has a target and is applied or not");
    Touch(module);
    return 0;
}

void WalkMembers(const ZrMod *module)
{
    Touch(ZR_MOD_GetYangVersion(module));
    Touch(ZR_MOD_GetDescription(module));
    ZR_MOD_ScanAllFeatures(module, TouchOwnFeature, nullptr);
    ZR_MOD_ScanAllImports(module, TouchImport, nullptr);
    ZR_MOD_ScanAllSubmodules(module, TouchText, nullptr);
    ZR_MOD_ScanAllDeviations(module, TouchDeviation, nullptr);
    ZR_MOD_ScanAllIdentity(module, WalkIdentity, nullptr);
    ZR_MOD_ScanAllExtInsts(module, TouchExtInst, nullptr);
}

void Print(const ZrMod *module, bool longLines)
{
    uint32_t status = ZR_MOD_PrintModelTree(module, TouchPiece, nullptr);
    Check(status == ZR_OK || (longLines && status == ZR_ERR_FAILED), "a module is printed");
}

} // namespace

void WalkModule(ZrCtx *ctx, ZrMod *module, bool longLines)
{
    Touch(ZR_MOD_GetModuleName(module));
    Touch(ZR_MOD_GetModuleNs(module));
    Touch(ZR_MOD_GetModulePrefix(module));
    Touch(ZR_MOD_GetOrganization(module));
    Touch(ZR_MOD_GetRevision(module));
    WalkMembers(module);
    NodeWalk walk = {ctx, 0};
    ZR_MOD_IterScanTopmostNode(module, WalkTree, &walk);
    ZR_MOD_IterScanAugmentNode(module, WalkTree, &walk);
    Print(module, longLines);
    ZR_MOD_EnableFeature(module, "*");
    Print(module, longLines);
}

void WalkErrors(ZrCtx *ctx)
{
    Check(ZR_CTX_ScanAllSchemaLoadFail(ctx, TouchError, nullptr) == ZR_OK,
          "the errors are scanned");
}

} // namespace zrfuzz
