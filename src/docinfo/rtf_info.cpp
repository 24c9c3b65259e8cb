// One walk over the document, byte by byte. A group inherits what its text is for, its destination, from the
// group around it, unless it begins with a word that names another; the destination's value is whole when the
// group ends that named it. Groups are a list, so nesting of any depth is harmless.
//
// 8-bit characters are collected and decoded together: one character may take several bytes.
#include "docinfo/rtf_info.h"

#include "docinfo/document_text.h"
#include "text/digits.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::uint64_t mostBytes = 1024 * 1024;
constexpr std::size_t longestText = 4 * clsDocInfo::longestValue; // what is cleaned away included
constexpr unsigned codePageAnsi = 1252, codePageMac = 10000, codePagePc = 437, codePagePs2 = 850;

enum class Destination : std::uint8_t { body, skipped, info, text, date, userProps, propName, staticValue };

struct scDestinationRow {
    std::string_view word;
    Destination destination;
    Destination within; // of the group around it
    DocProperty property = DocProperty::count;
};
constexpr scDestinationRow destinations[] = {
    {"info", Destination::info, Destination::body},
    {"userprops", Destination::userProps, Destination::body},
    {"generator", Destination::text, Destination::body, DocProperty::application},
    {"propname", Destination::propName, Destination::userProps},
    {"staticval", Destination::staticValue, Destination::userProps},
    {"title", Destination::text, Destination::info, DocProperty::title},
    {"author", Destination::text, Destination::info, DocProperty::author},
    {"subject", Destination::text, Destination::info, DocProperty::subject},
    {"keywords", Destination::text, Destination::info, DocProperty::keywords},
    {"doccomm", Destination::text, Destination::info, DocProperty::comments},
    {"operator", Destination::text, Destination::info, DocProperty::lastAuthor},
    {"company", Destination::text, Destination::info, DocProperty::company},
    {"manager", Destination::text, Destination::info, DocProperty::manager},
    {"category", Destination::text, Destination::info, DocProperty::category},
    {"creatim", Destination::date, Destination::info, DocProperty::created},
    {"revtim", Destination::date, Destination::info, DocProperty::modified},
    {"printim", Destination::date, Destination::info, DocProperty::printed},
};

struct scNumberRow {
    std::string_view word;
    DocProperty property;
};
constexpr scNumberRow numbers[] = {
    {"version", DocProperty::revision},
    {"nofpages", DocProperty::pages},
    {"nofwords", DocProperty::words},
    {"nofchars", DocProperty::characters},
};

struct scCharacterRow {
    std::string_view word;
    char16_t character;
};
constexpr scCharacterRow characters[] = {
    {"line", u'\n'},          {"par", u'\n'},        {"tab", u'\t'},         {"emdash", u'\u2014'},
    {"endash", u'\u2013'},    {"lquote", u'\u2018'}, {"rquote", u'\u2019'},  {"ldblquote", u'\u201C'},
    {"rdblquote", u'\u201D'}, {"bullet", u'\u2022'}, {"emspace", u'\u2003'}, {"enspace", u'\u2002'},
};

struct scGroup {
    Destination destination = Destination::body;
    std::uint8_t skipped = 1; // characters after \u that stand for it
    bool namesDestination = false;
};

class clsRtfReader {
  public:
    clsRtfReader(clsPagedSource& source, clsDocInfo& info) : source_(source), info_(info) {}

    void Read() {
        while (!isOver_ && More()) {
            const char c = Take();
            if (c == '{') {
                groups_.push_back(groups_.empty() ? scGroup{} : groups_.back());
                groups_.back().namesDestination = false;
                left_ = 0;
            } else if (c == '}') {
                EndGroup();
            } else if (c == '\\') {
                TakeControl();
            } else if (c != '\r' && c != '\n') {
                AddByte(c);
            }
        }
        UtilpRequire(isOver_ || position_ >= mostBytes, "it ends too early");
    }

