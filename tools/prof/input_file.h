// A file open for reading, which keeps nobody else from using it.
#pragma once

#include "owned.h"

#include <string>

namespace tool::prof {

class clsInputFile {
  public:
    explicit clsInputFile(const std::wstring& path)
        : handle_(FileHandle(CreateFileW(path.c_str(), GENERIC_READ,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr))),
          error_(IsOpen() ? ERROR_SUCCESS : GetLastError()) {}

    bool IsOpen() const { return handle_ != nullptr; }
    DWORD Error() const { return error_; }

    // At most that many bytes from where the file stands; fewer at its end or when reading fails.
    std::string Read(DWORD size) const {
        std::string bytes(size, '\0');
        DWORD count = 0;
        if (!ReadFile(handle_.get(), bytes.data(), size, &count, nullptr))
            count = 0;
        bytes.resize(count);
        return bytes;
    }

  private:
    clsHandle handle_;
    DWORD error_;
};

} // namespace tool::prof
