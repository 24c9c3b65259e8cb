// Takes a page apart: texts, tags, and what only scripts and styles understand.
//
// The syntax is that of HTML as browsers read it (https://html.spec.whatwg.org, "Tokenization"), so that any
// text is a page. Where a browser would drop the rest of the page, because a comment, a title or a quotation
// mark is never closed, less is taken for it: a text that shows a tag too many is better than one that has
// lost a chapter.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tool::html {

enum class Token {
    text,         // with references
    literal,      // of CDATA: a & is itself
    preformatted, // of <xmp> and <plaintext>: a & is itself
    title,        // of these elements, with references
    textArea,
    hidden, // of scripts, styles and frames
    start,
    end,
};

class clsTokenizer {
  public:
    explicit clsTokenizer(std::u16string_view page);

    // Whether there is one more. Costs are proportional to what is read.
    bool Next();
    Token Kind() const { return kind_; }
    std::u16string_view Text() const { return text_; } // of a tag, its name
    std::u16string_view Attributes() const { return attributes_; }

  private:
    enum class Raw { xmp, title, textArea, script, style, iframe, noEmbed, plainText, none };
    struct scRawElement;
    static const std::array<scRawElement, 8> rawElements;

    bool Contents();
    bool IsMarkup(std::size_t at) const;
    std::size_t MarkupFrom(std::size_t at) const;
    bool Markup();
    void Tag();
    std::size_t EndOfTag(std::size_t attributes);
    bool Data();
    void Declaration();
    void SkipComment();
    std::size_t EndOfContents(std::u16string_view name) const;
    bool Take(Token kind, std::size_t start, std::size_t end);

    std::u16string_view page_;
    std::size_t at_ = 0;
    std::size_t lastClose_;       // of the page's >; npos when there is none
    Raw raw_ = Raw::none;         // whose contents come next
    bool hasCommentEnds_ = true;  // after here
    bool hasDataEnds_ = true;     // of CDATA, too
    bool hasClosedQuotes_ = true; // quotation marks of tags can be relied on
    std::array<bool, 8> hasEnds_; // raw elements whose end tag may be found yet

    Token kind_ = Token::text;
    std::u16string_view text_;
    std::u16string_view attributes_;
};

} // namespace tool::html
