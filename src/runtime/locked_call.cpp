#include "runtime/locked_call.h"

#include "runtime/output/writer.h"

namespace tvut {

clsGlobalLockGuard::clsGlobalLockGuard() noexcept
    : silent_(!UtilpDiagnosticWriter().LookAhead()), lock_(UtilpGlobalLock()) {}

} // namespace tvut
