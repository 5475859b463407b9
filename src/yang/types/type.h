// SPDX-License-Identifier: Apache-2.0
// Types as they come out when typedefs are followed (RFC 7950, section 9).
#pragma once

#include "yang/names/links.h"
#include "yang/types/intervals.h"

namespace zr::yang {

// An enum or a bit.
struct NamedValue {
    std::string_view name;
    int64_t value;      // or position
    bool isConditional; // it is there with a feature alone
};

struct Type {
    Builtin base = Builtin::None;
    const Statement *statement = nullptr;
    const Type *derivedFrom = nullptr;               // the typedef's type; null for a built-in type
    uint32_t chain = 0;                              // how many typedefs it stands on
    NumberForm form;                                 // of the integers and decimal64
    const Intervals *intervals = nullptr;            // of numbers, or of the length of texts
    std::pmr::vector<NamedValue> *names = nullptr;   // of enums or bits
    const Statement *path = nullptr;                 // of a leafref
    std::pmr::vector<Definition *> *bases = nullptr; // of an identityref
    std::pmr::vector<const Type *> *members = nullptr; // of a union
};

class TypeResolver {
public:
    TypeResolver(Reports &reports, Arena &arena) : reports_(reports), arena_(arena) {}

    // Works out every type of a module whose links are made.
    void Resolve(Module &module);
    // The type of a type statement; null when something is wrong with it, which is reported.
    const Type *TypeOf(Statement &statement) { return TypeOf(statement, 0); }

private:
    const Type *TypeOf(Statement &statement, uint32_t depth);
    Type *Make(Statement &statement, TypeUse &use, uint32_t depth);
    bool StartFromBase(Type &type, const TypeUse &use, uint32_t depth);
    bool CheckRestrictions(const Statement &statement, const Type &type, bool isBuiltin);
    bool Restrict(Type &type, bool isBuiltin, uint32_t depth);
    void CheckPatterns(const Statement &statement);
    bool RestrictIntervals(Type &type, const Statement &restriction);
    bool RestrictNames(Type &type, Keyword keyword, bool isBuiltin);
    bool ReadNames(Type &type, Keyword keyword, std::pmr::vector<NamedValue> &names,
                   const std::pmr::vector<NamedValue> *base);
    bool ReadBases(Type &type);
    bool ReadMembers(Type &type, uint32_t depth);
    void Error(const Statement &where, std::initializer_list<std::string_view> pieces)
    {
        reports_.Error(where.place(), ZR_YANG_CODE_TYPE, pieces);
    }

    Reports &reports_;
    Arena &arena_;
};

// The type that a leaf, leaf-list or typedef has; null without a sound one.
const Type *TypeIn(const Statement &statement);

} // namespace zr::yang
