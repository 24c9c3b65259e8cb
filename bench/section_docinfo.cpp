// Properties of documents against the least that looks into a file: opening it, one read of 64 KiB, closing
// it.
#include "contents.h"
#include "files.h"
#include "sections.h"

#include <tvut22/docinfo.h>

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

namespace bench {

namespace {

constexpr int mostFiles = 1000, openDocuments = 1000;
constexpr std::size_t pieceBytes = 64 * 1024;
constexpr std::uint32_t mebibyte = 1024 * 1024;

using Bytes = std::vector<std::byte>;

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

// Asks for all properties that a document has, as a list of files would; returns the bytes of their texts.
std::size_t ValueBytes(UtilDocInfo info) {
    std::size_t bytes = 0;
    BSTR names = nullptr, value = nullptr;
    Require(UtilDocInfoGet(info, nullptr, &names) == UTIL_OK, "a document has no properties");
    for (wchar_t* name = names; *name;) {
        wchar_t* const end = name + wcscspn(name, L"\n");
        const bool isLast = *end == L'\0';
        *end = L'\0';
        Require(UtilDocInfoGet(info, name, &value) == UTIL_OK, "a property is not there");
        bytes += SysStringByteLen(value);
        name = isLast ? end : end + 1;
    }
    SysFreeString(names);
    SysFreeString(value);
    return bytes;
}

void LookAt(const std::wstring& path) {
    const UtilDocInfo info = UtilDocInfoOpen(path.c_str());
    Require(info != nullptr, "a document could not be read");
    Consume(ValueBytes(info));
    UtilDocInfoClose(info);
}

Bytes Fixture(const wchar_t* name) {
    return ReadWholeFile(std::wstring(TVUT22_BENCH_DOCUMENTS L"/") + name + L".in");
}

void MeasureFamily(const scSettings& settings, clsReport& report, const scFamily& family) {
    const Bytes document = Fixture(family.fixture);
    const int fileCount = settings.quick ? mostFiles / 10 : mostFiles;
    for (int number = 0; number < fileCount; ++number)
        WriteWholeFile(NumberedFile(settings, number), document);
    static std::byte piece[pieceBytes];
    const std::span<std::byte> start = std::span(piece).first(std::min(document.size(), pieceBytes));
    const auto each = [&](auto work) {
        return PerCall(static_cast<std::size_t>(fileCount),
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

// ---- Large documents -----------------------------------------------------------------------------

struct scFileCloser {
    using pointer = HANDLE;
    void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<HANDLE, scFileCloser>;

void WriteAt(const File& file, std::uint32_t position, std::span<const std::byte> bytes) {
    DWORD written = 0;
    Require(SetFilePointer(file.get(), static_cast<LONG>(position), nullptr, FILE_BEGIN) == position &&
                WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr),
            "a large document could not be made");
}

// A document of a size, with a gap at a place, which the file system keeps to itself.
void MakeLarge(const std::wstring& path, std::span<const std::byte> document, std::size_t gapAt,
               std::uint32_t bytes) {
    const File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    WriteAt(file, 0, document.first(gapAt));
    const auto after = document.subspan(gapAt);
    WriteAt(file, bytes - static_cast<std::uint32_t>(after.size()), after);
    SetFilePointer(file.get(), static_cast<LONG>(bytes), nullptr, FILE_BEGIN);
    SetEndOfFile(file.get());
}

// A document whose end tells where its last part begins: what it tells moves with that.
Bytes Moved(Bytes document, std::size_t tellsAt, std::uint32_t by) {
    std::uint32_t position = 0;
    std::memcpy(&position, document.data() + tellsAt, sizeof position);
    position += by;
    std::memcpy(document.data() + tellsAt, &position, sizeof position);
    return document;
}

// A PDF of a size: one stream takes all the room.
void MakePdf(const std::wstring& path, std::uint32_t bytes) {
    std::string text = "%PDF-1.5\n", table = "xref\n0 5\n0000000000 65535 f \n";
    const auto row = [&](std::size_t position) {
        std::string digits = std::to_string(position);
        table += std::string(10 - digits.size(), '0') + digits + " 00000 n \n";
    };
    for (const char* const object :
         {"1 0 obj\n<</Type/Catalog/Pages 2 0 R>>\nendobj\n", "2 0 obj\n<</Count 1>>\nendobj\n",
          "3 0 obj\n<</Title(Large)/Author(Somebody)>>\nendobj\n"}) {
        row(text.size());
        text += object;
    }
    row(text.size());
    text += "4 0 obj\n<</Length " + std::to_string(bytes - 2000) + ">>stream\n";
    const std::size_t gapAt = text.size();
    table += "trailer\n<</Root 1 0 R/Info 3 0 R>>\nstartxref\n";
    const std::string endStream = "\nendstream\nendobj\n", end = "\n%%EOF\n";
    constexpr std::size_t digits = 10;
    const std::size_t tableAt = bytes - table.size() - digits - end.size();
    const std::string start = std::to_string(tableAt);
    text += endStream + table + std::string(digits - start.size(), '0') + start + end;
    MakeLarge(path, std::as_bytes(std::span(text)), gapAt, bytes);
}

void MeasureLargePdf(const scSettings& settings, clsReport& report) {
    const std::wstring large = settings.folder + L"large.pdf", small = settings.folder + L"small.pdf";
    MakePdf(large, 200 * mebibyte);
    MakePdf(small, mebibyte / 5);
    const auto look = [](const std::wstring& path) {
        return PerCall(20, [&](std::size_t) { LookAt(path); });
    };
    const Round rounds[] = {[&] { return look(large); }, [&] { return look(small); }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("a PDF of 200 MiB", ns[0], "one of 200 KiB", ns[1], AtMost(1.2));
    report.Bytes("a PDF of 200 MiB, peak memory", static_cast<double>(RunMemoryProbe(L"document", large)),
                 "one of 200 KiB", static_cast<double>(RunMemoryProbe(L"document", small)),
                 AtMost(8.0 * mebibyte));
    RemoveFile(large);
    RemoveFile(small);
}

// IStream has no virtual destructor, and nothing is deleted through it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// A stream over a file that counts what is read. What readers of documents do not call is not there.
class clsCountedStream final : public IStream {
  public:
    explicit clsCountedStream(const std::wstring& path)
        : file_(
              CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr)) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG bytes, ULONG* given) override {
        DWORD count = 0;
        const BOOL fine = ReadFile(file_.get(), buffer, bytes, &count, nullptr);
        read += count;
        if (given)
            *given = count;
        return fine ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER to, DWORD from, ULARGE_INTEGER* place) override {
        LARGE_INTEGER reached{};
        const BOOL fine = SetFilePointerEx(file_.get(), to, &reached, from);
        if (place)
            place->QuadPart = static_cast<ULONGLONG>(reached.QuadPart);
        return fine ? S_OK : E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* state, DWORD) override {
        *state = {};
        LARGE_INTEGER size{};
        GetFileSizeEx(file_.get(), &size);
        state->cbSize.QuadPart = static_cast<ULONGLONG>(size.QuadPart);
        return S_OK;
    }
    // clang-format off
    using Count = ULARGE_INTEGER;
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetSize(Count) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, Count, Count*, Count*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(Count, Count, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockRegion(Count, Count, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }
    // clang-format on

    std::uint64_t read = 0;

  private:
    File file_;
};

#pragma GCC diagnostic pop

void MeasureBytesRead(const scSettings& settings, clsReport& report) {
    constexpr std::size_t endBytes = 22,
                          directoryAt = 16; // of an archive's end, and where the place is in it
    const std::wstring path = settings.folder + L"large document";
    const auto measure = [&](const char* work, std::span<const std::byte> document, std::size_t gapAt,
                             std::uint32_t bytes) {
        MakeLarge(path, document, gapAt, bytes);
        clsCountedStream stream(path);
        const UtilDocInfo info = UtilDocInfoOpenStream(&stream);
        Require(UtilDocInfoGet(info, L"Title", nullptr) == UTIL_OK, "a large document was not read");
        UtilDocInfoClose(info);
        report.Bytes(work, static_cast<double>(stream.read), "the file", bytes, AtMost(128 * 1024));
    };
    Bytes docx = Fixture(L"docx-strict");
    const std::size_t tellsAt = docx.size() - endBytes + directoryAt;
    const auto size = static_cast<std::uint32_t>(docx.size());
    std::uint32_t directory = 0;
    std::memcpy(&directory, docx.data() + tellsAt, sizeof directory);
    measure("bytes read of a docx of 50 MiB", Moved(std::move(docx), tellsAt, 50 * mebibyte - size),
            directory, 50 * mebibyte);
    const Bytes tiff = Fixture(L"tiff-big-endian"), mail = Fixture(L"msg-wide");
    measure("of a TIFF of 500 MiB", tiff, tiff.size(), 500 * mebibyte);
    measure("of a .msg of 20 MiB", mail, mail.size(), 20 * mebibyte);
    RemoveFile(path);
}

// What is open holds its values: they are counted as the texts that callers see, two bytes a character.
void MeasureOpenMemory(const scSettings& settings, clsReport& report) {
    const std::wstring path = settings.folder + L"document";
    WriteWholeFile(path, Fixture(L"docx-python"));
    const UtilDocInfo info = UtilDocInfoOpen(path.c_str());
    const double values = static_cast<double>(ValueBytes(info));
    UtilDocInfoClose(info);
    const double each = static_cast<double>(RunMemoryProbe(L"documents", path)) / openDocuments;
    report.Bytes("memory while a docx is open", each, "its values", values, AtMost(values + 2048));
    RemoveFile(path);
}

} // namespace

// Of one document: the highest working set. Of a folder's, which are many open at a time: what each adds.
std::size_t ProbeDocument(const std::wstring& path) {
    const std::size_t before = PeakMemory();
    LookAt(path);
    return std::max<std::size_t>(PeakMemory() - before, 1);
}

std::vector<UtilDocInfo> OpenManyDocuments(const std::wstring& path) {
    std::vector<UtilDocInfo> documents(openDocuments);
    for (UtilDocInfo& document : documents)
        document = UtilDocInfoOpen(path.c_str());
    return documents;
}

void MeasureDocInfo(const scSettings& settings, clsReport& report) {
    report.Section("Properties of documents: 1,000 files of each format");
    for (const scFamily& family : families)
        MeasureFamily(settings, report, family);
    MeasureLargePdf(settings, report);
    MeasureBytesRead(settings, report);
    MeasureOpenMemory(settings, report);
}

} // namespace bench
