// Plain Win32 file calls, each checked: a baseline that failed would flatter the library.
#include "files.h"

#include "harness.h"
#include "workload.h"

#include <windows.h>

namespace bench {

namespace {

constexpr std::size_t filesOfAFolder = 100;

// A file handle that closes itself.
class clsFile {
  public:
    clsFile(const std::wstring& path, DWORD access, DWORD disposition)
        : handle_(CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr)) {
        Require(handle_ != INVALID_HANDLE_VALUE, "a file could not be opened");
    }
    ~clsFile() { CloseHandle(handle_); }
    clsFile(const clsFile&) = delete;
    clsFile& operator=(const clsFile&) = delete;

    std::size_t Size() const { return GetFileSize(handle_, nullptr); }

    void Read(std::span<std::byte> buffer) const {
        DWORD done = 0;
        const DWORD size = static_cast<DWORD>(buffer.size());
        Require(ReadFile(handle_, buffer.data(), size, &done, nullptr) && done == size, "a read failed");
    }

    void Write(std::span<const std::byte> bytes) const {
        DWORD done = 0;
        const DWORD size = static_cast<DWORD>(bytes.size());
        Require(WriteFile(handle_, bytes.data(), size, &done, nullptr) && done == size, "a write failed");
    }

  private:
    HANDLE handle_;
};

} // namespace

clsScratchFolder::clsScratchFolder() {
    wchar_t temp[MAX_PATH];
    const DWORD length = GetTempPathW(MAX_PATH, temp);
    Require(length != 0 && length < MAX_PATH, "there is no temporary folder");
    path_ = temp + (L"tvut22_bench_" + std::to_wstring(GetCurrentProcessId())) + L"\\";
    Require(CreateDirectoryW(path_.c_str(), nullptr) != FALSE, "the scratch folder could not be made");
}

clsScratchFolder::~clsScratchFolder() {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((path_ + L"*").c_str(), &found);
    if (search != INVALID_HANDLE_VALUE) {
        do {
            DeleteFileW((path_ + found.cFileName).c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
    }
    RemoveDirectoryW(path_.c_str());
}

void WriteWholeFile(const std::wstring& path, std::span<const std::byte> bytes) {
    clsFile(path, GENERIC_WRITE, CREATE_ALWAYS).Write(bytes);
}

std::vector<std::byte> ReadWholeFile(const std::wstring& path) {
    const clsFile file(path, GENERIC_READ, OPEN_EXISTING);
    std::vector<std::byte> bytes(file.Size());
    file.Read(bytes);
    return bytes;
}

std::wstring ReadWholeText(const std::wstring& path) {
    const clsFile file(path, GENERIC_READ, OPEN_EXISTING);
    std::wstring text(file.Size() / sizeof(wchar_t), L'\0');
    file.Read(std::as_writable_bytes(std::span(text)));
    return text;
}

void RemoveFile(const std::wstring& path) {
    Require(DeleteFileW(path.c_str()) != FALSE, "a file could not be deleted");
}

scWorkFiles WriteWork(const std::wstring& folder) {
    const auto write = [](const std::wstring& path, const auto& text) {
        WriteWholeFile(path, std::as_bytes(std::span(text)));
    };
    const Work work = MakeWork();
    const scWorkFiles files = {folder + L"work.prf", folder + L"work.ini", folder + L"work.xml"};
    write(files.profile, ProfileText(work));
    write(files.ini, IniText(work));
    write(files.xml, XmlText(work));
    return files;
}

void BareRead(const std::wstring& path, std::span<std::byte> buffer) {
    clsFile(path, GENERIC_READ, OPEN_EXISTING).Read(buffer);
}

void BareSave(const std::wstring& path, std::span<const std::byte> bytes) {
    const std::wstring temporary = path + L".tmp";
    clsFile(temporary, GENERIC_WRITE, CREATE_NEW).Write(bytes);
    Require(MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE,
            "a rename failed");
}

std::vector<std::wstring> MakeManyFiles(const std::wstring& folder, std::size_t count) {
    std::vector<std::wstring> files;
    std::wstring group;
    CreateDirectoryW(folder.c_str(), nullptr);
    for (std::size_t number = 0; number < count; ++number) {
        if (number % filesOfAFolder == 0) {
            group = folder + L"\\" + std::to_wstring(number);
            CreateDirectoryW(group.c_str(), nullptr);
        }
        files.push_back(group + L"\\" + std::to_wstring(number));
        WriteWholeFile(files.back(), {});
    }
    return files;
}

void RemoveManyFolders(const std::wstring& folder, std::size_t count) {
    for (std::size_t number = 0; number < count; number += filesOfAFolder)
        RemoveDirectoryW((folder + L"\\" + std::to_wstring(number)).c_str());
    RemoveDirectoryW(folder.c_str());
}

} // namespace bench
