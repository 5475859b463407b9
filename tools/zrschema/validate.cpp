// zrschema validate: checks a request or a notification.
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "commands.h"
#include "names.h"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;

constexpr const char *kBaseNamespace = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr const char *kYangNamespace = "urn:ietf:params:xml:ns:yang:1";
constexpr const char *kEventNamespace = "urn:ietf:params:xml:ns:netconf:notification:1.0";

struct ValidateOptions {
    ModuleOptions modules;
    std::string file;
    bool rpc = false;
    bool notification = false;
    bool print = false;
    bool json = false;
};

struct Outcome {
    bool valid = false;
    std::unique_ptr<ZrdErrNode, void (*)(ZrdErrNode *)> error{nullptr, ZR_FreeErrNode};
    std::vector<std::string> defaults;
    std::string document; // "" when there is none
};

using Document = std::unique_ptr<xmlDoc, void (*)(xmlDoc *)>;

std::string Text(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

std::string ReadInput(const std::string &file)
{
    std::stringstream text;
    if (file == "-") {
        text << std::cin.rdbuf();
        return text.str();
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw UsageError{"cannot read " + file};
    text << stream.rdbuf();
    return text.str();
}

bool Is(const xmlNode *node, const char *name, const char *ns)
{
    return node != nullptr && node->ns != nullptr && Text(node->name) == name &&
           Text(node->ns->href) == ns;
}

// The one child element that an envelope holds beside those to pass over; null when there is none
// or more than one.
xmlNode *OnlyElement(xmlNode *parent, const std::string &passOver)
{
    xmlNode *found = nullptr;
    for (xmlNode *child = parent->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE || Text(child->name) == passOver)
            continue;
        if (found != nullptr)
            return nullptr;
        found = child;
    }
    return found;
}

// What stands inside the envelopes of RFC 6241, RFC 7950 (section 7.15) and RFC 5277; the node
// itself when it is in none.
xmlNode *Unwrap(xmlNode *node, bool notification)
{
    if (notification)
        return Is(node, "notification", kEventNamespace) ? OnlyElement(node, "eventTime") : node;
    if (Is(node, "rpc", kBaseNamespace))
        node = OnlyElement(node, "");
    if (Is(node, "action", kYangNamespace))
        node = OnlyElement(node, "");
    return node;
}

// A document of its own for the element, with the namespaces that it uses.
Document Extract(xmlNode *element)
{
    Document document(xmlNewDoc(BAD_CAST "1.0"), xmlFreeDoc);
    xmlNode *copy = xmlDocCopyNode(element, document.get(), 1);
    xmlDocSetRootElement(document.get(), copy);
    // Values may use prefixes that only an envelope declares.
    for (const xmlNode *outer = element; outer != nullptr && outer->type == XML_ELEMENT_NODE;
         outer = outer->parent)
        for (const xmlNs *ns = outer->nsDef; ns != nullptr; ns = ns->next)
            if (ns->prefix != nullptr && xmlSearchNs(document.get(), copy, ns->prefix) == nullptr)
                xmlNewNs(copy, ns->href, ns->prefix);
    return document;
}

std::string Dump(xmlDoc *document)
{
    xmlChar *text = nullptr;
    int size = 0;
    xmlDocDumpFormatMemoryEnc(document, &text, &size, "UTF-8", 1);
    std::string dump = Text(text);
    xmlFree(text);
    return dump;
}

// The module of an element: of its own namespace, or else of the closest ancestor's. Elements that
// completion added carry theirs as an attribute, if at all.
const char *ModuleOf(const ZrCtx *ctx, xmlNode *element)
{
    for (xmlNode *node = element; node != nullptr && node->type == XML_ELEMENT_NODE;
         node = node->parent) {
        xmlChar *added = node->ns == nullptr ? xmlGetNoNsProp(node, BAD_CAST "xmlns") : nullptr;
        std::string ns = added != nullptr      ? Text(added)
                         : node->ns != nullptr ? Text(node->ns->href)
                                               : "";
        xmlFree(added);
        if (!ns.empty())
            return ZR_MOD_GetModuleName(ZR_CTX_GetModuleByModNs(ctx, ns.c_str()));
    }
    return nullptr;
}

std::string PathOf(const ZrCtx *ctx, xmlNode *element)
{
    std::string path;
    for (xmlNode *node = element; node != nullptr && node->type == XML_ELEMENT_NODE;
         node = node->parent) {
        const char *module = ModuleOf(ctx, node);
        bool top = node->parent == nullptr || node->parent->type != XML_ELEMENT_NODE;
        const char *outer = top ? nullptr : ModuleOf(ctx, node->parent);
        bool qualified = module != nullptr && (outer == nullptr || std::string(module) != outer);
        std::string step = "/";
        if (qualified)
            step.append(module).append(":");
        path.insert(0, step.append(Text(node->name)));
    }
    return path;
}

struct Completed {
    const ZrCtx *ctx;
    std::vector<std::string> paths;
};

void CollectDefault(void *element, void *userData)
{
    auto *completed = static_cast<Completed *>(userData);
    completed->paths.push_back(PathOf(completed->ctx, static_cast<xmlNode *>(element)));
}

uint32_t CollectDocument(const char *text, void *userData)
{
    *static_cast<std::string *>(userData) = text;
    return 0;
}

Outcome ValidateRequest(ZrCtx *ctx, xmlDoc *document)
{
    Outcome outcome;
    Completed completed{ctx, {}};
    outcome.error.reset(ZR_CTX_ValidateRpcDataTree(
        ctx, ZR_VALUE_XML, xmlDocGetRootElement(document), CollectDefault, &completed));
    outcome.valid = outcome.error == nullptr;
    outcome.defaults = completed.paths;
    outcome.document = Dump(document);
    return outcome;
}

Outcome ValidateNotification(ZrCtx *ctx, xmlDoc *document)
{
    Outcome outcome;
    outcome.valid = ZR_CTX_ValidateNotifDataTree(ctx, Dump(document).c_str(), CollectDocument,
                                                 &outcome.document) == ZR_OK;
    return outcome;
}

// Text that is no XML has the library's own answer too.
Outcome ValidateText(ZrCtx *ctx, std::string text, bool notification)
{
    Outcome outcome;
    if (!notification)
        outcome.error.reset(
            ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, text.data(), nullptr, nullptr));
    return outcome;
}

