// Files: opening with a retry while others hold them, reading, writing, and replacing in one step.
#pragma once

#include "platform/bytes.h"
#include "platform/exception.h"
#include "platform/owned.h"

#include <algorithm>
#include <cstdint>
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

// Milliseconds that a file is waited for while others keep it from being shared.
constexpr ULONGLONG openPatience = 10000;

// What is left of them; for several files if they are to last for all.
class clsPatience {
  public:
    explicit clsPatience(ULONGLONG milliseconds) : left_(milliseconds) {}

    // Calls attempt, every 100 ms, until it succeeds, fails for another reason than sharing, or the time is
    // over. Gives its last error, 0 for success.
    template <class Attempt>
    DWORD Try(Attempt attempt) {
        const ULONGLONG start = GetTickCount64();
        ULONGLONG waited = 0;
        DWORD error = attempt();
        for (; error == ERROR_SHARING_VIOLATION && waited < left_; error = attempt()) {
            Sleep(interval);
            waited = GetTickCount64() - start;
        }
        left_ -= std::min(left_, waited);
        return error;
    }

  private:
    static constexpr DWORD interval = 100;

    ULONGLONG left_;
};

// Opens a file, with patience. On failure the result is none and error tells why.
clsFileHandle PlatformOpenFile(const char16_t* name, const scOpenMode& mode, clsPatience& patience,
                               DWORD& error);

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
// then, and when anything fails, the target stays as it was and nothing is left behind; a process
// that is killed leaves the target and at most one file "~PRF........tmp" beside it.
//
// Others may have the target open so that it can be written, but not replaced. After some patience the new
// file is copied over it. When that fails halfway, Finish throws clsTornFile, and the new file stays.
class clsReplacingSink final : public clsByteSink {
  public:
    explicit clsReplacingSink(const char16_t* target);
    clsReplacingSink(const clsReplacingSink&) = delete;
    clsReplacingSink& operator=(const clsReplacingSink&) = delete;
    ~clsReplacingSink() override;

    void Extend(std::uint64_t) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    void CopyOverTarget();

    std::wstring target_;
    std::wstring temporary_;
    clsFileHandle file_;
    WIN32_FILE_ATTRIBUTE_DATA targetData_{};
    bool targetExists_ = false;
    bool written_ = false; // complete and closed, not yet in the target's place
    bool torn_ = false;    // the target is
};

} // namespace tvut
