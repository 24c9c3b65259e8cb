// Bytes that were taken may be deciphered in place, so the window holds what the source does only after them;
// to read them again is to read the source again.
#include "zip/source_window.h"

#include "zip/zip_fault.h"

#include <algorithm>

namespace tvut {

std::string_view clsSourceWindow::At(std::uint64_t position, std::size_t bytes) {
    return From(position, bytes).substr(0, bytes);
}

std::string_view clsSourceWindow::From(std::uint64_t position, std::size_t bytes) {
    const std::string_view rest = Rest(position);
    if (rest.size() >= bytes)
        return rest;
    Read(position, std::max(bytes, bytes_));
    return Rest(position);
}

std::span<char> clsSourceWindow::Take(std::uint64_t position, std::uint64_t most) {
    if (Rest(position).empty())
        Read(position, bytes_);
    const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(Rest(position).size(), most));
    unchanged_ = position + bytes;
    return {room_.get() + static_cast<std::size_t>(position - first_), bytes};
}

std::string_view clsSourceWindow::Rest(std::uint64_t position) const {
    if (position < unchanged_ || position - first_ >= filled_)
        return {};
    return std::string_view(room_.get(), filled_).substr(static_cast<std::size_t>(position - first_));
}

void clsSourceWindow::Read(std::uint64_t position, std::size_t bytes) {
    filled_ = 0;
    if (roomBytes_ < bytes) {
        room_.reset();
        roomBytes_ = 0;
        room_ = std::make_unique_for_overwrite<char[]>(bytes);
        roomBytes_ = bytes;
    }
    try {
        filled_ = source_.ReadAt(position, room_.get(), bytes);
    } catch (const clsException& error) {
        throw clsZIPError(ZipFault::unreadable, error);
    }
    first_ = unchanged_ = position;
}

} // namespace tvut
