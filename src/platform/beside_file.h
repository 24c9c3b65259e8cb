// A new file beside a target: written under a name of its own, then put in the target's place in one step.
#pragma once

#include "platform/bytes.h"
#include "platform/owned.h"

#include <cstdint>
#include <string>

namespace tvut {

// Its name is "~PRF........tmp". It goes again unless it is put in the target's place; a process that is killed
// leaves it.
class clsBesideFile final : public clsPatchableSink {
  public:
    // The target's path as PlatformLongPath or PlatformVerbatimPath gives it. Throws clsException,
    // std::bad_alloc.
    explicit clsBesideFile(std::wstring target);
    clsBesideFile(const clsBesideFile&) = delete;
    clsBesideFile& operator=(const clsBesideFile&) = delete;
    ~clsBesideFile() override;

    void Write(const void* data, std::size_t bytes) override;
    void Patch(std::uint64_t position, const void* data, std::size_t bytes) override;
    void Cut(std::uint64_t size) override;
    void FlushToDisk(); // throws clsException

    HANDLE Handle() const { return file_.Get(); } // none once it is closed
    const std::wstring& Target() const { return target_; }
    const std::wstring& Path() const { return path_; }

    // Ends writing.
    void Close() noexcept { file_.Reset(); }

    // One step of the file system, after Close: whoever opens the target meets the old file or the new one.
    // Gives the system's error: ERROR_ALREADY_EXISTS for a target that is there and not replaced,
    // ERROR_SHARING_VIOLATION while somebody has it open.
    DWORD PutInPlace(bool replaces);

    // Gives it a name, after Close, under which no later process removes it as left ("~PRF........sav"). False
    // when that cannot be.
    bool TakeLastingName();

    // Leaves the file where it is.
    void Keep() noexcept { isOurs_ = false; }

  private:
    std::wstring target_, path_;
    clsFileHandle file_;
    bool isOurs_ = true;
};

} // namespace tvut
