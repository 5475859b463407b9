// SPDX-License-Identifier: Apache-2.0
// zrschema convert: writes data as XML or JSON, with its defaults or without them.
#include <zrdata/write.h>

#include <memory>

#include "commands.h"
#include "data_files.h"

namespace tool {

namespace {

struct ConvertOptions {
    ModuleOptions modules;
    std::string file;
    std::string format;
    std::string defaults = "explicit";
    bool withState = false;
};

// A word of the command line and what it means to the library.
struct Choice {
    const char *word;
    uint32_t value;
};
constexpr Choice kFormats[] = {{"xml", ZR_DATA_XML}, {"json", ZR_DATA_JSON}};
constexpr Choice kDefaults[] = {{"explicit", ZR_DATA_EXPLICIT},
                                {"trim", ZR_DATA_TRIM},
                                {"report-all", ZR_DATA_REPORT_ALL},
                                {"report-all-tagged", ZR_DATA_REPORT_ALL_TAGGED}};
constexpr uint32_t kIndent = 2;

template <size_t kSize> Words WordsOf(const Choice (&choices)[kSize])
{
    Words words;
    for (const Choice &choice : choices)
        words.push_back(choice.word);
    return words;
}

template <size_t kSize>
uint32_t Choose(const char *option, const std::string &word, const Choice (&choices)[kSize])
{
    std::string words;
    for (const Choice &choice : choices) {
        if (word == choice.word)
            return choice.value;
        words += words.empty() ? choice.word : std::string(", ") + choice.word;
    }
    throw UsageError{std::string(option) + " is one of " + words + ", not " + word};
}

using DataDocument = std::unique_ptr<ZrDataDocument, decltype(&ZR_DATA_DeleteDocument)>;

int Append(const char *text, size_t length, void *user)
{
    static_cast<std::string *>(user)->append(text, length);
    return 0;
}

// The document as it is written; false when the data has faults, which have been said.
bool Convert(Session &session, const ConvertOptions &options, const ZrDataWriteOptions &how,
             const std::string &text, std::string &out)
{
    DataPlan plan = MakePlan(session.ctx());
    ZrDataOptions check = {};
    check.kind = options.withState ? ZR_DATA_CONFIG_AND_STATE : ZR_DATA_CONFIG;
    auto *read = IsJson(text) ? ZR_DATA_ReadJson : ZR_DATA_ReadXml;
    ZrDataDocument *madeDocument = nullptr;
    ZrDataResult *madeResult = nullptr;
    uint32_t status =
        OrThrow(read(plan.get(), &check, text.data(), text.size(), &madeDocument, &madeResult));
    DataDocument document(madeDocument, ZR_DATA_DeleteDocument);
    DataResult result(madeResult, ZR_DATA_DeleteResult);
    if (status == ZR_DATA_ERR_INVALID) {
        session.run().Complain(options.file + " is longer than 2 GiB");
        return false;
    }
    SayAll(session.run(), result.get(), options.file);
    if (document != nullptr)
        OrThrow(ZR_DATA_WriteText(document.get(), &how, Append, &out));
    return document != nullptr;
}

int RunConvert(Run &run, const ConvertOptions &options)
{
    ZrDataWriteOptions how = {Choose("--to", options.format, kFormats),
                              Choose("--defaults", options.defaults, kDefaults), kIndent};
    Session session(run, ZR_CTX_STANDARD, options.modules.directories);
    std::string text = ReadOrThrow(options.file);
    std::vector<std::string> modules;
    if (!session.SetUp(options.modules, modules))
        return kExitFailed; // what is not in the schema would be called a fault of the data
    std::string out;
    if (!Convert(session, options, how, text, out))
        return kExitFailed;
    if (run.json())
        run.PrintDocument({{"document", out}});
    else
        run.Print(out);
    return kExitOk;
}

} // namespace

Json EmptyConvertDocument()
{
    return {{"document", nullptr}};
}

void AddConvertCommand(CommandLine &line, Run &run)
{
    auto options = std::make_shared<ConvertOptions>();
    Command command = line.Add(
        "convert", "write data as XML or JSON",
        WithModuleNote(
            "FILE is XML, with any element around the data, or JSON, which is seen from its first\n"
            "character; - is standard input. It is configuration, which is checked as a whole:\n"
            "what has faults is not written.\n"
            "Features start off: --feature and --all-features turn them on."));
    command.Choice("--to", "FORMAT", "what to write: xml or json", WordsOf(kFormats),
                   options->format, Need::kRequired);
    command.Choice("--defaults", "MODE",
                   "explicit (as it is), trim, report-all or report-all-tagged (RFC 6243)",
                   WordsOf(kDefaults), options->defaults);
    command.Flag("--data", "the data is configuration with state", options->withState);
    AddDirectoryOption(command, options->modules.directories);
    AddModuleOption(command, options->modules);
    AddFeatureOptions(command, options->modules);
    command.Json();
    command.Text("file", "FILE|-", "the data, - for standard input", options->file,
                 Need::kRequired);
    command.OnRun([options, &run] { return RunConvert(run, *options); });
}

} // namespace tool
