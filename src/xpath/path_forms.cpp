// SPDX-License-Identifier: Apache-2.0
// Schema paths: the module-name form of a prefixed path, and the split of a target path.
#include "xpath/path_forms.h"
#include "foundation/text.h"
#include "model/module_records.h"
#include "model/scope.h"
#include "platform/memory.h"
#include "platform/strings.h"

namespace {

struct PathStep {
    char prefix[zr::kNameSize];
    char name[zr::kNameSize];
};

// One path on its way into module-name form.
struct JsonPath {
    const ZrMod *module;
    char prefix[zr::kNameSize]; // of the latest step that had one, "" before the first
    char text[zr::kXpathSize];
    size_t length;
};

bool Append(JsonPath *path, const char *text)
{
    if (strcpy_s(path->text + path->length, sizeof(path->text) - path->length, text) < 0)
        return false;
    path->length += PAL_StrLen(text);
    return true;
}

bool IsDotStep(const PathStep &step)
{
    return step.prefix[0] == '\0' &&
           (PAL_StrCmp(step.name, "..") == 0 || PAL_StrCmp(step.name, ".") == 0);
}

// Remembers the step's prefix; a first step without one stands in the path's own module.
bool RememberPrefix(JsonPath *path, const PathStep &step)
{
    const char *own = path->module->prefix != nullptr ? path->module->prefix : "";
    return strcpy_s(path->prefix, sizeof(path->prefix),
                    step.prefix[0] != '\0' ? step.prefix : own) >= 0;
}

bool AppendStep(JsonPath *path, const PathStep &step)
{
    if (IsDotStep(step))
        return Append(path, step.name);
    bool sameModule = path->prefix[0] != '\0' &&
                      (step.prefix[0] == '\0' || PAL_StrCmp(step.prefix, path->prefix) == 0);
    if (sameModule)
        return Append(path, step.name);
    if (!RememberPrefix(path, step))
        return false;
    const char *moduleName = ZRS_MOD_GetModuleNameByPrefix(path->module, path->prefix);
    return moduleName != nullptr && Append(path, moduleName) && Append(path, ":") &&
           Append(path, step.name);
}

} // namespace

char *ZR_XPATH_TransformToJsonFormat(const ZrMod *module, const char *path)
{
    if (module == nullptr || path == nullptr)
        return nullptr;
    return ZR_XPATH_GetJsonFormatXpath(module, path);
}

// Predicates are passed over by the splitter and do not come into the result. A path without a
// step, and an empty step ("//", "/" at the end), are no schema path.
char *ZR_XPATH_GetJsonFormatXpath(const ZrMod *module, const char *path)
{
    JsonPath result{.module = module, .prefix = "", .text = "", .length = 0};
    const char *rest = path;
    do {
        if (*rest == '/') {
            if (!Append(&result, "/"))
                return nullptr;
            ++rest;
        }
        PathStep step = {};
        rest = ZR_UTL_GetXPathNextPredicatedPrefixNode(rest, step.prefix, sizeof(step.prefix),
                                                       step.name, sizeof(step.name));
        if (rest == nullptr || !AppendStep(&result, step))
            return nullptr;
    } while (*rest != '\0');
    return ZR_UTL_StrDup(result.text);
}

namespace {

// The qualifier of the last qualified step of a path.
struct Qualifier {
    const char *text;
    uint32_t length;
};

// Goes back step by step; a character before the path is never looked at.
bool FindLastQualifier(const char *path, uint32_t length, Qualifier *found)
{
    uint32_t end = length; // of what is not scanned yet
    for (;;) {
        const char *stop;
        uint32_t ident = ZR_UTL_ConsumeIdentNameFromTail(path, end, &stop);
        if (ident == 0 || ident == end)
            return false; // an empty step, or a first step without "/"
        end -= ident + 1;
        if (path[end] == ':')
            break;
        if (path[end] != '/')
            return false;
    }
    const char *stop;
    found->length = ZR_UTL_ConsumeIdentNameFromTail(path, end, &stop);
    if (found->length == 0 || found->length == end)
        return false;
    found->text = path + end - found->length;
    return found->text[-1] == '/';
}

} // namespace

const char *zr::FindLastNamedStep(const char *path, char *moduleName, uint32_t moduleNameSize)
{
    if (path == nullptr || moduleName == nullptr)
        return nullptr;
    size_t length = PAL_StrLen(path);
    Qualifier qualifier;
    if (static_cast<uint32_t>(length) != length ||
        !FindLastQualifier(path, static_cast<uint32_t>(length), &qualifier) ||
        strncpy_s(moduleName, moduleNameSize, qualifier.text, qualifier.length) < 0)
        return nullptr;
    return qualifier.text - 1;
}

uint32_t ZR_XPATH_SplitTargetNodeXpath(const char *path, char *moduleName, uint32_t moduleNameSize,
                                       char **headOut, char **tailOut)
{
    const char *tail = zr::FindLastNamedStep(path, moduleName, moduleNameSize);
    if (tail == nullptr)
        return ZR_ERR_INVALID;
    if (headOut == nullptr || tailOut == nullptr)
        return ZR_OK;
    *headOut = nullptr;
    *tailOut = nullptr;
    zr::Owned<char> tailCopy(ZR_UTL_StrDup(tail));
    if (!tailCopy)
        return ZR_ERR_INVALID;
    if (tail != path) {
        *headOut = ZR_UTL_StrDupWithSpecifyLength(path, static_cast<uint32_t>(tail - path));
        if (*headOut == nullptr)
            return ZR_ERR_INVALID;
    }
    *tailOut = tailCopy.release();
    return ZR_OK;
}
