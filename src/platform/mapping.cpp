// A name may belong to a mapping that another process made of any size, from memory, from a file, or from
// pages without memory; a view of the last kind would end the process at the first touch, so it is not
// taken.
#include "platform/mapping.h"

namespace tvut {

namespace {

// Whoever makes a mapping may leave its pages without memory: touching them would end the process.
bool HasMemory(const void* view) noexcept {
    MEMORY_BASIC_INFORMATION pages;
    return VirtualQuery(view, &pages, sizeof pages) == sizeof pages && pages.State == MEM_COMMIT;
}

} // namespace

clsMapping clsMapping::OpenForReading(const wchar_t* name) noexcept {
    clsMapping mapping;
    mapping.access_ = FILE_MAP_READ;
    mapping.object_ = clsHandle(OpenFileMappingW(FILE_MAP_READ, FALSE, name));
    return mapping;
}

clsMapping clsMapping::OpenOrCreate(const wchar_t* name, std::size_t bytes) noexcept {
    clsMapping mapping;
    mapping.access_ = FILE_MAP_READ | FILE_MAP_WRITE;
    mapping.object_ = clsHandle(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                   static_cast<DWORD>(bytes), name));
    if (mapping.HasObject())
        mapping.Map(bytes);
    return mapping;
}

bool clsMapping::Map(std::size_t bytes) noexcept {
    clsView view(MapViewOfFile(object_.Get(), access_, 0, 0, bytes));
    if (!view)
        return false;
    if (!HasMemory(view.Get())) {
        SetLastError(ERROR_INVALID_ADDRESS);
        return false;
    }
    view_ = std::move(view);
    return true;
}

} // namespace tvut