  private:
    bool More() {
        if (at_ < block_.size())
            return true;
        block_ = position_ < mostBytes ? source_.Read(position_, clsPagedSource::pageBytes) : std::string();
        position_ += block_.size();
        at_ = 0;
        return !block_.empty();
    }
    char Peek() { return More() ? block_[at_] : '\0'; }
    char Take() { return More() ? block_[at_++] : '\0'; }

    scGroup& Group() { return groups_.back(); }

    void EndGroup() {
        left_ = 0;
        if (groups_.empty() || groups_.size() == 1) {
            isOver_ = true;
            return;
        }
        if (Group().namesDestination)
            EndDestination(Group().destination);
        groups_.pop_back();
    }

    void TakeControl() {
        const char c = Peek();
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
            return TakeWord();
        Take();
        if (c == '\'') {
            const unsigned high = UtilpDigitOf(static_cast<unsigned char>(Take()));
            const unsigned low = UtilpDigitOf(static_cast<unsigned char>(Take()));
            if (high < 16 && low < 16)
                AddByte(static_cast<char>(high * 16 + low));
        } else if (c == '*') {
            isOptional_ = true;
        } else if (c == '~') {
            AddCharacter(u'\u00A0');
        } else if (c == '_') {
            AddCharacter(u'\u2011');
        } else if (c == '\r' || c == '\n') {
            AddCharacter(u'\n');
        } else if (c != '-') {
            AddByte(c);
        }
    }

    void TakeWord() {
        word_.clear();
        for (char c = Peek(); (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); c = Peek()) {
            if (word_.size() < 32)
                word_ += c;
            Take();
        }
        const bool isNegative = Peek() == '-';
        if (isNegative)
            Take();
        std::int64_t number = 0;
        hasNumber_ = false;
        for (; Peek() >= '0' && Peek() <= '9'; hasNumber_ = true)
            number = std::min<std::int64_t>(number * 10 + (Take() - '0'), INT32_MAX);
        if (Peek() == ' ')
            Take();
        Obey(isNegative ? -number : number);
    }

    void Obey(std::int64_t number) {
        if (groups_.empty())
            return;
        const bool isOptional = isOptional_;
        isOptional_ = false;
        if (word_ == "bin")
            return SkipBytes(number);
        if (TakeDestination())
            return;
        if (isOptional) {
            Group().destination = Destination::skipped;
            Group().namesDestination = true;
        } else if (Group().destination == Destination::body) {
            ObeyInBody(number);
        } else if (word_ == "u") {
            AddUnicode(number);
        } else if (word_ == "uc") {
            Group().skipped = static_cast<std::uint8_t>(std::clamp<std::int64_t>(number, 0, 255));
        } else if (Group().destination == Destination::date) {
            TakeDatePart(number);
        } else if (const auto row = std::ranges::find(characters, word_, &scCharacterRow::word);
                   row != std::end(characters)) {
            AddCharacter(row->character);
        } else if (Group().destination == Destination::info && hasNumber_) {
            if (const auto counted = std::ranges::find(numbers, word_, &scNumberRow::word);
                counted != std::end(numbers))
                info_.AddNumber(counted->property, number);
        } else if (Group().destination == Destination::userProps && word_ == "proptype") {
            propType_ = number;
        }
    }

    // The body's first paragraph is the end of what can be in front of it.
    void ObeyInBody(std::int64_t number) {
        if (word_ == "par")
            isOver_ = true;
        else if (word_ == "uc")
            Group().skipped = static_cast<std::uint8_t>(std::clamp<std::int64_t>(number, 0, 255));
        else if (word_ == "ansicpg")
            codePage_ = static_cast<unsigned>(std::clamp<std::int64_t>(number, 0, 65535));
        else if (word_ == "mac")
            codePage_ = codePageMac;
        else if (word_ == "pc")
            codePage_ = codePagePc;
        else if (word_ == "pca")
            codePage_ = codePagePs2;
        else if (word_ == "fonttbl" || word_ == "colortbl" || word_ == "stylesheet")
            Group().destination = Destination::skipped;
    }

    bool TakeDestination() {
        const auto row = std::ranges::find_if(destinations, [&](const scDestinationRow& candidate) {
            return candidate.word == word_ && candidate.within == Group().destination;
        });
        if (row == std::end(destinations))
            return false;
        Group().destination = row->destination;
        Group().namesDestination = true;
        property_ = row->property;
        text_.clear();
        bytes_.clear();
        date_ = {};
        return true;
    }

