// Reads the XML form as XML: other programs lay elements out anew, write references as what they stand for,
// or leave our line ends and tabs as the comments that their entities hold.
//
// What stands as our writer lays it out goes to the reader of lines, which is faster, and reads it the same
// as ever. White space between elements is layout; within an item all text is the value. A value's line ends
// become CR LF, as they do in the form itself, because no XML program keeps apart which kind they were.
#include "prof/formats/form.h"
#include "prof/formats/tree_builder.h"
#include "prof/formats/xml_layout.h"
#include "prof/formats/xml_tags.h"
#include "prof/formats/xml_text.h"
#include "text/encoding/utf8.h"
#include "text/xml/xml_reader.h"

#include <algorithm>
#include <optional>
#include <string>

namespace tvut {

namespace {

constexpr std::u16string_view badFormat = u"prof::xml: bad format";
constexpr std::u16string_view notWellFormed = u"prof::xml: not well-formed: ";

// The number of lines that begin before a place, without blank ones.
std::uint32_t LineNumber(std::string_view text) {
    std::uint32_t lines = 0;
    for (std::size_t at = 0; (at = text.find_first_not_of(" \t\r\n", at)) != text.npos;) {
        ++lines;
        at = std::min(text.find_first_of("\r\n", at), text.size());
    }
    return lines;
}

bool IsNamed(std::string_view name, std::string_view lowerCase) {
    return std::ranges::equal(
        name, lowerCase, [](char c, char lower) { return (c >= 'A' && c <= 'Z' ? c + 0x20 : c) == lower; });
}

void WriteLineEndsAlike(std::u16string& text, std::u16string& buffer) {
    constexpr std::u16string_view lineEnds = u"\r\n";
    std::u16string_view rest = text;
    std::size_t end = rest.find_first_of(lineEnds);
    if (end == rest.npos)
        return;
    buffer.clear();
    for (; end != rest.npos; end = rest.find_first_of(lineEnds)) {
        buffer.append(rest.substr(0, end)).append(lineEnds);
        rest.remove_prefix(rest.substr(end).starts_with(lineEnds) ? end + 2 : end + 1);
    }
    buffer.append(rest);
    text.swap(buffer);
}

class clsForeignXmlParser {
  public:
    clsForeignXmlParser(clsXmlReader& xml, clsItemList& target) : xml_(xml), tree_(target) {}

    // After the start of the root.
    void Parse(const clsLoadWarnings& warnings) {
        for (Event event = xml_.Next(); event != Event::finished; event = xml_.Next()) {
            if (event == Event::start)
                BeginElement();
            else if (event == Event::end)
                EndElement();
            else if (event == Event::text)
                RequireBlank();
        }
        if (unreadAt_)
            warnings.TellFrom(u"elements that are not read",
                              LineNumber(xml_.Document().substr(0, *unreadAt_)));
    }

    std::uint32_t Line() const { return LineNumber(xml_.Document().substr(0, xml_.Position())); }

  private:
    using Event = clsXmlReader::Event;

    void BeginElement() {
        if (inProfile_ && IsNamed(xml_.Name(), "item"))
            return AppendItem();
        if (inProfile_ && IsNamed(xml_.Name(), "list"))
            return tree_.BeginList(NameOr(u"prof::xml::list: name is empty"));
        if (!inProfile_ || IsNamed(xml_.Name(), "profile"))
            Fail(u"prof::xml::profile: bad nesting level (should be -1)");
        Skip();
    }

    void EndElement() {
        if (tree_.AtTop())
            inProfile_ = false;
        else
            tree_.EndList();
    }

    void Skip() {
        if (!unreadAt_)
            unreadAt_ = xml_.Position();
        xml_.ReadText(0);
    }

    void RequireBlank() {
        const std::string_view text = xml_.RawText();
        const std::size_t at = text.find_first_not_of(" \t\r\n");
        if (at == text.npos)
            return;
        const auto before = static_cast<std::size_t>(text.data() - xml_.Document().data());
        throw clsLoadException(LineNumber(xml_.Document().substr(0, before + at + 1)), badFormat);
    }

