// Substrings; regular expressions have a file of their own.
#include "pattern.h"

#include <algorithm>
#include <cwctype>

namespace tool::logpan {

namespace {

wchar_t Folded(wchar_t unit) {
    if (unit < 0x80)
        return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + (L'a' - L'A')) : unit;
    return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(unit)));
}

class clsSubstring : public clsPattern::IclsMatcher {
  public:
    explicit clsSubstring(std::wstring_view text) : wanted_(text) {
        std::transform(wanted_.begin(), wanted_.end(), wanted_.begin(), Folded);
    }

    bool Finds(std::wstring_view text, bool) const override {
        return std::search(text.begin(), text.end(), wanted_.begin(), wanted_.end(),
                           [](wchar_t unit, wchar_t wanted) { return Folded(unit) == wanted; }) != text.end();
    }

  private:
    std::wstring wanted_;
};

} // namespace

clsPattern::clsPattern(std::wstring_view text, PatternKind kind) {
    if (text.empty())
        return;
    if (kind == PatternKind::substring)
        matcher_ = std::make_shared<clsSubstring>(text);
    else
        matcher_ = MakeRegularExpression(text);
}

} // namespace tool::logpan
