// A file open for reading, which keeps nobody else from using it.
#ifndef PROF_TOOL_INPUT_FILE_H
#define PROF_TOOL_INPUT_FILE_H

#include <windows.h>

#include <string>

namespace tool::prof {

class InputFile {
  public:
    explicit InputFile(const std::wstring& path)
        : handle_(CreateFileW(path.c_str(), GENERIC_READ,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr)),
          error_(isOpen() ? ERROR_SUCCESS : GetLastError()) {}
    ~InputFile() {
        if (isOpen())
            CloseHandle(handle_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    DWORD error() const { return error_; }

    // At most that many bytes from where the file stands; fewer at its end or when reading fails.
    std::string read(DWORD size) const {
        std::string bytes(size, '\0');
        DWORD count = 0;
        if (!ReadFile(handle_, bytes.data(), size, &count, nullptr))
            count = 0;
        bytes.resize(count);
        return bytes;
    }

  private:
    HANDLE handle_;
    DWORD error_;
};

} // namespace tool::prof

#endif
