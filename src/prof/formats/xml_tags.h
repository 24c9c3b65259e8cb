// What the readers of XML and XFDF share: tags at the beginning of a line, and the names in them.
#pragma once

#include "prof/formats/load_error.h"
#include "prof/formats/load_warnings.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace tvut {

inline bool ProfpEqualNoCase(std::u16string_view a, std::u16string_view b) {
    const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? c + 0x20 : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char16_t x, char16_t y) { return lower(x) == lower(y); });
}

inline bool ProfpBeginsWithTag(std::u16string_view line, std::u16string_view tag) {
    return line.size() >= tag.size() && ProfpEqualNoCase(line.substr(0, tag.size()), tag);
}

inline std::u16string_view ProfpWithoutIndentation(std::u16string_view text) {
    return text.substr(std::min(text.find_first_not_of(u" \t"), text.size()));
}

// Whether an element's tag begins in a text, and not only comments, declarations and the like.
inline bool ProfpHoldsElement(std::u16string_view text) {
    for (std::size_t at = text.find(u'<'); at != text.npos; at = text.find(u'<', at + 1)) {
        const std::u16string_view next = text.substr(at + 1, 1);
        if (next != u"!" && next != u"?")
            return true;
    }
    return false;
}

// The name in a tag and what follows its closing quote; state says what is missing.
struct scTagName {
    enum class State { complete, absent, unfinished };
    State state;
    std::u16string_view name;
    std::u16string_view rest;
};

// Looks for name="..." in a line, written in any case.
inline scTagName ProfpFindTagName(std::u16string_view line) {
    constexpr std::u16string_view mark = u"name=\"";
    for (std::size_t quote = line.find(u'"'); quote != line.npos; quote = line.find(u'"', quote + 1)) {
        if (quote + 1 < mark.size() ||
            !ProfpEqualNoCase(line.substr(quote + 1 - mark.size(), mark.size()), mark))
            continue;
        const std::u16string_view text = line.substr(quote + 1);
        const std::size_t end = text.find(u'"');
        if (end == text.npos)
            return {scTagName::State::unfinished, {}, {}};
        return {scTagName::State::complete, text.substr(0, end), text.substr(end + 1)};
    }
    return {scTagName::State::absent, {}, {}};
}

// Remembers the first line that holds an element and was not read.
class clsUnreadLine {
  public:
    void Note(std::uint32_t number) {
        if (number_ == 0)
            number_ = number;
    }
    void TellTo(const clsLoadWarnings& warnings) const {
        if (number_ != 0)
            warnings.TellFrom(u"elements that are not read", number_);
    }

  private:
    std::uint32_t number_ = 0;
};

} // namespace tvut
