// SPDX-License-Identifier: Apache-2.0
#include "types.h"

#include <algorithm>
#include <set>

#include "lookup.h"

namespace tool {

namespace {

constexpr size_t kMostNames = 20; // of an enumeration, in a sentence

struct Bounds {
    uint32_t baseType;
    int64_t lowest;
    uint64_t highest;
};

// clang-format off
constexpr Bounds kBounds[] = {
    {ZRT_TYPE_INT8,      INT8_MIN,  INT8_MAX},
    {ZRT_TYPE_INT16,     INT16_MIN, INT16_MAX},
    {ZRT_TYPE_INT32,     INT32_MIN, INT32_MAX},
    {ZRT_TYPE_INT64,     INT64_MIN, INT64_MAX},
    {ZRT_TYPE_DECIMAL64, INT64_MIN, INT64_MAX},
    {ZRT_TYPE_UINT8,     0,         UINT8_MAX},
    {ZRT_TYPE_UINT16,    0,         UINT16_MAX},
    {ZRT_TYPE_UINT32,    0,         UINT32_MAX},
    {ZRT_TYPE_UINT64,    0,         UINT64_MAX},
    {ZRT_TYPE_STRING,    0,         UINT32_MAX}, // lengths
    {ZRT_TYPE_BINARY,    0,         UINT32_MAX},
};
// clang-format on

const Bounds *BoundsOf(uint32_t baseType)
{
    for (const Bounds &bounds : kBounds)
        if (bounds.baseType == baseType)
            return &bounds;
    return nullptr;
}

uint32_t AppendLink(const char *, const char *, const ZrtRealType *type, void *out)
{
    static_cast<std::vector<const ZrtRealType *> *>(out)->push_back(type);
    return 0;
}

uint32_t AppendMember(const char *, const char *, const ZrtRealType *member, void *out)
{
    static_cast<std::vector<const ZrtRealType *> *>(out)->push_back(member);
    return 0;
}

uint32_t AppendSegment(uint64_t start, uint64_t end, void *out)
{
    static_cast<Segments *>(out)->emplace_back(start, end);
    return 0;
}

uint32_t AppendName(const char *name, const char *, int64_t, void *out)
{
    static_cast<std::vector<std::string> *>(out)->push_back(name);
    return 0;
}

uint32_t AppendBase(const char *moduleName, const char *identityName, void *out,
                    const ZrsIdentBase *)
{
    static_cast<std::vector<std::string> *>(out)->push_back(std::string(moduleName) + ":" +
                                                            identityName);
    return 0;
}

uint32_t AppendPattern(const char *pattern, uint32_t invertMatch, void *out, const ZrtPatternItem *)
{
    *static_cast<std::string *>(out) +=
        std::string(invertMatch != 0 ? " not" : "") + " matching " + pattern;
    return 0;
}

uint32_t FirstName(const char *moduleName, const char *typedefName, const ZrtRealType *type,
                   void *userData)
{
    *static_cast<std::string *>(userData) =
        typedefName != nullptr ? std::string(moduleName) + ":" + typedefName
                               : ZR_GetBuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(type));
    return 1;
}

const char *LeafrefPathOf(const std::vector<const ZrtRealType *> &chain)
{
    for (const ZrtRealType *type : chain)
        if (const char *path = ZR_TYPE_GetTypeConsDataLeafrefPath(type))
            return path;
    return nullptr;
}

// A type as it stands at a leaf: paths of leafrefs start there.
struct Place {
    const ZrtRealType *type;
    const ZrNode *leaf;
};

bool operator<(const Place &a, const Place &b)
{
    return std::pair(a.type, a.leaf) < std::pair(b.type, b.leaf);
}

// The leaf that a leafref points to with its type; a null type when it points nowhere.
Place TargetOf(const ZrCtx *ctx, const char *path, const ZrNode *leaf)
{
    const ZrNode *target = FollowLeafrefPath(ctx, leaf, path);
    return {ZR_NODE_GetRealType(target), target};
}

struct Search {
    const ZrCtx *ctx;
    const ZrtRealType *wanted;
    std::set<Place> seen; // types may lead back to themselves
};

// The name of the type that is wanted, as its user names it: what leads to it is the type itself,
// a typedef of its chain, a member of its union, or the target of its leafref.
std::string NameOfWanted(Search &search, Place place)
{
    if (place.type == nullptr || !search.seen.insert(place).second)
        return "";
    std::vector<const ZrtRealType *> chain = TypeChain(search.ctx, place.type);
    for (size_t i = 0; i < chain.size(); ++i)
        if (chain[i] == search.wanted) // the statement before names the typedef
            return TypeName(search.ctx, chain[i == 0 ? 0 : i - 1]);
    for (const ZrtRealType *member : MembersOf(chain.back()))
        if (std::string name = NameOfWanted(search, {member, place.leaf}); !name.empty())
            return name;
    const char *path = LeafrefPathOf(chain);
    return path != nullptr ? NameOfWanted(search, TargetOf(search.ctx, path, place.leaf)) : "";
}

bool Less(uint64_t a, uint64_t b, bool isSigned)
{
    return isSigned ? static_cast<int64_t>(a) < static_cast<int64_t>(b) : a < b;
}

// A number of a type as text; `digits` of it are a fraction.
std::string NumberText(uint64_t number, bool isSigned, uint32_t digits)
{
    bool negative = isSigned && static_cast<int64_t>(number) < 0;
    std::string text = std::to_string(negative ? 0 - number : number);
    if (digits > 0) {
        if (text.size() <= digits)
            text.insert(0, digits + 1 - text.size(), '0');
        text.insert(text.size() - digits, ".");
        text.erase(std::max(text.find_last_not_of('0'), text.find('.') + 1) + 1);
    }
    return negative ? "-" + text : text;
}

std::string SegmentText(const Segments &segments, bool isSigned, uint32_t digits)
{
    std::string text;
    for (const auto &[start, end] : segments) {
        text += (text.empty() ? "" : " | ") + NumberText(start, isSigned, digits);
        if (end != start)
            text += ".." + NumberText(end, isSigned, digits);
    }
    return text;
}

std::string Joined(const std::vector<std::string> &words, const std::string &separator, size_t most)
{
    std::string text;
    for (size_t i = 0; i < words.size() && i < most; ++i)
        text += (i == 0 ? "" : separator) + words[i];
    if (words.size() > most)
        text += separator + "and " + std::to_string(words.size() - most) + " more";
    return text;
}

// Tells what a type takes.
class Teller {
public:
    // `seen`: what was told already. It is named the next time, since types may lead back to
    // themselves.
    Teller(const ZrCtx *ctx, std::set<Place> &seen) : ctx_(ctx), seen_(seen) {}

