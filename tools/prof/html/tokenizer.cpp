// Whatever is looked for and not found is remembered as not being there, so that no part of a page is looked
// through a second time for the same thing.
#include "tokenizer.h"

#include "attributes.h"
#include "characters.h"

namespace tool::html {

namespace {

constexpr std::size_t none = std::u16string_view::npos;

bool EndsName(char16_t c) {
    return IsBlank(c) || c == u'/' || c == u'>';
}

} // namespace

struct clsTokenizer::scRawElement {
    std::u16string_view name;
    Token kind;
    bool toTheEnd; // without an end tag its contents are the rest of the page; else it has none
};

// In the order of Raw.
const std::array<clsTokenizer::scRawElement, 8> clsTokenizer::rawElements{{
    {u"xmp", Token::preformatted, false},
    {u"title", Token::title, false},
    {u"textarea", Token::textArea, false},
    {u"script", Token::hidden, true},
    {u"style", Token::hidden, true},
    {u"iframe", Token::hidden, false},
    {u"noembed", Token::hidden, false},
    {u"plaintext", Token::preformatted, true},
}};

clsTokenizer::clsTokenizer(std::u16string_view page) : page_(page), lastClose_(page.rfind(u'>')) {
    hasEnds_.fill(true);
}

bool clsTokenizer::Next() {
    if (raw_ != Raw::none && Contents())
        return true;
    while (at_ < page_.size()) {
        const std::size_t markup = MarkupFrom(at_);
        if (markup > at_)
            return Take(Token::text, at_, markup);
        if (Markup())
            return true;
    }
    return false;
}

bool clsTokenizer::Take(Token kind, std::size_t start, std::size_t end) {
    kind_ = kind;
    text_ = page_.substr(start, end - start);
    at_ = end;
    return true;
}

// The contents of an element that holds no tags.
bool clsTokenizer::Contents() {
    const auto number = static_cast<std::size_t>(raw_);
    const scRawElement& element = rawElements[number];
    raw_ = Raw::none;
    std::size_t end = hasEnds_[number] ? EndOfContents(element.name) : none;
    hasEnds_[number] = end != none;
    if (end == none && !element.toTheEnd)
        return false;
    return Take(element.kind, at_, std::min(end, page_.size()));
}

std::size_t clsTokenizer::EndOfContents(std::u16string_view name) const {
    for (std::size_t at = at_; (at = page_.find(u"</", at)) != none; at += 2) {
        const std::size_t after = at + 2 + name.size();
        if (after < page_.size() && IsSame(page_.substr(at + 2, name.size()), name) && EndsName(page_[after]))
            return at;
    }
    return none;
}

// A < that nothing closes is a text.
bool clsTokenizer::IsMarkup(std::size_t at) const {
    if (at + 1 >= page_.size() || lastClose_ == none || at > lastClose_)
        return false;
    const char16_t c = page_[at + 1];
    return IsLetter(c) || c == u'!' || c == u'?' || c == u'/';
}

std::size_t clsTokenizer::MarkupFrom(std::size_t at) const {
    while ((at = page_.find(u'<', at)) != none && !IsMarkup(at))
        ++at;
    return std::min(at, page_.size());
}

// Whether it is something to tell of.
bool clsTokenizer::Markup() {
    const char16_t c = page_[at_ + 1];
    if (IsLetter(c) || (c == u'/' && IsLetter(page_[at_ + 2]))) { // there is a > further on
        Tag();
        return true;
    }
    if (Data())
        return true;
    Declaration();
    return false;
}

// <![CDATA[text]]>
bool clsTokenizer::Data() {
    constexpr std::u16string_view start = u"<![CDATA[";
    if (!hasDataEnds_ || !page_.substr(at_).starts_with(start))
        return false;
    const std::size_t end = page_.find(u"]]>", at_);
    hasDataEnds_ = end != none;
    if (!hasDataEnds_)
        return false;
    Take(Token::literal, at_ + start.size(), end);
    at_ += 3;
    return true;
}

void clsTokenizer::Tag() {
    kind_ = page_[at_ + 1] == u'/' ? Token::end : Token::start;
    const std::size_t name = at_ + (kind_ == Token::end ? 2 : 1);
    std::size_t nameEnd = name;
    while (!EndsName(page_[nameEnd])) // there is a > further on
        ++nameEnd;
    const std::size_t end = EndOfTag(nameEnd);
    text_ = page_.substr(name, nameEnd - name);
    attributes_ = page_.substr(nameEnd, end - nameEnd);
    at_ = end + 1;
    if (kind_ == Token::end || attributes_.ends_with(u'/')) // <script src="x"/> of XHTML
        return;
    const auto raw = std::ranges::find_if(
        rawElements, [this](const scRawElement& element) { return IsSame(text_, element.name); });
    raw_ = static_cast<Raw>(raw - rawElements.begin());
}

// A quotation mark that is never closed takes no more than the tag that it stands in.
std::size_t clsTokenizer::EndOfTag(std::size_t attributes) {
    if (hasClosedQuotes_) {
        clsAttributeWalk walk{page_.substr(attributes)};
        while (walk.Next())
            ;
        if (attributes + walk.At() < page_.size())
            return attributes + walk.At();
        hasClosedQuotes_ = false;
    }
    return page_.find(u'>', attributes);
}

void clsTokenizer::Declaration() {
    if (page_.substr(at_).starts_with(u"<!--") && hasCommentEnds_)
        SkipComment();
    else
        at_ = page_.find(u'>', at_) + 1;
}

void clsTokenizer::SkipComment() {
    const std::u16string_view rest = page_.substr(at_ + 4);
    if (rest.starts_with(u'>') || rest.starts_with(u"->")) {
        at_ = page_.find(u'>', at_) + 1;
        return;
    }
    const std::size_t end = page_.find(u"--", at_ + 4);
    std::size_t close = end;
    while (close != none && page_[std::min(close + 2, page_.size() - 1)] != u'>' &&
           !page_.substr(close + 2).starts_with(u"!>"))
        close = page_.find(u"--", close + 1);
    hasCommentEnds_ = close != none;
    at_ = hasCommentEnds_ ? page_.find(u'>', close) + 1 : page_.find(u'>', at_) + 1;
}

} // namespace tool::html
