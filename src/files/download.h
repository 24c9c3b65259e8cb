// Fetches a file from a server: the file is there whole, or as it was.
#pragma once

#include "files/download_fault.h"

#include <cstdint>
#include <string_view>

namespace tvut {

class IclsDownloadWatcher {
  public:
    virtual bool Show(std::uint64_t done, std::uint64_t total) = 0; // false ends it

  protected:
    ~IclsDownloadWatcher() = default;
};

struct scDownloadOrder {
    std::u16string_view url;
    const char16_t* file;
    std::u16string_view sha256;   // empty: not checked
    IclsDownloadWatcher* watcher; // called on the calling thread; may be null
    bool httpsOnly;
    std::uint32_t patience; // milliseconds
    std::uint64_t limit;    // bytes
};

// Status is that of the last answer, also when something is thrown. Throws std::bad_alloc, clsException for
// what the system cannot do, and what the watcher throws.
scDownloadFault UtilpDownload(const scDownloadOrder& order, unsigned& status);

} // namespace tvut
