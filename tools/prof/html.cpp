// prof html2text and text2html: a filter around the library's conversions.
//
// Pages and texts come and go with the line ends of the shell; the library ends lines with CR.
#include "commands.h"
#include "text_io.h"

#include <tvut22/html.h>

#include <algorithm>
#include <memory>
#include <new>

namespace tool::prof {

namespace {

struct FreeString {
    using pointer = BSTR;
    void operator()(BSTR string) const { SysFreeString(string); }
};

using Convert = void(TVUT22_CALL*)(const wchar_t*, BSTR*, BOOL);

// A NUL would end the text for the library.
std::wstring standardInput() {
    std::string bytes = readStandardInput();
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    std::wstring text = toWide(bytes);
    std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
    return text;
}

std::wstring converted(Convert convert, const std::wstring& text, bool markers) {
    BSTR result = nullptr;
    convert(text.c_str(), &result, markers);
    const std::unique_ptr<wchar_t, FreeString> owner{result};
    if (!result)
        throw std::bad_alloc{};
    return {result, SysStringLen(result)};
}

// Every line of a text file ends with a line feed, the last one, too; with CR LF, the CR is enough.
std::wstring linesAsParagraphs(std::wstring text) {
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

void print(const std::wstring& text) {
    Output::standard().write(toUtf8(text));
    if (!text.empty() && !text.ends_with(L'\n'))
        Output::standard().write("\n");
}

} // namespace

ExitCode runHtmlToText(const Arguments& arguments) {
    std::wstring text = converted(UtilConvertHtml2PlainText, standardInput(), arguments.markers);
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    print(text);
    return ExitCode::ok;
}

ExitCode runTextToHtml(const Arguments& arguments) {
    print(converted(UtilConvertText2HTML, linesAsParagraphs(standardInput()), arguments.markers));
    return ExitCode::ok;
}

} // namespace tool::prof