    void EndDestination(Destination destination) {
        Flush();
        if (destination == Destination::text)
            AddText();
        else if (destination == Destination::date)
            info_.Add(property_, UtilpDateOfParts(date_.year, date_.month, date_.day, date_.hour,
                                                  date_.minute, date_.second));
        else if (destination == Destination::propName)
            propName_ = text_;
        else if (destination == Destination::staticValue)
            AddCustom();
        else
            isOver_ = isOver_ || destination == Destination::userProps;
    }

    void AddText() {
        if (property_ == DocProperty::application && text_.ends_with(u';'))
            text_.pop_back();
        info_.Add(property_, text_);
    }

    void AddCustom() {
        constexpr std::int64_t boolean = 11, date = 64;
        if (propType_ == boolean)
            text_ = text_ == u"0" ? u"false" : u"true";
        if (const auto day = propType_ == date ? UtilpReadAnyDate(text_) : std::nullopt)
            text_ = UtilpDateText(*day);
        info_.AddCustom(propName_, text_);
    }

    void TakeDatePart(std::int64_t number) {
        const std::pair<std::string_view, unsigned*> parts[] = {{"yr", &date_.year},
                                                                {"mo", &date_.month},
                                                                {"dy", &date_.day},
                                                                {"min", &date_.minute},
                                                                {"sec", &date_.second}};
        const auto value = static_cast<unsigned>(std::clamp<std::int64_t>(number, 0, 9999));
        for (const auto& [word, part] : parts) {
            if (word == word_)
                *part = value;
        }
        if (word_ == "hr")
            date_.hour = static_cast<int>(value);
    }

    bool IsCollected() const {
        if (groups_.empty())
            return false;
        const Destination destination = groups_.back().destination;
        return destination == Destination::text || destination == Destination::propName ||
               destination == Destination::staticValue;
    }

    void AddByte(char byte) {
        isOptional_ = false;
        if (left_ > 0)
            --left_;
        else if (IsCollected() && text_.size() + bytes_.size() < longestText)
            bytes_ += byte;
    }

    void AddCharacter(char16_t character) {
        if (left_ > 0) {
            --left_;
            return;
        }
        if (!IsCollected() || text_.size() + bytes_.size() >= longestText)
            return;
        Flush();
        text_ += character;
    }

    void AddUnicode(std::int64_t number) {
        left_ = 0;
        AddCharacter(static_cast<char16_t>(number & 0xFFFF)); // often written as a signed number
        left_ = Group().skipped;
    }

    void Flush() {
        if (!bytes_.empty())
            text_ += UtilpDecodeText(codePage_, bytes_);
        bytes_.clear();
    }

    void SkipBytes(std::int64_t count) {
        for (; count > 0 && More(); --count)
            Take();
    }

    struct scDateParts {
        unsigned year = 0, month = 1, day = 1;
        int hour = -1;
        unsigned minute = 0, second = 0;
    };

    clsPagedSource& source_;
    clsDocInfo& info_;
    std::string block_;
    std::size_t at_ = 0;
    std::uint64_t position_ = 0;
    std::vector<scGroup> groups_;
    std::string word_;
    bool hasNumber_ = false;
    bool isOptional_ = false; // after \*
    bool isOver_ = false;
    unsigned left_ = 0; // characters that stand for the one before
    unsigned codePage_ = codePageAnsi;
    DocProperty property_ = DocProperty::count;
    std::string bytes_; // after text_
    std::u16string text_, propName_;
    std::int64_t propType_ = 0;
    scDateParts date_;
};

} // namespace

bool UtilpIsRtf(std::string_view head) {
    return head.starts_with("{\\rtf");
}

bool UtilpReadRtf(clsPagedSource& source, clsDocInfo& info) {
    source.Allow(mostBytes + clsPagedSource::pageBytes);
    info.SetFormat(u"rtf");
    clsRtfReader(source, info).Read();
    return true;
}

} // namespace tvut
