#include "platform/file_view.h"

namespace tvut {

clsFileView::clsFileView(const wchar_t* path, std::size_t most) noexcept {
    const clsFileHandle file(CreateFileW(path, GENERIC_READ,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                         OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.Get(), &size) || size.QuadPart <= 0 ||
        static_cast<ULONGLONG>(size.QuadPart) > most)
        return;
    const clsHandle mapping(CreateFileMappingW(file.Get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
    view_ = clsView(mapping ? MapViewOfFile(mapping.Get(), FILE_MAP_READ, 0, 0, 0) : nullptr);
    size_ = view_ ? static_cast<std::size_t>(size.QuadPart) : 0;
}

} // namespace tvut
