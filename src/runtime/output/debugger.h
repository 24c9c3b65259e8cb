// The debugger's output: a sink for lines while somebody reads it, and the place where the writer tells
// of its own trouble.
#pragma once

#include "runtime/output/line_sink.h"

namespace tvut {

// Whether a debugger is attached or a monitor of debug output runs. Without this question every line
// would cost the system's detour through an exception that nobody catches.
bool UtilpDebuggerListens() noexcept;

// Writes to the debugger's output whether somebody reads it or not.
void UtilpWriteToDebugger(std::u16string_view text) noexcept;
inline void UtilpWriteToDebugger(const clsDiagnosticLine& line) noexcept {
    UtilpWriteToDebugger(line.View());
}

class clsDebuggerSink final : public IclsLineSink {
  public:
    bool Wants() noexcept override { return UtilpDebuggerListens(); }
    void Take(const scOutputLine& line) noexcept override { UtilpWriteToDebugger(line.stamped); }
};

// The environment variable "user" names a developer of this library: failures that are of no use to
// anybody else are shown, too.
bool UtilpIsDeveloper() noexcept;

} // namespace tvut
