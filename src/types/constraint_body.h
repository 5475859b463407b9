// Bodies of constraint slots: the parts that every kind shares.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "foundation/context_record.h"
#include "model/type_records.h"
#include "platform/memory.h"

extern "C" {
// A zeroed body; when count and item size are both non-zero, its item array is zeroed and stored
// in the body's array pointer, which every counted body has at the same place. Null when memory
// runs out.
ZR_API void *ZRT_CONS_CreateConsDataBodyAndSegSize(uint32_t bodySize, uint32_t count,
                                                   uint32_t itemSize);
}

namespace zr {

// A counted body starts with its 16-bit count; the array pointer is its second word.
constexpr size_t kBodyArrayOffset = sizeof(void *);

template <typename Body> using BodyItem = std::remove_pointer_t<decltype(Body::items)>;

// A body with `count` zeroed items, or null.
template <typename Body> Body *CreateCountedBody(uint32_t count)
{
    static_assert(offsetof(Body, count) == 0);
    static_assert(offsetof(Body, items) == kBodyArrayOffset);
    if (count > UINT16_MAX)
        return nullptr;
    auto *body = static_cast<Body *>(
        ZRT_CONS_CreateConsDataBodyAndSegSize(sizeof(Body), count, sizeof(BodyItem<Body>)));
    if (body != nullptr)
        body->count = static_cast<uint16_t>(count);
    return body;
}

// Releases every item with `release(ctx, item)`, then the array and the body.
template <typename Body, typename Release>
void DestroyCountedBody(ZrCtx *ctx, void *opaque, Release release)
{
    auto *body = static_cast<Body *>(opaque);
    if (body == nullptr)
        return;
    for (uint32_t i = 0; body->items != nullptr && i < body->count; ++i)
        release(ctx, body->items[i]);
    zr::Free(body->items);
    zr::Free(body);
}

// Interns `text` into `field`; a null text stays null. False when memory runs out.
inline bool CopyText(ZrCtx *ctx, const char *&field, const char *text)
{
    field = ZR_DICT_Insert(&ctx->dict, text);
    return field != nullptr || text == nullptr;
}

// A new body whose items are made by `copy(ctx, to, from)`, which is false on failure; `destroy`
// takes back a partial copy. Null when memory runs out.
template <typename Body, typename Copy>
Body *CopyCountedBody(ZrCtx *ctx, const void *opaque, Copy copy, void (*destroy)(ZrCtx *, void *))
{
    const auto *source = static_cast<const Body *>(opaque);
    if (ctx == nullptr || source == nullptr)
        return nullptr;
    Body *body = CreateCountedBody<Body>(source->count);
    if (body == nullptr)
        return nullptr;
    for (uint32_t i = 0; i < source->count; ++i) {
        if (!copy(ctx, body->items[i], source->items[i])) {
            destroy(ctx, body);
            return nullptr;
        }
    }
    return body;
}

} // namespace zr
