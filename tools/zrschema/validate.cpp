// SPDX-License-Identifier: Apache-2.0
// zrschema validate: checks requests and notifications as the library does, and whole data by RFC
// 7950.
#include <libxml/tree.h>

#include <memory>

#include "commands.h"
#include "data_files.h"
#include "validate_data.h"
#include "xml_text.h"

namespace tool {

namespace {

constexpr const char *kBaseNamespace = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr const char *kYangNamespace = "urn:ietf:params:xml:ns:yang:1";
constexpr const char *kEventNamespace = "urn:ietf:params:xml:ns:netconf:notification:1.0";

struct ValidateOptions {
    ModuleOptions modules;
    DataChecks data;
    bool rpc = false;
    bool notification = false;
    bool print = false;
    bool config = false, state = false, edit = false, strictRpc = false, strictNotification = false;
};

// The kind that a command line names; each option is one.
void ChooseKind(ValidateOptions &options)
{
    struct Row {
        bool isGiven;
        uint32_t kind; // 0 for what the library itself validates
    };
    const Row rows[] = {
        {options.rpc, 0},
        {options.notification, 0},
        {options.config, ZR_DATA_CONFIG},
        {options.state, ZR_DATA_CONFIG_AND_STATE},
        {options.edit, ZR_DATA_EDIT},
        {options.strictRpc, ZR_DATA_REQUEST},
        {!options.data.operation.empty(), ZR_DATA_REPLY},
        {options.strictNotification, ZR_DATA_NOTIFICATION},
    };
    int given = 0;
    for (const Row &row : rows)
        if (row.isGiven) {
            ++given;
            options.data.kind = row.kind;
        }
    if (given != 1)
        throw UsageError{"validate takes one of --config, --data, --edit, --strict-rpc, "
                         "--strict-reply, --strict-notification, --rpc and --notification"};
    bool isWhole =
        options.data.kind == ZR_DATA_CONFIG || options.data.kind == ZR_DATA_CONFIG_AND_STATE;
    if ((isWhole || options.data.kind == 0) && !options.data.datastore.empty())
        throw UsageError{"--datastore is for --edit, --strict-rpc, --strict-reply and "
                         "--strict-notification"};
    if (options.data.kind == 0 && options.data.files.size() != 1)
        throw UsageError{"--rpc and --notification take one file"};
    if (options.data.kind != 0 && options.print)
        throw UsageError{"--print is for --rpc and --notification"};
}

struct Outcome {
    bool valid = false;
    std::unique_ptr<ZrdErrNode, void (*)(ZrdErrNode *)> error{nullptr, ZR_FreeErrNode};
    std::vector<std::string> defaults;
    std::string document; // "" when there is none
};

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
    ZrdErrNode *error = nullptr;
    outcome.valid =
        ZR_CTX_ValidateNotifDataTreeWithError(ctx, Dump(document).c_str(), CollectDocument,
                                              &outcome.document, &error) == ZR_OK;
    outcome.error.reset(error);
    return outcome;
}

// The library's answer to a text that is no XML, which is the same for all of them. It cannot be
// asked about this one: it would read it up to its first NUL byte.
Outcome RefuseText(ZrCtx *ctx)
{
    Outcome outcome;
    char nothing[] = "";
    outcome.error.reset(
        ZR_CTX_ValidateRpcDataTree(ctx, ZR_VALUE_STRING, nothing, nullptr, nullptr));
    return outcome;
}

Outcome Validate(Session &session, const ValidateOptions &options, const std::string &text)
{
    XmlFault fault;
    Document whole = ParseXml(text, fault);
    if (whole == nullptr) {
        session.run().Say({fault.reason, "", options.data.files.front(), fault.line});
        return RefuseText(session.ctx());
    }
    xmlNode *element = Unwrap(xmlDocGetRootElement(whole.get()), options.notification);
    if (element == nullptr) {
        session.run().Complain("the envelope does not hold exactly one element to validate");
        return Outcome();
    }
    Document document = Extract(element);
    return options.notification ? ValidateNotification(session.ctx(), document.get())
                                : ValidateRequest(session.ctx(), document.get());
}

Json Describe(const ZrdErrNode *error)
{
    if (error == nullptr)
        return nullptr;
    return {{"type", ZR_GetErrorType(error)},
            {"type-name", ZR_GetErrorTypeName(ZR_GetErrorType(error))},
            {"severity", ZR_GetErrorSeverity(error)},
            {"severity-name", ZR_GetErrorSeverityName(ZR_GetErrorSeverity(error))},
            {"tag", ZR_GetErrorTag(error)},
            {"tag-name", ZR_GetErrorTagName(ZR_GetErrorTag(error))},
            {"app-tag", TextOrNull(ZR_GetErrorAppTag(error))},
            {"path", TextOrNull(ZR_GetErrorPath(error))},
            {"message", TextOrNull(ZR_GetErrorMessage(error))},
            {"bad-element", TextOrNull(ZR_GetBadElement(error))},
            {"bad-attribute", TextOrNull(ZR_GetBadAttribute(error))}};
}

Json DocumentOf(const Outcome &outcome, bool print)
{
    return {
        {"valid", outcome.valid},
        {"error", Describe(outcome.error.get())},
        {"defaults", outcome.defaults},
        {"document", print && !outcome.document.empty() ? Json(outcome.document) : Json(nullptr)}};
}

void PrintField(Run &run, const char *name, const char *text)
{
    if (text != nullptr)
        run.Print(std::string(name) + ": " + text + "\n");
}

void PrintNumber(Run &run, const char *name, uint32_t number, const std::string &meaning)
{
    run.Print(std::string(name) + ": " + std::to_string(number) + " (" + meaning + ")\n");
}

void PrintText(Run &run, const Outcome &outcome, bool print)
{
    run.Print(outcome.valid ? "valid\n" : "not valid\n");
    if (const ZrdErrNode *error = outcome.error.get()) {
        PrintNumber(run, "type", ZR_GetErrorType(error),
                    ZR_GetErrorTypeName(ZR_GetErrorType(error)));
        PrintNumber(run, "severity", ZR_GetErrorSeverity(error),
                    ZR_GetErrorSeverityName(ZR_GetErrorSeverity(error)));
        PrintNumber(run, "tag", ZR_GetErrorTag(error), ZR_GetErrorTagName(ZR_GetErrorTag(error)));
        PrintField(run, "app-tag", ZR_GetErrorAppTag(error));
        PrintField(run, "path", ZR_GetErrorPath(error));
        PrintField(run, "message", ZR_GetErrorMessage(error));
        PrintField(run, "bad-element", ZR_GetBadElement(error));
    }
    for (const std::string &path : outcome.defaults)
        PrintField(run, "default", path.c_str());
    if (print)
        run.Print(outcome.document);
}

int RunValidate(Run &run, ValidateOptions &options)
{
    ChooseKind(options);
    if (options.data.kind != 0)
        return CheckDataFiles(run, options.modules, options.data);
    Session session(run, ZR_CTX_KEEP_PATTERNS, options.modules.directories);
    std::string text = ReadOrThrow(options.data.files.front());
    std::vector<std::string> modules;
    if (!session.SetUp(options.modules, modules))
        return kExitFailed; // no verdict on a schema that is not what was asked for
    Outcome outcome = Validate(session, options, text);
    if (run.json())
        run.PrintDocument(DocumentOf(outcome, options.print));
    else
        PrintText(run, outcome, options.print);
    return outcome.valid ? kExitOk : kExitFailed;
}

} // namespace

