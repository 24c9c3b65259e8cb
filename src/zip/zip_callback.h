// Callers who choose entries and watch them.
#pragma once

#include <cstdint>

namespace tvut {

// An entry as a caller sees it; all of it holds during the call.
struct scShownZipEntry {
    const char16_t* name = nullptr;   // terminated
    const char16_t* target = nullptr; // likewise; null where nothing will be written
    bool isFolder = false, isEncrypted = false, isLink = false, isRenamed = false;
    bool isQuestion = false; // whether the entry is wanted; else this is progress
    std::uint64_t bytes = 0, packed = 0, done = 0;
    std::uint64_t modified = 0; // 0: not known
    std::uint32_t index = 0, count = 0;
};

enum class ZipAnswer { go, skip, cancel };

class IclsZipCallback {
  public:
    virtual ~IclsZipCallback() = default;
    virtual ZipAnswer Show(const scShownZipEntry& entry) = 0;
};

} // namespace tvut
