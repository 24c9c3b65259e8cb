// Reads XFDF as other programs write it, however its tags are spread over lines: a field that holds fields
// is a list, each value an item of the list that its field stands in. What is not a field is skipped.
#include "prof/formats/form.h"
#include "prof/formats/tree_builder.h"
#include "prof/formats/xml_tags.h"
#include "prof/formats/xml_text.h"

#include <string>

namespace tvut {

namespace {

constexpr std::u16string_view blanks = u" \t\r\n";
constexpr std::u16string_view nothingFollows = u"prof::xml::value: bad format (missing next line)";

// A tag's end belongs to its name no more than a blank does: <value> is not <value-richtext>.
bool IsTag(std::u16string_view text, std::u16string_view tag) {
    constexpr std::u16string_view ends = u" \t\r\n/>";
    return text.starts_with(tag) && (text.size() == tag.size() || ends.find(text[tag.size()]) != ends.npos);
}

bool BeginsWith(std::u16string_view text, std::u16string_view tag) {
    return text.starts_with(tag);
}

class clsForeignXfdfParser {
  public:
    clsForeignXfdfParser(clsLineReader& lines, clsItemList& target) : lines_(lines), tree_(target) {}

    void Parse() {
        if (!lines_.NextElement())
            return;
        while (FindTag())
            ParseTag();
        if (isFieldOpen_) // the end of the text ends all that is open
            EndOpenField();
    }

  private:
    struct scTag {
        std::u16string_view text;
        bool (*matches)(std::u16string_view text, std::u16string_view tag);
        void (clsForeignXfdfParser::*read)();
    };
    static const scTag tags[];

    // ---- The text: a line, made longer where a tag or a value goes on in the next one ----------

    std::u16string_view Text() const { return lines_.Line().substr(at_); }

    // Moves to the next "<". Text that is no value has no place in a field.
    bool FindTag() {
        for (;;) {
            at_ = std::min(lines_.Line().find_first_not_of(blanks, at_), lines_.Line().size());
            if (Text().empty()) {
                at_ = 0;
                if (!lines_.NextElement())
                    return false;
            } else if (Text().front() == u'<') {
                return true;
            } else if (isFieldOpen_ || !tree_.AtTop()) {
                Fail(u"prof::xml::xfdf: bad format ('<' expected)");
            } else {
                at_ = std::min(lines_.Line().find(u'<', at_), lines_.Line().size());
            }
        }
    }

    std::size_t Find(std::u16string_view mark, std::size_t from) {
        const std::size_t found = lines_.ExtendTo(mark, from);
        if (found == std::u16string_view::npos)
            throw clsLoadException(lines_.Number() + 1, nothingFollows);
        return found;
    }
    void SkipPast(std::u16string_view mark) { at_ = Find(mark, at_) + mark.size(); }

    // ---- Tags ----------------------------------------------------------------------------------

    void ParseTag();

    void RequireRoot() {
        if (!isRootSeen_ && !IsTag(Text(), u"<xfdf"))
            Fail(u"prof::xml: bad format");
        isRootSeen_ = true;
    }

    void SkipTag() { SkipPast(u">"); }
    void SkipComment() { SkipPast(u"-->"); }
    void SkipInstruction() { SkipPast(u"?>"); }
    void SkipRichText() {
        SkipTag();
        if (IsEmptyTag())
            return;
        SkipPast(u"</value-richtext");
        SkipTag();
    }
    // After a tag.
    bool IsEmptyTag() const { return lines_.Line()[at_ - 2] == u'/'; }

    void SkipDeclaration() {
        const std::size_t end = Find(u">", at_);
        if (lines_.Line().substr(at_, end - at_).find(u'[') != std::u16string_view::npos)
            SkipPast(u"]");
        SkipTag();
    }

    // Where the next character of a tag is that is no blank; the tag may go on in other lines.
    std::size_t FindInTag(std::size_t from) {
        const std::size_t found = lines_.Line().find_first_not_of(blanks, from);
        if (found != std::u16string_view::npos)
            return found;
        const std::size_t seen = lines_.Line().size();
        Find(u">", seen);
        return lines_.Line().find_first_not_of(blanks, seen);
    }

    // ---- Fields --------------------------------------------------------------------------------

    void BeginField() {
        at_ += std::u16string_view(u"<field").size();
        hasName_ = isListOfOurs_ = false;
        while (NextInTag() != u'>' && NextInTag() != u'/')
            ReadAttribute();
        const bool isEmpty = NextInTag() == u'/';
        SkipTag();
        if (!hasName_)
            Fail(u"prof::xml::field: no name found");
        EnterOpenField();
        isFieldOpen_ = true;
        hasValue_ = false;
        openName_ = name_;
        if (isListOfOurs_)
            EnterOpenField();
        if (isEmpty)
            EndOpenField();
    }

    // The field around one that begins, or around what our writer says is a list, is a list.
    void EnterOpenField() {
        if (isFieldOpen_)
            tree_.BeginList(openName_);
        isFieldOpen_ = false;
    }

    void EndField() {
        SkipTag();
        EndOpenField();
    }

