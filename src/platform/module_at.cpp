// The memory manager knows the file that is mapped at an address, and names it as the system's kernel does:
// \Device\HarddiskVolume1\..., on some systems \??\C:\...
#include "platform/module_at.h"

#include "platform/guarded.h"
#include "platform/wide.h"

#include <windows.h>

#include <psapi.h>

#include <string>

// The linker's name.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace tvut {

namespace {

constexpr std::wstring_view devices = L"\\\\?\\GLOBALROOT"; // before a kernel's name, for CreateFile
constexpr std::wstring_view drives = L"\\??\\";

const void* BaseOf(const void* address) noexcept {
    MEMORY_BASIC_INFORMATION memory{};
    return VirtualQuery(address, &memory, sizeof memory) != 0 && memory.Type == MEM_IMAGE
               ? memory.AllocationBase
               : nullptr;
}

} // namespace

clsModuleAt::clsModuleAt(const void* address) noexcept : base_(BaseOf(address)) {
    if (!base_)
        return;
    wchar_t* const name = path_.data() + devices.size();
    const auto room = static_cast<DWORD>(path_.size() - devices.size());
    const DWORD length = K32GetMappedFileNameW(GetCurrentProcess(), const_cast<void*>(base_), name, room);
    if (length == 0 || length + 1 >= room)
        return;
    if (std::wstring_view(name, length).starts_with(drives)) {
        std::char_traits<wchar_t>::move(path_.data(), name, length + 1);
        path_[1] = L'\\'; // \\?\C:\...
        pathLength_ = length;
    } else {
        devices.copy(path_.data(), devices.size());
        pathLength_ = devices.size() + length;
    }
}

std::uint32_t clsModuleAt::OffsetOf(const void* address) const noexcept {
    return static_cast<std::uint32_t>(static_cast<const char*>(address) - static_cast<const char*>(base_));
}

std::u16string_view clsModuleAt::FileName() const noexcept {
    const std::u16string_view path = FromWide(Path());
    return path.substr(path.find_last_of(u'\\') + 1);
}

// Guarded, because packed programs take away parts of their images.
scImageStamp PlatformImageStampAt(const void* address) noexcept {
    scImageStamp stamp{BaseOf(address)};
    auto read = [&] {
        const auto* const image = static_cast<const char*>(stamp.base);
        const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
        const auto& header = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
        stamp.time = header.FileHeader.TimeDateStamp;
        stamp.checksum = header.OptionalHeader.CheckSum;
        stamp.size = header.OptionalHeader.SizeOfImage;
    };
    return stamp.base && PlatformGuarded(read) == 0 ? stamp : scImageStamp();
}

const void* PlatformOwnModule() noexcept {
    return &__ImageBase;
}

} // namespace tvut
