// Reads XML (1.0, with namespaces) piece by piece: elements, attributes, text.
//
// Meant for documents that nobody vouches for. A DOCTYPE is passed over and declares nothing: a reference to
// an entity other than the five of XML stays in the text as it is. Depth costs four bytes a level, nothing
// recurses.
#pragma once

#include "platform/exception.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

// What is not well-formed, or beyond a bound. The words are a literal.
class clsXmlError final : public clsException {
  public:
    explicit clsXmlError(const char* words) noexcept : clsException(words) {}
};

class clsXmlReader {
  public:
    static constexpr std::size_t mostLevels = 256 * 1024;
    static constexpr std::size_t mostAttributes = 1024;          // of an element
    static constexpr std::size_t mostNamespaces = 256;           // in force at a place
    static constexpr std::size_t longestAttribute = 1024 * 1024; // bytes
    static constexpr std::size_t allUnits = SIZE_MAX;

    enum class Event { start, end, text, comment, finished };

    struct scAttribute {
        std::string_view prefix, name; // UTF-8
        std::string_view rawValue;     // references and all
    };

    // Takes a whole document, UTF-8 or UTF-16. All calls throw clsXmlError and std::bad_alloc.
    explicit clsXmlReader(std::string document);
    explicit clsXmlReader(std::u16string_view document);
    clsXmlReader(const clsXmlReader&) = delete;
    clsXmlReader& operator=(const clsXmlReader&) = delete;

    // Comments are passed over unless they are asked for.
    void TellComments() { tellsComments_ = true; }

    // An element that is empty starts and ends, too. Text may come in several pieces.
    Event Next();

    // The document, UTF-8, and how much of it has been read.
    std::string_view Document() const { return document_; }
    std::size_t Position() const { return at_; }

    // Of the element that has started or ended.
    std::string_view Name() const { return name_; }                    // without prefix
    std::string_view Space() const { return SpaceOf(prefix_, false); } // the namespace's URI, empty for none
    bool Is(std::string_view space, std::string_view name) const { return name == name_ && space == Space(); }
    std::size_t Depth() const { return open_.size(); } // 1 for the root

    // Of the element that has started, until the next event.
    std::span<const scAttribute> Attributes() const { return attributes_; }
    std::string_view SpaceOf(const scAttribute& attribute) const { return SpaceOf(attribute.prefix, true); }
    std::u16string ValueOf(const scAttribute& attribute) const;
    // The value of an attribute, empty where there is none.
    std::u16string Attribute(std::string_view space, std::string_view name) const;

    // The piece of text.
    std::u16string Text() const;

    // The piece of text as it stands in the document, or the comment; and whether an ampersand in it is one.
    std::string_view RawText() const { return text_; }
    bool IsLiteral() const { return textIsRaw_; }

    // The text of the element that has started, and of all in it: pieces that come after that many units
    // are left out. The element has ended then.
    std::u16string ReadText(std::size_t most = allUnits);

  private:
    struct scNamespace {
        std::size_t depth;
        std::string_view prefix, uri;
    };

    Event TakeText(std::string_view text, bool isRaw);
    Event TakeMarkup();
    Event Start();
    Event StartEnded();
    Event End();
    void TakeAttributes();
    void Declare(std::string_view prefix, std::string_view uri);
    void SkipTo(std::string_view mark);
    void SkipDoctype();
    void SkipWhite();
    std::string_view TakeName();
    void Split(std::string_view whole);
    char Peek() const { return at_ < document_.size() ? document_[at_] : '\0'; }
    std::string_view SpaceOf(std::string_view prefix, bool isAttribute) const;
    std::u16string Decode(std::string_view raw, bool isRaw) const;

    std::string document_; // UTF-8
    std::size_t at_ = 0;
    std::vector<std::uint32_t> open_; // where the names of the elements begin that are open
    std::vector<scNamespace> namespaces_;
    std::vector<scAttribute> attributes_;
    std::string_view prefix_, name_, text_;
    std::string_view textLeft_; // what follows text_ in pieces of its own
    bool textIsRaw_ = false;
    bool tellsComments_ = false;
    bool isEmpty_ = false;  // the element that has started has ended with it
    bool hasEnded_ = false; // the last event was an end: what it declared is still in force
};

} // namespace tvut
