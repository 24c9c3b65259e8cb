// Pieces are joined as they come; only a whole line shows which blanks are its indentation.
#include "finish_line.h"

#include <algorithm>
#include <string_view>

namespace tool::logpan {

void CutText(std::wstring& text) {
    constexpr std::wstring_view cutMark = L"\u2026";
    if (text.size() <= longestLine)
        return;
    text.resize(longestLine - cutMark.size());
    text += cutMark;
}

void FinishLine(scLine& line) {
    std::wstring& text = line.text;
    CutText(text);
    text.resize(text.find_last_not_of(L"\r\n") + 1);
    line.level = std::min(text.find_first_not_of(L' '), text.size());
    text.erase(0, line.level);
}

} // namespace tool::logpan
