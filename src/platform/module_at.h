// Which module an address of code belongs to, without the loader's help, which would ask for its lock.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace tvut {

class clsModuleAt {
  public:
    explicit clsModuleAt(const void* address) noexcept;

    const void* Base() const noexcept { return base_; } // null: it lies in no module
    std::uint32_t OffsetOf(const void* address) const noexcept;

    // The module's file, zero-terminated, as CreateFile takes it, but in the words of the memory manager:
    // \\?\GLOBALROOT\Device\HarddiskVolume1\folder\name.dll. Empty where it is too long.
    std::wstring_view Path() const noexcept { return {path_.data(), pathLength_}; }
    std::u16string_view FileName() const noexcept; // without folder

  private:
    const void* base_ = nullptr;
    std::size_t pathLength_ = 0;
    std::array<wchar_t, 1024> path_;
};

// Tells a loaded module from all others, as from another build of it at the same address.
struct scImageStamp {
    const void* base = nullptr; // null: the address lies in no module
    std::uint32_t time = 0, checksum = 0, size = 0;

    bool operator==(const scImageStamp&) const noexcept = default;
};

// That of the module that an address belongs to; far cheaper than to ask for its file.
scImageStamp PlatformImageStampAt(const void* address) noexcept;

// The module that this is compiled into.
const void* PlatformOwnModule() noexcept;

} // namespace tvut
