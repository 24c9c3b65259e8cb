// The document stays in memory as UTF-8, and all names and values are views of it: reading allocates nothing
// but the list of open elements. UTF-16 becomes UTF-8 first. An open element is the place of its name, which
// the end tag is held against.
#include "text/xml/xml_reader.h"

#include "text/encoding/utf8.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::string_view xmlSpace = "http://www.w3.org/XML/1998/namespace";

constexpr std::size_t longestReference = 12; // bytes, from & to ;

constexpr bool IsWhite(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}
constexpr bool EndsName(char c) {
    return IsWhite(c) || c == '/' || c == '>' || c == '<' || c == '=' || c == '"' || c == '\'' || c == '\0';
}

void Require(bool fine, const char* otherwise) {
    if (!fine)
        throw clsXmlError(otherwise);
}

constexpr std::size_t blockUnits = 2048;

// UTF-16 as UTF-8, in blocks: units(at, most) is a view of that many units from a place on, at most.
template <class Units>
std::string FromUtf16(std::size_t length, Units units) {
    std::string text;
    text.reserve(length + blockUnits * longestUtf8);
    char room[blockUnits * longestUtf8];
    for (std::size_t at = 0; at < length;) {
        std::u16string_view block = units(at, std::min(blockUnits, length - at));
        if (block.size() > 1 && UtilpIsHighSurrogate(block.back()))
            block.remove_suffix(1); // comes again with its other half
        text.append(room, UtilpEncodeUtf8(block, room));
        at += block.size();
    }
    return text;
}

std::string FromUtf16Bytes(std::string_view bytes, bool isBigEndian) {
    char16_t block[blockUnits];
    return FromUtf16(bytes.size() / 2, [&](std::size_t at, std::size_t count) {
        for (std::size_t unit = 0; unit < count; ++unit) {
            const auto first = static_cast<unsigned char>(bytes[(at + unit) * 2]);
            const auto second = static_cast<unsigned char>(bytes[(at + unit) * 2 + 1]);
            block[unit] = static_cast<char16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
        }
        return std::u16string_view(block, count);
    });
}

void MakeUtf8(std::string& document) {
    const std::string_view bytes = document;
    if (bytes.starts_with("\xEF\xBB\xBF"))
        document.erase(0, 3);
    else if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        document = FromUtf16Bytes(bytes.substr(2), bytes[0] == '\xFE');
    else if (bytes.starts_with(std::string_view("<\0", 2)) || bytes.starts_with(std::string_view("\0<", 2)))
        document = FromUtf16Bytes(bytes, bytes[0] == '\0');
}

void AppendCharacter(std::u16string& text, std::uint32_t character) {
    if (character >= 0x10000) {
        text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    } else {
        text += static_cast<char16_t>(character);
    }
}

// What a reference between & and ; stands for; 0 when that is nothing.
std::uint32_t CharacterOf(std::string_view name) {
    constexpr std::pair<std::string_view, char> named[] = {
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& [known, character] : named) {
        if (name == known)
            return static_cast<unsigned char>(character);
    }
    if (!name.starts_with('#'))
        return 0;
    const bool isHex = name.starts_with("#x");
    std::uint32_t number = 0;
    for (const char c : name.substr(isHex ? 2 : 1)) {
        const char lower = static_cast<char>(c | 0x20);
        const bool isLetter = isHex && lower >= 'a' && lower <= 'f';
        if (!isLetter && (c < '0' || c > '9'))
            return 0;
        number =
            number * (isHex ? 16 : 10) + static_cast<std::uint32_t>(isLetter ? lower - 'a' + 10 : c - '0');
        if (number > 0x10FFFF)
            return 0;
    }
    return number;
}

// A piece of text ends with a whole character, reference or line end.
std::size_t PieceLength(std::string_view text) {
    constexpr std::size_t most = 16 * 1024;
    if (text.size() <= most)
        return text.size();
    const std::size_t reference = text.rfind('&', most);
    if (reference != text.npos && reference + longestReference > most)
        return reference;
    std::size_t length = most;
    while (length > most - longestReference && ((text[length] & 0xC0) == 0x80 || text[length - 1] == '\r'))
        --length;
    return length;
}

void AppendUtf8(std::u16string& text, std::string_view bytes) {
    const std::size_t before = text.size();
    text.resize(before + bytes.size());
    text.resize(before + UtilpDecodeUtf8(bytes, text.data() + before));
}

} // namespace

clsXmlReader::clsXmlReader(std::string document) : document_(std::move(document)) {
    MakeUtf8(document_);
}

