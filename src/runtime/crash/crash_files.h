// The report and the dump of a crash.
#pragma once

#include "runtime/crash/preparation.h"

namespace tvut {

struct scCrashEvent {
    CrashKind kind = CrashKind::exception;
    std::uint32_t thread = 0;
    const EXCEPTION_POINTERS* exception = nullptr; // of a thread that waits
};

struct scCrashFiles {
    CrashPath report, dump; // full paths; empty: there is none
};

// Writes both into the folder that is prepared: the report first, then the dump, then the report's last line.
// By bare calls, within the prepared room; the other threads stand still while the dump is written.
void UtilpWriteCrashFiles(const scPreparation& preparation, const scCrashEvent& event,
                          scCrashFiles& files) noexcept;

} // namespace tvut
