// The names of functions in the symbol table that linkers of the GNU kind leave in a module or its debug
// file. Published: "PE Format" in Microsoft's documentation of Windows, "COFF Symbol Table".
//
// No heap, no lock, no C runtime: it serves a process that crashes.
#pragma once

#include "runtime/symbols/pe_image.h"

namespace tvut {

// The function at an offset within the module or next before it, in the same section. The name is as linked,
// without the "_" that the target puts before it. One walk over the table.
scNearestName UtilpNearestSymbol(const clsPeImage& image, std::uint32_t offset) noexcept;

// All of them, an empty name where the function before has ended.
void UtilpWalkSymbols(const clsPeImage& image, IclsNameTaker& taker) noexcept;

} // namespace tvut
