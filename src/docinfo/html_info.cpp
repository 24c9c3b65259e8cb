// Tags are found from one "<" to the next, and everything else is passed over; no tree is made. Values are
// kept as bytes until the end of the head: what says how they are to be decoded may stand after them.
#include "docinfo/html_info.h"

#include "docinfo/document_head.h"
#include "docinfo/document_text.h"
#include "docinfo/html_references.h"
#include "docinfo/xml_properties.h"
#include "platform/code_page.h"
#include "text/encoding/charset_names.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tvut {

namespace {

using enum DocProperty;
using enum DocValueKind;

constexpr std::size_t mostBytes = 1024 * 1024;
constexpr std::size_t mostMetas = 4096;    // more than there may be properties
constexpr std::size_t mostAttributes = 64; // of a tag

bool IsWhite(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string Lowered(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), UtilpLowerAscii);
    return lower;
}

struct scMetaName {
    std::string_view name;
    DocProperty property;
    DocValueKind kind = text;
    DocRank plain = DocRank::better, prefixed = DocRank::lesser;
};
constexpr scMetaName metaNames[] = {
    {"title", title},
    {"author", author},
    {"creator", author, text, DocRank::lesser, DocRank::least},
    {"subject", subject},
    {"keywords", keywords},
    {"description", comments},
    {"generator", application},
    {"copyright", copyright},
    {"date", created, date},
    {"created", created, date},
    {"published_time", created, date, DocRank::lesser, DocRank::least},
    {"last-modified", modified, date},
    {"modified", modified, date},
    {"modified_time", modified, date, DocRank::lesser, DocRank::least},
};
constexpr std::string_view prefixes[] = {"dc.", "dcterms.", "og:", "article:"};

class clsHtmlHead {
  public:
    explicit clsHtmlHead(clsPagedSource& source) : head_(source, mostBytes) {}

    // Whether the first tag is one that pages begin with; what may stand before it is passed over.
    bool IsHtml();

    void Read();
    void AddTo(clsDocInfo& info);

  private:
    struct scAttribute {
        std::string name; // in lower case
        std::string value;
    };
    struct scMeta {
        std::string name, content;
    };

    bool SkipDeclaration();
    bool IsTag(std::string_view name);
    bool TakeTag();
    void TakeTitle();
    void TakeLanguage();
    void TakeMeta();
    void SkipElement(std::string_view endTag);
    std::size_t FindEnd(std::string_view mark, std::size_t after);
    std::vector<scAttribute> TakeAttributes();
    std::string TakeValue();
    void SkipWhite();

    unsigned CodePage();
    static std::optional<unsigned> CharsetIn(std::string_view contentType);
    void AddMeta(const scMeta& meta, unsigned codePage, clsDocInfo& info);

    clsDocumentHead head_;
    std::size_t at_ = 0;
    std::optional<unsigned> charset_;
    std::string title_, language_;
    std::vector<scMeta> metas_;
    const char* damage_ = nullptr;
};

bool clsHtmlHead::IsHtml() {
    for (SkipWhite(); head_.StartsWith(at_, "<!--") || head_.StartsWith(at_, "<?xml"); SkipWhite()) {
        if (!SkipDeclaration())
            return false;
    }
    return head_.StartsWith(at_, "<!doctype html") || IsTag("html") || IsTag("head") || IsTag("title") ||
           IsTag("meta");
}

void clsHtmlHead::Read() {
    while (!head_.IsAtEnd(at_ = head_.Find("<", at_))) {
        if (head_.StartsWith(at_, "</head") || IsTag("body"))
            return;
        if (!SkipDeclaration() && !TakeTag())
            ++at_;
        if (damage_)
            return;
    }
}

// Comments, DOCTYPE and processing instructions.
bool clsHtmlHead::SkipDeclaration() {
    if (head_.StartsWith(at_, "<!--"))
        at_ = FindEnd("-->", at_ + 4);
    else if (head_.StartsWith(at_, "<!") || head_.StartsWith(at_, "<?"))
        at_ = FindEnd(">", at_ + 2);
    else
        return false;
    return true;
}

bool clsHtmlHead::IsTag(std::string_view name) {
    if (!head_.StartsWith(at_, "<") || !head_.StartsWith(at_ + 1, name))
        return false;
    const char next = head_.At(at_ + 1 + name.size());
    return IsWhite(next) || next == '>' || next == '/';
}

bool clsHtmlHead::TakeTag() {
    if (IsTag("title"))
        TakeTitle();
    else if (IsTag("meta"))
        TakeMeta();
    else if (IsTag("html"))
        TakeLanguage();
    else if (IsTag("script"))
        SkipElement("</script");
    else if (IsTag("style"))
        SkipElement("</style");
    else
        return false;
    return true;
}

void clsHtmlHead::TakeTitle() {
    const std::size_t start = FindEnd(">", at_);
    at_ = head_.FindIgnoringCase("</title", start);
    if (title_.empty() && start <= at_)
        title_ = head_.Between(start, at_);
    if (head_.IsAtEnd(at_))
        damage_ = "the title does not end";
}

void clsHtmlHead::TakeLanguage() {
    at_ += 5;
    for (const scAttribute& attribute : TakeAttributes()) {
        if (attribute.name == "lang" || (attribute.name == "xml:lang" && language_.empty()))
            language_ = attribute.value;
    }
}

