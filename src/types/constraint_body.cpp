#include "types/constraint_body.h"

void *ZRT_CONS_CreateConsDataBodyAndSegSize(uint32_t bodySize, uint32_t count, uint32_t itemSize)
{
    auto *body = static_cast<unsigned char *>(zr::AllocZeroed(bodySize));
    if (body == nullptr || count == 0 || itemSize == 0)
        return body;
    void *items = zr::AllocZeroed(size_t{count} * itemSize);
    if (items == nullptr) {
        zr::Free(body);
        return nullptr;
    }
    std::memcpy(body + zr::kBodyArrayOffset, &items, sizeof items);
    return body;
}