    std::string Tell(Place place);

private:
    bool Takes(const ZrNode *leaf, uint64_t number) const;
    Segments Restrictions(size_t link);
    void PutParentBounds(Segments &segments, std::pair<uint64_t, uint64_t> parent) const;
    std::string TellNumber();
    std::string TellText();
    std::string TellUnion(const ZrNode *leaf);

    const ZrCtx *ctx_;
    std::set<Place> &seen_;
    // Of the type that is being told:
    std::vector<const ZrtRealType *> chain_;
    uint32_t baseType_ = ZRT_TYPE_NONE;
    uint32_t digits_ = 0;
    const ZrNode *leaf_ = nullptr; // null unless the type is a leaf's own
};

bool Teller::Takes(const ZrNode *leaf, uint64_t number) const
{
    std::string text = NumberText(number, IsSigned(baseType_), digits_);
    return leaf != nullptr && ZR_NODE_ValidateValue(leaf, ZR_VALUE_STRING, text.c_str()) == ZR_OK;
}

// In a type that names a typedef, "min" and "max" read as 0 until they are resolved against the
// typedef. They are told from a written 0 by the typedef's bounds, and where these do not say, by
// asking the leaf whether it takes the bound.
void Teller::PutParentBounds(Segments &segments, std::pair<uint64_t, uint64_t> parent) const
{
    bool isSigned = IsSigned(baseType_);
    auto [lowest, highest] = parent;
    auto &[firstStart, firstEnd] = segments.front();
    auto &[lastStart, lastEnd] = segments.back();
    bool zeroInside = !Less(0, lowest, isSigned) && !Less(highest, 0, isSigned);
    bool takesZero = zeroInside && (leaf_ == nullptr || Takes(leaf_, 0));
    bool fromMin = firstStart == 0 && lowest != 0 && (!zeroInside || Takes(leaf_, lowest));
    bool toMax = lastEnd == 0 && highest != 0 &&
                 (!zeroInside || Less(0, lastStart, isSigned) || Takes(leaf_, highest));
    bool whole = segments.size() == 1 && fromMin && toMax;
    if (fromMin && firstEnd == 0 && !whole && !takesZero) // "min" alone
        firstEnd = lowest;
    if (toMax && lastStart == 0 && !whole && !takesZero) // "max" alone
        lastStart = highest;
    if (fromMin)
        firstStart = lowest;
    if (toMax)
        lastEnd = highest;
}

// The range or length that is in force at a link of the chain: its own, or the closest behind it.
Segments Teller::Restrictions(size_t link)
{
    const Bounds *bounds = BoundsOf(baseType_);
    if (link == chain_.size())
        return {{static_cast<uint64_t>(bounds->lowest), bounds->highest}};
    Segments segments = SegmentsOf(chain_[link]);
    if (segments.empty())
        return Restrictions(link + 1);
    if (ZR_TYPE_GetBuiltInBaseType(chain_[link]) == ZRT_TYPE_DERIVED) {
        Segments parent = Restrictions(link + 1);
        PutParentBounds(segments, {parent.front().first, parent.back().second});
    }
    return segments;
}

bool HasSegments(const std::vector<const ZrtRealType *> &chain)
{
    for (const ZrtRealType *type : chain)
        if (!SegmentsOf(type).empty())
            return true;
    return false;
}

std::string Teller::TellNumber()
{
    std::string text = ZR_GetBuiltInTypeName(baseType_);
    if (digits_ > 0)
        text += " with " + std::to_string(digits_) + " fraction digits";
    return text + " " + SegmentText(Restrictions(0), IsSigned(baseType_), digits_);
}

std::string Teller::TellText()
{
    std::string text = ZR_GetBuiltInTypeName(baseType_);
    if (baseType_ == ZRT_TYPE_BINARY)
        text += " (base64)";
    if (HasSegments(chain_))
        text += " of length " + SegmentText(Restrictions(0), false, 0);
    for (const ZrtRealType *type : chain_)
        ZR_TYPE_ScanPatternInvertMatch(type, AppendPattern, &text);
    return text;
}

std::string Teller::TellUnion(const ZrNode *leaf)
{
    std::vector<std::string> members;
    for (const ZrtRealType *member : MembersOf(chain_.back())) {
        Teller teller(ctx_, seen_);
        members.push_back(teller.Tell({member, leaf}));
    }
    return Joined(members, "; or ", members.size());
}

std::string Teller::Tell(Place place)
{
    if (place.type == nullptr)
        return "nothing: it points to no leaf";
    if (!seen_.insert(place).second)
        return TypeName(ctx_, place.type);
    chain_ = TypeChain(ctx_, place.type);
    if (chain_.back() == nullptr)
        return "typedef " +
               TypeName(ctx_, chain_.size() > 1 ? chain_[chain_.size() - 2] : nullptr) +
               ", which is not loaded";
    baseType_ = ZR_TYPE_GetBuiltInBaseType(chain_.back());
    digits_ = ZR_TYPE_GetDecimal64Fraction(chain_.back());
    leaf_ = ZR_NODE_GetRealType(place.leaf) == place.type ? place.leaf : nullptr;
    std::vector<std::string> names;
    for (size_t i = 0; i < chain_.size() && names.empty(); ++i) {
        ZR_TYPE_ScanNameValuePair(chain_[i], AppendName, &names);
        ZR_TYPE_ScanIdentRefBase(chain_[i], AppendBase, &names);
    }
    switch (baseType_) {
    case ZRT_TYPE_ENUMERATION:
        return "one of " + Joined(names, ", ", kMostNames);
    case ZRT_TYPE_BITS:
        return "any of " + Joined(names, ", ", kMostNames) + " with spaces between them";
    case ZRT_TYPE_IDENTITYREF:
        return "an identity derived from " + Joined(names, " and ", names.size());
    case ZRT_TYPE_BOOLEAN:
        return "true or false";
    case ZRT_TYPE_EMPTY:
        return "no value";
    case ZRT_TYPE_UNION:
        return TellUnion(place.leaf);
    case ZRT_TYPE_LEAFREF: {
        const char *path = LeafrefPathOf(chain_);
        return std::string("as ") + (path != nullptr ? path : "?") + ": " +
               Tell(path != nullptr ? TargetOf(ctx_, path, place.leaf) : Place{nullptr, nullptr});
    }
    case ZRT_TYPE_STRING:
    case ZRT_TYPE_BINARY:
        return TellText();
    default:
        return BoundsOf(baseType_) != nullptr ? TellNumber() : ZR_GetBuiltInTypeName(baseType_);
    }
}

} // namespace