Outcome Validate(ZrCtx *ctx, const std::string &text, bool notification)
{
    Document whole(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                 XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                                     XML_PARSE_NONET),
                   xmlFreeDoc);
    if (whole == nullptr)
        return ValidateText(ctx, text, notification);
    xmlNode *element = Unwrap(xmlDocGetRootElement(whole.get()), notification);
    if (element == nullptr) {
        Complain("the envelope does not hold exactly one element to validate");
        return Outcome();
    }
    Document document = Extract(element);
    return notification ? ValidateNotification(ctx, document.get())
                        : ValidateRequest(ctx, document.get());
}

Json TextOrNull(const char *text)
{
    return text != nullptr ? Json(text) : Json(nullptr);
}

Json Describe(const ZrdErrNode *error)
{
    if (error == nullptr)
        return nullptr;
    return {{"type", ZR_GetErrorType(error)},
            {"type-name", ErrorTypeName(ZR_GetErrorType(error))},
            {"severity", ZR_GetErrorSeverity(error)},
            {"severity-name", ErrorSeverityName(ZR_GetErrorSeverity(error))},
            {"tag", ZR_GetErrorTag(error)},
            {"tag-name", ErrorTagName(ZR_GetErrorTag(error))},
            {"app-tag", TextOrNull(ZR_GetErrorAppTag(error))},
            {"path", TextOrNull(ZR_GetErrorPath(error))},
            {"message", TextOrNull(ZR_GetErrorMessage(error))},
            {"bad-element", TextOrNull(ZR_GetBadElement(error))},
            {"bad-attribute", TextOrNull(ZR_GetBadAttribute(error))}};
}

void PrintJson(const Outcome &outcome, bool print)
{
    Json object = {
        {"valid", outcome.valid},
        {"error", Describe(outcome.error.get())},
        {"defaults", outcome.defaults},
        {"document", print && !outcome.document.empty() ? Json(outcome.document) : Json(nullptr)}};
    std::puts(object.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
}

void PrintField(const char *name, const char *text)
{
    if (text != nullptr)
        std::printf("%s: %s\n", name, text);
}

void PrintNumber(const char *name, uint32_t number, const std::string &meaning)
{
    std::printf("%s: %u (%s)\n", name, number, meaning.c_str());
}

void PrintText(const Outcome &outcome, bool print)
{
    std::puts(outcome.valid ? "valid" : "not valid");
    if (const ZrdErrNode *error = outcome.error.get()) {
        PrintNumber("type", ZR_GetErrorType(error), ErrorTypeName(ZR_GetErrorType(error)));
        PrintNumber("severity", ZR_GetErrorSeverity(error),
                    ErrorSeverityName(ZR_GetErrorSeverity(error)));
        PrintNumber("tag", ZR_GetErrorTag(error), ErrorTagName(ZR_GetErrorTag(error)));
        PrintField("app-tag", ZR_GetErrorAppTag(error));
        PrintField("path", ZR_GetErrorPath(error));
        PrintField("message", ZR_GetErrorMessage(error));
        PrintField("bad-element", ZR_GetBadElement(error));
    }
    for (const std::string &path : outcome.defaults)
        PrintField("default", path.c_str());
    if (print)
        std::fputs(outcome.document.c_str(), stdout);
}

int RunValidate(const ValidateOptions &options)
{
    if (options.rpc == options.notification)
        throw UsageError{"validate takes either --rpc or --notification"};
    Session session(ZR_CTX_KEEP_PATTERNS, options.modules.directories);
    bool loaded = LoadWithImports(session, options.modules);
    Outcome outcome = Validate(session.ctx(), ReadInput(options.file), options.notification);
    (options.json ? PrintJson : PrintText)(outcome, options.print);
    return outcome.valid && loaded ? kExitOk : kExitFailed;
}

} // namespace

void AddValidateCommand(CLI::App &app, int &status)
{
    auto options = std::make_shared<ValidateOptions>();
    CLI::App *command = app.add_subcommand("validate", "check a request or a notification");
    command->set_version_flag("--version", "zrschema " ZR_VERSION);
    command->add_flag("--rpc", options->rpc, "the file is a request: an rpc or an action");
    command->add_flag("--notification", options->notification, "the file is a notification");
    AddDirectoryOption(*command, options->modules.directories);
    AddModuleOption(*command, options->modules);
    AddFeatureOptions(*command, options->modules);
    command->add_flag("--print", options->print, "print the document as the check left it");
    command->add_flag("--json", options->json, "print one JSON object");
    command->add_option("file", options->file, "the XML file, - for standard input")
        ->required()
        ->type_name("FILE|-");
    command->callback([options, &status] { status = RunValidate(*options); });
}

} // namespace tool
