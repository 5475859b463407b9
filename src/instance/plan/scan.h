// SPDX-License-Identifier: Apache-2.0
// Scans of the engine with work that may throw: what is thrown must not pass through the engine, so
// that it is caught in the callback and thrown again behind the scan.
#pragma once

#include <zrschema/zrschema.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

namespace zr::data {

template <typename Work> class Caught {
public:
    explicit Caught(Work &work) : work_(work) {}

    template <typename... Arguments> uint32_t Run(Arguments... arguments) noexcept
    {
        try {
            work_(arguments...);
            return 0;
        } catch (const std::bad_alloc &) { // nothing else is thrown here
            isOutOfMemory_ = true;
            return ZR_ERR_NO_MEMORY;
        }
    }
    void Rethrow() const
    {
        if (isOutOfMemory_)
            throw std::bad_alloc();
    }

private:
    Work &work_;
    bool isOutOfMemory_ = false;
};

// Calls `work` with what a callback is given before the user's pointer.
template <typename Work, typename... Parameters> uint32_t CallBack(Parameters... parameters)
{
    constexpr bool kIsUser[] = {std::is_same_v<Parameters, void *>...};
    constexpr auto kUser =
        static_cast<size_t>(std::find(std::begin(kIsUser), std::end(kIsUser), true) - kIsUser);
    auto all = std::make_tuple(parameters...);
    auto &caught = *static_cast<Caught<Work> *>(std::get<kUser>(all));
    return [&]<size_t... kBefore>(std::index_sequence<kBefore...>)
    {
        return caught.Run(std::get<kBefore>(all)...);
    }
    (std::make_index_sequence<kUser>());
}

// Runs a scan of an object with a callable in the place of callback and user's pointer.
template <typename Object, typename... Parameters, typename Work>
void Scan(uint32_t (*scan)(Object *, uint32_t (*)(Parameters...), void *),
          std::type_identity_t<Object> *object, Work work)
{
    Caught<Work> caught(work);
    scan(object, CallBack<Work, Parameters...>, &caught);
    caught.Rethrow();
}

} // namespace zr::data
