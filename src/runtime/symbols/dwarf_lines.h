// Source lines in a module's debug information. Published: DWARF Debugging Information Format, versions 2 to
// 5, chapter "Line Number Information"; dwarfstd.org.
//
// No heap, no lock, no C runtime: it serves a process that crashes.
#pragma once

#include "runtime/symbols/pe_image.h"

namespace tvut {

struct scSourceLine {
    std::string_view file;  // without folder; empty: not known
    std::uint32_t line = 0; // 0: not known
};

// The line of an offset within the module. Fast where the compiler says which unit has which addresses
// (.debug_aranges); else every unit's lines are walked.
scSourceLine UtilpFindSourceLine(const clsPeImage& image, std::uint32_t offset) noexcept;

} // namespace tvut
