// The frames of a call stack as lines of the diagnostic group that is open.
#pragma once

#include <span>

namespace tvut {

// A frame a line, two blanks before it: the callers' alone, where there are any. At most 40 frames. Under the
// global lock.
void UtilpReportFrames(std::span<const void* const> addresses) noexcept;

} // namespace tvut