    // ---- Texts ---------------------------------------------------------------------------------

    std::u16string_view Wide(std::string_view utf8) {
        wide_.resize(std::max(wide_.size(), utf8.size()));
        return {wide_.data(), UtilpDecodeUtf8(utf8, wide_.data())};
    }

    // XML takes a line end or a tab that stands in an attribute as it is for a blank.
    const std::u16string& NameOr(std::u16string_view message) {
        for (const clsXmlReader::scAttribute& attribute : xml_.Attributes()) {
            if (!attribute.prefix.empty() || !IsNamed(attribute.name, "name"))
                continue;
            name_ = Wide(attribute.rawValue);
            for (std::size_t at = 0; (at = name_.find_first_of(u"\t\r\n", at)) != name_.npos; ++at)
                name_.replace(at, name_.compare(at, 2, u"\r\n") == 0 ? 2 : 1, 1, u' ');
            if (name_.find(u'&') != name_.npos)
                name_ = std::u16string(ProfpUnescape(name_, buffer_));
            WriteLineEndsAlike(name_, buffer_);
            return name_;
        }
        Fail(message);
    }

    void AppendItem() {
        NameOr(u"prof::xml::item empty name");
        value_.clear();
        marked_ = 0;
        for (Event event = xml_.Next(); event != Event::end; event = xml_.Next()) {
            if (event == Event::text)
                AppendText();
            else if (event == Event::comment)
                AppendMark();
            else
                Skip();
        }
        WriteLineEndsAlike(value_, buffer_);
        tree_.AppendItem(name_, value_);
    }

    void AppendText() {
        const std::u16string_view text = Wide(xml_.RawText());
        value_ += xml_.IsLiteral() ? text : ProfpUnescape(text, buffer_);
    }

    // Our entities are a line end or a tab and a comment after it, so that it shows where one has stood even
    // if blanks have been taken away.
    void AppendMark() {
        const std::string_view comment = xml_.RawText();
        const char16_t unit = comment == "CR" ? u'\n' : comment == "TAB" ? u'\t' : u'\0';
        if (unit == u'\0')
            return;
        if (value_.size() == marked_ || value_.back() != unit)
            value_ += unit;
        marked_ = value_.size();
    }

    [[noreturn]] void Fail(std::u16string_view message) const { throw clsLoadException(Line(), message); }

    clsXmlReader& xml_;
    clsTreeBuilder tree_;
    bool inProfile_ = true;
    std::optional<std::size_t> unreadAt_; // where the first element that is not read has begun
    std::u16string name_;
    std::u16string value_;
    std::size_t marked_ = 0; // where the last mark in the value ends
    std::u16string wide_;
    std::u16string buffer_;
};

// The root decides what the document is. A text may begin with markup, too, and is no XML then.
void ReadMarkup(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings,
                bool foreignXfdf) {
    const std::u16string_view text = lines.Rest();
    if (ProfpIsXmlAsWritten(text))
        return ProfpReadXml(lines, target, warnings);
    clsXmlReader xml(text);
    xml.TellComments();
    clsForeignXmlParser parser(xml, target);
    bool isProfile = false;
    try {
        clsXmlReader::Event event = xml.Next();
        while (event == clsXmlReader::Event::comment)
            event = xml.Next();
        isProfile = event == clsXmlReader::Event::start && IsNamed(xml.Name(), "profile");
        if (isProfile)
            return parser.Parse(warnings);
        if (event == clsXmlReader::Event::start && xml.Name() != "xfdf")
            throw clsLoadException(parser.Line(), badFormat);
    } catch (const clsXmlError& error) {
        if (isProfile || text.find(u"[/]") == text.npos)
            throw clsLoadException(parser.Line(), notWellFormed, error.what());
    }
    lines.Next();
    const FormReader reader = ProfpDetectForm(lines.Line(), foreignXfdf);
    lines.Unread();
    reader(lines, target, warnings);
}

} // namespace

void ProfpReadForeignXml(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) {
    ReadMarkup(lines, target, warnings, false);
}

void ProfpReadForeignMarkup(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) {
    ReadMarkup(lines, target, warnings, true);
}

} // namespace tvut