std::vector<const ZrtRealType *> TypeChain(const ZrCtx *ctx, const ZrtRealType *type)
{
    std::vector<const ZrtRealType *> chain = {type};
    if (ZR_TYPE_GetBuiltInBaseType(type) == ZRT_TYPE_DERIVED)
        ZR_TYPE_IterRealTypeDerivedName(type, ctx, AppendLink, &chain);
    return chain;
}

std::string TypeName(const ZrCtx *ctx, const ZrtRealType *type)
{
    std::string name;
    ZR_TYPE_IterRealTypeDerivedName(type, ctx, FirstName, &name);
    return name;
}

std::string MatchedTypeName(const ZrCtx *ctx, const ZrNode *leaf, const ZrtRealType *matched)
{
    Search search{ctx, matched, {}};
    std::string name = NameOfWanted(search, {ZR_NODE_GetRealType(leaf), leaf});
    return name.empty() ? ZR_GetBuiltInTypeName(ZR_TYPE_GetBuiltInBaseType(matched)) : name;
}

std::vector<const ZrtRealType *> MembersOf(const ZrtRealType *type)
{
    std::vector<const ZrtRealType *> members;
    ZR_TYPE_ScanUnionSubType(type, AppendMember, &members);
    return members;
}

bool IsSigned(uint32_t baseType)
{
    const Bounds *bounds = BoundsOf(baseType);
    return bounds != nullptr && bounds->lowest < 0;
}

Segments SegmentsOf(const ZrtRealType *type)
{
    Segments segments;
    ZR_TYPE_ScanStartEndPair(type, AppendSegment, &segments);
    return segments;
}

std::string ExpectedValue(const ZrCtx *ctx, const ZrNode *leaf)
{
    std::set<Place> seen;
    return Teller(ctx, seen).Tell({ZR_NODE_GetRealType(leaf), leaf});
}

} // namespace tool
