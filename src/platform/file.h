// Files: opening with a retry while others hold them, reading, writing, and replacing in one step.
#pragma once

#include "platform/bytes.h"
#include "platform/owned.h"

#include <cstdint>
#include <string>

namespace tvut {

struct scOpenMode {
    DWORD access;
    DWORD share;
    DWORD disposition;
};

// For reading a file that others may read and write meanwhile.
constexpr scOpenMode openToRead{GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING};
// For holding a file that others may only read; created when missing.
constexpr scOpenMode openToHold{GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_ALWAYS};

// Opens a file; while others keep it from being shared, tries again every 100 ms for 10 seconds. On
// failure the result is none and error tells why.
clsFileHandle PlatformOpenFile(const char16_t* name, const scOpenMode& mode, DWORD& error);

// Makes a folder; one that is there already will do. Gives the system's error, 0 for success.
DWORD PlatformMakeFolder(const char16_t* name);

// The contents of an open file from its beginning.
class clsFileSource final : public clsByteSource {
  public:
    explicit clsFileSource(HANDLE file);
    std::uint64_t SizeHint() override;
    std::size_t Read(void* buffer, std::size_t bytes) override;

  private:
    HANDLE file_;
};

// Overwrites an open file from its beginning. The file is first brought to its new length with real
// bytes, so that a full disk shows while the old contents are still there.
class clsFileSink final : public clsByteSink {
  public:
    explicit clsFileSink(HANDLE file);
    void Extend(std::uint64_t bytes) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    HANDLE file_;
};

// Writes a new file beside a target and puts it in the target's place when it is complete. Until
// then, and when anything fails, the target stays as it was and nothing is left behind; a process
// that is killed leaves the target and at most one file "~PRF........tmp" beside it.
class clsReplacingSink final : public clsByteSink {
  public:
    explicit clsReplacingSink(const char16_t* target);
    clsReplacingSink(const clsReplacingSink&) = delete;
    clsReplacingSink& operator=(const clsReplacingSink&) = delete;
    ~clsReplacingSink() override;

    void Extend(std::uint64_t) override {} // a temporary file may grow as it likes
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    std::wstring target_;
    std::wstring temporary_;
    clsFileHandle file_;
    WIN32_FILE_ATTRIBUTE_DATA targetData_{};
    bool targetExists_ = false;
    bool written_ = false; // complete and closed, not yet in the target's place
};

} // namespace tvut
