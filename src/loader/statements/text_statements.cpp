// SPDX-License-Identifier: Apache-2.0
// Statements that carry one text: header values, revision, descriptions, units, defaults, messages.
#include <string_view>

#include "foundation/context_record.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "platform/xml.h"

namespace {

const char **TextAt(void *destination)
{
    return static_cast<const char **>(destination);
}

// The text of an element that carries it as content; anything but a text that stands first
// (nothing, a comment, CDATA) counts as the empty text.
uint32_t KeepContent(ZrMod *module, const xmlNode *element, void *destination)
{
    const char *content = ZR_XML_GetElemNodeContent(element);
    return zr::KeepText(module, content != nullptr ? content : "", TextAt(destination));
}

// A statement whose argument YIN writes as a child element (RFC 7950, section 13.2.2).
uint32_t ParseTextChild(ZrMod *module, xmlNode *element, uint32_t statement,
                        uint32_t childStatement, void *destination)
{
    ZrsSubElem rows[] = {zr::UniqueRow(childStatement, destination)};
    uint32_t status = zr::ParseRows(module, element, statement, rows);
    if (status == ZR_OK && (rows[0].flags & ZRS_ROW_SEEN) == 0) {
        zr::RecordMissingValue(module, statement);
        return ZR_ERR_INVALID;
    }
    return status;
}

} // namespace

uint32_t ZRS_LOADER_ParseYangVersion(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                     void *destination)
{
    const char *argument = zr::RequireArgument(module, element, ZRS_STMT_YANG_VERSION);
    if (argument == nullptr)
        return ZR_ERR_INVALID;
    std::string_view version = argument;
    if (version != "1" && version != "1.1") {
        zr::RecordBadValue(module, argument, ZRS_STMT_YANG_VERSION);
        return UINT32_MAX; // a status of its own (docs/oddities.md)
    }
    *static_cast<uint32_t *>(destination) =
        version == "1.1" ? ZRS_YANG_VERSION_1_1 : ZRS_YANG_VERSION_1;
    return ZR_OK;
}

uint32_t ZRS_LOADER_ParseNamespace(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                   void *destination)
{
    return zr::KeepArgument(module, element, ZRS_STMT_NAMESPACE, TextAt(destination));
}

uint32_t ZRS_LOADER_ParsePrefix(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                void *destination)
{
    return zr::KeepArgument(module, element, ZRS_STMT_PREFIX, TextAt(destination));
}

// Revisions stand newest first (RFC 7950, section 7.1.9), so the first one is the module's.
uint32_t ZRS_LOADER_ParseRevision(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                  void *destination)
{
    if (*TextAt(destination) != nullptr)
        return ZR_OK;
    return zr::KeepArgument(module, element, ZRS_STMT_REVISION, TextAt(destination));
}

uint32_t ZRS_LOADER_ParseOrganization(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                      void *destination)
{
    return ParseTextChild(module, element, ZRS_STMT_ORGANIZATION, ZRS_STMT_TEXT, destination);
}

uint32_t ZRS_LOADER_ParseDescription(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                     void *destination)
{
    if ((module->ctx->flags & ZR_CTX_KEEP_DESCRIPTIONS) == 0)
        return ZR_OK;
    return ParseTextChild(module, element, ZRS_STMT_DESCRIPTION, ZRS_STMT_TEXT, destination);
}

uint32_t ZRS_LOADER_ParseErrorMessage(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                      void *destination)
{
    return ParseTextChild(module, element, ZRS_STMT_ERROR_MESSAGE, ZRS_STMT_VALUE, destination);
}

uint32_t ZRS_LOADER_ParseErrorAppTag(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                     void *destination)
{
    return zr::KeepArgument(module, element, ZRS_STMT_ERROR_APP_TAG, TextAt(destination));
}

uint32_t ZRS_LOADER_ParseText(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                              void *destination)
{
    return KeepContent(module, element, destination);
}

uint32_t ZRS_LOADER_ParseValue(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                               void *destination)
{
    return KeepContent(module, element, destination);
}

uint32_t ZRS_LOADER_ParseUnits(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                               void *destination)
{
    if ((module->ctx->flags & ZR_CTX_KEEP_UNITS) == 0)
        return ZR_OK;
    return zr::KeepArgument(module, element, ZRS_STMT_UNITS, TextAt(destination));
}

uint32_t ZRS_LOADER_ParseDefault(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                 void *destination)
{
    return zr::KeepArgument(module, element, ZRS_STMT_DEFAULT, TextAt(destination));
}
