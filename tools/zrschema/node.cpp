// SPDX-License-Identifier: Apache-2.0
// zrschema node: describes one schema node.
#include "commands.h"
#include "lookup.h"
#include "types.h"

namespace tool {

namespace {

struct NodeOptions {
    ModuleOptions modules;
    std::string path;
};

// Puts the text under the key, unless there is none.
void PutText(Json &object, const char *key, const char *text)
{
    if (text != nullptr)
        object[key] = text;
}

void PutArray(Json &object, const char *key, Json array)
{
    if (!array.empty())
        object[key] = std::move(array);
}

uint32_t AppendNameValue(const char *name, const char *description, int64_t value, void *out)
{
    Json item = {{"name", name}, {"value", value}};
    PutText(item, "description", description);
    static_cast<Json *>(out)->push_back(item);
    return 0;
}

uint32_t AppendPattern(const char *pattern, uint32_t invertMatch, void *out, const ZrtPatternItem *)
{
    Json item = {{"pattern", pattern}};
    if (invertMatch != 0)
        item["invert-match"] = true;
    static_cast<Json *>(out)->push_back(item);
    return 0;
}

uint32_t AppendBase(const char *moduleName, const char *identityName, void *out,
                    const ZrsIdentBase *)
{
    static_cast<Json *>(out)->push_back(std::string(moduleName) + ":" + identityName);
    return 0;
}

Json DescribeSegments(const ZrtRealType *type, bool isSigned)
{
    Json array = Json::array();
    for (const auto &[start, end] : SegmentsOf(type)) {
        if (isSigned)
            array.push_back(Json::array({static_cast<int64_t>(start), static_cast<int64_t>(end)}));
        else
            array.push_back(Json::array({start, end}));
    }
    return array;
}

// What a member of a union points to that is a leafref.
Json DescribeTarget(const ZrCtx *ctx, const ZrNode *leaf, const char *path)
{
    const ZrNode *target = FollowLeafrefPath(ctx, leaf, path);
    const ZrtRealType *type = ZR_NODE_GetRealType(target);
    return {{"path", path},
            {"target", target != nullptr ? Json(PathOf(target)) : Json(nullptr)},
            {"type", type != nullptr ? Json(TypeName(ctx, type)) : Json(nullptr)}};
}

// What one type statement says: its restrictions and what it enumerates.
Json DescribeType(const ZrCtx *ctx, const ZrNode *leaf, const ZrtRealType *type, bool isSigned)
{
    Json object = {{"type", TypeName(ctx, type)}};
    if (uint32_t digits = ZR_TYPE_GetDecimal64Fraction(type))
        object["fraction-digits"] = digits;
    PutArray(object, "segments", DescribeSegments(type, isSigned));
    Json patterns = Json::array(), values = Json::array(), bases = Json::array();
    ZR_TYPE_ScanPatternInvertMatch(type, AppendPattern, &patterns);
    ZR_TYPE_ScanNameValuePair(type, AppendNameValue, &values);
    ZR_TYPE_ScanIdentRefBase(type, AppendBase, &bases);
    PutArray(object, "patterns", patterns);
    PutArray(object, "values", values);
    PutArray(object, "bases", bases);
    Json members = Json::array(), targets = Json::array();
    for (const ZrtRealType *member : MembersOf(type)) {
        members.push_back(TypeName(ctx, member));
        for (const ZrtRealType *link : TypeChain(ctx, member))
            if (const char *path = ZR_TYPE_GetTypeConsDataLeafrefPath(link))
                targets.push_back(DescribeTarget(ctx, leaf, path));
    }
    PutArray(object, "members", members);
    PutArray(object, "leafrefs", targets);
    PutText(object, "path", ZR_TYPE_GetTypeConsDataLeafrefPath(type));
    return object;
}

// The node's own type statement and then each typedef's, down to the built-in type.
Json DescribeTypes(const ZrCtx *ctx, const ZrNode *node)
{
    std::vector<const ZrtRealType *> chain = TypeChain(ctx, ZR_NODE_GetRealType(node));
    bool isSigned = IsSigned(ZR_TYPE_GetBuiltInBaseType(chain.back()));
    Json links = Json::array();
    for (const ZrtRealType *type : chain)
        if (type != nullptr)
            links.push_back(DescribeType(ctx, node, type, isSigned));
    return links;
}

uint32_t AppendMust(const char *condition, const char *errorMessage, const char *errorAppTag,
                    void *out)
{
    Json item = {{"condition", condition}};
    PutText(item, "error-message", errorMessage);
    PutText(item, "error-app-tag", errorAppTag);
    static_cast<Json *>(out)->push_back(item);
    return 0;
}

uint32_t AppendIfFeature(const char *moduleName, const char *featureName, void *out)
{
    static_cast<Json *>(out)->push_back(std::string(moduleName) + ":" + featureName);
    return 0;
}

uint32_t AppendDefault(const char *value, void *out)
{
    static_cast<Json *>(out)->push_back(value);
    return 0;
}

uint32_t AppendExtInst(const ZrsExtInst *instance, const char *moduleName,
                       const char *extensionName, const char *argument, void *out)
{
    Json item = {{"name", std::string(moduleName) + ":" + extensionName},
                 {"argument", TextOrNull(argument)}};
    Json children = Json::array();
    ZR_EXT_ScanAllChildExtInsts(instance, AppendExtInst, &children);
    PutArray(item, "children", children);
    static_cast<Json *>(out)->push_back(item);
    return 0;
}

uint32_t AppendKey(ZrNode *child, uint32_t, void *out)
{
    if (ZR_NODE_IsKey(child) == 1)
        static_cast<Json *>(out)->push_back(ZR_NODE_GetNodeName(child));
    return 0;
}

void PutValues(Json &object, const ZrCtx *ctx, const ZrNode *node)
{
    PutText(object, "units", ZR_NODE_GetUnitsValueStr(node));
    Json defaults = Json::array();
    ZR_NODE_ScanAllDefaults(node, AppendDefault, &defaults);
    const char *effective = ZR_NODE_GetDefaultValueStr(node);
    if (defaults.empty() && effective != nullptr)
        defaults.push_back(effective); // a typedef's
    PutArray(object, "default", defaults);
    if (ZR_NODE_GetRealType(node) != nullptr)
        object["type"] = DescribeTypes(ctx, node);
    if (const ZrNode *target = ZR_NODE_GetLeafrefTargetNode(node, 0))
        object["leafref-target"] = PathOf(target);
}

void PutConditions(Json &object, const ZrNode *node)
{
    PutText(object, "when", ZR_NODE_GetWhenCond(node));
    Json musts = Json::array(), ifFeatures = Json::array(), instances = Json::array();
    ZR_NODE_ScanAllMusts(node, AppendMust, &musts);
    ZR_NODE_ScanAllIfFeatures(node, AppendIfFeature, &ifFeatures);
    ZR_NODE_ScanAllExtInsts(node, AppendExtInst, &instances);
    PutArray(object, "must", musts);
    PutArray(object, "if-feature", ifFeatures);
    PutArray(object, "extensions", instances);
}

Json Describe(const ZrCtx *ctx, const ZrNode *node)
{
    uint32_t kind = ZR_NODE_GetNodeType(node);
    Json object = {{"path", PathOf(node)},
                   {"kind", ZR_GetNodeKindName(kind)},
                   {"module", ZR_MOD_GetModuleName(ZR_NODE_GetModule(node))},
                   {"config", ZR_NODE_IsRwConfig(node) == 1},
                   {"status", ZR_NODE_IsObsoleteNode(node) == 1     ? "obsolete"
                              : ZR_NODE_IsDeprecatedNode(node) == 1 ? "deprecated"
                                                                    : "current"},
                   {"enabled", ZR_NODE_IsEnabled(node) == 1}};
    if (ZR_NODE_IsMandatory(node) == 1)
        object["mandatory"] = true;
    if (ZR_NODE_IsPresenceContainer(node) == 1)
        object["presence"] = true;
    if (ZR_NODE_IsOrderedByNode(node) == 1)
        object["ordered-by"] = "user";
    if (ZR_NODE_IsKey(node) == 1)
        object["is-key"] = true;
    if (kind == ZR_NODE_LIST) {
        Json keys = Json::array();
        ZR_NODE_IterScanChildrenNode(node, AppendKey, &keys);
        PutArray(object, "key", keys);
    }
    PutText(object, "description", ZR_NODE_GetDescription(node));
    PutValues(object, ctx, node);
    PutConditions(object, node);
    return object;
}

std::string Plain(const Json &value)
{
    return value.is_string() ? value.get<std::string>() : value.dump();
}

// One field a line; what a field holds in turn stands indented below it.
void PrintText(Run &run, const Json &object, const std::string &indent)
{
    for (const auto &[key, value] : object.items()) {
        if (!value.is_array()) {
            run.Print(indent + key + ": " + Plain(value) + "\n");
            continue;
        }
        run.Print(indent + key + ":\n");
        for (const Json &item : value) {
            if (item.is_object())
                PrintText(run, item, indent + "  ");
            else
                run.Print(indent + "  " + Plain(item) + "\n");
        }
    }
}

int RunNode(Run &run, const NodeOptions &options)
{
    Session session(run, ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS, options.modules.directories);
    std::vector<std::string> modules;
    bool good = session.SetUp(options.modules, modules);
    const ZrNode *node = FindNode(session, modules, options.path);
    if (node == nullptr)
        return kExitFailed;
    Json object = Describe(session.ctx(), node);
    if (run.json())
        run.PrintDocument(object);
    else
        PrintText(run, object, "");
    return good ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyNodeDocument()
{
    return Json::object();
}

void AddNodeCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<NodeOptions>();
    Command command = line.Add(
        "node", "describe a schema node",
        WithModuleNote("Features start off: a node that depends on one is shown as not enabled."));
    AddDirectoryOption(command, options->modules.directories);
    AddModuleOption(command, options->modules);
    AddFeatureOptions(command, options->modules);
    command.Json();
    command.Text("path", "PATH", "the node's schema path, such as /module:container/leaf",
                 options->path, Need::kRequired);
    command.OnRun([options, &run] { return RunNode(run, *options); });
}

} // namespace tool