clsXmlReader::clsXmlReader(std::u16string_view document)
    : document_(FromUtf16(document.size(),
                          [&](std::size_t at, std::size_t count) { return document.substr(at, count); })) {}

// ---- Events -------------------------------------------------------------------------------------

clsXmlReader::Event clsXmlReader::Next() {
    if (!textLeft_.empty())
        return TakeText(textLeft_, textIsRaw_);
    if (isEmpty_) {
        isEmpty_ = false;
        return StartEnded();
    }
    if (hasEnded_) {
        hasEnded_ = false;
        while (!namespaces_.empty() && namespaces_.back().depth > open_.size())
            namespaces_.pop_back();
    }
    while (at_ < document_.size()) {
        if (document_[at_] == '<') {
            if (const Event event = TakeMarkup(); event != Event::finished)
                return event;
            continue;
        }
        const std::size_t end = std::min(document_.find('<', at_), document_.size());
        const std::string_view text = std::string_view(document_).substr(at_, end - at_);
        at_ = end;
        if (!open_.empty())
            return TakeText(text, false);
        Require(std::ranges::all_of(text, IsWhite), "text outside of the root element");
    }
    Require(open_.empty(), "an element does not end");
    return Event::finished;
}

clsXmlReader::Event clsXmlReader::TakeText(std::string_view text, bool isRaw) {
    const std::size_t length = PieceLength(text);
    text_ = text.substr(0, length);
    textLeft_ = text.substr(length);
    textIsRaw_ = isRaw;
    return Event::text;
}

// Finished stands for what is passed over.
clsXmlReader::Event clsXmlReader::TakeMarkup() {
    constexpr std::string_view cdata = "<![CDATA[";
    const std::string_view rest = std::string_view(document_).substr(at_);
    if (rest.starts_with("</"))
        return End();
    if (rest.starts_with("<!--")) {
        const std::size_t start = at_ += 4;
        SkipTo("-->");
        text_ = std::string_view(document_).substr(start, at_ - 3 - start);
        if (tellsComments_)
            return Event::comment;
    } else if (rest.starts_with(cdata)) {
        const std::size_t start = at_ += cdata.size();
        SkipTo("]]>");
        if (!open_.empty())
            return TakeText(std::string_view(document_).substr(start, at_ - 3 - start), true);
    } else if (rest.starts_with("<?")) {
        SkipTo("?>");
    } else if (rest.starts_with("<!")) {
        SkipDoctype();
    } else {
        return Start();
    }
    return Event::finished;
}

clsXmlReader::Event clsXmlReader::Start() {
    const std::size_t nameAt = ++at_;
    const std::string_view name = TakeName();
    Require(!name.empty(), "a tag without a name");
    Require(open_.size() < mostLevels, "elements are nested too deeply");
    open_.push_back(static_cast<std::uint32_t>(nameAt));
    TakeAttributes();
    isEmpty_ = Peek() == '/';
    at_ += isEmpty_ ? 1 : 0;
    Require(Peek() == '>', "a tag does not end");
    ++at_;
    Split(name);
    return Event::start;
}

// The name is still that of the start.
clsXmlReader::Event clsXmlReader::StartEnded() {
    open_.pop_back();
    attributes_.clear();
    hasEnded_ = true;
    return Event::end;
}

clsXmlReader::Event clsXmlReader::End() {
    at_ += 2;
    const std::string_view name = TakeName();
    Require(!open_.empty(), "an end without a start");
    const std::string_view started = std::string_view(document_).substr(open_.back());
    Require(started.starts_with(name) && EndsName(started[name.size()]),
            "an element ends under another name");
    SkipWhite();
    Require(Peek() == '>', "a tag does not end");
    ++at_;
    Split(name);
    return StartEnded();
}

void clsXmlReader::TakeAttributes() {
    attributes_.clear();
    for (SkipWhite(); !EndsName(Peek()); SkipWhite()) {
        Require(attributes_.size() < mostAttributes, "too many attributes");
        const std::string_view name = TakeName();
        SkipWhite();
        Require(Peek() == '=', "an attribute without a value");
        ++at_;
        SkipWhite();
        const char quote = Peek();
        Require(quote == '"' || quote == '\'', "an attribute without a value");
        const std::size_t start = ++at_;
        SkipTo(std::string_view(&quote, 1));
        const std::string_view value = std::string_view(document_).substr(start, at_ - 1 - start);
        Require(value.size() <= longestAttribute, "an attribute is too long");
        const std::size_t colon = name.find(':');
        const bool hasPrefix = colon != name.npos;
        attributes_.push_back(
            {hasPrefix ? name.substr(0, colon) : "", hasPrefix ? name.substr(colon + 1) : name, value});
        if (name == "xmlns" || name.starts_with("xmlns:"))
            Declare(hasPrefix ? name.substr(colon + 1) : "", value);
    }
}

