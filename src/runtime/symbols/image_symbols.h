// Offsets within a module as functions and lines, from the bytes of its file and of its debug file.
//
// The caller owns the bytes, such as views of mapped files, and keeps them while the names are used, which
// lie in them. Any bytes may be given: every offset in them is checked, damage makes names and lines missing.
// Where reading itself may fail, as in a view of a file on a network drive, the caller guards the calls. Each
// takes time in proportion to the bytes at most.
//
// No heap, no lock, nothing of the C runtime but memcpy, memcmp and strlen, no more than 1 KB of stack: it
// serves a process that crashes.
#pragma once

#include "runtime/symbols/dwarf_lines.h"
#include "runtime/symbols/pe_image.h"

namespace tvut {

// Where a module is stripped, most of its functions lie between two exports: one that begins farther away
// says nothing of the place.
constexpr std::uint32_t farthestExport = 0x1000; // bytes

enum class FunctionName : std::uint8_t {
    none,
    exported, // the nearest export before it, at most 4 KB away: a function may well lie between them
    symbol,
};

struct scCodePlace {
    FunctionName kind = FunctionName::none;
    std::string_view function;        // mangled; without the target's leading "_"; empty: not known
    std::uint32_t functionOffset = 0; // from the function's beginning
    scSourceLine source;
};

class clsImageSymbols {
  public:
    // `image`: the module's file as it lies on disk, not as it is loaded. `debugFile`: what UtilpDebugLinkOf
    // names, or nothing; one that does not belong to the module is passed over.
    clsImageSymbols(clsBytes image, clsBytes debugFile) noexcept;

    // `offset`: from the beginning of the module in memory. For a return address, the caller takes one less,
    // so that the call's line is found, not the next one's.
    scCodePlace Find(std::uint32_t offset) const noexcept;

    const clsPeImage& Image() const noexcept { return image_; }
    const clsPeImage& DebugFile() const noexcept { return debug_; } // not valid where none belongs to it

  private:
    clsPeImage image_, debug_;
};

// The name of a module's debug file, without folder; empty where it has no link. It lies beside the module;
// where there is none of that name, "<module>.debug" does.
std::string_view UtilpDebugLinkOf(clsBytes image) noexcept;

} // namespace tvut
