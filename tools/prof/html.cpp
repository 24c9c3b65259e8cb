// prof html2text and text2html: filters around the library's conversions.
//
// html2text prepares its pages before the conversion (html/preparation.h) and lays the text out after it
// (html/line_layout.h). With markers there is nothing to prepare: such a page holds no tags, and only the
// library writes them.
//
// Pages and texts come and go with the line ends of the shell; the library ends lines with CR.
#include "commands.h"
#include "html/charset.h"
#include "html/line_layout.h"
#include "html/preparation.h"
#include "stream.h"
#include "text_io.h"

#include <tvut22/html.h>

#include <oleauto.h>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

namespace tool::prof {

namespace {

constexpr std::size_t mostBytes = 0x7FFFFFFF; // that a conversion takes

struct scFreeString {
    using pointer = BSTR;
    void operator()(BSTR string) const { SysFreeString(string); }
};

using Convert = void(TVUT22_CALL*)(const wchar_t*, BSTR*, BOOL);

// A NUL would end the text for the library.
std::wstring WithoutNuls(std::wstring text) {
    std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
    return text;
}

std::wstring TextOfInput() {
    std::string bytes = ReadStandardInput();
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    return WithoutNuls(ToWide(bytes));
}

std::wstring Converted(Convert convert, const wchar_t* text, bool markers) {
    BSTR result = nullptr;
    convert(text, &result, markers);
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

void Print(std::wstring_view text) {
    clsOutput::Standard().Write(ToUtf8(text));
    if (!text.empty() && !text.ends_with(L'\n'))
        clsOutput::Standard().Write("\n");
}

// ---- Pages -----------------------------------------------------------------------------------------------

std::string BytesOf(const std::string& name) {
    return name == "-" ? ReadStandardInput() : ContentsOf(*FileStream(ToWide(name), name));
}

std::wstring Utf16(std::string_view bytes, bool bigEndian) {
    std::wstring text(bytes.size() / 2, L'\0');
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto first = static_cast<unsigned char>(bytes[2 * at]);
        const auto second = static_cast<unsigned char>(bytes[2 * at + 1]);
        text[at] = static_cast<wchar_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

// Nothing when the system does not know the code page.
std::optional<std::wstring> Decoded(std::string_view bytes, unsigned codePage) {
    const int size = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0'); // no character has more units than bytes
    const int length = MultiByteToWideChar(codePage, 0, bytes.data(), size, text.data(), size);
    if (length == 0 && size > 0)
        return {};
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::wstring PageOf(std::string_view bytes) {
    constexpr unsigned utf16 = 1200, utf16BigEndian = 1201, windows1252 = 1252;
    const html::scCharset charset = html::CharsetOf(bytes);
    bytes.remove_prefix(charset.mark);
    if (bytes.size() > mostBytes)
        throw std::bad_alloc{};
    if (charset.codePage == utf16 || charset.codePage == utf16BigEndian)
        return WithoutNuls(Utf16(bytes, charset.codePage == utf16BigEndian));
    std::optional<std::wstring> text = Decoded(bytes, charset.codePage);
    if (!text)
        text = Decoded(bytes, windows1252);
    return WithoutNuls(std::move(text).value());
}

html::Links LinksOf(const std::string& name) {
    if (name == "none")
        return html::Links::none;
    return name == "end" ? html::Links::numbered : html::Links::inLine;
}

std::wstring TextOf(std::wstring page, const scArguments& arguments) {
    page = Wide(html::PreparedPage(Units(page), LinksOf(arguments.links)));
    const std::wstring text = Converted(UtilConvertHtml2PlainText, page.c_str(), false);
    return std::wstring(Wide(html::LaidOut(Units(text), arguments.width)));
}

std::wstring TextOfMarkers(const std::wstring& page) {
    std::wstring text = Converted(UtilConvertHtml2PlainText, page.c_str(), true);
    std::replace(text.begin(), text.end(), L'\r', L'\n');
    return text;
}

} // namespace

ExitCode RunHtmlToText(const scArguments& arguments) {
    for (const std::string& name : arguments.pages) {
        std::wstring page = PageOf(BytesOf(name));
        if (&name != &arguments.pages.front())
            clsOutput::Standard().Write("\n");
        Print(arguments.markers ? TextOfMarkers(page) : TextOf(std::move(page), arguments));
    }
    return ExitCode::ok;
}

ExitCode RunTextToHtml(const scArguments& arguments) {
    Print(Converted(UtilConvertText2HTML, LinesAsParagraphs(TextOfInput()).c_str(), arguments.markers));
    return ExitCode::ok;
}

} // namespace tool::prof
