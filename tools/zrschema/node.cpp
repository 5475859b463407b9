// zrschema node: describes one schema node.
#include <cinttypes>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "names.h"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;

struct NodeOptions {
    ModuleOptions modules;
    std::string path;
    bool json = false;
};

Json TextOrNull(const char *text)
{
    return text != nullptr ? Json(text) : Json(nullptr);
}

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

struct Segments {
    bool isSigned;
    Json array;
};

uint32_t AppendSegment(uint64_t start, uint64_t end, void *out)
{
    auto *segments = static_cast<Segments *>(out);
    if (segments->isSigned)
        segments->array.push_back(
            Json::array({static_cast<int64_t>(start), static_cast<int64_t>(end)}));
    else
        segments->array.push_back(Json::array({start, end}));
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

struct Chain {
    const ZrCtx *ctx;
    Json links;
};

uint32_t AppendMember(const char *, const char *, const ZrtRealType *member, void *out)
{
    auto *chain = static_cast<Chain *>(out);
    chain->links.push_back(TypeName(chain->ctx, member));
    return 0;
}

bool IsSigned(uint32_t baseType)
{
    return baseType == ZRT_TYPE_DECIMAL64 ||
           (baseType >= ZRT_TYPE_INT8 && baseType <= ZRT_TYPE_INT64);
}

// What one type statement says: its restrictions and what it enumerates.
Json DescribeType(const ZrCtx *ctx, const ZrtRealType *type)
{
    Json object = {{"type", TypeName(ctx, type)}};
    uint32_t baseType = ZR_TYPE_GetBuiltInBaseType(type);
    if (uint32_t digits = ZR_TYPE_GetDecimal64Fraction(type))
        object["fraction-digits"] = digits;
    Segments segments{IsSigned(baseType), Json::array()};
    ZR_TYPE_ScanStartEndPair(type, AppendSegment, &segments);
    PutArray(object, "segments", segments.array);
    Json patterns = Json::array(), values = Json::array(), bases = Json::array();
    ZR_TYPE_ScanPatternInvertMatch(type, AppendPattern, &patterns);
    ZR_TYPE_ScanNameValuePair(type, AppendNameValue, &values);
    ZR_TYPE_ScanIdentRefBase(type, AppendBase, &bases);
    PutArray(object, "patterns", patterns);
    PutArray(object, "values", values);
    PutArray(object, "bases", bases);
    Chain members{ctx, Json::array()};
    ZR_TYPE_ScanUnionSubType(type, AppendMember, &members);
    PutArray(object, "members", members.links);
    PutText(object, "path", ZR_TYPE_GetTypeConsDataLeafrefPath(type));
    return object;
}

uint32_t AppendLink(const char *, const char *, const ZrtRealType *type, void *out)
{
    auto *chain = static_cast<Chain *>(out);
    if (type != nullptr)
        chain->links.push_back(DescribeType(chain->ctx, type));
    return 0;
}

// The node's own type statement and then each typedef's, down to the built-in type.
Json TypeChain(const ZrCtx *ctx, const ZrtRealType *type)
{
    Chain chain{ctx, Json::array({DescribeType(ctx, type)})};
    if (ZR_TYPE_GetBuiltInBaseType(type) == ZRT_TYPE_DERIVED)
        ZR_TYPE_IterRealTypeDerivedName(type, ctx, AppendLink, &chain);
    return chain.links;
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

std::string PathOf(const ZrNode *node)
{
    char path[4096];
    return ZR_NODE_GetNodePath(node, path, sizeof(path)) == ZR_OK ? path : "";
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
    if (const ZrtRealType *type = ZR_NODE_GetRealType(node))
        object["type"] = TypeChain(ctx, type);
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
                   {"kind", NodeKindName(kind)},
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
void PrintText(const Json &object, int indent)
{
    for (const auto &[key, value] : object.items()) {
        if (!value.is_array()) {
            std::printf("%*s%s: %s\n", indent, "", key.c_str(), Plain(value).c_str());
            continue;
        }
        std::printf("%*s%s:\n", indent, "", key.c_str());
        for (const Json &item : value) {
            if (item.is_object())
                PrintText(item, indent + 2);
            else
                std::printf("%*s%s\n", indent + 2, "", Plain(item).c_str());
        }
    }
}

int RunNode(const NodeOptions &options)
{
    Session session(ZR_CTX_KEEP_DESCRIPTIONS | ZR_CTX_KEEP_UNITS, options.modules.directories);
    bool good = LoadWithImports(session, options.modules);
    const ZrNode *node = ZR_CTX_GetTargetNode(session.ctx(), options.path.c_str(), nullptr);
    if (node == nullptr) {
        Complain("no such node: " + options.path);
        return kExitFailed;
    }
    Json object = Describe(session.ctx(), node);
    if (options.json)
        std::puts(object.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    else
        PrintText(object, 0);
    return good ? kExitOk : kExitFailed;
}

} // namespace

void AddNodeCommand(CLI::App &app, int &status)
{
    auto options = std::make_shared<NodeOptions>();
    CLI::App *command = app.add_subcommand("node", "describe a schema node");
    command->set_version_flag("--version", "zrschema " ZR_VERSION);
    AddDirectoryOption(*command, options->modules.directories);
    AddModuleOption(*command, options->modules);
    AddFeatureOptions(*command, options->modules);
    command->add_flag("--json", options->json, "print one JSON object");
    command
        ->add_option("path", options->path,
                     "the node's schema path, such as /module:container/leaf")
        ->required()
        ->type_name("PATH");
    command->callback([options, &status] { status = RunNode(*options); });
}

} // namespace tool