Json EmptyValidateDocument()
{
    return {
        {"valid", nullptr}, {"error", nullptr}, {"defaults", Json::array()}, {"document", nullptr}};
}

void AddValidateCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<ValidateOptions>();
    Command command = line.Add(
        "validate", "check data, a request or a notification",
        WithModuleNote(
            "FILE is - for standard input. The root of data is any element that holds top-level\n"
            "nodes. Without a datastore, leafrefs that lead out of a message are not followed.\n"
            "A request is taken out of its <rpc> and <action>, a\n"
            "notification out of its <notification>, where they stand in one.\n"
            "Features start off: --feature and --all-features turn them on."));
    command.Flag("--config", "the files are configuration, by RFC 7950", options->config);
    command.Flag("--data", "the files are configuration with state", options->state);
    command.Flag("--edit", "the files are parts of configuration, or edit-config requests",
                 options->edit);
    command.Flag("--strict-rpc", "the files are requests: an rpc or an action, by RFC 7950",
                 options->strictRpc);
    command.Text("--strict-reply", "MODULE:RPC",
                 "the files are replies of an rpc, or of an action (/MODULE:NODE/.../ACTION)",
                 options->data.operation);
    command.Flag("--strict-notification", "the files are notifications, by RFC 7950",
                 options->strictNotification);
    command.Text("--datastore", "FILE",
                 "the data that strict messages look into, or that an edit is made for",
                 options->data.datastore);
    command.Flag("--rpc", "the file is a request, as ZR_CTX_ValidateRpcDataTree() takes it",
                 options->rpc);
    command.Flag("--notification",
                 "the file is a notification, as ZR_CTX_ValidateNotifDataTree() takes it",
                 options->notification);
    AddDirectoryOption(command, options->modules.directories);
    AddModuleOption(command, options->modules);
    AddFeatureOptions(command, options->modules);
    command.Flag("--print", "print the document as the check left it", options->print);
    command.Json();
    command.Texts("file", "FILE|-", "the files, XML or JSON, - for standard input",
                  options->data.files, Need::kRequired);
    command.OnRun([options, &run] { return RunValidate(run, *options); });
}

} // namespace tool
