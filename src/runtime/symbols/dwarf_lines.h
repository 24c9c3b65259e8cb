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

// Takes all lines of a module, unit by unit, in the order in which they are written.
class IclsLineTaker {
  public:
    virtual void Unit() noexcept = 0;                                            // the next one begins
    virtual void File(std::uint64_t number, std::string_view name) noexcept = 0; // of this unit
    // A row holds up to the address of the next one, or to where the sequence of rows ends.
    virtual void Row(std::uint64_t address, std::uint64_t file, std::uint32_t line) noexcept = 0;
    virtual void End(std::uint64_t address) noexcept = 0;

  protected:
    ~IclsLineTaker() = default;
};

void UtilpWalkSourceLines(const clsPeImage& image, IclsLineTaker& taker) noexcept;

} // namespace tvut
