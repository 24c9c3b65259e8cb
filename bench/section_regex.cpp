// Regular expressions against memcpy. They are no export: the core's own code is linked in here.
#include "runtime/diagnostics.h"
#include "sections.h"
#include "text/regex/regex.h"

#include <cstring>

namespace tvut {

void UtilpWriteDiagnosticLine(std::u16string_view) noexcept {}

} // namespace tvut

namespace bench {

namespace {

constexpr std::size_t megabyte = (1 << 20) / sizeof(char16_t);

class clsNothing final : public tvut::IclsRegExGSubCB {
  public:
    void Replace(const tvut::clsRegExMatchList&, std::u16string&) override {}
};

void MeasurePattern(const char* work, const char16_t* pattern, std::u16string_view part, double goal,
                    const scSettings& settings, clsReport& report) {
    std::u16string text;
    for (std::size_t at = 0; text.size() < megabyte; ++at)
        text += at % 4 == 0 ? part : u"words between them, enough to make a line of text of the usual length";
    const tvut::clsRegEx expression(pattern);
    std::u16string result, copy(text.size(), u'x');
    result.reserve(text.size());
    clsNothing nothing;
    const Round contenders[] = {
        [&] {
            result.clear();
            std::size_t count = 0;
            const double ns = Timed([&] { count = expression.GSub(text, nothing, result); });
            Require(count > 1000, "the pattern does not match");
            return ns;
        },
        [&] {
            void* (*volatile move)(void*, const void*, std::size_t) = std::memcpy;
            return Timed([&] { move(copy.data(), text.data(), text.size() * sizeof(char16_t)); });
        }};
    const auto ns = Race(contenders, settings.rounds);
    report.Against(work, ns[0], "memcpy of the text", ns[1], AtMost(goal));
}

} // namespace

void MeasureRegEx(const scSettings& settings, clsReport& report) {
    report.Section("Regular expressions: all matches in a megabyte of UTF-16 text, taken out");
    MeasurePattern("literal prefix: href=\"([^\"]*)\"", u"href=\"([^\"]*)\"",
                   u"<a href=\"page.htm\">page</a>", 10, settings, report);
    MeasurePattern("comments: (?s)<!--.*?-->", u"(?s)<!--.*?-->", u"<!-- a remark, which nobody reads -->",
                   20, settings, report);
}

} // namespace bench
