// The files of a run and the bare system calls that the library's own are measured against.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace bench {

// A folder of its own under the temporary folder, removed with its files at the end.
class clsScratchFolder {
  public:
    clsScratchFolder();
    ~clsScratchFolder();
    clsScratchFolder(const clsScratchFolder&) = delete;
    clsScratchFolder& operator=(const clsScratchFolder&) = delete;

    const std::wstring& Path() const { return path_; } // ends in a backslash

  private:
    std::wstring path_;
};

void WriteWholeFile(const std::wstring& path, std::span<const std::byte> bytes);
std::vector<std::byte> ReadWholeFile(const std::wstring& path);
std::wstring ReadWholeText(const std::wstring& path); // UTF-16, a byte-order mark kept
void RemoveFile(const std::wstring& path);

// Empty files by the hundred in folders of their own below a new one, and the end of those folders.
std::vector<std::wstring> MakeManyFiles(const std::wstring& folder, std::size_t count);
void RemoveManyFolders(const std::wstring& folder, std::size_t count);

// The work in the forms that the library and its peers read.
struct scWorkFiles {
    std::wstring profile, ini, xml;
};
scWorkFiles WriteWork(const std::wstring& folder);

// CreateFile, one ReadFile into a buffer that is there and warm, CloseHandle.
void BareRead(const std::wstring& path, std::span<std::byte> buffer);

// A temporary file beside the target, one WriteFile, and the MoveFileEx that puts it in place: the
// least that saves without ever leaving a torn file.
void BareSave(const std::wstring& path, std::span<const std::byte> bytes);

} // namespace bench
