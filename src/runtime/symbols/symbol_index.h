// The functions and lines of a module in sorted tables: names in a fraction of a microsecond, where the files
// themselves are searched from end to end. To make them takes as long as some ten such searches.
//
// An index lies in memory that its maker provides, and needs the files no longer. Making it allocates nothing
// and owns nothing, so that it may be stopped by a fault in reading a file.
#pragma once

#include "runtime/symbols/image_symbols.h"

#include <array>
#include <span>

namespace tvut {

class clsSymbolIndex {
  public:
    clsSymbolIndex() noexcept = default; // knows nothing

    // How much there is to be kept.
    struct scSize {
        std::size_t lines = 0, sequences = 0, names = 0, textBytes = 0;
        std::uint64_t Bytes() const noexcept;
    };
    static scSize Measure(const clsImageSymbols& files) noexcept;

    // The room, of as many bytes as the size tells, is aligned for numbers and stays while the index is used.
    clsSymbolIndex(const clsImageSymbols& files, const scSize& size, std::byte* room) noexcept;

    // As clsImageSymbols::Find; names of functions end after 1,024 bytes, those of files after 260.
    scCodePlace Find(std::uint32_t offset) const noexcept;

    struct scName {
        std::uint32_t offset;
        std::uint32_t order; // of those at one offset the least is the best
        std::uint32_t text;  // position among the texts; 0: none
    };
    struct scLine {
        std::uint32_t offset; // up to that of the next one
        std::uint32_t line;
        std::uint32_t file; // position among the texts; 0: not known
    };
    struct scSequence { // of lines, in ascending order
        std::uint32_t begin, end, first, count;
    };

  private:
    scSourceLine FindLine(std::span<const scSequence> sequences, std::uint32_t offset) const noexcept;
    scNearestName FindName(std::span<const scName> names, std::uint32_t offset) const noexcept;

    // First those of the debug file, then those of the module's own.
    std::array<std::span<const scSequence>, 2> sequences_;
    std::array<std::span<const scName>, 2> symbols_;
    std::span<const scName> exports_;
    std::span<const scLine> lines_;
    clsBytes texts_;
};

} // namespace tvut
