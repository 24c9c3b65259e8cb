// Regular expressions against a plain pass over the text. They are no export: the core's own code is linked
// in here.
#include "plain_pass.h"
#include "runtime/diagnostics.h"
#include "sections.h"
#include "text/regex/regex.h"

namespace tvut {

void UtilpWriteDiagnosticLine(std::u16string_view) noexcept {}

} // namespace tvut

namespace bench {

namespace {

class clsNothing final : public tvut::IclsRegExGSubCB {
  public:
    void Replace(const tvut::clsRegExMatchList&, std::u16string&) override {}
};

void MeasurePattern(const char* work, const char16_t* pattern, std::u16string_view part, std::size_t length,
                    double goal, const scSettings& settings, clsReport& report) {
    std::u16string text;
    for (std::size_t at = 0; text.size() < length; ++at)
        text += at % 4 == 0 ? part : u"words between them, enough to make a line of text of the usual length";
    const tvut::clsRegEx expression(pattern);
    std::u16string result;
    result.reserve(text.size());
    clsNothing nothing;
    const Round round = [&] {
        result.clear();
        std::size_t count = 0;
        const double ns = Timed([&] { count = expression.GSub(text, nothing, result); });
        Require(count > 1000, "the pattern does not match");
        return ns;
    };
    AgainstPlainPass(work, round, text.size(), AtMost(goal), settings.rounds, report);
}

} // namespace

void MeasureRegEx(const scSettings& settings, clsReport& report) {
    report.Section("Regular expressions: all matches in UTF-16 text, taken out");
    for (const std::size_t length : {megabyte, (settings.quick ? 2 : 16) * megabyte}) {
        MeasurePattern("literal prefix: href=\"([^\"]*)\"", u"href=\"([^\"]*)\"",
                       u"<a href=\"page.htm\">page</a>", length, 2, settings, report);
        MeasurePattern("comments: (?s)<!--.*?-->", u"(?s)<!--.*?-->",
                       u"<!-- a remark, which nobody reads -->", length, 3.5, settings, report);
        ShowCopy(length, settings.rounds, report);
    }
}

} // namespace bench
