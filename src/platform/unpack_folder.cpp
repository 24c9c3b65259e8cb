// A folder is looked at only once it is held open in a way that nobody can rename or delete it: what it was
// found to be, it stays.
#include "platform/unpack_folder.h"

#include "platform/exception.h"
#include "platform/file_calls.h"
#include "platform/long_path.h"
#include "platform/beside_file.h"
#include "platform/patience.h"
#include "platform/wide.h"

#include <algorithm>
#include <limits>

namespace tvut {

namespace {

constexpr ULONGLONG replacePatience = openPatience;

bool IsThere(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES;
}
bool IsFolder(DWORD attributes) {
    return IsThere(attributes) && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// A time as the system takes it; some that cannot be one have meanings of their own.
LARGE_INTEGER Time(std::uint64_t time) {
    LARGE_INTEGER value;
    value.QuadPart = time <= std::numeric_limits<LONGLONG>::max() ? static_cast<LONGLONG>(time) : 0;
    return value;
}

// Rights that some folders deny are not needed to hold them.
clsFileHandle HoldFolder(const std::wstring& path) {
    for (const DWORD access : {DWORD{FILE_LIST_DIRECTORY}, DWORD{FILE_TRAVERSE}}) {
        clsFileHandle handle(CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                         OPEN_EXISTING,
                                         FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
        if (handle || GetLastError() != ERROR_ACCESS_DENIED)
            return handle;
    }
    return {};
}

class clsUnpackedFile final : public IclsTargetFile {
  public:
    explicit clsUnpackedFile(std::wstring path) : file_(std::move(path)) {}

    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override { file_.Write(data, bytes); }
    void Finish() override {}

    // Nobody's file is there most of the time: that is tried first, since it takes no look at what is.
    void PutInPlace(const scFileMarks& marks, bool replaces) override {
        Set(marks);
        file_.Close();
        const DWORD error = file_.PutInPlace(false);
        if (error == ERROR_SUCCESS || (error == ERROR_ALREADY_EXISTS && !replaces))
            return;
        if (error != ERROR_ALREADY_EXISTS)
            throw clsException("file cannot be put in its place", error);
        Replace();
    }

  private:
    void Replace() {
        const DWORD attributes = GetFileAttributesW(file_.Target().c_str());
        if (IsThere(attributes) && (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
            throw clsException("file is read-only or a folder", reason::accessDenied);
        const DWORD error = clsPatience(replacePatience).Try([this] { return file_.PutInPlace(true); });
        if (error != ERROR_SUCCESS)
            throw clsException("file cannot be replaced", error);
    }

    // A file system that does not know some of it keeps what it can.
    void Set(const scFileMarks& marks) {
        FILE_BASIC_INFO basic{};
        basic.LastWriteTime = Time(marks.modified);
        basic.CreationTime = Time(marks.created);
        basic.FileAttributes = FILE_ATTRIBUTE_ARCHIVE | (marks.isReadOnly ? FILE_ATTRIBUTE_READONLY : 0) |
                               (marks.isHidden ? FILE_ATTRIBUTE_HIDDEN : 0);
        SetFileInformationByHandle(file_.Handle(), FileBasicInfo, &basic, sizeof basic);
    }

    clsBesideFile file_;
};

} // namespace

clsUnpackFolder::clsUnpackFolder(const std::wstring& full) : full_(full) {
    const scVerbatimPath verbatim = PlatformVerbatimPath(full_);
    root_.append(verbatim.prefix).append(verbatim.rest);
    if (!root_.ends_with(L'\\'))
        root_ += L'\\';
}

// Of the first folder upwards that is there.
std::uint64_t clsUnpackFolder::FreeBytes() {
    std::wstring folder = root_;
    for (;;) {
        ULARGE_INTEGER free;
        if (GetDiskFreeSpaceExW(folder.c_str(), &free, nullptr, nullptr))
            return free.QuadPart;
        folder.pop_back();
        const std::size_t end = folder.find_last_of(L'\\');
        PlatformRequire(end != folder.npos && end > 2, "volume does not tell what is free");
        folder.resize(end + 1);
    }
}

// From the first folder upwards that is there, down again.
void clsUnpackFolder::Make() {
    std::size_t end = root_.size() - 1;
    DWORD error = ERROR_SUCCESS;
    for (;;) {
        const std::wstring folder = root_.substr(0, end);
        if (CreateDirectoryW(folder.c_str(), nullptr) || IsFolder(GetFileAttributesW((folder + L'\\').c_str())))
            break;
        error = GetLastError();
        end = root_.rfind(L'\\', end - 1);
        if (end == root_.npos || end < 3)
            throw clsException("folder cannot be made", error);
    }
    while (end != root_.size() - 1) {
        end = root_.find(L'\\', end + 1);
        const std::wstring folder = root_.substr(0, end);
        PlatformRequire(CreateDirectoryW(folder.c_str(), nullptr) || IsFolder(GetFileAttributesW(folder.c_str())),
                        "folder cannot be made");
    }
}

bool clsUnpackFolder::Enter(std::u16string_view folder) {
    if (folder == entered_)
        return true;
    LeaveFor(folder);
    while (entered_.size() < folder.size()) {
        const std::size_t start = entered_.empty() ? 0 : entered_.size() + 1;
        if (!EnterNext(folder.substr(0, std::min(folder.find(u'\\', start), folder.size()))))
            return false;
    }
    return true;
}

// What the way to a folder shares with the way to the one that was entered stays held.
void clsUnpackFolder::LeaveFor(std::u16string_view folder) {
    const auto shared = static_cast<std::size_t>(std::ranges::mismatch(folder, entered_).in1 - folder.begin());
    const auto isOnTheWay = [&](std::size_t end) {
        return end <= shared && (end == folder.size() || folder[end] == u'\\');
    };
    while (!held_.empty() && !isOnTheWay(held_.back().end))
        held_.pop_back();
    entered_.resize(held_.empty() ? 0 : held_.back().end);
}

// Enters a folder that lies in the one that was entered.
bool clsUnpackFolder::EnterNext(std::u16string_view folder) {
    const std::wstring path = PathOf(folder);
    CreateDirectoryW(path.c_str(), nullptr);
    clsFileHandle handle = HoldFolder(path);
    PlatformRequire(static_cast<bool>(handle), "folder cannot be opened");
    const DWORD attributes = GetFileAttributesW(path.c_str());
    PlatformRequire(IsThere(attributes), "folder cannot be looked at");
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return false;
    if (!IsFolder(attributes))
        throw clsException("a file is where a folder should be", ERROR_ALREADY_EXISTS);
    held_.push_back({folder.size(), std::move(handle)});
    entered_ = folder;
    return true;
}

bool clsUnpackFolder::Exists(std::u16string_view path) {
    return IsThere(GetFileAttributesW(PathOf(path).c_str()));
}

std::unique_ptr<IclsTargetFile> clsUnpackFolder::NewFile(std::u16string_view path) {
    return std::make_unique<clsUnpackedFile>(PathOf(path));
}

std::wstring clsUnpackFolder::PathOf(std::u16string_view path) const {
    return root_ + std::wstring(ToWide(path.data()), path.size());
}

} // namespace tvut
