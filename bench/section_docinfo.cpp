// Properties of documents against the least that looks into a file: opening it, one read of 64 KiB, closing
// it.
#include "contents.h"
#include "files.h"
#include "sections.h"

#include <tvut22/docinfo.h>

#include <windows.h>

#include <algorithm>
#include <span>

namespace bench {

namespace {

constexpr int fileCount = 200;
constexpr std::size_t pieceBytes = 64 * 1024;

struct scFamily {
    const char* name;
    const wchar_t* fixture; // of tests/data/docinfo
    double goal;
};
constexpr scFamily families[] = {
    {"html", L"html-all", 2},          {"rtf", L"rtf-all", 2},      {"tiff", L"tiff-big-endian", 2},
    {"mail", L"mail-python", 2},       {"ole", L"doc-cyrillic", 2}, {"ooxml", L"docx-python", 3},
    {"OpenDocument", L"odt-odfpy", 3}, {"pdf", L"pdf-plain", 3},
};

std::wstring NumberedFile(const scSettings& settings, int number) {
    return settings.folder + L"document " + std::to_wstring(number);
}

// All properties that a document has, as a list of files would ask for them.
void LookAt(const std::wstring& path) {
    const UtilDocInfo info = UtilDocInfoOpen(path.c_str());
    Require(info != nullptr, "a document could not be read");
    BSTR names = nullptr, value = nullptr;
    Require(UtilDocInfoGet(info, nullptr, &names) == UTIL_OK, "a document has no properties");
    for (wchar_t* name = names; *name;) {
        wchar_t* const end = name + wcscspn(name, L"\n");
        const bool isLast = *end == L'\0';
        *end = L'\0';
        Require(UtilDocInfoGet(info, name, &value) == UTIL_OK, "a property is not there");
        name = isLast ? end : end + 1;
    }
    SysFreeString(names);
    SysFreeString(value);
    UtilDocInfoClose(info);
}

void MeasureFamily(const scSettings& settings, clsReport& report, const scFamily& family) {
    const std::vector<std::byte> document =
        ReadWholeFile(std::wstring(TVUT22_BENCH_DOCUMENTS L"/") + family.fixture + L".in");
    for (int number = 0; number < fileCount; ++number)
        WriteWholeFile(NumberedFile(settings, number), document);
    static std::byte piece[pieceBytes];
    const std::span<std::byte> start = std::span(piece).first(std::min(document.size(), pieceBytes));
    const auto each = [&](auto work) {
        return PerCall(fileCount,
                       [&](std::size_t number) { work(NumberedFile(settings, static_cast<int>(number))); });
    };
    const Round rounds[] = {
        [&] { return each(LookAt); },
        [&] { return each([&](const std::wstring& path) { BareRead(path, start); }); },
    };
    const auto ns = Race(rounds, settings.rounds);
    report.Against(std::string("Open, all Gets, Close: ") + family.name, ns[0],
                   "CreateFile, ReadFile of 64 KiB, CloseHandle", ns[1], AtMost(family.goal));
    for (int number = 0; number < fileCount; ++number)
        RemoveFile(NumberedFile(settings, number));
}

} // namespace

void MeasureDocInfo(const scSettings& settings, clsReport& report) {
    report.Section("Properties of documents");
    for (const scFamily& family : families)
        MeasureFamily(settings, report, family);
}

} // namespace bench
