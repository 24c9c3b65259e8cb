// How a frame of a call stack reads: "designer.exe+0x1d44 _Z11render_pageR4Page+0x12 (page.cpp:41)", as much
// of it as is known, in crash reports, stack traces and the heaps' reports alike.
#pragma once

#include "runtime/diagnostics.h"

#include <cstdint>
#include <string_view>

namespace tvut {

// "designer.exe+0x1d44", of the module's path only the last component; "0x0040abcd" when it lies in none.
void UtilpPutFramePlace(clsDiagnosticLine& line, std::uint32_t address, std::u16string_view modulePath,
                        std::uint32_t moduleAddress) noexcept;

// " name+0x12", nothing without a name. Bytes are UTF-8; at most 512 characters of a name are kept.
void UtilpPutFrameFunction(clsDiagnosticLine& line, std::string_view name, std::uint32_t offset) noexcept;
void UtilpPutFrameFunction(clsDiagnosticLine& line, std::u16string_view name, std::uint32_t offset) noexcept;

// " (page.cpp:41)", nothing without a path; of the file's path only the last component.
void UtilpPutFrameSource(clsDiagnosticLine& line, std::string_view path, std::uint32_t number) noexcept;
void UtilpPutFrameSource(clsDiagnosticLine& line, std::u16string_view path, std::uint32_t number) noexcept;

} // namespace tvut
