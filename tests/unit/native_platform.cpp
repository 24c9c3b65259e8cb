// The platform of the native build: what the core needs of a system, without one.
//
// The code page is Latin-1; diagnostic lines are collected for the tests.
#include "unit/native_platform.h"

#include "platform/code_page.h"
#include "runtime/diagnostics.h"

namespace tvut {

std::vector<std::u16string>& DiagnosticLines() {
    static std::vector<std::u16string> lines;
    return lines;
}

void UtilpWriteDiagnosticLine(const char16_t* text) noexcept {
    try {
        DiagnosticLines().emplace_back(text);
    } catch (...) {
    }
}

std::size_t PlatformDecode(unsigned, std::string_view bytes, char16_t* characters) {
    for (const char byte : bytes)
        *characters++ = static_cast<unsigned char>(byte);
    return bytes.size();
}

} // namespace tvut
