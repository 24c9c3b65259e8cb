// The file stands in the target's folder, since a rename is one step only within a volume.
#include "platform/beside_file.h"

#include "platform/exception.h"
#include "platform/file_calls.h"
#include "platform/replacement_file.h"

namespace tvut {

namespace {

std::wstring FolderOf(const std::wstring& path) {
    return path.substr(0, path.find_last_of(L"\\/:") + 1); // nothing found: npos + 1 is 0
}

bool Exists(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES;
}

} // namespace

clsBesideFile::clsBesideFile(std::wstring target)
    : target_(std::move(target)), file_(PlatformMakeReplacement(FolderOf(target_), path_)) {
    PlatformRequire(static_cast<bool>(file_), "temporary file cannot be made");
}

// Without its file there is nothing to remove.
clsBesideFile::~clsBesideFile() {
    if (!isOurs_)
        return;
    const clsLastErrorKept lastError;
    file_.Reset();
    if (DeleteFileW(path_.c_str()) || GetLastError() != ERROR_ACCESS_DENIED)
        return;
    SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL); // it was to be read-only
    DeleteFileW(path_.c_str());
}

void clsBesideFile::Write(const void* data, std::size_t bytes) {
    PlatformWriteAll(file_.Get(), data, bytes);
}

void clsBesideFile::Patch(std::uint64_t position, const void* data, std::size_t bytes) {
    const std::uint64_t end = PlatformSizeOf(file_.Get());
    PlatformMoveTo(file_.Get(), position);
    PlatformWriteAll(file_.Get(), data, bytes);
    PlatformMoveTo(file_.Get(), end);
}

void clsBesideFile::Cut(std::uint64_t size) {
    PlatformMoveTo(file_.Get(), size);
    PlatformRequire(SetEndOfFile(file_.Get()), "file cannot be cut");
}

void clsBesideFile::FlushToDisk() {
    PlatformRequire(FlushFileBuffers(file_.Get()), "file cannot be flushed");
}

bool clsBesideFile::TakeLastingName() {
    return PlatformKeepReplacement(path_);
}

// While somebody has the target open, the system answers with one of two errors; the second one is also what
// it says of a target that cannot be replaced at all.
DWORD clsBesideFile::PutInPlace(bool replaces) {
    if (MoveFileExW(path_.c_str(), target_.c_str(), replaces ? MOVEFILE_REPLACE_EXISTING : 0)) {
        isOurs_ = false;
        return ERROR_SUCCESS;
    }
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_EXISTS)
        return ERROR_ALREADY_EXISTS;
    if (error != ERROR_ACCESS_DENIED)
        return error;
    const DWORD attributes = GetFileAttributesW(target_.c_str());
    const bool isUnreplaceable =
        Exists(attributes) && (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
    return isUnreplaceable ? ERROR_ACCESS_DENIED : ERROR_SHARING_VIOLATION;
}

} // namespace tvut
