#include "platform/file.h"

#include "platform/exception.h"
#include "platform/long_path.h"
#include "platform/replacement_file.h"
#include "platform/wide.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr ULONGLONG replacePatience = 2000; // milliseconds

[[noreturn]] void Fail(const char* what) {
    const DWORD error = GetLastError(); // before anything else asks the system
    throw clsException(what, error);
}

void Require(BOOL succeeded, const char* what) {
    if (!succeeded)
        Fail(what);
}

void MoveTo(HANDLE file, std::uint64_t position) {
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(position);
    Require(SetFilePointerEx(file, distance, nullptr, FILE_BEGIN), "file cannot be positioned");
}

std::uint64_t SizeOf(HANDLE file) {
    LARGE_INTEGER size;
    Require(GetFileSizeEx(file, &size), "file has no size");
    return static_cast<std::uint64_t>(size.QuadPart);
}

void WriteAll(HANDLE file, const void* data, std::size_t bytes) {
    const char* next = static_cast<const char*>(data);
    while (bytes != 0) {
        DWORD written = 0;
        Require(WriteFile(file, next, static_cast<DWORD>(bytes), &written, nullptr),
                "file cannot be written");
        if (written == 0)
            throw clsException("file takes no bytes", reason::writeFault);
        next += written;
        bytes -= written;
    }
}

void WriteZeros(HANDLE file, std::uint64_t count) {
    constexpr std::array<char, 4096> zeros{};
    for (; count != 0; count -= std::min<std::uint64_t>(count, zeros.size()))
        WriteAll(file, zeros.data(), static_cast<std::size_t>(std::min<std::uint64_t>(count, zeros.size())));
}

} // namespace

clsFileHandle PlatformOpenFile(const char16_t* name, const scOpenMode& mode, clsPatience& patience,
                               DWORD& error) {
    const std::wstring path = PlatformLongPath(ToWide(name));
    clsFileHandle file;
    error = patience.Try([&]() -> DWORD {
        file = clsFileHandle(CreateFileW(path.c_str(), mode.access, mode.share, nullptr, mode.disposition,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
        return file ? ERROR_SUCCESS : GetLastError();
    });
    return file;
}

DWORD PlatformMakeFolder(const char16_t* name) {
    const std::wstring path = PlatformLongPath(ToWide(name));
    if (CreateDirectoryW(path.c_str(), nullptr))
        return ERROR_SUCCESS;
    const DWORD error = GetLastError();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool isThere =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isThere ? ERROR_SUCCESS : error;
}

// ---- Reading ----------------------------------------------------------------------------------

clsFileSource::clsFileSource(HANDLE file) : file_(file) {
    MoveTo(file_, 0);
}

std::uint64_t clsFileSource::SizeHint() {
    return SizeOf(file_);
}

std::size_t clsFileSource::Read(void* buffer, std::size_t bytes) {
    DWORD read = 0;
    Require(ReadFile(file_, buffer, static_cast<DWORD>(bytes), &read, nullptr), "file cannot be read");
    return read;
}

// ---- Overwriting a held file ------------------------------------------------------------------

void clsFileSink::Extend(std::uint64_t bytes) {
    if (bytes != unknownLength)
        MakeRoom(bytes);
    MoveTo(file_, 0);
}

void clsFileSink::MakeRoom(std::uint64_t bytes) {
    const std::uint64_t size = SizeOf(file_);
    if (bytes > size) {
        MoveTo(file_, size);
        try {
            WriteZeros(file_, bytes - size);
        } catch (const clsException&) {
            MoveTo(file_, size);
            SetEndOfFile(file_);
            throw;
        }
    }
    // Somebody who maps the file keeps it from being cut; better told before than after.
    if (bytes < size) {
        MoveTo(file_, bytes);
        Require(SetEndOfFile(file_), "file cannot be cut");
    }
}

void clsFileSink::Write(const void* data, std::size_t bytes) {
    WriteAll(file_, data, bytes);
}

void clsFileSink::Finish() {
    Require(SetEndOfFile(file_), "file cannot be cut");
}

// ---- Replacing a file -------------------------------------------------------------------------

namespace {

std::wstring FolderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/:") + 1); // nothing found: npos + 1 is 0
}

using SecurityBuffer = std::array<char, 4096>;

bool ReadAccessRights(const std::wstring& file, SecurityBuffer& security) {
    DWORD needed = 0;
    return GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, security.data(),
                            static_cast<DWORD>(security.size()), &needed);
}

// The attributes that a file's owner sets; the file system keeps the others itself.
constexpr DWORD ownAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

// Gives a new file the creation time, attributes and access rights of the one it is to replace, as
// far as the system allows. Rights that both have from their folder anyway are left alone.
void TakeOver(const std::wstring& from, const WIN32_FILE_ATTRIBUTE_DATA& data, const std::wstring& to,
              HANDLE file) {
    FILE_BASIC_INFO basic{};
    basic.CreationTime.LowPart = data.ftCreationTime.dwLowDateTime;
    basic.CreationTime.HighPart = static_cast<LONG>(data.ftCreationTime.dwHighDateTime);
    basic.FileAttributes = (data.dwFileAttributes & ownAttributes) | FILE_ATTRIBUTE_ARCHIVE; // it is new
    SetFileInformationByHandle(file, FileBasicInfo, &basic, sizeof basic);

    alignas(SECURITY_DESCRIPTOR) SecurityBuffer wanted{};
    alignas(SECURITY_DESCRIPTOR) SecurityBuffer given{};
    if (ReadAccessRights(from, wanted) && ReadAccessRights(to, given) && wanted != given)
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, wanted.data());
}

