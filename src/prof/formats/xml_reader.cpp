// Reads the XML form as the writer lays it out, an element a line; no XML in general.
#include "prof/formats/form.h"
#include "prof/formats/tree_builder.h"
#include "prof/formats/xfdf_reader.h"
#include "prof/formats/xml_layout.h"
#include "prof/formats/xml_tags.h"
#include "prof/formats/xml_text.h"

#include <algorithm>
#include <string>

namespace tvut {

namespace {

class clsXmlParser {
  public:
    clsXmlParser(clsLineReader& lines, clsItemList& target)
        : lines_(lines), target_(target), tree_(target), xfdf_(lines, target) {}

    void Parse(const clsLoadWarnings& warnings) {
        constexpr unsigned withoutQuotes = xmlItemBegin.size();
        const std::uint32_t endBefore = target_.End();
        while (lines_.NextElement<withoutQuotes>())
            ParseLine(lines_.Line());
        if (inComment_)
            warnings.TellFrom(u"a comment that is not closed", commentBegin_);
        unread_.TellTo(warnings);
        xfdf_.Finish(target_.End() == endBefore, warnings);
    }

  private:
    struct scTag {
        std::u16string_view text;
        void (clsXmlParser::*read)(std::u16string_view line);
    };
    static const scTag tags[];

    void ParseLine(std::u16string_view line) {
        scXmlItemLine item;
        if (inProfile_ && !inComment_ && ProfpSplitWrittenItem(line, lines_.Markup(), item))
            AppendItem(item);
        else if (inComment_)
            ParseInComment(line);
        else
            ParseTag(line);
    }

    void ParseInComment(std::u16string_view line) {
        constexpr std::u16string_view end = u"-->";
        if (!line.starts_with(end))
            return;
        inComment_ = false;
        line = ProfpWithoutIndentation(line.substr(end.size()));
        if (!line.empty())
            ParseTag(line);
    }

    void ParseTag(std::u16string_view line);

    void BeginComment(std::u16string_view line) {
        constexpr std::u16string_view end = u" -->";
        const std::size_t at = std::min(line.find(end), line.find(u"\t-->"));
        inComment_ = at == line.npos;
        if (inComment_)
            commentBegin_ = lines_.Number();
        else
            NoteElementIn(line.substr(at + end.size()));
    }

    void ParseItem(std::u16string_view line) {
        if (!inProfile_)
            Fail(u"prof::xml::item bad nesting level (becomes negative)");
        const scTagName tag = ProfpFindTagName(line);
        if (tag.state == scTagName::State::absent)
            Fail(u"prof::xml::item empty name");
        if (tag.state == scTagName::State::unfinished)
            Fail(u"prof::xml::item no end tag");
        const std::size_t begin = tag.rest.find(u'>');
        if (begin == tag.rest.npos)
            Fail(u"prof::xml::item no end tag (2)");
        const std::u16string_view value = tag.rest.substr(begin + 1);
        const std::size_t end = value.find(xmlItemEndTag);
        if (end == value.npos)
            Fail(u"prof::xml::item no '</item>' tag found");
        AppendItem({tag.name, value.substr(0, end), false});
    }

    void NoteElementIn(std::u16string_view text) {
        if (ProfpHoldsElement(text))
            unread_.Note(lines_.Number());
    }

    void BeginList(std::u16string_view line) {
        if (!inProfile_)
            Fail(u"prof::xml::list: bad nesting level");
        const scTagName tag = ProfpFindTagName(line);
        if (tag.state == scTagName::State::absent)
            Fail(u"prof::xml::list: name is empty");
        if (tag.state == scTagName::State::unfinished)
            Fail(u"prof::xml::list: name is unfinished");
        tree_.BeginList(ProfpUnescape(tag.name, name_));
    }

    // One that no list is open for ends the profile.
    void EndList(std::u16string_view) {
        if (!inProfile_)
            Fail(u"prof::xml::profile: bad nesting level (becomes negative)");
        if (tree_.AtTop())
            inProfile_ = false;
        else
            tree_.EndList();
    }

    void BeginProfile(std::u16string_view line) {
        constexpr std::size_t tag = std::u16string_view(u"<profile>").size();
        if (inProfile_)
            Fail(u"prof::xml::profile: bad nesting level (should be -1)");
        inProfile_ = true;
        if (!ProfpWithoutIndentation(line.substr(tag)).empty())
            unread_.Note(lines_.Number());
    }

    void EndProfile(std::u16string_view) { LeaveTop(u"prof::xml::profile: bad nesting level (should be 0)"); }

    void ParseXfdf(std::u16string_view) {
        if (inProfile_)
            Fail(u"prof::xml::xfdf: bad nesting level (should be -1)");
        xfdf_.ParseContents();
    }

    void EndXfdf(std::u16string_view) { LeaveTop(u"prof::xml::xfdf: bad nesting level (should be 0)"); }

    void LeaveTop(std::u16string_view message) {
        if (!inProfile_ || !tree_.AtTop())
            Fail(message);
        inProfile_ = false;
    }

    void AppendItem(const scXmlItemLine& item) {
        if (item.plain)
            tree_.AppendItem(item.name, item.value);
        else
            tree_.AppendItem(ProfpUnescape(item.name, name_), ProfpUnescape(item.value, value_));
    }

    [[noreturn]] void Fail(std::u16string_view message) const {
        throw clsLoadException(lines_.Number(), message);
    }

    clsLineReader& lines_;
    clsItemList& target_;
    clsTreeBuilder tree_;
    clsXfdfParser xfdf_;
    bool inProfile_ = false;
    bool inComment_ = false;
    std::uint32_t commentBegin_ = 0;
    clsUnreadLine unread_;
    std::u16string name_;
    std::u16string value_;
};

const clsXmlParser::scTag clsXmlParser::tags[] = {
    {u"<!--", &clsXmlParser::BeginComment},      {u"<item ", &clsXmlParser::ParseItem},
    {u"<list ", &clsXmlParser::BeginList},       {u"</list>", &clsXmlParser::EndList},
    {u"<profile>", &clsXmlParser::BeginProfile}, {u"</profile>", &clsXmlParser::EndProfile},
    {u"<xfdf ", &clsXmlParser::ParseXfdf},       {u"</xfdf>", &clsXmlParser::EndXfdf},
};

void clsXmlParser::ParseTag(std::u16string_view line) {
    if (line.front() != u'<')
        Fail(u"prof::xml: bad format");
    for (const scTag& tag : tags) {
        if (ProfpBeginsWithTag(line, tag.text))
            return (this->*tag.read)(line);
    }
    NoteElementIn(line);
}

} // namespace

void ProfpReadXml(clsLineReader& lines, clsItemList& target, const clsLoadWarnings& warnings) {
    clsXmlParser(lines, target).Parse(warnings);
}

} // namespace tvut
