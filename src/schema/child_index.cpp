#include "schema/child_index.h"

#include "foundation/dict.h"
#include "schema/module_record.h"
#include "schema/node.h"

namespace {

// With fewer children, passing them costs no more than hashing a name.
constexpr size_t kManyChildren = 64;

size_t CountChildren(const ZrNode *parent)
{
    size_t count = 0;
    for (const ZrNode *child = parent->firstChild; child != nullptr; child = child->next) {
        ++count;
        if (child == parent->lastChild)
            break;
    }
    return count;
}

// Names are shared copies, so that their addresses tell them apart.
size_t SlotOf(const char *name, size_t mask)
{
    auto address = reinterpret_cast<uintptr_t>(name);
    return (address / alignof(max_align_t) * size_t{2654435761}) & mask;
}

} // namespace

bool zr::ChildIndex::Build(const ZrNode *parent)
{
    size_t count = CountChildren(parent);
    if (count < kManyChildren || parent->module == nullptr)
        return false;
    size_t size = kManyChildren;
    while (size < 2 * count)
        size *= 2;
    Forget();
    zr::Free(slots_.release());
    *slots_.slot() = static_cast<ZrNode **>(zr::AllocZeroed(size * sizeof(ZrNode *)));
    if (!slots_)
        return false;
    mask_ = size - 1;
    ZrNode *child = parent->firstChild;
    for (; count != 0; --count, child = child->next) {
        size_t slot = SlotOf(child->name, mask_);
        while (slots_.get()[slot] != nullptr)
            slot = (slot + 1) & mask_;
        slots_.get()[slot] = child;
    }
    parent_ = parent;
    firstChild_ = parent->firstChild;
    lastChild_ = parent->lastChild;
    return true;
}

bool zr::ChildIndex::Serves(const ZrNode *parent)
{
    return parent == parent_ && parent->firstChild == firstChild_ &&
           parent->lastChild == lastChild_;
}

ZrNode *zr::ChildIndex::Find(const ZrNode *parent, const char *moduleName, const char *name)
{
    if (parent == nullptr || name == nullptr || (!Serves(parent) && !Build(parent)))
        return ZRS_NODE_FindChildNodeByName(parent, moduleName, name);
    const char *shared = zr::FindInterned(&parent->module->ctx->dict, name);
    if (shared == nullptr)
        return nullptr;
    bool anyModule = moduleName == nullptr || *moduleName == '\0';
    // Children of one name stand in the slots in their own order: the first is found first.
    for (size_t slot = SlotOf(shared, mask_); slots_.get()[slot] != nullptr;
         slot = (slot + 1) & mask_) {
        ZrNode *child = slots_.get()[slot];
        if (child->name == shared && (anyModule || zr::IsOfModule(child, moduleName)))
            return child;
    }
    return nullptr;
}
