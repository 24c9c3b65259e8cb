// A file is replaced by writing a new one beside it and renaming that one over it: whoever opens the target
// meets the old contents or the new ones. Where somebody has the target open and allows writing but no
// renaming, the new contents are copied over it, and the written file stays until the copy is complete. A
// file that the job itself holds cannot be replaced and is overwritten: room for the new contents is taken
// first, with real bytes, because a disk that is full must show before the old contents are touched.
#include "platform/file.h"

#include "platform/exception.h"
#include "platform/file_calls.h"
#include "platform/long_path.h"
#include "platform/wide.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr ULONGLONG replacePatience = 2000; // milliseconds

void WriteZeros(HANDLE file, std::uint64_t count) {
    constexpr std::array<char, 4096> zeros{};
    for (; count != 0; count -= std::min<std::uint64_t>(count, zeros.size()))
        PlatformWriteAll(file, zeros.data(),
                         static_cast<std::size_t>(std::min<std::uint64_t>(count, zeros.size())));
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
    PlatformMoveTo(file_, 0);
}

std::uint64_t clsFileSource::SizeHint() {
    return PlatformSizeOf(file_);
}

std::size_t clsFileSource::Read(void* buffer, std::size_t bytes) {
    DWORD read = 0;
    PlatformRequire(ReadFile(file_, buffer, static_cast<DWORD>(bytes), &read, nullptr),
                    "file cannot be read");
    return read;
}

// ---- Overwriting a held file ------------------------------------------------------------------

void clsFileSink::Extend(std::uint64_t bytes) {
    if (bytes != unknownLength)
        MakeRoom(bytes);
    PlatformMoveTo(file_, 0);
}

void clsFileSink::MakeRoom(std::uint64_t bytes) {
    const std::uint64_t size = PlatformSizeOf(file_);
    if (bytes > size) {
        PlatformMoveTo(file_, size);
        try {
            WriteZeros(file_, bytes - size);
        } catch (const clsException&) {
            PlatformMoveTo(file_, size);
            SetEndOfFile(file_);
            throw;
        }
    }
    // Somebody who maps the file keeps it from being cut; better to fail before than after.
    if (bytes < size) {
        PlatformMoveTo(file_, bytes);
        PlatformRequire(SetEndOfFile(file_), "file cannot be cut");
    }
}

void clsFileSink::Write(const void* data, std::size_t bytes) {
    PlatformWriteAll(file_, data, bytes);
}

void clsFileSink::Finish() {
    PlatformRequire(SetEndOfFile(file_), "file cannot be cut");
}

// ---- Replacing a file -------------------------------------------------------------------------

clsReplacingSink::clsReplacingSink(const char16_t* target) : target_(target) {}

void clsReplacingSink::Extend(std::uint64_t) {
    replacement_.emplace(target_.c_str());
}

void clsReplacingSink::Write(const void* data, std::size_t bytes) {
    replacement_->File().Write(data, bytes);
}

void clsReplacingSink::Finish() {
    const DWORD error = replacement_->PutInPlace(replacePatience);
    if (error == ERROR_SHARING_VIOLATION)
        CopyOverTarget();
    else if (error != ERROR_SUCCESS)
        throw clsException("file cannot be replaced", error);
}

namespace {

clsFileHandle OpenExisting(const std::wstring& name, DWORD access) {
    const DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    clsFileHandle file(CreateFileW(name.c_str(), access, everything, nullptr, OPEN_EXISTING,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
    PlatformRequire(static_cast<bool>(file), "file can be neither replaced nor overwritten");
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
    clsBesideFile& file = replacement_->File();
    PlatformRequire(file.TakeLastingName(), "temporary file cannot be renamed");
    const clsFileHandle contents = OpenExisting(file.Path(), GENERIC_READ);
    const clsFileHandle target = OpenExisting(file.Target(), GENERIC_WRITE);
    clsFileSource source(contents.Get());
    clsFileSink sink(target.Get());
    const std::uint64_t sizeBefore = PlatformSizeOf(target.Get());
    bool isOverwriting = false;
    try {
        sink.Extend(source.SizeHint());
        isOverwriting = true;
        Copy(source, sink);
    } catch (const clsException& exception) {
        if (!isOverwriting && PlatformSizeOf(target.Get()) == sizeBefore)
            throw;
        file.Keep();
        throw clsTornFile(exception, file.Path());
    } catch (...) {
        file.Keep();
        throw;
    }
}

} // namespace tvut
