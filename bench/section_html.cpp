// HTML and plain text against memcpy, on ordinary pages and on pages made to be expensive.
#include "sections.h"

#include <tvut22/html.h>

#include <oleauto.h>

#include <cstring>
#include <memory>

namespace bench {

namespace {

constexpr std::size_t megabyte = (1 << 20) / sizeof(wchar_t); // characters

std::wstring Repeated(std::wstring_view part, std::size_t length) {
    std::wstring text;
    while (text.size() + part.size() <= length)
        text += part;
    return text;
}

// The page of a hand-written site: 2,000 links in a megabyte, lists, tables, comments, references.
std::wstring Page(std::size_t length) {
    std::wstring page = L"<html><head><title>Page</title></head><body>\n";
    for (unsigned link = 0; page.size() < length; ++link) {
        page += L"<p>A paragraph of some words, as people write them, with <b>bold</b> ones &amp; a ";
        page +=
            L"<a class=\"x\" href=\"page" + std::to_wstring(link) + L".html\">link to page</a> in it.</p>\n";
        page += L"<ul><li>one item of a list</li><li>and another one</li></ul><!-- a remark -->\n";
    }
    return page;
}

// One result for all rounds, as a program has it that converts many texts; a new one costs what its pages do.
class clsConversion {
  public:
    using Convert = void (*)(const wchar_t*, BSTR*);

    clsConversion(Convert convert, std::wstring text) : convert_(convert), text_(std::move(text)) { Run(); }
    ~clsConversion() { SysFreeString(result_); }
    clsConversion(const clsConversion&) = delete;
    clsConversion& operator=(const clsConversion&) = delete;

    double Run() {
        const double ns = Timed([&] { convert_(text_.c_str(), &result_); });
        Require(result_ != nullptr, "a conversion gave nothing");
        return ns;
    }
    std::size_t ResultLength() const { return SysStringLen(result_); }
    std::wstring Result() const { return {result_, ResultLength()}; }
    std::size_t TextLength() const { return text_.size(); }

  private:
    Convert convert_;
    std::wstring text_;
    BSTR result_ = nullptr;
};

Round CopyOf(std::size_t length) {
    const auto from = std::make_shared<std::wstring>(length, L'x');
    const auto to = std::make_shared<std::wstring>(length, L'y');
    return [=] {
        void* (*volatile copy)(void*, const void*, std::size_t) = std::memcpy;
        return Timed([&] { copy(to->data(), from->data(), length * sizeof(wchar_t)); });
    };
}

void AgainstCopy(const char* work, clsConversion& conversion, std::size_t length, double goal,
                 const scSettings& settings, clsReport& report) {
    const Round contenders[] = {[&] { return conversion.Run(); }, CopyOf(length)};
    const auto ns = Race(contenders, settings.rounds);
    report.Against(work, ns[0], "memcpy of " + std::to_string(length) + " characters", ns[1], AtMost(goal));
}

void Mask(const wchar_t* text, BSTR* result) {
    UtilMaskAllHTMLCharacters(text, result);
}
void Demask(const wchar_t* text, BSTR* result) {
    UtilDemaskAllHTMLCharacters(text, result);
}
void ToHtml(const wchar_t* text, BSTR* result) {
    UtilConvertText2HTML(text, result, FALSE);
}
void ToPlain(const wchar_t* html, BSTR* result) {
    UtilConvertHtml2PlainText(html, result, FALSE);
}

void MeasureMasking(const scSettings& settings, clsReport& report) {
    const std::wstring prose = Repeated(L"Nothing but words and a full stop. ", megabyte);
    const std::wstring markup = Repeated(L"<td class=\"n\">a & b</td>\t", megabyte);
    clsConversion dense(Mask, markup), nothing(Mask, prose), cyrillic(Mask, std::wstring(megabyte, L'\x434'));
    clsConversion back(Demask, dense.Result()), nothingBack(Demask, prose),
        numbers(Demask, cyrillic.Result());
    clsConversion paragraphs(ToHtml, Repeated(L"A line of \xABwords\xBB & others\r\n", megabyte));
    AgainstCopy("mask, markup", dense, dense.ResultLength(), 8, settings, report);
    AgainstCopy("mask, nothing to do", nothing, megabyte, 3, settings, report);
    AgainstCopy("mask, Cyrillic", cyrillic, cyrillic.ResultLength(), 8, settings, report);
    AgainstCopy("demask, markup", back, back.TextLength(), 8, settings, report);
    AgainstCopy("demask, nothing to do", nothingBack, megabyte, 3, settings, report);
    AgainstCopy("demask, Cyrillic", numbers, numbers.TextLength(), 8, settings, report);
    AgainstCopy("text to HTML, lines", paragraphs, paragraphs.ResultLength(), 16, settings, report);
}

// A page of a megabyte against memcpy, and one of ten against ten times that of one.
void MeasurePage(const char* name, const std::wstring& small, const std::wstring& large, double goal,
                 const scSettings& settings, clsReport& report) {
    clsConversion one(ToPlain, small), ten(ToPlain, large);
    AgainstCopy(name, one, one.TextLength(), goal, settings, report);
    const Round contenders[] = {[&] { return ten.Run(); }, [&] { return one.Run(); }};
    const auto ns = Race(contenders, settings.quick ? settings.rounds : 11);
    report.Against(std::string(name) + ", 10 MB", ns[0], "1 MB", ns[1], AtMost(11));
}

std::wstring Crossed(std::size_t length) {
    return Repeated(L"<a href=\"", length / 2) + Repeated(L"x> \"></a>", length / 2);
}

} // namespace

void MeasureHtml(const scSettings& settings, clsReport& report) {
    report.Section("HTML and plain text: a megabyte of UTF-16 text");
    MeasureMasking(settings, report);
    MeasurePage("HTML to text, page with 2,000 links", Page(megabyte), Page(10 * megabyte), 20, settings,
                report);
    const struct {
        const char* name;
        std::wstring_view part;
        double goal;
    } hostile[] = {
        {"HTML to text, only <a ", L"<a ", 20},
        {"HTML to text, links never closed", L"<a href=\"x\">y", 20},
        {"HTML to text, only <", L"<", 20},
        {"HTML to text, only &", L"&", 20},
        {"HTML to text, only \xC2\xAB", L"\xAB", 20},
        {"HTML to text, only <!--", L"<!--", 20},
        {"HTML to text, only </a>", L"</a>", 40},
        {"HTML to text, quotation marks missing", L"<a href=\"x>y</a> z\">", 100},
        {"HTML to text, addresses that end links", L"<a href=\"</a>\">", 100},
        {"HTML to text, only <script>", L"<script>", 20},
    };
    for (const auto& [name, part, goal] : hostile)
        MeasurePage(name, Repeated(part, megabyte), Repeated(part, 10 * megabyte), goal, settings, report);
    MeasurePage("HTML to text, links crossed", Crossed(megabyte), Crossed(10 * megabyte), 100, settings,
                report);
    const Round copies[] = {CopyOf(10 * megabyte), CopyOf(megabyte)};
    const auto ns = Race(copies, settings.rounds);
    report.Against("memcpy, 10 MB", ns[0], "1 MB", ns[1]);
    report.Remark(
        "Each conversion writes over the result of the round before. Masking is held against "
        "a copy of the longer text, masked, in both directions. Ten megabytes leave the cache that one "
        "stays in: the last row says what that costs a copy.");
}

} // namespace bench
