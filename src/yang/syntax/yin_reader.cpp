#include "yang/syntax/yin_reader.h"

#include <charconv>
#include <string>
#include <vector>

#include "yang/syntax/parser.h"

namespace zr::yang {

namespace {

constexpr std::string_view kYinNamespace = "urn:ietf:params:xml:ns:yang:yin:1";
constexpr size_t kPrefixLimit = 1000;
constexpr std::string_view kBlanks = " \t\r\n";

struct Entity {
    std::string_view name, text;
};
constexpr Entity kEntities[] = {
    {"lt", "<"}, {"gt", ">"}, {"amp", "&"}, {"quot", "\""}, {"apos", "'"},
};

// What is passed over as a whole.
struct Passed {
    std::string_view start, end;
};
constexpr Passed kPassed[] = {{"<!--", "-->"}, {"<?", "?>"}};
constexpr Passed kCdata = {"<![CDATA[", "]]>"};

void AppendUtf8(std::pmr::string &out, uint32_t code)
{
    auto add = [&](uint32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80)
        return add(code);
    if (code < 0x800) {
        add(0xC0 | code >> 6);
    } else if (code < 0x10000) {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
    } else {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

// The part of XML 1.0 that has no document type: elements, attributes, name spaces, characters.
class Reader {
public:
    Reader(Source &source, Reports &reports, Arena &arena)
        : source_(source), reports_(reports), arena_(arena), open_(arena.resource()),
          prefixes_(arena.resource()), attributes_(arena.resource()), text_(arena.resource())
    {
    }

    Statement *Run()
    {
        if (source_.text.starts_with("\xEF\xBB\xBF"))
            at_ = 3;
        while (!isFailed_ && at_ < source_.text.size())
            ReadPiece();
        if (!isFailed_ && (root_ == nullptr || !open_.empty()))
            Fail("an unexpected end");
        return isFailed_ ? nullptr : root_;
    }

private:
    struct Open {
        std::string_view tag;
        Statement *statement, *last; // null for the argument of the statement around
        size_t prefixes;             // how many were known before
    };
    struct Attribute {
        std::string_view name, value;
    };

    std::string_view Rest() const { return source_.text.substr(at_); }

    void Fail(std::string_view what)
    {
        if (!isFailed_)
            reports_.Error(PlaceOf(source_, std::min(at_, source_.text.size())),
                           ZR_YANG_CODE_SYNTAX, {"bad XML: ", what});
        isFailed_ = true;
    }

    // The text up to `end`, behind which the reading goes on.
    std::string_view TakeUntil(std::string_view end)
    {
        size_t length = Rest().find(end);
        if (length == std::string_view::npos) {
            Fail("an unexpected end");
            return {};
        }
        std::string_view taken = Rest().substr(0, length);
        at_ += length + end.size();
        return taken;
    }

    std::string_view TakeName()
    {
        std::string_view name = Rest().substr(0, Rest().find_first_of(" \t\r\n/=<>\"'"));
        if (name.empty())
            Fail("a name is expected");
        at_ += name.size();
        return name;
    }

    bool TakeIf(std::string_view text)
    {
        bool isNext = Rest().starts_with(text);
        at_ += isNext ? text.size() : 0;
        return isNext;
    }

    void SkipBlanks()
    {
        at_ = std::min(source_.text.find_first_not_of(kBlanks, at_), source_.text.size());
    }

    void ReadPiece()
    {
        for (const Passed &passed : kPassed)
            if (TakeIf(passed.start)) {
                TakeUntil(passed.end);
                return;
            }
        if (TakeIf(kCdata.start))
            return AddText(TakeUntil(kCdata.end));
        if (TakeIf("</"))
            return ReadEndTag();
        if (Rest().starts_with("<!"))
            return Fail("a document type");
        if (Rest().starts_with('<'))
            return ReadStartTag();
        std::string_view text = Rest().substr(0, Rest().find('<'));
        AddText(Decoded(text, false));
        at_ += text.size();
    }

    void AddText(std::string_view text)
    {
        if (!open_.empty() && open_.back().statement == nullptr)
            text_ += text;
        else if (text.find_first_not_of(kBlanks) != std::string_view::npos)
            Fail("a text between elements");
    }

    // With the characters that references stand for; in an attribute, a line break is a blank.
    std::string_view Decoded(std::string_view text, bool isAttribute)
    {
        if (text.find_first_of(isAttribute ? "&\t\r\n" : "&") == std::string_view::npos)
            return text;
        std::pmr::string decoded(arena_.resource());
        for (size_t i = 0; i < text.size(); ++i) {
            if (text[i] == '&') {
                size_t end = text.find(';', i);
                if (end == std::string_view::npos ||
                    !AppendReference(text.substr(i + 1, end - i - 1), decoded))
                    Fail("an unknown reference");
                i = std::min(end, text.size() - 1);
            } else {
                bool isBlank = isAttribute && kBlanks.find(text[i]) != std::string_view::npos;
                decoded += isBlank ? ' ' : text[i];
            }
        }
        return arena_.Copy(decoded);
    }

    static bool AppendReference(std::string_view name, std::pmr::string &out)
    {
        for (const Entity &entity : kEntities)
            if (entity.name == name) {
                out += entity.text;
                return true;
            }
        if (!name.starts_with('#'))
            return false;
        bool isHex = name.starts_with("#x");
        name.remove_prefix(isHex ? 2 : 1);
        uint32_t code = 0;
        auto [end, error] =
            std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
        bool isCharacter = error == std::errc() && end == name.data() + name.size() && code != 0 &&
                           code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        if (isCharacter)
            AppendUtf8(out, code);
        return isCharacter;
    }

    void ReadAttributes()
    {
        attributes_.clear();
        for (SkipBlanks(); !isFailed_ && !Rest().starts_with('>') && !Rest().starts_with("/>");
             SkipBlanks()) {
            std::string_view name = TakeName();
            SkipBlanks();
            if (!TakeIf("="))
                return Fail("an attribute without a value");
            SkipBlanks();
            bool isSingle = Rest().starts_with('\'');
            if (!TakeIf(isSingle ? "'" : "\""))
                return Fail("an attribute without quotes");
            std::string_view value = Decoded(TakeUntil(isSingle ? "'" : "\""), true);
            if (name == "xmlns" || name.starts_with("xmlns:"))
                prefixes_.push_back(
                    {SplitName(name).prefix.empty() ? "" : SplitName(name).name, value});
            else
                attributes_.push_back({name, value});
        }
    }

    bool IsYin(std::string_view tag) const
    {
        std::string_view prefix = SplitName(tag).prefix;
        for (size_t i = prefixes_.size(); i > 0; --i)
            if (prefixes_[i - 1].name == prefix)
                return prefixes_[i - 1].value == kYinNamespace;
        return false;
    }

    void ReadStartTag()
    {
        size_t start = at_++;
        std::string_view tag = TakeName();
        size_t prefixes = prefixes_.size();
        ReadAttributes();
        if (isFailed_)
            return;
        if (open_.empty() ? root_ != nullptr : open_.back().statement == nullptr) {
            at_ = start;
            return Fail("an unexpected element");
        }
        bool isEmpty = TakeIf("/");
        if (!TakeIf(">"))
            return Fail("\">\" is expected");
        if (prefixes_.size() > kPrefixLimit)
            return Fail("more than 1,000 name spaces");
        if (open_.size() > kDepthLimit)
            return Fail("elements stand more than 200 deep in each other");
        open_.push_back({tag, nullptr, nullptr, prefixes});
        if (!IsArgument(tag))
            open_.back().statement = MakeStatement(tag, start);
        if (isEmpty)
            CloseElement();
    }

    // Whether an element is the argument of the statement in which it stands.
    bool IsArgument(std::string_view tag) const
    {
        if (open_.size() < 2 || !IsYin(tag))
            return false;
        const Statement &around = *open_[open_.size() - 2].statement;
        if (around.hasArgument || around.IsExtension())
            return false;
        const KeywordInfo &info = InfoOf(around.keyword);
        return info.isElement && info.yinArgument == SplitName(tag).name;
    }

    Statement *MakeStatement(std::string_view tag, size_t start)
    {
        auto *statement = arena_.New<Statement>();
        Place place = NextPlace(start);
        statement->source = &source_;
        statement->line = place.line;
        statement->column = place.column;
        statement->word = IsYin(tag) ? SplitName(tag).name : tag;
        statement->keyword = IsYin(tag) ? FindKeyword(statement->word) : Keyword::Unknown;
        statement->isFaulty = statement->IsExtension() && SplitName(statement->word).prefix.empty();
        std::string_view wanted =
            statement->IsExtension() ? std::string_view() : InfoOf(statement->keyword).yinArgument;
        for (const Attribute &attribute : attributes_)
            if (statement->IsExtension() ? SplitName(attribute.name).prefix.empty()
                                         : attribute.name == wanted) {
                statement->argument = attribute.value;
                statement->hasArgument = true;
            }
        Append(*statement);
        return statement;
    }

    // Elements come in the order of their places, so that no character is counted twice.
    Place NextPlace(size_t offset)
    {
        for (; counted_ < offset; ++counted_) {
            bool isEnd = source_.text[counted_] == '\n';
            line_ += isEnd;
            column_ = isEnd ? 1 : column_ + CountCharacters(source_.text.substr(counted_, 1));
        }
        return {&source_, line_, column_};
    }

    void Append(Statement &statement)
    {
        if (open_.size() < 2) {
            root_ = &statement;
            return;
        }
        Open &around = open_[open_.size() - 2];
        statement.parent = around.statement;
        (around.last != nullptr ? around.last->next : around.statement->first) = &statement;
        around.last = &statement;
        if (statement.keyword == Keyword::Typedef || statement.keyword == Keyword::Grouping)
            around.statement->hasDefinitions = true;
    }

    void ReadEndTag()
    {
        std::string_view tag = TakeName();
        SkipBlanks();
        if (open_.empty() || open_.back().tag != tag || !TakeIf(">"))
            return Fail("an end tag that ends nothing");
        CloseElement();
    }

    void CloseElement()
    {
        if (open_.back().statement == nullptr) {
            Statement &around = *open_[open_.size() - 2].statement;
            around.argument = arena_.Copy(text_);
            around.hasArgument = true;
            text_.clear();
        }
        prefixes_.resize(open_.back().prefixes);
        open_.pop_back();
    }

    Source &source_;
    Reports &reports_;
    Arena &arena_;
    size_t at_ = 0;
    bool isFailed_ = false;
    Statement *root_ = nullptr;
    std::pmr::vector<Open> open_;
    std::pmr::vector<Attribute> prefixes_; // of name spaces, "" for the default one
    std::pmr::vector<Attribute> attributes_;
    std::pmr::string text_; // of the argument that is open
    size_t counted_ = 0;    // bytes before the last place
    uint32_t line_ = 1, column_ = 1;
};

} // namespace

Statement *ReadYin(Source &source, Reports &reports, Arena &arena)
{
    TextFault fault = FindTextFault(source.text);
    if (fault.what != nullptr) {
        reports.Error(PlaceOf(source, fault.offset), ZR_YANG_CODE_ENCODING, {fault.what});
        return nullptr;
    }
    return Reader(source, reports, arena).Run();
}

} // namespace zr::yang
