// SPDX-License-Identifier: Apache-2.0
// The public functions for documents: data that was checked, to be written.
#include <zrdata/write.h>

#include <climits>

#include "instance/check/input.h"
#include "instance/library/boundary.h"
#include "instance/write/write.h"

using namespace zr::data;

struct ZrDataDocument {
    ZrDataDocument(const ZrDataMemory &hooks, const Plan &plan, const ZrDataOptions &someOptions)
        : memory(hooks), options(someOptions), run(plan, options, &memory)
    {
    }

    mutable HookResource memory; // any thread that writes may take from it
    ZrDataOptions options;
    XmlDoc doc{nullptr, xmlFreeDoc}; // what was parsed
    Run run;
    const xmlNode *wrapper = nullptr; // null for what could not be read
};

namespace {

constexpr uint32_t kMostIndent = 16;

bool IsComplete(uint32_t kind)
{
    return kind == ZR_DATA_CONFIG || kind == ZR_DATA_CONFIG_AND_STATE;
}

// Makes a document of what `work` reads: it returns the wrapper.
template <typename Work>
uint32_t Read(const ZrDataPlan *plan, const ZrDataOptions *options, ZrDataDocument **documentOut,
              ZrDataResult **resultOut, bool isGiven, Work work)
{
    if (documentOut != nullptr)
        *documentOut = nullptr;
    if (resultOut != nullptr)
        *resultOut = nullptr;
    if (documentOut == nullptr || resultOut == nullptr || plan == nullptr || options == nullptr ||
        !isGiven || !IsComplete(options->kind))
        return ZR_DATA_ERR_INVALID;
    if (StampOf(plan->plan.ctx) != plan->plan.stamp)
        return ZR_DATA_ERR_STALE;
    const ZrDataMemory &hooks = plan->plan.memory.hooks();
    auto *document = Construct<ZrDataDocument>(hooks, plan->plan, *options);
    auto *result = Construct<ZrDataResult>(hooks);
    uint32_t status = ZR_DATA_ERR_NO_MEMORY;
    if (document != nullptr && result != nullptr)
        status = Guard([&]() -> uint32_t {
            document->wrapper = work(*document);
            result->result.Take(document->run.faults, document->run.warnings);
            return result->result.errorsFound == 0 ? ZR_DATA_OK : ZR_DATA_ERR_FAULTY;
        });
    if (status == ZR_DATA_OK)
        *documentOut = document;
    else if (document != nullptr)
        Destroy(document, hooks);
    if (status != ZR_DATA_ERR_NO_MEMORY)
        *resultOut = result;
    else if (result != nullptr)
        Destroy(result, hooks);
    return status;
}

WriteJob JobOf(const ZrDataDocument &document, uint32_t defaults, uint32_t indent)
{
    return {document.run.plan, document.run.tree, *document.wrapper, defaults, indent,
            &document.memory};
}

} // namespace

uint32_t ZR_DATA_ReadXml(const ZrDataPlan *plan, const ZrDataOptions *options, const char *text,
                         size_t length, ZrDataDocument **documentOut, ZrDataResult **resultOut)
{
    bool isGiven = text != nullptr && length <= INT_MAX;
    return Read(plan, options, documentOut, resultOut, isGiven, [&](ZrDataDocument &document) {
        return CheckXml(document.run, {text, length}, document.doc);
    });
}

uint32_t ZR_DATA_ReadJson(const ZrDataPlan *plan, const ZrDataOptions *options, const char *text,
                          size_t length, ZrDataDocument **documentOut, ZrDataResult **resultOut)
{
    bool isGiven = text != nullptr && length <= INT_MAX;
    return Read(plan, options, documentOut, resultOut, isGiven, [&](ZrDataDocument &document) {
        return CheckJson(document.run, {text, length});
    });
}

uint32_t ZR_DATA_ReadTree(const ZrDataPlan *plan, const ZrDataOptions *options, const void *root,
                          ZrDataDocument **documentOut, ZrDataResult **resultOut)
{
    auto *wrapper = static_cast<const xmlNode *>(root);
    bool isGiven = wrapper != nullptr && wrapper->type == XML_ELEMENT_NODE;
    return Read(plan, options, documentOut, resultOut, isGiven, [&](ZrDataDocument &document) {
        CheckDocument(document.run, *wrapper);
        return wrapper;
    });
}

void ZR_DATA_DeleteDocument(ZrDataDocument *document)
{
    if (document != nullptr)
        Destroy(document, ZrDataMemory(document->memory.hooks()));
}

uint32_t ZR_DATA_WriteText(const ZrDataDocument *document, const ZrDataWriteOptions *options,
                           ZrDataWriteFunc write, void *user)
{
    if (document == nullptr || options == nullptr || write == nullptr ||
        (options->format != ZR_DATA_XML && options->format != ZR_DATA_JSON) ||
        options->defaults > ZR_DATA_REPORT_ALL_TAGGED || options->indent > kMostIndent)
        return ZR_DATA_ERR_INVALID;
    return Guard([&]() -> uint32_t {
        WriteJob job = JobOf(*document, options->defaults, options->indent);
        try {
            Output out(write, user, job.memory);
            (options->format == ZR_DATA_XML ? WriteXml : WriteJson)(job, out);
        } catch (const Stopped &stopped) {
            return static_cast<uint32_t>(stopped.answer);
        }
        return ZR_DATA_OK;
    });
}

uint32_t ZR_DATA_WriteTree(const ZrDataDocument *document, uint32_t defaults, void **treeOut)
{
    if (treeOut != nullptr)
        *treeOut = nullptr;
    if (document == nullptr || treeOut == nullptr || defaults > ZR_DATA_REPORT_ALL_TAGGED)
        return ZR_DATA_ERR_INVALID;
    XmlDoc tree(nullptr, xmlFreeDoc);
    uint32_t status = Guard([&]() -> uint32_t {
        tree = WriteXmlTree(JobOf(*document, defaults, 0));
        return tree != nullptr ? ZR_DATA_OK : ZR_DATA_ERR_INVALID;
    });
    if (status == ZR_DATA_OK)
        *treeOut = tree.release();
    return status;
}
