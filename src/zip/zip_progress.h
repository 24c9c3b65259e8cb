// How far an entry is that is packed.
#pragma once

#include <cstdint>

namespace tvut {

constexpr std::uint64_t progressBytes = 1024 * 1024;

class IclsZipProgress {
  public:
    virtual ~IclsZipProgress() = default;
    // Called after every progressBytes of the entry and at its end. What it throws ends the entry.
    virtual void Tell(std::uint64_t done, std::uint64_t packed, bool isEnd) = 0;
};

} // namespace tvut
