// The memory of a 32-bit process as crash code sees it: another's, a crashed one's, or a picture in a test.
//
// Nobody vouches for it: any of it may be missing, damaged, or gone a moment later. Implementations use no
// heap and no lock, and throw nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tvut {

// Some bytes of it.
struct scMemoryRange {
    std::uint32_t address = 0;
    std::uint32_t bytes = 0;

    std::uint64_t End() const noexcept { return std::uint64_t{address} + bytes; }
};

// Pages beside each other that are alike.
struct scMemoryRegion {
    scMemoryRange range;
    std::uint32_t allocation =
        0;                   // the address that was reserved with them; of a module's: where it is loaded
    bool isImage = false;    // mapped from a program or library
    bool isReadable = false; // committed, and no guard page
    bool isWritable = false;
    bool isExecutable = false;
};

class IclsProcessMemory {
  public:
    // Copies bytes from an address. Returns how many there are from there on: fewer than wanted where memory
    // ends.
    virtual std::size_t Read(std::uint32_t address, void* to, std::size_t bytes) noexcept = 0;

    // The region that an address lies in, free ones included; false beyond the last. The range may begin at
    // the address, and always reaches beyond it.
    virtual bool RegionAt(std::uint32_t address, scMemoryRegion& region) noexcept = 0;

  protected:
    ~IclsProcessMemory() = default;
};

// Reads an object whole, or not at all.
template <class Object>
bool UtilpReadObject(IclsProcessMemory& memory, std::uint32_t address, Object& object) noexcept {
    return memory.Read(address, &object, sizeof object) == sizeof object;
}

} // namespace tvut