    void EndOpenField() {
        if (isFieldOpen_ && !hasValue_)
            tree_.AppendItem(openName_, {});
        if (!isFieldOpen_ && tree_.AtTop())
            Fail(u"prof::xml::field: bad format (negative level)");
        if (!isFieldOpen_)
            tree_.EndList();
        isFieldOpen_ = false;
    }

    char16_t NextInTag() {
        at_ = FindInTag(at_);
        return Text().front();
    }

    // key="text" or key='text'. Our writer leaves out the key of a list's name.
    void ReadAttribute() {
        const std::size_t begin = at_;
        at_ = std::min(lines_.Line().find_first_of(u" \t\r\n=>", at_), lines_.Line().size());
        const bool isName = lines_.Line().substr(begin, at_ - begin) == u"name";
        const bool isOurs = at_ == begin;
        if (NextInTag() != u'=')
            Fail(u"prof::xml::field: no name found");
        ++at_;
        const char16_t quote = NextInTag();
        if (quote != u'"' && quote != u'\'')
            Fail(u"prof::xml::field: no name found");
        const std::size_t end = lines_.Line().find(quote, at_ + 1);
        if (end == std::u16string_view::npos)
            Fail(u"prof::xml::field: name unfinished");
        if (isName || isOurs) {
            name_ = ProfpUnescape(lines_.Line().substr(at_ + 1, end - at_ - 1), buffer_);
            hasName_ = true;
            isListOfOurs_ = isOurs;
        }
        at_ = end + 1;
    }

    // ---- Values --------------------------------------------------------------------------------

    // A value of a field that holds fields, or of none, is an item with the empty name.
    void AppendValue() {
        SkipTag();
        value_.clear();
        if (!IsEmptyTag())
            ReadValue();
        tree_.AppendItem(isFieldOpen_ ? std::u16string_view(openName_) : std::u16string_view(), value_);
        hasValue_ = true;
    }

    void ReadValue() {
        constexpr std::u16string_view literal = u"<![CDATA[";
        constexpr std::u16string_view literalEnd = u"]]>";
        std::size_t end = FindValueEnd(at_);
        std::size_t begin = 0;
        while ((begin = lines_.Line().substr(0, end).find(literal, at_)) != std::u16string_view::npos) {
            AppendEscaped(begin);
            at_ = begin + literal.size();
            begin = at_;
            SkipPast(literalEnd);
            value_ += lines_.Line().substr(begin, at_ - literalEnd.size() - begin);
            if (end < at_)
                end = FindValueEnd(at_);
        }
        AppendEscaped(end);
        at_ = end;
        SkipTag();
    }

    // Where the next </value> begins, which may hold blanks before its ">".
    std::size_t FindValueEnd(std::size_t from) {
        constexpr std::u16string_view mark = u"</value";
        for (std::size_t end = Find(mark, from);; end = Find(mark, end + mark.size())) {
            const std::size_t next = FindInTag(end + mark.size()); // may make the line another, longer one
            if (lines_.Line()[next] == u'>')
                return end;
        }
    }

    void AppendEscaped(std::size_t end) {
        value_ += ProfpUnescape(lines_.Line().substr(at_, end - at_), buffer_);
    }

    [[noreturn]] void Fail(std::u16string_view message) const {
        throw clsLoadException(lines_.Number(), message);
    }

    clsLineReader& lines_;
    std::size_t at_ = 0; // in the line
    clsTreeBuilder tree_;
    bool isRootSeen_ = false;
    // The innermost field, while it holds no other: what it is shows when it goes on.
    bool isFieldOpen_ = false;
    bool hasValue_ = false;
    std::u16string openName_;
    // The start tag that is being read.
    bool hasName_ = false;
    bool isListOfOurs_ = false;
    std::u16string name_;
    std::u16string value_;
    std::u16string buffer_;
};

const clsForeignXfdfParser::scTag clsForeignXfdfParser::tags[] = {
    {u"<field", IsTag, &clsForeignXfdfParser::BeginField},
    {u"<field=", BeginsWith, &clsForeignXfdfParser::BeginField},
    {u"</field", IsTag, &clsForeignXfdfParser::EndField},
    {u"<value", IsTag, &clsForeignXfdfParser::AppendValue},
    {u"<value-richtext", IsTag, &clsForeignXfdfParser::SkipRichText},
    {u"<!--", BeginsWith, &clsForeignXfdfParser::SkipComment},
    {u"<?", BeginsWith, &clsForeignXfdfParser::SkipInstruction},
    {u"<!", BeginsWith, &clsForeignXfdfParser::SkipDeclaration},
};

void clsForeignXfdfParser::ParseTag() {
    if (!Text().starts_with(u"<?") && !Text().starts_with(u"<!"))
        RequireRoot();
    for (const scTag& tag : tags) {
        if (tag.matches(Text(), tag.text))
            return (this->*tag.read)();
    }
    SkipTag();
}

} // namespace

void ProfpReadForeignXfdf(clsLineReader& lines, clsItemList& target, const clsLoadWarnings&) {
    clsForeignXfdfParser(lines, target).Parse();
}

} // namespace tvut
