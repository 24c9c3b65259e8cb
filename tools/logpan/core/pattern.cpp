// Substrings; regular expressions have a file of their own.
#include "pattern.h"

#include "fold.h"

#include <algorithm>

namespace tool::logpan {

namespace {

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
