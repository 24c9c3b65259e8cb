// Compiles and runs any pattern: the first line of the input; the rest is the text.
//
// A match must lie in the text, and finding it again from where it begins must give the same.
#include "require.h"

#include "text/regex/regex.h"

using namespace tvut;

namespace {

class clsCheck final : public IclsRegExGSubCB {
  public:
    explicit clsCheck(std::u16string_view text) : text_(text) {}
    void Replace(const clsRegExMatchList& match, std::u16string& result) override {
        for (std::size_t group = 0; group < match.Count(); ++group)
            Require(!match.Has(group) || (match[group].start <= text_.size() &&
                                          match[group].length <= text_.size() - match[group].start));
        result += match.Text(0);
    }

  private:
    std::u16string_view text_;
};

void Run(std::u16string_view pattern, std::u16string_view text) {
    const clsRegEx expression(pattern);
    clsCheck check(text);
    std::u16string result;
    const std::size_t count = expression.GSub(text, check, result);
    Require(result == text); // each match was put back
    clsRegExMatchList first, again;
    Require(expression.Match(text, first) == (count != 0));
    if (count != 0)
        Require(expression.Match(text, again, first[0].start) && again.Text(0) == first.Text(0));
}

} // namespace

// Patterns and texts of bytes, with U+0080 to U+00FF moved to where sets have ranges, not bits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::u16string input;
    for (std::size_t at = 0; at < size; ++at)
        input += static_cast<char16_t>(data[at] < 0x80 ? data[at] : data[at] + 0x380);
    const std::size_t line = std::min(input.find(u'\n'), input.size());
    const std::u16string_view all = input;
    try {
        Run(all.substr(0, line), line < input.size() ? all.substr(line + 1) : std::u16string_view());
    } catch (const clsRegExError&) {
    } catch (const clsRegExTooComplex&) {
    }
    return 0;
}
