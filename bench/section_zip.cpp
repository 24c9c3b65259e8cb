// ZIP archives against zlib in memory and bare file calls, and the memory that they take.
#include "contents.h"
#include "files.h"
#include "sections.h"

#include <tvut22/zip.h>

#include <windows.h>

#include <objidl.h>

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace bench {

namespace {

using Bytes = std::vector<std::byte>;

constexpr std::size_t pieceBytes = 64 * 1024;
constexpr int fileCount = 2000;
constexpr std::size_t smallFileBytes = 2048;
constexpr std::uint32_t listedEntries = 100000;

const Bytef* Input(const Bytes& bytes) {
    return reinterpret_cast<const Bytef*>(bytes.data());
}

uLong Crc(const Bytes& bytes) {
    return crc32(0, Input(bytes), static_cast<uInt>(bytes.size()));
}

// ---- zlib, as archives use it ------------------------------------------------------------------------

std::size_t DeflateRaw(const Bytes& bytes, Bytes& packed) {
    z_stream stream{};
    Require(deflateInit2(&stream, 6, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) == Z_OK,
            "zlib did not start");
    stream.next_in = const_cast<Bytef*>(Input(bytes));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    Require(deflate(&stream, Z_FINISH) == Z_STREAM_END, "zlib did not compress");
    deflateEnd(&stream);
    return stream.total_out;
}

void InflateRaw(const Bytes& packed, Bytes& bytes) {
    z_stream stream{};
    Require(inflateInit2(&stream, -MAX_WBITS) == Z_OK, "zlib did not start");
    stream.next_in = const_cast<Bytef*>(Input(packed));
    stream.avail_in = static_cast<uInt>(packed.size());
    stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
    stream.avail_out = static_cast<uInt>(bytes.size());
    Require(inflate(&stream, Z_FINISH) == Z_STREAM_END, "zlib did not inflate");
    inflateEnd(&stream);
}

// ---- The library -------------------------------------------------------------------------------------

void Pack(const std::wstring& archive, const std::wstring& source) {
    const UtilZip zip = UtilZIPCreate(archive.c_str(), nullptr);
    Require(UtilZIPAppend(zip, source.c_str(), nullptr) == UTIL_OK, "the source was not packed");
    Require(UtilZIPClose(zip, TRUE) == UTIL_OK, "the archive was not closed");
}

void Unpack(const std::wstring& archive, const std::wstring& folder) {
    UtilZipOptions options{};
    options.size = sizeof options;
    options.limit = 1ull << 40;
    Require(UtilExtractZip(archive.c_str(), folder.c_str(), &options) == UTIL_OK,
            "the archive was not unpacked");
}

std::wstring NumberedFile(const std::wstring& folder, int number) {
    return folder + L"\\file " + std::to_wstring(number) + L".txt";
}

void RemoveFiles(const std::wstring& folder) {
    for (int number = 0; number < fileCount; ++number)
        DeleteFileW(NumberedFile(folder, number).c_str());
}

void Remove(const std::wstring& folder, const std::wstring& file) {
    DeleteFileW((folder + L"\\" + file).c_str());
    RemoveDirectoryW(folder.c_str());
}

// ---- One large file ----------------------------------------------------------------------------------

void MeasureText(const scSettings& settings, clsReport& report, const Bytes& text) {
    const std::wstring source = settings.folder + L"large.txt", archive = settings.folder + L"text.zip",
                       bare = settings.folder + L"bare.bin", folder = settings.folder + L"out";
    WriteWholeFile(source, text);
    Bytes packed(compressBound(static_cast<uLong>(text.size()))), unpacked(text.size());
    std::size_t packedBytes = DeflateRaw(text, packed);
    Bytes shrunk(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(packedBytes));
    Pack(archive, source);
    const Round rounds[] = {
        [&] { return Timed([&] { Pack(archive, source); }); },
        [&] {
            return Timed([&] {
                packedBytes = DeflateRaw(text, packed);
                Consume(Crc(text));
                WriteWholeFile(bare, std::span(packed).first(packedBytes));
            });
        },
        [&] { return Timed([&] { Unpack(archive, folder); }); },
        [&] {
            return Timed([&] {
                InflateRaw(shrunk, unpacked);
                Consume(Crc(unpacked));
                WriteWholeFile(bare, unpacked);
            });
        },
    };
    const auto ns = Race(rounds, std::min(settings.rounds, 5));
    Require(ReadWholeFile(folder + L"\\large.txt") == text, "the file did not come out as it went in");
    report.Against("create, one file of text", ns[0], "zlib deflate and crc32 in memory, one WriteFile",
                   ns[1], AtMost(1.10));
    report.Against("extract it", ns[2], "zlib inflate and crc32 in memory, one WriteFile", ns[3],
                   AtMost(1.15));
    Remove(folder, L"large.txt");
}

class clsHandle {
  public:
    clsHandle(const std::wstring& path, DWORD access, DWORD disposition)
        : handle_(CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition, 0, nullptr)) {
        Require(handle_ != INVALID_HANDLE_VALUE, "a file could not be opened");
    }
    ~clsHandle() { CloseHandle(handle_); }
    clsHandle(const clsHandle&) = delete;
    clsHandle& operator=(const clsHandle&) = delete;
    HANDLE Get() const { return handle_; }

  private:
    HANDLE handle_;
};

// Reads, sums up and writes a file in pieces.
void CopyWithCrc(const std::wstring& from, const std::wstring& to, bool flushes) {
    const clsHandle source(from, GENERIC_READ, OPEN_EXISTING), target(to, GENERIC_WRITE, CREATE_ALWAYS);
    static Bytef piece[pieceBytes];
    uLong crc = 0;
    for (DWORD read = 1, written = 0; read != 0;) {
        Require(ReadFile(source.Get(), piece, sizeof piece, &read, nullptr) != FALSE, "a read failed");
        crc = crc32(crc, piece, read);
        Require(WriteFile(target.Get(), piece, read, &written, nullptr) != FALSE, "a write failed");
    }
    Consume(crc);
    if (flushes)
        FlushFileBuffers(target.Get());
}

void MeasureNoise(const scSettings& settings, clsReport& report, std::size_t bytes) {
    const std::wstring source = settings.folder + L"noise.bin", archive = settings.folder + L"noise.zip",
                       bare = settings.folder + L"bare.bin";
    WriteWholeFile(source, MakeNoise(bytes));
    const Round rounds[] = {
        [&] { return Timed([&] { Pack(archive, source); }); },
        [&] { return Timed([&] { CopyWithCrc(source, bare, false); }); },
        [&] { return Timed([&] { CopyWithCrc(source, bare, true); }); },
    };
    const auto ns = Race(rounds, std::min(settings.rounds, 9));
    report.Against("create, one file that does not shrink", ns[0],
                   "ReadFile, crc32, WriteFile of 64 KB pieces", ns[1], AtMost(1.15));
    report.Against("the same", ns[0], "these and FlushFileBuffers, which archives are", ns[2]);
}

// ---- Many small files --------------------------------------------------------------------------------

void PackBare(const std::wstring& folder, const std::wstring& target) {
    Bytes all, bytes(smallFileBytes), packed(compressBound(smallFileBytes));
    for (int number = 0; number < fileCount; ++number) {
        BareRead(NumberedFile(folder, number), bytes);
        Consume(Crc(bytes));
        const std::size_t size = DeflateRaw(bytes, packed);
        all.insert(all.end(), packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size));
    }
    WriteWholeFile(target, all);
}

