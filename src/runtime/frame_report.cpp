#include "runtime/frame_report.h"

#include "runtime/call_stack.h"
#include "runtime/diagnostic_group.h"
#include "runtime/stack_names.h"

#include <algorithm>

namespace tvut {

void UtilpReportFrames(std::span<const void* const> addresses) noexcept {
    clsStackNames names;
    std::array<FrameKind, scCallStack::mostFrames> kinds;
    const std::size_t count = std::min(addresses.size(), kinds.size());
    for (std::size_t i = 0; i < count; ++i)
        kinds[i] = names.Name(addresses[i], FrameAddress::afterCall).kind;
    const scFrameRange callers = UtilpFramesOfCallers({kinds.data(), count});
    for (std::size_t i = callers.first; i < callers.end; ++i)
        if (addresses[i])
            UtilpReport(
                clsDiagnosticLine().Put(u"  ").Put(names.Name(addresses[i], FrameAddress::afterCall).text));
}

} // namespace tvut
