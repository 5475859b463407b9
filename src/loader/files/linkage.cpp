// SPDX-License-Identifier: Apache-2.0
#include "loader/files/linkage.h"

#include <algorithm>
#include <utility>

#include "foundation/array.h"
#include "foundation/context_record.h"
#include "foundation/load_errors.h"
#include "loader/statements/arguments.h"
#include "loader/statements/engine.h"
#include "loader/statements/statements.h"
#include "platform/xml.h"
#include "schema/members/members.h"

namespace {

constexpr uint32_t kFirstRoom = 16; // imports of submodules, before the array grows

bool IsStatement(const xmlNode *node, uint32_t statement)
{
    return node->type == XML_ELEMENT_NODE && ZRS_LOADER_GetXmlNodeYangStmt(node) == statement;
}

uint32_t CountImports(const xmlNode *root)
{
    uint32_t count = 0;
    for (const xmlNode *child = root->children; child != nullptr; child = child->next)
        count += IsStatement(child, ZRS_STMT_IMPORT) ? 1 : 0;
    return count;
}

uint32_t ReadImport(ZrMod *module, const xmlNode *element, ZrsImport *texts)
{
    texts->moduleName = zr::RequireArgument(module, element, ZRS_STMT_IMPORT);
    if (texts->moduleName == nullptr)
        return ZR_ERR_INVALID;
    texts->prefix = zr::RequirePrefixChild(module, element, ZRS_STMT_IMPORT, texts->moduleName);
    return texts->prefix != nullptr ? ZR_OK : ZR_ERR_INVALID;
}

// Gives places back that were made behind the module's imports and are not needed. Without memory
// for a shorter array they stay.
void TrimImports(ZrMod *module, uint32_t room)
{
    if (room == 0)
        return;
    ZrsImport *exact = nullptr;
    if (zr::NewArray(&exact, module->importCount) != ZR_OK)
        return;
    std::copy_n(module->imports, module->importCount, exact);
    zr::Free(module->imports);
    module->imports = exact;
}

} // namespace

uint32_t zr::FileScope::Enter(const xmlNode *root, const char *prefix)
{
    uint32_t room = CountImports(root);
    uint32_t status = zr::NewArray(texts_, room);
    if (status == ZR_OK)
        status = file_.imports.Make(texts_.get(), room, ImportTable::kPrefix);
    if (status != ZR_OK)
        return status;
    uint32_t count = 0;
    for (const xmlNode *child = root->children; child != nullptr; child = child->next) {
        if (!IsStatement(child, ZRS_STMT_IMPORT))
            continue;
        ZrsImport &import = texts_.get()[count];
        import.moduleName = ZR_XML_GetFirstPropertyValue(child);
        import.prefix = zr::ArgumentOfChild(child, ZRS_LOADER_GetKeywordByStmt(ZRS_STMT_PREFIX));
        if (import.moduleName != nullptr && import.prefix != nullptr)
            file_.imports.FindOrAdd(count++);
    }
    file_.modulePrefix = prefix;
    file_.including =
        outer_ != nullptr && outer_->including != nullptr ? outer_->including : outer_;
    module_->file = &file_;
    return ZR_OK;
}

uint32_t zr::FileScope::EnterRecord()
{
    uint32_t status =
        file_.imports.Make(module_->imports, module_->importCount, ImportTable::kPrefix);
    if (status != ZR_OK)
        return status;
    for (uint32_t i = 0; i < module_->importCount; ++i)
        file_.imports.FindOrAdd(i);
    file_.modulePrefix = module_->prefix;
    module_->file = &file_;
    return ZR_OK;
}

zr::Linkage::~Linkage()
{
    TrimImports(module_, room_);
    ZRS_MOD_FreeImports(&module_->ctx->dict, brought_, broughtCount_);
}

uint32_t zr::Linkage::ParseFile(xmlNode *root)
{
    if (depth == 0) {
        uint32_t room = std::min(CountImports(root), uint32_t{UINT16_MAX} - module_->importCount);
        uint32_t status = zr::ExpandArray(&module_->imports, module_->importCount, room);
        if (status != ZR_OK)
            return status;
        room_ = room;
    }
    uint32_t parsedOutside = std::exchange(parsed_, 0);
    for (xmlNode *child = root->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        uint32_t statement = ZRS_LOADER_GetXmlNodeYangStmt(child);
        if (statement != ZRS_STMT_IMPORT && statement != ZRS_STMT_INCLUDE)
            continue;
        uint32_t status = ParseStatement(child, statement);
        if (status != ZR_OK)
            return status;
    }
    parsed_ = parsedOutside;
    return ZR_OK;
}

