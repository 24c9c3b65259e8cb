#include "xml_text.h"

#include "stream.h"

#include <new>

namespace tool::prof {

namespace {

constexpr wchar_t pictureOfZero = L'\x2400'; // as the library shows one that it reads

bool IsSpecial(wchar_t unit) {
    return unit < L' ' || unit == L'<' || unit == L'>' || unit == L'&' || unit == L'"';
}

} // namespace

clsXmlText::clsXmlText()
    : text_(L"\xfeff<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"yes\"?>\r\n<profile>\r\n") {}

// Line ends as numbers stay what they are.
void clsXmlText::Append(std::wstring_view text) {
    for (const wchar_t unit : text) {
        if (unit == L'\0')
            text_ += pictureOfZero;
        else if (IsSpecial(unit))
            text_.append(L"&#").append(std::to_wstring(static_cast<unsigned>(unit))).append(L";");
        else
            text_ += unit;
    }
}

void clsXmlText::Item(std::wstring_view name, std::wstring_view value) {
    text_ += L"<item name=\"";
    Append(name);
    text_ += L"\">";
    Append(value);
    text_ += L"</item>\r\n";
}

void clsXmlText::BeginList(std::wstring_view name) {
    text_ += L"<list name=\"";
    Append(name);
    text_ += L"\">\r\n";
}

void clsXmlText::EndList() {
    text_ += L"</list>\r\n";
}

JobPtr clsXmlText::Open() && {
    text_ += L"</profile>\r\n";
    const std::string_view bytes{reinterpret_cast<const char*>(text_.data()), text_.size() * sizeof(wchar_t)};
    JobPtr job{ProfJobOpenStream(MemoryStream(bytes).get())};
    if (ProfGetError(job.get()) != PROF_OK) // it is well-formed, so memory has run out
        throw std::bad_alloc{};
    return job;
}

} // namespace tool::prof