void clsHtmlHead::TakeMeta() {
    at_ += 5;
    std::string name, content, equivalent;
    for (scAttribute& attribute : TakeAttributes()) {
        if (attribute.name == "charset" && !charset_)
            charset_ = UtilpCodePageOfCharset(attribute.value);
        else if (attribute.name == "http-equiv")
            equivalent = Lowered(attribute.value);
        else if (attribute.name == "name" || (attribute.name == "property" && name.empty()))
            name = std::move(attribute.value);
        else if (attribute.name == "content")
            content = std::move(attribute.value);
    }
    if (equivalent == "content-type" && !charset_)
        charset_ = CharsetIn(content);
    else if (!name.empty() && !content.empty() && metas_.size() < mostMetas)
        metas_.push_back({std::move(name), std::move(content)});
}

void clsHtmlHead::SkipElement(std::string_view endTag) {
    at_ = head_.FindIgnoringCase(endTag, at_);
}

// Where the text after a mark begins.
std::size_t clsHtmlHead::FindEnd(std::string_view mark, std::size_t after) {
    const std::size_t found = head_.Find(mark, after);
    if (!head_.IsAtEnd(found))
        return found + mark.size();
    damage_ = "a tag does not end";
    return found;
}

// Up to the tag's end, which is passed.
std::vector<clsHtmlHead::scAttribute> clsHtmlHead::TakeAttributes() {
    std::vector<scAttribute> attributes;
    for (;;) {
        while (IsWhite(head_.At(at_)) || head_.At(at_) == '/')
            ++at_;
        if (head_.IsAtEnd(at_)) {
            damage_ = "a tag does not end";
            return attributes;
        }
        if (head_.At(at_) == '>') {
            ++at_;
            return attributes;
        }
        const std::size_t start = at_++; // a "=" in front belongs to the name
        while (!head_.IsAtEnd(at_) && !IsWhite(head_.At(at_)) && head_.At(at_) != '=' &&
               head_.At(at_) != '>' && head_.At(at_) != '/')
            ++at_;
        std::string name = Lowered(head_.Between(start, at_));
        SkipWhite();
        std::string value = head_.At(at_) == '=' ? TakeValue() : std::string();
        if (attributes.size() < mostAttributes)
            attributes.push_back({std::move(name), std::move(value)});
    }
}

std::string clsHtmlHead::TakeValue() {
    ++at_;
    SkipWhite();
    const char quote = head_.At(at_);
    const bool isQuoted = quote == '"' || quote == '\'';
    const std::size_t start = isQuoted ? at_ + 1 : at_;
    if (isQuoted)
        at_ = head_.Find(std::string_view(&quote, 1), start);
    while (!isQuoted && !head_.IsAtEnd(at_) && !IsWhite(head_.At(at_)) && head_.At(at_) != '>')
        ++at_;
    std::string value(head_.Between(start, at_));
    at_ += isQuoted && !head_.IsAtEnd(at_) ? 1 : 0;
    return value;
}

void clsHtmlHead::SkipWhite() {
    while (IsWhite(head_.At(at_)))
        ++at_;
}

// ---- Values -------------------------------------------------------------------------------------

std::optional<unsigned> clsHtmlHead::CharsetIn(std::string_view contentType) {
    constexpr std::string_view mark = "charset=";
    const std::string lower = Lowered(contentType);
    const std::size_t found = lower.find(mark);
    if (found == lower.npos)
        return {};
    const std::string_view name = std::string_view(lower).substr(found + mark.size());
    const std::size_t start = name.find_first_not_of(" \"'");
    if (start == name.npos)
        return {};
    return UtilpCodePageOfCharset(name.substr(start, name.find_first_of(" \"';", start) - start));
}

unsigned clsHtmlHead::CodePage() {
    if (head_.HasMark())
        return codePageUtf8;
    return charset_.value_or(UtilpLooseCodePage(head_.Between(0, at_)));
}

void clsHtmlHead::AddTo(clsDocInfo& info) {
    info.SetFormat(u"html");
    const unsigned codePage = CodePage();
    info.Add(title, UtilpResolveReferences(UtilpDecodeText(codePage, title_)), DocRank::best);
    info.Add(language, UtilpResolveReferences(UtilpDecodeText(codePage, language_)));
    for (const scMeta& meta : metas_)
        AddMeta(meta, codePage, info);
    if (damage_)
        throw clsDocDamage(damage_);
}

void clsHtmlHead::AddMeta(const scMeta& meta, unsigned codePage, clsDocInfo& info) {
    const std::u16string value = UtilpResolveReferences(UtilpDecodeText(codePage, meta.content));
    const std::string lower = Lowered(meta.name);
    std::string_view base = lower;
    for (const std::string_view prefix : prefixes)
        base.remove_prefix(base.size() == lower.size() && base.starts_with(prefix) ? prefix.size() : 0);
    const auto known = std::ranges::find(metaNames, base, &scMetaName::name);
    if (known == std::end(metaNames))
        return info.AddCustom(UtilpResolveReferences(UtilpDecodeText(codePage, meta.name)), value);
    const DocRank rank = base.size() == lower.size() ? known->plain : known->prefixed;
    if (known->kind == date)
        info.Add(known->property, UtilpReadAnyDate(value), rank);
    else
        info.Add(known->property, value, rank);
}

} // namespace

bool UtilpIsHtmlLikely(std::string_view head) noexcept {
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        return true;
    if (head.starts_with("\xEF\xBB\xBF"))
        head.remove_prefix(3);
    const auto first = std::ranges::find_if_not(head, IsWhite);
    return first != head.end() && *first == '<';
}

bool UtilpReadHtml(clsPagedSource& source, clsDocInfo& info) {
    clsHtmlHead page(source);
    if (!page.IsHtml())
        return false;
    page.Read();
    page.AddTo(info);
    return true;
}

} // namespace tvut
