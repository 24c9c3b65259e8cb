// Files: opening with a retry while others hold them, reading, writing, and replacing in one step.
#pragma once

#include "platform/bytes.h"
#include "platform/exception.h"
#include "platform/owned.h"
#include "platform/patience.h"
#include "platform/replacement.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

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

// Opens a file, with patience. On failure the result is none and error tells why.
clsFileHandle PlatformOpenFile(const char16_t* name, const scOpenMode& mode, clsPatience& patience,
                               DWORD& error);

// Makes a folder; one that is there already will do. Returns the system's error, 0 for success.
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
    explicit clsFileSink(HANDLE file) : file_(file) {}
    void Extend(std::uint64_t bytes) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    void MakeRoom(std::uint64_t bytes);

    HANDLE file_;
};

// A target that was to be overwritten and is neither what it was nor what it should be.
class clsTornFile : public clsException {
  public:
    clsTornFile(const clsException& why, std::wstring contents)
        : clsException("file is torn", why.Reason()), contents_(std::move(contents)) {}

    // The file that holds what it should be.
    const std::wstring& Contents() const noexcept { return contents_; }

  private:
    std::wstring contents_;
};

// Writes a new file beside a target and puts it in the target's place when it is complete. Until
// then, and when anything fails, the target stays as it was and nothing else is left; a process
// that is killed leaves the target and at most one file "~PRF........tmp" beside it.
//
// Others may have the target open so that it can be written, but not replaced. After some patience the new
// file is copied over it. When that fails halfway, Finish throws clsTornFile, and the new file stays.
class clsReplacingSink final : public clsByteSink {
  public:
    explicit clsReplacingSink(const char16_t* target);
    clsReplacingSink(const clsReplacingSink&) = delete;
    clsReplacingSink& operator=(const clsReplacingSink&) = delete;

    // A temporary file may grow as it likes.
    bool UsesLength() const override { return false; }
    void Extend(std::uint64_t) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    void CopyOverTarget();

    std::u16string target_;
    std::optional<clsReplacement> replacement_; // from Extend on
};

} // namespace tvut
