#include "model/file_prefixes.h"

#include "foundation/dict.h"
#include "foundation/record_arrays.h"
#include "model/module_record.h"

uint32_t zr::ImportTable::Make(const ZrsImport *imports, uint32_t capacity, Key key)
{
    uint32_t size = 8;
    while (size < 2 * capacity)
        size *= 2;
    zr::Free(slots_.release());
    *slots_.slot() = static_cast<uint32_t *>(zr::AllocZeroed(size * sizeof(uint32_t)));
    if (!slots_)
        return ZR_ERR_NO_MEMORY;
    imports_ = imports;
    key_ = key;
    mask_ = size - 1;
    return ZR_OK;
}

uint32_t zr::ImportTable::HashOf(const ZrsImport &import) const
{
    constexpr uint32_t kOdd = 2654435761U;
    uint32_t hash = ZR_DICT_HashVal(import.prefix, 0);
    return key_ == kPrefix ? hash : hash * kOdd + ZR_DICT_HashVal(import.moduleName, 0);
}

bool zr::ImportTable::HasKeyOf(const ZrsImport &a, const ZrsImport &b) const
{
    return TextEquals(a.prefix, b.prefix) &&
           (key_ == kPrefix || TextEquals(a.moduleName, b.moduleName));
}

uint32_t *zr::ImportTable::SlotOf(const ZrsImport &wanted) const
{
    uint32_t slot = HashOf(wanted) & mask_;
    while (slots_.get()[slot] != 0 && !HasKeyOf(imports_[slots_.get()[slot] - 1], wanted))
        slot = (slot + 1) & mask_;
    return &slots_.get()[slot];
}

const ZrsImport *zr::ImportTable::FindOrAdd(uint32_t index)
{
    uint32_t *slot = SlotOf(imports_[index]);
    if (*slot != 0)
        return &imports_[*slot - 1];
    *slot = index + 1;
    return nullptr;
}

const ZrsImport *zr::ImportTable::Find(const char *prefix) const
{
    if (!slots_ || prefix == nullptr)
        return nullptr;
    uint32_t index = *SlotOf({nullptr, prefix});
    return index != 0 ? &imports_[index - 1] : nullptr;
}

const char *zr::ModuleNameInFile(const ZrMod *module, const char *prefix)
{
    for (const ZrsFilePrefixes *file = module->file; file != nullptr; file = file->including) {
        if (TextEquals(file->modulePrefix, prefix))
            return module->name;
        if (const ZrsImport *import = file->imports.Find(prefix))
            return import->moduleName;
    }
    return nullptr;
}
