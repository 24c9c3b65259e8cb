// HTML and plain text against a plain pass over the same text, on ordinary pages and on pages made to be
// expensive.
#include "plain_pass.h"
#include "sections.h"

#include <tvut22/html.h>

#include <oleauto.h>

namespace bench {

namespace {

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

void Against(const std::string& work, clsConversion& conversion, std::size_t length, double goal,
             const scSettings& settings, clsReport& report) {
    AgainstPlainPass(
        work, [&] { return conversion.Run(); }, length, AtMost(goal), settings.rounds, report);
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

// Masking is held against a pass over the longer text, masked, in both directions.
void MeasureMasking(std::size_t length, const scSettings& settings, clsReport& report) {
    const std::wstring prose = Repeated(L"Nothing but words and a full stop. ", length);
    const std::wstring markup = Repeated(L"<td class=\"n\">a & b</td>\t", length);
    clsConversion dense(Mask, markup), nothing(Mask, prose), cyrillic(Mask, std::wstring(length, L'\x434'));
    clsConversion back(Demask, dense.Result()), nothingBack(Demask, prose),
        numbers(Demask, cyrillic.Result());
    clsConversion paragraphs(ToHtml, Repeated(L"A line of \xABwords\xBB & others\r\n", length));
    const struct {
        const char* work;
        clsConversion& conversion;
        std::size_t length;
        double goal;
    } rows[] = {
        {"mask, markup", dense, dense.ResultLength(), 3},
        {"mask, nothing to do", nothing, length, 0.75},
        {"mask, Cyrillic", cyrillic, cyrillic.ResultLength(), 1.65},
        {"demask, markup", back, back.TextLength(), 2},
        {"demask, nothing to do", nothingBack, length, 0.5},
        {"demask, Cyrillic", numbers, numbers.TextLength(), 1.65},
        {"text to HTML, lines", paragraphs, paragraphs.ResultLength(), 5.5},
    };
    for (const auto& row : rows)
        Against(row.work, row.conversion, row.length, row.goal, settings, report);
}

// A page of a megabyte, and one of ten against ten times that of one.
void MeasurePage(const char* name, const std::wstring& small, const std::wstring& large, double goal,
                 const scSettings& settings, clsReport& report) {
    clsConversion one(ToPlain, small), ten(ToPlain, large);
    Against(name, one, one.TextLength(), goal, settings, report);
    const Round contenders[] = {[&] { return ten.Run(); }, [&] { return one.Run(); }};
    const auto ns = Race(contenders, settings.quick ? settings.rounds : 11);
    report.Against(std::string(name) + ", 10 MB", ns[0], "1 MB", ns[1], AtMost(11));
}

std::wstring Crossed(std::size_t length) {
    return Repeated(L"<a href=\"", length / 2) + Repeated(L"x> \"></a>", length / 2);
}

// An ordinary page, and texts of the same length: in the cache, and too long for it.
void MeasureOrdinary(std::size_t length, const scSettings& settings, clsReport& report) {
    report.Section("HTML and plain text, " + MegabytesOf(length) + " of UTF-16");
    MeasureMasking(length, settings, report);
    clsConversion page(ToPlain, Page(length));
    Against("HTML to text, page with links", page, page.TextLength(), 2.6, settings, report);
    ShowCopy(length, settings.rounds, report);
}

void MeasureHostile(const scSettings& settings, clsReport& report) {
    report.Section("HTML to text, pages made to be expensive");
    const struct {
        const char* name;
        std::wstring_view part;
        double goal;
    } hostile[] = {
        {"only <a ", L"<a ", 1.5},
        {"links never closed", L"<a href=\"x\">y", 5.8},
        {"only <", L"<", 1.5},
        {"only &", L"&", 3},
        {"only \xC2\xAB", L"\xAB", 4.5},
        {"only <!--", L"<!--", 1.5},
        {"only </a>", L"</a>", 4.5},
        {"quotation marks missing", L"<a href=\"x>y</a> z\">", 24},
        {"addresses that end links", L"<a href=\"</a>\">", 27},
        {"only <script>", L"<script>", 5.4},
    };
    for (const auto& [name, part, goal] : hostile)
        MeasurePage(name, Repeated(part, megabyte), Repeated(part, 10 * megabyte), goal, settings, report);
    MeasurePage("links crossed", Crossed(megabyte), Crossed(10 * megabyte), 28, settings, report);
}

} // namespace

void MeasureHtml(const scSettings& settings, clsReport& report) {
    MeasureOrdinary(megabyte, settings, report);
    MeasureOrdinary((settings.quick ? 2 : 16) * megabyte, settings, report);
    MeasureHostile(settings, report);
    report.Remark("Each conversion writes over the result of the round before.");
}

} // namespace bench