uint32_t zr::Linkage::ParseStatement(xmlNode *element, uint32_t statement)
{
    uint32_t status = statement == ZRS_STMT_IMPORT ? Import(element) : Include(element);
    if (status != ZR_OK)
        zr::RecordBadStatement(module_, statement);
    return status;
}

uint32_t zr::Linkage::Import(const xmlNode *element)
{
    ZrsImport texts;
    uint32_t status = ReadImport(module_, element, &texts);
    if (status != ZR_OK || IsRepeated(texts, parsed_++))
        return status;
    return Keep(texts);
}

// Whether the prefix means that module already, before the file's import of that index.
bool zr::Linkage::IsRepeated(const ZrsImport &texts, uint32_t index) const
{
    const ZrsFilePrefixes *file = module_->file;
    if (zr::TextEquals(file->modulePrefix, texts.prefix))
        return zr::TextEquals(module_->name, texts.moduleName);
    const ZrsImport *first = file->imports.Find(texts.prefix);
    return first != file->imports.At(index) && zr::TextEquals(first->moduleName, texts.moduleName);
}

uint32_t zr::Linkage::Keep(const ZrsImport &texts)
{
    ZrDict *dict = &module_->ctx->dict;
    if (depth == 0) {
        if (room_ == 0)
            return ZR_ERR_INVALID; // as many as there can be
        uint32_t status = ZRS_MOD_FillImport(dict, &module_->imports[module_->importCount],
                                             texts.moduleName, texts.prefix);
        if (status == ZR_OK) {
            ++module_->importCount;
            --room_;
        }
        return status;
    }
    if (broughtCount_ == broughtRoom_) {
        uint32_t more = std::max(broughtRoom_, kFirstRoom);
        uint32_t status = zr::ExpandArray(&brought_, broughtCount_, more);
        if (status != ZR_OK)
            return status;
        broughtRoom_ += more;
    }
    uint32_t status =
        ZRS_MOD_FillImport(dict, &brought_[broughtCount_], texts.moduleName, texts.prefix);
    broughtCount_ += status == ZR_OK ? 1 : 0;
    return status;
}

// The include is noted before the submodule is read, so that includes in a circle end.
uint32_t zr::Linkage::Include(const xmlNode *element)
{
    const char *name = zr::RequireArgument(module_, element, ZRS_STMT_INCLUDE);
    if (name == nullptr)
        return ZR_ERR_INVALID;
    if (ZRS_MOD_FindIncludeBySubName(module_->includes, module_->includeCount, name) != nullptr)
        return ZR_OK;
    uint32_t status = ZRS_MOD_AppendOneInclude(module_, name);
    if (status == ZR_OK)
        status = loadSubmodule_(module_, name, this);
    if (status != ZR_OK)
        ZR_CTX_AddModError(module_->ctx, module_->name, "Failed to load submodule \"%s\".", name);
    return status;
}

uint32_t zr::Linkage::Finish()
{
    TrimImports(module_, room_);
    room_ = 0;
    uint32_t status = zr::ExpandArray(&module_->imports, module_->importCount, broughtCount_);
    if (status != ZR_OK || broughtCount_ == 0)
        return status;
    room_ = broughtCount_;
    ImportTable table;
    status = table.Make(module_->imports, module_->importCount + broughtCount_,
                        ImportTable::kPrefixAndModule);
    for (uint32_t i = 0; i < module_->importCount && status == ZR_OK; ++i)
        table.FindOrAdd(i);
    for (uint32_t i = 0; i < broughtCount_ && status == ZR_OK; ++i)
        status = TakeOver(&brought_[i], &table);
    if (status != ZR_OK)
        zr::RecordBadStatement(module_, ZRS_STMT_IMPORT);
    return status;
}

uint32_t zr::Linkage::TakeOver(ZrsImport *import, ImportTable *table)
{
    uint32_t index = module_->importCount;
    module_->imports[index] = *import;
    bool isThere = table->FindOrAdd(index) != nullptr;
    if (isThere || index == UINT16_MAX) {
        module_->imports[index] = {};
        return isThere ? ZR_OK : ZR_ERR_INVALID;
    }
    *import = {};
    ++module_->importCount;
    --room_;
    return ZR_OK;
}

// The revision of an import is not read: the module that is loaded is the one that is meant.
uint32_t ZRS_LOADER_ParseImport(ZrMod *module, xmlNode *element, uint32_t /*parentStatement*/,
                                void * /*destination*/)
{
    ZrsImport texts;
    uint32_t status = ReadImport(module, element, &texts);
    if (status != ZR_OK)
        return status;
    if (zr::TextEquals(ZRS_MOD_GetModuleNameByPrefix(module, texts.prefix), texts.moduleName))
        return ZR_OK;
    return ZRS_MOD_AppendOneImport(module, texts.moduleName, texts.prefix);
}
