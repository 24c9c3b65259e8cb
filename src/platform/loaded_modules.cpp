// Images are found in the address space, which changes while it is walked: what lies there may be on its way
// out by the time it is looked at. So a library is first held by the loader, and counts only if the loader
// says that it begins where it was found.
#include "platform/loaded_modules.h"

#include "platform/guarded.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace tvut {

namespace {

// Where its exports' directory names the library; empty when that does not lie in its image.
std::string_view ReadLinkedName(const char* image) noexcept {
    constexpr std::size_t longest = 260;
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& header = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
    const auto& optional = header.OptionalHeader;
    const auto& place = optional.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto holds = [&](DWORD offset, DWORD bytes) {
        return offset != 0 && offset < optional.SizeOfImage && bytes <= optional.SizeOfImage - offset;
    };
    if (optional.NumberOfRvaAndSizes == 0 || !holds(place.VirtualAddress, sizeof(IMAGE_EXPORT_DIRECTORY)))
        return {};
    const auto& exports = *reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + place.VirtualAddress);
    if (!holds(exports.Name, 1))
        return {};
    const char* const name = image + exports.Name;
    return {name, strnlen(name, std::min<std::size_t>(longest, optional.SizeOfImage - exports.Name))};
}

} // namespace

clsLibrary PlatformLibraryAt(const void* base) noexcept {
    clsLibrary library;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, static_cast<const wchar_t*>(base),
                            library.Receive()) ||
        library.Get() != base)
        library.Reset();
    return library;
}

// Guarded, because packed programs take away parts of their images.
std::string_view PlatformLinkedName(const clsLibrary& library) noexcept {
    std::string_view name;
    auto read = [&] { name = ReadLinkedName(reinterpret_cast<const char*>(library.Get())); };
    return PlatformGuarded(read) == 0 ? name : std::string_view();
}

const void* clsImagesInMemory::Next() noexcept {
    MEMORY_BASIC_INFORMATION region;
    while (VirtualQuery(at_, &region, sizeof region) != 0) {
        const char* const end = static_cast<const char*>(region.BaseAddress) + region.RegionSize;
        if (end <= at_)
            break;
        at_ = end;
        if (region.State != MEM_FREE && region.Type == MEM_IMAGE && region.AllocationBase != last_)
            return last_ = region.AllocationBase;
    }
    return nullptr;
}

} // namespace tvut