void clsXmlReader::Declare(std::string_view prefix, std::string_view uri) {
    Require(namespaces_.size() < mostNamespaces, "too many namespaces");
    namespaces_.push_back({open_.size(), prefix, uri});
}

// ---- Pieces -------------------------------------------------------------------------------------

void clsXmlReader::SkipTo(std::string_view mark) {
    const std::size_t found = document_.find(mark, at_);
    Require(found != document_.npos, "markup does not end");
    at_ = found + mark.size();
}

// Declarations within brackets hold quoted texts, comments and instructions, which may hold anything.
void clsXmlReader::SkipDoctype() {
    bool isInside = false;
    for (at_ += 2; at_ < document_.size(); ++at_) {
        const std::string_view rest = std::string_view(document_).substr(at_);
        const char c = rest.front();
        if (c == '"' || c == '\'') {
            ++at_;
            SkipTo(rest.substr(0, 1));
            --at_;
        } else if (rest.starts_with("<!--") || rest.starts_with("<?")) {
            SkipTo(rest.starts_with("<?") ? "?>" : "-->");
            --at_;
        } else if (c == '[' || c == ']') {
            isInside = c == '[';
        } else if (c == '>' && !isInside) {
            ++at_;
            return;
        }
    }
    throw clsXmlError("markup does not end");
}

void clsXmlReader::SkipWhite() {
    while (at_ < document_.size() && IsWhite(document_[at_]))
        ++at_;
}

std::string_view clsXmlReader::TakeName() {
    const std::size_t start = at_;
    while (at_ < document_.size() && !EndsName(document_[at_]))
        ++at_;
    return std::string_view(document_).substr(start, at_ - start);
}

void clsXmlReader::Split(std::string_view whole) {
    const std::size_t colon = whole.find(':');
    prefix_ = colon == whole.npos ? std::string_view() : whole.substr(0, colon);
    name_ = colon == whole.npos ? whole : whole.substr(colon + 1);
}

// An attribute without a prefix is in no namespace; an element is in the one that is declared for none.
std::string_view clsXmlReader::SpaceOf(std::string_view prefix, bool isAttribute) const {
    if (isAttribute && prefix.empty())
        return {};
    if (prefix == "xml")
        return xmlSpace;
    for (auto space = namespaces_.rbegin(); space != namespaces_.rend(); ++space) {
        if (space->prefix == prefix)
            return space->uri;
    }
    return {};
}

// ---- Values -------------------------------------------------------------------------------------

std::u16string clsXmlReader::ValueOf(const scAttribute& attribute) const {
    return Decode(attribute.rawValue, false);
}

std::u16string clsXmlReader::Attribute(std::string_view space, std::string_view name) const {
    const auto found = std::ranges::find_if(attributes_, [&](const scAttribute& attribute) {
        return attribute.name == name && SpaceOf(attribute) == space;
    });
    return found != attributes_.end() ? ValueOf(*found) : std::u16string();
}

std::u16string clsXmlReader::Text() const {
    return Decode(text_, textIsRaw_);
}

std::u16string clsXmlReader::ReadText(std::size_t most) {
    std::u16string text;
    const std::size_t depth = open_.size();
    for (Event event = Next(); event != Event::end || open_.size() >= depth; event = Next()) {
        if (event == Event::text && text.size() < most)
            text += Text();
    }
    return text;
}

// CR LF and CR are line ends, too.
std::u16string clsXmlReader::Decode(std::string_view raw, bool isRaw) const {
    std::u16string text;
    while (!raw.empty()) {
        const std::size_t plain = std::min(raw.find_first_of(isRaw ? "\r" : "\r&"), raw.size());
        AppendUtf8(text, raw.substr(0, plain));
        raw.remove_prefix(plain);
        if (raw.empty())
            break;
        const std::size_t end = raw.front() == '&' ? raw.substr(0, longestReference).find(';') : raw.npos;
        const std::uint32_t character = end != raw.npos ? CharacterOf(raw.substr(1, end - 1)) : 0;
        if (raw.front() == '\r') {
            text += u'\n';
            raw.remove_prefix(raw.starts_with("\r\n") ? 2 : 1);
        } else if (character != 0) {
            AppendCharacter(text, character);
            raw.remove_prefix(end + 1);
        } else {
            text += u'&';
            raw.remove_prefix(1);
        }
    }
    return text;
}

} // namespace tvut