void UnpackBare(const std::wstring& folder, const Bytes& bytes) {
    const std::wstring temporary = folder + L"\\~bare.tmp";
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    for (int number = 0; number < fileCount; ++number) {
        {
            const clsHandle file(temporary, GENERIC_WRITE, CREATE_NEW);
            DWORD written = 0;
            Require(WriteFile(file.Get(), bytes.data(), smallFileBytes, &written, nullptr) != FALSE,
                    "a write failed");
            SetFileTime(file.Get(), nullptr, nullptr, &time);
        }
        Require(MoveFileExW(temporary.c_str(), NumberedFile(folder, number).c_str(),
                            MOVEFILE_REPLACE_EXISTING) != FALSE,
                "a rename failed");
    }
}

void MeasureManyFiles(const scSettings& settings, clsReport& report, const Bytes& text) {
    const std::wstring folder = settings.folder + L"many", archive = settings.folder + L"many.zip",
                       bare = settings.folder + L"bare.bin", out = settings.folder + L"out",
                       unpacked = out + L"\\many";
    CreateDirectoryW(folder.c_str(), nullptr);
    CreateDirectoryW(out.c_str(), nullptr);
    CreateDirectoryW(unpacked.c_str(), nullptr);
    for (std::size_t number = 0; number < fileCount; ++number)
        WriteWholeFile(NumberedFile(folder, static_cast<int>(number)),
                       std::span(text).subspan(number * smallFileBytes, smallFileBytes));
    Pack(archive, folder);
    const auto intoEmpty = [&](auto unpack) {
        const double time = Timed(unpack);
        RemoveFiles(unpacked);
        return time;
    };
    const Round rounds[] = {
        [&] { return Timed([&] { Pack(archive, folder); }); },
        [&] { return Timed([&] { PackBare(folder, bare); }); },
        [&] { return intoEmpty([&] { Unpack(archive, out); }); },
        [&] { return intoEmpty([&] { UnpackBare(unpacked, text); }); },
    };
    const auto ns = Race(rounds, std::min(settings.rounds, 9));
    report.Against("create, 2,000 files of 2 KB", ns[0], "open, read, zlib, close of each, one WriteFile",
                   ns[1], AtMost(1.4));
    report.Against("extract them", ns[2],
                   "CreateFile, WriteFile, SetFileTime, CloseHandle, MoveFileEx of each", ns[3], AtMost(1.3));
    RemoveFiles(folder);
    for (const std::wstring& made : {folder, unpacked, out})
        RemoveDirectoryW(made.c_str());
}

