#include "runtime/diagnostics.h"

#include "platform/wide.h"

#include <windows.h>

namespace tvut {

void UtilpWriteDiagnosticLine(const char16_t* text) noexcept {
    OutputDebugStringW(ToWide(text));
}

} // namespace tvut
