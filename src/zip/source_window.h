// A random source, read through a window: headers and small entries that stand side by side cost one read.
#pragma once

#include "platform/bytes.h"

#include <memory>
#include <span>
#include <string_view>

namespace tvut {

class clsSourceWindow {
  public:
    static constexpr std::size_t usualBytes = 64 * 1024;

    explicit clsSourceWindow(clsRandomSource& source, std::size_t bytes = usualBytes)
        : source_(source), bytes_(bytes) {}

    // The bytes at a position, fewer only where the source ends; they stay until the next call. Throws
    // std::bad_alloc, and clsZIPError where the source fails.
    std::string_view At(std::uint64_t position, std::size_t bytes);

    // The same, and what the window has after them: the caller may look on there for less than another call.
    std::string_view From(std::uint64_t position, std::size_t bytes);

    // At least one and at most this many bytes at a position, whatever is at hand; none where the source
    // ends. They may be changed, and the window forgets them.
    std::span<char> Take(std::uint64_t position, std::uint64_t most);

  private:
    std::string_view Rest(std::uint64_t position) const; // of the window, from a position on
    void Read(std::uint64_t position, std::size_t bytes);

    clsRandomSource& source_;
    std::size_t bytes_; // that are read at a time, at least
    std::unique_ptr<char[]> room_;
    std::size_t roomBytes_ = 0;
    std::size_t filled_ = 0;
    std::uint64_t first_ = 0;     // the position of the room's first byte
    std::uint64_t unchanged_ = 0; // the position from which on the room holds what the source does
};

} // namespace tvut
