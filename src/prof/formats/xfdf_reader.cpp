// Fields open by lines that begin with <field> and name themselves after it; a value is an item under the
// name of the innermost open field, which changes neither level nor list. Field tags with attributes, those
// that the writer and other programs write, are skipped like any other line: ProfpReadForeignXfdf reads them.
#include "prof/formats/xfdf_reader.h"

#include "prof/formats/form.h"
#include "prof/formats/xml_text.h"
#include "prof/tree.h"

namespace tvut {

struct clsXfdfParser::scTag {
    std::u16string_view text;
    void (clsXfdfParser::*read)();
};

const clsXfdfParser::scTag clsXfdfParser::tags[] = {
    {u"<value>", &clsXfdfParser::AppendValue}, {u"<field>", &clsXfdfParser::BeginField},
    {u"</field>", &clsXfdfParser::EndField},   {u"<xfdf ", &clsXfdfParser::BeginDocument},
    {u"</xfdf>", &clsXfdfParser::EndDocument},
};

void clsXfdfParser::ParseDocument() {
    while (lines_.NextElement())
        ParseLine();
}

void clsXfdfParser::Finish(bool nothingRead, const clsLoadWarnings& warnings) const {
    if (nothingRead)
        unread_.TellTo(warnings);
    if (namelessValues_ != 0)
        warnings.TellNumber(u"values without a name, which PROF_READ_FOREIGN_XFDF reads", namelessValues_);
}

void clsXfdfParser::ParseContents() {
    BeginDocument();
    while (inContents_ && lines_.NextElement())
        ParseLine();
    inContents_ = false;
}

void clsXfdfParser::ParseLine() {
    if (lines_.First() != u'<')
        Fail(u"prof::xml::xfdf: bad format ('<' expected)");
    for (const scTag& tag : tags) {
        if (ProfpBeginsWithTag(lines_.Line(), tag.text))
            return (this->*tag.read)();
    }
    Skip();
}

// Outside of the contents only declarations are to be expected, inside nothing that holds a value or a field
// with a name.
void clsXfdfParser::Skip() {
    const std::u16string_view line = lines_.Line();
    const auto holds = [line](std::u16string_view tag) { return line.find(tag) != line.npos; };
    if (inContents_ ? holds(u"<value") || holds(u"<field ") : ProfpHoldsElement(line))
        unread_.Note(lines_.Number());
}

void clsXfdfParser::BeginDocument() {
    if (inContents_)
        Fail(u"prof::xml::xfdf: bad nesting level (should be -1)");
    inContents_ = true;
    Skip(); // what else the line holds
}

void clsXfdfParser::EndDocument() {
    if (!inContents_)
        Fail(u"prof::xml::xfdf: bad nesting level (should be 0)");
    inContents_ = false;
}

void clsXfdfParser::AppendValue() {
    constexpr std::size_t begin = std::u16string_view(u"<value>").size();
    RequireContents(u"prof::xml::value: bad format (negative level)");
    const std::size_t end = lines_.ExtendTo(u"</value>", begin);
    if (end == std::u16string_view::npos) // the line that would have to follow
        throw clsLoadException(lines_.Number() + 1, u"prof::xml::value: bad format (missing next line)");
    const std::u16string_view value = ProfpUnescape(lines_.Line().substr(begin, end - begin), buffer_);
    const std::u16string_view name = fields_.empty() ? std::u16string_view() : fields_.back();
    namelessValues_ += fields_.empty();
    target_.Tree()->AppendItem(target_, scName(name), value);
}

void clsXfdfParser::BeginField() {
    RequireContents(u"prof::xml::field: bad format (negative level)");
    const scTagName tag = ProfpFindTagName(lines_.Line());
    if (tag.state == scTagName::State::absent)
        Fail(u"prof::xml::field: no name found");
    if (tag.state == scTagName::State::unfinished)
        Fail(u"prof::xml::field: name unfinished");
    fields_.emplace_back(ProfpUnescape(tag.name, buffer_));
}

void clsXfdfParser::EndField() {
    RequireContents(u"prof::xml::field: bad format (negative level)");
    if (!fields_.empty())
        fields_.pop_back();
}

void clsXfdfParser::RequireContents(std::u16string_view message) const {
    if (!inContents_)
        Fail(message);
}

void clsXfdfParser::Fail(std::u16string_view message) const {
    throw clsLoadException(lines_.Number(), message);
}

void ProfpReadXfdf(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) {
    const std::uint32_t endBefore = target.End();
    clsXfdfParser parser(lines, target);
    parser.ParseDocument();
    parser.Finish(target.End() == endBefore, warnings);
}

} // namespace tvut