// ---- Listing -----------------------------------------------------------------------------------------

void MakeManyEntries(const std::wstring& archive) {
    const UtilZip zip = UtilZIPCreate(archive.c_str(), nullptr);
    IStream* stream = nullptr;
    Require(CreateStreamOnHGlobal(nullptr, TRUE, &stream) == S_OK, "there is no stream");
    for (std::uint32_t number = 0; number < listedEntries; ++number) {
        const std::wstring name =
            L"folder " + std::to_wstring(number / 1000) + L"/document " + std::to_wstring(number) + L".txt";
        Require(UtilZIPAppendStream(zip, stream, name.c_str(), nullptr) == UTIL_OK, "an entry was not added");
    }
    stream->Release();
    Require(UtilZIPClose(zip, TRUE) == UTIL_OK, "the archive was not closed");
}

INT TVUT22_CALL SkipEntry(const UtilZipEntry* entry, UINT_PTR count) {
    Consume(entry->name[0]);
    ++*reinterpret_cast<std::uint32_t*>(count);
    return UTIL_ZIP_SKIP;
}

void List(const std::wstring& archive) {
    std::uint32_t count = 0;
    UtilZipOptions options{};
    options.size = sizeof options;
    options.callback = SkipEntry;
    options.user = reinterpret_cast<UINT_PTR>(&count);
    Require(UtilExtractZip(archive.c_str(), nullptr, &options) == UTIL_OK && count == listedEntries,
            "the archive was not listed");
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t at, std::size_t size) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + at, size);
    return number;
}

