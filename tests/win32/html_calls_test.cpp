// The HTML conversions through the exports: how results are delivered, and what happens without memory.
#include "support/counted_allocations.h"
#include "support/ole_text.h"

#include <gtest/gtest.h>
#include <tvut22/util.h>

#include <string>

namespace testing_prof {
namespace {

using Result = clsOleText;

struct scConversion {
    const char* name;
    void (*convert)(const wchar_t*, BSTR*);
    const wchar_t* input;
    const wchar_t* expected;
    const wchar_t* empty; // what the empty text becomes
};
const scConversion conversions[] = {
    {"mask", [](auto text, auto out) { UtilMaskAllHTMLCharacters(text, out); }, L"a<b>\x20AC",
     L"a&lt;b&gt;&#x20ac;", L""},
    {"demask", [](auto text, auto out) { UtilDemaskAllHTMLCharacters(text, out); },
     L"a&lt;b&#+65;&# 65;&#X41;", L"a<bAA#X41;", L""},
    {"text to HTML", [](auto text, auto out) { UtilConvertText2HTML(text, out, FALSE); }, L"a\r\nb",
     L"<p>a</p><p>b</p>", L"<p><br></p>"},
    {"text to markers", [](auto text, auto out) { UtilConvertText2HTML(text, out, TRUE); }, L"a\r\n",
     L"[_[p]_]a[_[/p]_][_[p]_][_[/p]_]", L"[_[p]_][_[/p]_]"},
    {"HTML to text", [](auto text, auto out) { UtilConvertHtml2PlainText(text, out, FALSE); },
     L"<p>a [b]<!-- --> <a href=\"c\">d</a></p>", L"a [b] d [c]\r", L""},
    {"markers to text", [](auto text, auto out) { UtilConvertHtml2PlainText(text, out, TRUE); },
     L"[_[p]_]a<b>[_[/p]_]", L"a<b>\r", L""}};

TEST(Html, ResultsAreDeliveredAsStrings) {
    for (const scConversion& c : conversions) {
        SCOPED_TRACE(c.name);
        Result fresh, longer(std::wstring(500, L'#').c_str()), shorter(L"#"), itself(c.input), tail(c.input);
        c.convert(c.input, fresh.Out());
        c.convert(c.input, longer.Out());
        c.convert(c.input, shorter.Out());
        c.convert(itself.Get(), itself.Out());
        for (const Result* result : {&fresh, &longer, &shorter, &itself}) {
            EXPECT_EQ(result->Text(), c.expected);
            EXPECT_EQ(result->Get()[SysStringLen(result->Get())], L'\0');
        }
        c.convert(tail.Get() + SysStringLen(tail.Get()), tail.Out());
        EXPECT_EQ(tail.Text(), c.empty);
        c.convert(nullptr, fresh.Out());
        EXPECT_EQ(fresh.Text(), c.empty);
        c.convert(c.input, nullptr);
    }
}

TEST(Html, WithoutMemoryTheOldStringStaysOrIsNull) {
    for (const scConversion& c : conversions) {
        std::wstring large;
        for (int i = 0; i < 20000; ++i)
            large += c.input;
        Result complete, fresh, old(L"old");
        c.convert(large.c_str(), complete.Out());
        for (Result* result : {&fresh, &old})
            FailEachAllocation([&] { c.convert(large.c_str(), result->Out()); },
                               [&](bool failed) {
                                   const bool isOld =
                                       !result->Get() || (result == &old && old.Text() == L"old");
                                   EXPECT_TRUE(failed ? isOld : result->Text() == complete.Text()) << c.name;
                               });
    }
}

} // namespace
} // namespace testing_prof
