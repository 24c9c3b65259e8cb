// prof html2text and text2html: a filter around the library's conversions.
//
// Pages and texts come and go with the line ends of the shell; the library ends lines with CR.
#include "commands.h"
#include "text_io.h"

#include <tvut22/html.h>

#include <oleauto.h>

#include <algorithm>
#include <memory>
#include <new>

namespace tool::prof {

namespace {

struct scFreeString {
    using pointer = BSTR;
    void operator()(BSTR string) const { SysFreeString(string); }
};

using Convert = void(TVUT22_CALL*)(const wchar_t*, BSTR*, BOOL);

// A NUL would end the text for the library.
std::wstring StandardInput() {
    std::string bytes = ReadStandardInput();
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    std::wstring text = ToWide(bytes);
    std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
    return text;
}

std::wstring Converted(Convert convert, const std::wstring& text, bool markers) {
    BSTR result = nullptr;
    convert(text.c_str(), &result, markers);
    const std::unique_ptr<wchar_t, scFreeString> owner{result};
    if (!result)
        throw std::bad_alloc{};
    return {result, SysStringLen(result)};
}

// Every line of a text file ends with a line feed, the last one, too; with CR LF, the CR is enough.
std::wstring LinesAsParagraphs(std::wstring text) {
    if (text.ends_with(L'\n'))
        text.erase(text.size() - (text.ends_with(L"\r\n") ? 2 : 1));
    std::wstring result;
    wchar_t before = L'\0';
    for (const wchar_t c : text) {
        if (c != L'\n')
            result += c;
        else if (before != L'\r')
            result += L'\r';
        before = c;
    }
    return result;
}

void Print(const std::wstring& text) {
    clsOutput::Standard().Write(ToUtf8(text));
    if (!text.empty() && !text.ends_with(L'\n'))
        clsOutput::Standard().Write("\n");
}

} // namespace

ExitCode RunHtmlToText(const scArguments& arguments) {
    std::wstring text = Converted(UtilConvertHtml2PlainText, StandardInput(), arguments.markers);
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    Print(text);
    return ExitCode::ok;
}

ExitCode RunTextToHtml(const scArguments& arguments) {
    Print(Converted(UtilConvertText2HTML, LinesAsParagraphs(StandardInput()), arguments.markers));
    return ExitCode::ok;
}

} // namespace tool::prof