// The directory's size and place stand before the end; its records have their lengths at 28, 30 and 32.
void ListBare(const std::wstring& archive) {
    const clsHandle file(archive, GENERIC_READ, OPEN_EXISTING);
    constexpr std::size_t endBytes = 22 + 20 + 56;
    DWORD read = 0;
    Bytes end(endBytes);
    SetFilePointer(file.Get(), -static_cast<LONG>(endBytes), nullptr, FILE_END);
    Require(ReadFile(file.Get(), end.data(), endBytes, &read, nullptr) != FALSE, "a read failed");
    Bytes directory(NumberAt(end, 40, 4));
    SetFilePointer(file.Get(), static_cast<LONG>(NumberAt(end, 48, 4)), nullptr, FILE_BEGIN);
    Require(ReadFile(file.Get(), directory.data(), static_cast<DWORD>(directory.size()), &read, nullptr) !=
                FALSE,
            "a read failed");
    wchar_t name[260];
    std::size_t at = 0;
    for (std::uint32_t number = 0; number < listedEntries; ++number) {
        const std::uint32_t length = NumberAt(directory, at + 28, 2);
        const char* const bytes = reinterpret_cast<const char*>(directory.data() + at + 46);
        Consume(static_cast<std::size_t>(
            MultiByteToWideChar(CP_UTF8, 0, bytes, static_cast<int>(length), name, 260)));
        at += 46 + length + NumberAt(directory, at + 30, 2) + NumberAt(directory, at + 32, 2);
    }
    Require(at == directory.size(), "the directory was not read");
}

void MeasureList(const scSettings& settings, clsReport& report) {
    const std::wstring archive = settings.folder + L"entries.zip";
    MakeManyEntries(archive);
    const Round rounds[] = {
        [&] { return Timed([&] { List(archive); }); },
        [&] { return Timed([&] { ListBare(archive); }); },
    };
    const auto ns = Race(rounds, settings.rounds);
    report.Against("list 100,000 entries", ns[0], "ReadFile of the directory, one decode of each name", ns[1],
                   AtMost(3));
}

// ---- Memory ------------------------------------------------------------------------------------------

// Zeros, which the file system keeps to itself.
void MakeSparse(const std::wstring& path, std::uint64_t bytes) {
    const clsHandle file(path, GENERIC_WRITE, CREATE_ALWAYS);
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    Require(SetFilePointerEx(file.Get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.Get()),
            "a large file could not be made");
}

void MeasureZipMemory(const scSettings& settings, clsReport& report) {
    const std::uint64_t large = settings.quick ? 256ull << 20 : 2ull << 30;
    const std::wstring source = settings.folder + L"sparse.bin";
    double peaks[2];
    for (const std::uint64_t bytes : {std::uint64_t{64} << 20, large}) {
        MakeSparse(source, bytes);
        peaks[bytes == large] = static_cast<double>(RunMemoryProbe(L"zip", source));
    }
    RemoveFile(source);
    report.Bytes("create and extract 2 GB, peak memory", peaks[1], "64 MB", peaks[0],
                 AtMost(peaks[0] + 65536));
}

} // namespace

std::size_t ProbeZip(const std::wstring& path) {
    const std::size_t before = PeakMemory();
    const std::wstring archive = path + L".zip", folder = path + L" out";
    Pack(archive, path);
    Unpack(archive, folder);
    const std::size_t after = PeakMemory();
    DeleteFileW(archive.c_str());
    Remove(folder, path.substr(path.rfind(L'\\') + 1));
    return after - before;
}

void MeasureZip(const scSettings& settings, clsReport& report) {
    report.Section("ZIP: files of 64 MB, 2,000 files of 2 KB");
    const std::size_t largeBytes = settings.quick ? 8u << 20 : 64u << 20;
    const Bytes text = MakeDocument(largeBytes);
    MeasureText(settings, report, text);
    MeasureNoise(settings, report, largeBytes);
    MeasureManyFiles(settings, report, text);
    MeasureList(settings, report);
    MeasureZipMemory(settings, report);
    report.Remark("Peak memory: the highest working set of a fresh process less the one before the calls.");
}

} // namespace bench
