// SPDX-License-Identifier: Apache-2.0
#include "instance/errors/result.h"

#include <iterator>

#include "instance/base/text.h"
#include "instance/errors/path.h"
#include "instance/errors/rpc_error.h"
#include "instance/tree/json_node.h"

namespace zr::data {

namespace {

using Text = std::pmr::string;

uint32_t LineOf(const Fault &fault)
{
    const xmlNode *source = fault.source;
    for (const Element *at = fault.at; source == nullptr && at != nullptr; at = at->parent)
        source = at->source; // a default has the line of what it stands in
    if (source == nullptr)
        return fault.line;
    if (const JsonNode *json = AsJson(source))
        return json->line;
    long line = xmlGetLineNo(const_cast<xmlNode *>(source));
    return line > 0 ? static_cast<uint32_t>(line) : 0;
}

} // namespace

ZrDataError Result::Record(const Fault &fault)
{
    Text path(&memory);
    std::pmr::vector<ZrDataPrefix> prefixes(&memory);
    AppendPath(fault, path, prefixes);
    auto *kept = arena.NewArray<ZrDataPrefix>(prefixes.size());
    for (size_t i = 0; i < prefixes.size(); ++i)
        kept[i] = {arena.CopyText(prefixes[i].prefix), arena.CopyText(prefixes[i].namespaceUri)};
    auto copy = [&](const char *text) { return text == nullptr ? nullptr : arena.CopyText(text); };
    return {fault.tag,
            copy(fault.appTag),
            arena.CopyText(path),
            kept,
            prefixes.size(),
            copy(fault.message),
            copy(fault.badElement),
            LineOf(fault),
            copy(fault.badAttribute)};
}

void Result::Take(Faults &faults, Faults &theWarnings)
{
    Text text(&memory);
    for (const Fault &fault : faults.Sorted()) {
        errors.push_back(Record(fault));
        text.clear();
        AppendRpcError(text, fault, errors.back());
        errorTexts.push_back(arena.CopyText(text));
    }
    for (const Fault &warning : theWarnings.Sorted())
        warnings.push_back(Record(warning));
    errorsFound = faults.found();
    warningsFound = theWarnings.found();
}

} // namespace zr::data
