// A folder's documents with their titles and authors, as a file list shows them, whatever their formats are.
#include <tvut22/tvut22.hpp>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

struct scFile {
    const char* name;
    const char* contents;
};

// What comes by mail and from the web; the names say nothing about what is in them.
constexpr scFile files[] = {
    {"received-1",
     "From: =?utf-8?Q?Ana_B=C3=B3?= <ana@example.com>\r\nSubject: Figures of April\r\n\r\nText"},
    {"received-2", "<!doctype html><title>Price list</title><meta name=author content='ACME'><body>"},
    {"received-3", "<!doctype html><title>Cut in the midd"},
    {"received-4", "no document"},
};

std::string Property(const tvut22::document_info& info, const wchar_t* name) {
    BSTR value = nullptr;
    if (UtilDocInfoGet(info.get(), name, &value) != UTIL_OK)
        return "-";
    std::string text(3 * SysStringLen(value), '\0');
    text.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_UTF8, 0, value, static_cast<int>(SysStringLen(value)), &text[0],
                            static_cast<int>(text.size()), nullptr, nullptr)));
    SysFreeString(value);
    return text;
}

void Show(const char* name) {
    const std::wstring path(name, name + std::char_traits<char>::length(name));
    const tvut22::document_info info(UtilDocInfoOpen(path.c_str()));
    if (!info) {
        std::printf("%s: error %lu\n", name, GetLastError()); // ERROR_BAD_FORMAT: no format that is known
        return;
    }
    std::printf("%s: %s, \"%s\" by %s", name, Property(info, L"Format").c_str(),
                Property(info, L"Title").c_str(), Property(info, L"Author").c_str());
    if (UtilDocInfoGet(info.get(), L"Problem", nullptr) == UTIL_OK) // null only asks
        std::printf(" (%s)", Property(info, L"Problem").c_str());
    std::printf("\n");
}

} // namespace

int main() {
    for (const scFile& file : files)
        std::ofstream(file.name, std::ios::binary) << file.contents;
    for (const scFile& file : files)
        Show(file.name);
}