// One step of the file system: whoever opens the target meets the old file or the new one. While
// somebody has it open, the system answers with one of two errors.
DWORD PutInPlace(const std::wstring& target, const std::wstring& temporary) {
    if (MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING))
        return ERROR_SUCCESS;
    const DWORD error = GetLastError();
    return error == ERROR_ACCESS_DENIED ? ERROR_SHARING_VIOLATION : error;
}

} // namespace

clsReplacingSink::clsReplacingSink(const char16_t* target) : target_(PlatformLongPath(ToWide(target))) {}

// The length is of no use: a temporary file may grow as it likes.
void clsReplacingSink::Extend(std::uint64_t) {
    targetExists_ = GetFileAttributesExW(target_.c_str(), GetFileExInfoStandard, &targetData_);
    if (targetExists_ &&
        (targetData_.dwFileAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)))
        throw clsException("file is read-only or a folder", reason::accessDenied);
    file_ = PlatformMakeReplacement(FolderOf(target_), temporary_);
    Require(static_cast<bool>(file_), "temporary file cannot be made");
}

// Without its file there is nothing to remove: it was never made, or it is the target by now.
clsReplacingSink::~clsReplacingSink() {
    if ((!file_ && !written_) || torn_)
        return;
    file_.Reset();
    DeleteFileW(temporary_.c_str());
}

void clsReplacingSink::Write(const void* data, std::size_t bytes) {
    WriteAll(file_.Get(), data, bytes);
}

void clsReplacingSink::Finish() {
    if (targetExists_)
        TakeOver(target_, targetData_, temporary_, file_.Get());
    written_ = true;
    file_.Reset();
    const DWORD error = clsPatience(replacePatience).Try([&] { return PutInPlace(target_, temporary_); });
    if (error == ERROR_SHARING_VIOLATION)
        return CopyOverTarget();
    if (error != ERROR_SUCCESS)
        throw clsException("file cannot be replaced", error);
    written_ = false;
}

namespace {

clsFileHandle OpenExisting(const std::wstring& name, DWORD access) {
    const DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    clsFileHandle file(CreateFileW(name.c_str(), access, everything, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    Require(static_cast<bool>(file), "file can be neither replaced nor overwritten");
    return file;
}

void Copy(clsByteSource& source, clsByteSink& sink) {
    std::array<char, 16 * 1024> block;
    while (const std::size_t read = source.Read(block.data(), block.size()))
        sink.Write(block.data(), read);
    sink.Finish();
}

} // namespace

// What can be known before is asked before: whether there is room, and whether the file may be cut. From the
// first byte on, the temporary file is the one that must not be lost.
void clsReplacingSink::CopyOverTarget() {
    Require(PlatformKeepReplacement(temporary_), "temporary file cannot be renamed");
    const clsFileHandle contents = OpenExisting(temporary_, GENERIC_READ);
    const clsFileHandle target = OpenExisting(target_, GENERIC_WRITE);
    clsFileSource source(contents.Get());
    clsFileSink sink(target.Get());
    const std::uint64_t sizeBefore = SizeOf(target.Get());
    bool isOverwriting = false;
    torn_ = true; // until the opposite is known
    try {
        sink.Extend(source.SizeHint());
        isOverwriting = true;
        Copy(source, sink);
        torn_ = false;
    } catch (const clsException& exception) {
        torn_ = isOverwriting || SizeOf(target.Get()) != sizeBefore;
        if (!torn_)
            throw;
        throw clsTornFile(exception, temporary_);
    }
}

} // namespace tvut
