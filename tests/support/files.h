// Files for tests: a folder that removes itself, whole-file reads and writes, bytes of UTF-16 texts.
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace testing_prof {

// Bytes are kept as std::string: GoogleTest prints both sides of a difference.
using Bytes = std::string;

class clsTempFolder {
  public:
    explicit clsTempFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
        : path_((absolute(parent) / (L"prof-test-" + std::to_wstring(GetCurrentProcessId())))
                    .make_preferred()) {
        Clear();
        std::filesystem::create_directory(path_);
    }
    ~clsTempFolder() { Clear(); }
    clsTempFolder(const clsTempFolder&) = delete;
    clsTempFolder& operator=(const clsTempFolder&) = delete;

    std::wstring operator/(std::wstring_view name) const { return (path_ / name).wstring(); }
    const std::filesystem::path& Path() const { return path_; }
    std::ptrdiff_t Count() const {
        return std::distance(std::filesystem::directory_iterator(path_),
                             std::filesystem::directory_iterator());
    }
    // Removes every file but one: what an interrupted save may leave.
    void KeepOnly(std::wstring_view name) const {
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            if (entry.path().filename() != name)
                std::filesystem::remove(entry.path());
    }

  private:
    void Clear() const { Remove(L"\\\\?\\" + path_.wstring()); }

    // The library's own remove_all ends at paths of 260 characters.
    static void Remove(const std::wstring& folder) {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &found)) {
            const std::wstring name = found.cFileName, path = folder + L"\\" + name;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                DeleteFileW(path.c_str());
            else if (name != L"." && name != L"..")
                Remove(path);
        }
        FindClose(search);
        RemoveDirectoryW(folder.c_str());
    }

    std::filesystem::path path_;
};

// Bytes that do not shrink.
inline Bytes Noise(std::size_t size, unsigned seed = 1) {
    Bytes bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
    return bytes;
}

inline Bytes ReadBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Those that end with CR LF.
inline std::vector<std::string> LinesOf(const Bytes& bytes) {
    std::vector<std::string> lines;
    for (std::size_t at = 0, end; (end = bytes.find("\r\n", at)) != std::string::npos; at = end + 2)
        lines.push_back(bytes.substr(at, end - at));
    return lines;
}

// UTF-16 little-endian; begin the text with U+FEFF for a byte-order mark.
inline Bytes Utf16(std::wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

struct scCloseOpenHandle {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, scCloseOpenHandle>;

// Opens an existing file as another program would.
inline Handle OpenExisting(const std::wstring& path, DWORD access, DWORD share) {
    const HANDLE file = CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr);
    return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// Makes a file or folder look as if it was last written to some minutes ago.
inline void SetAge(const std::filesystem::path& path, unsigned minutes) {
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    ULARGE_INTEGER then{{time.dwLowDateTime, time.dwHighDateTime}};
    then.QuadPart -= minutes * 60ull * 10000000;
    time = {then.LowPart, then.HighPart};
    const DWORD everybody = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle file(CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, everybody, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    SetFileTime(file.get(), nullptr, nullptr, &time);
}

} // namespace testing_prof
