#include "runtime/frame_kinds.h"

namespace tvut {

namespace {

constexpr bool IsCaller(FrameKind kind) noexcept {
    return kind == FrameKind::caller || kind == FrameKind::main;
}

} // namespace

scFrameRange UtilpFramesOfCallers(std::span<const FrameKind> frames) noexcept {
    scFrameRange range{0, frames.size()};
    // A window's procedure or a callback may have run within the beginning of another program: the last
    // counts.
    for (std::size_t i = frames.size(); i-- > 0;)
        if (frames[i] == FrameKind::main) {
            range.end = i + 1;
            break;
        }
    while (range.end > 0 && !IsCaller(frames[range.end - 1]))
        --range.end;
    if (range.end == 0)
        return {0, frames.size()};
    while (frames[range.first] == FrameKind::library)
        ++range.first;
    return range;
}

} // namespace tvut
