// What reports and dumps say of the system, as far as it stays the same while the process runs.
#pragma once

#include "runtime/crash/preparation.h"

namespace tvut {

// Fills in system, dumpSystem, pageSize, lastAddress, processId and drives; in ordinary times.
void UtilpNoteSystem(scPreparation& preparation) noexcept;

// What changes: memory and addresses in use. By bare calls.
scReportSystem UtilpSystemNow(const scPreparation& preparation) noexcept;

} // namespace tvut
