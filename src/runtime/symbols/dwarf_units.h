// Which unit of the debug information an address belongs to. Published: DWARF, chapters "Lookup by Address"
// and "Unit Headers".
//
// No heap, no lock, no C runtime: it serves a process that crashes.
#pragma once

#include "runtime/symbols/pe_image.h"

namespace tvut {

struct scUnitOfAddress {
    bool isCertain = false;                  // no other unit has lines for the address
    std::uint64_t lines = ~std::uint64_t{0}; // where they begin in .debug_line; beyond its end: nowhere
};

// By the table of the units' addresses (.debug_aranges). Not every compiler lets its units be listed there;
// where some are not, an address that is not found may be in one of those.
scUnitOfAddress UtilpFindUnit(const clsPeImage& image, std::uint64_t address) noexcept;

} // namespace tvut
