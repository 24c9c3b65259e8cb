// Which frames of a call stack say something about the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tvut {

enum class FrameKind : std::uint8_t {
    caller,
    main,    // a caller's, too: the function that the program begins with
    library, // this one
    system,  // where threads begin
};

struct scFrameRange {
    std::size_t first = 0;
    std::size_t end = 0;
};

// The callers' frames of a stack, its top first: without the library's own above them, and without what is
// below the program's beginning or the callers' last. All frames where no caller's is there.
scFrameRange UtilpFramesOfCallers(std::span<const FrameKind> frames) noexcept;

} // namespace tvut
