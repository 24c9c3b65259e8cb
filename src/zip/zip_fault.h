// What can be wrong with an archive, an entry, or the way to and from them.
#pragma once

#include "platform/exception.h"
#include "runtime/result.h"

#include <cstdint>
#include <string_view>

namespace tvut {

enum class ZipFault : std::uint8_t {
    // Of an archive: nothing of it is unpacked.
    noArchive,
    badDirectory,
    overlap,
    unsafeName,
    tooManyBytes,
    tooManyEntries,
    severalDisks,
    longPath,
    // Of an entry: the others are unpacked.
    damaged,
    method,
    password,
    link,
    linkFolder,
    noTarget, // its file or folder cannot be made or replaced
    // Of what is read or written, and of the caller.
    unreadable,
    unwritable,
    cancelled,
};

// The result that callers get for a fault.
UtilResult UtilpResultOf(ZipFault fault) noexcept;

// A fault on its way, with the method or the system's error that it is about.
class clsZIPError final : public clsException {
  public:
    explicit clsZIPError(ZipFault fault, unsigned long number = 0) noexcept
        : clsException("ZIP", number), fault_(fault) {}
    clsZIPError(ZipFault fault, const clsException& why) noexcept : clsZIPError(fault, why.Reason()) {}
    ZipFault Fault() const noexcept { return fault_; }
    std::uint32_t Number() const noexcept { return static_cast<std::uint32_t>(Reason()); }

  private:
    ZipFault fault_;
};

inline void UtilpRequire(bool fine, ZipFault fault) {
    if (!fine)
        throw clsZIPError(fault);
}

} // namespace tvut
