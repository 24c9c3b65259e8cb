// The table's order says nothing of addresses. One walk keeps the record with the greatest value up to the
// place, and among those of one value that of the highest rank.
#include "runtime/symbols/coff_symbols.h"

namespace tvut {

namespace {

// A record: name, value within the section, section from 1, type, storage class, number of records that
// follow and belong to it.
constexpr std::size_t symbolBytes = 18;
constexpr std::uint8_t external = 2;
constexpr std::uint8_t local = 3;
constexpr std::uint8_t label = 6;
constexpr std::uint16_t functionType = 0x20;

// Where an object file's own code begins a local symbol has the section's name, ".text" or, for one function
// alone, ".text$name". Of an object without symbols that is all there is: the first says that the functions
// before it have ended.
constexpr std::string_view sectionOfOne = ".text$";

// Of two names for one place that of the higher rank is the better one; 0 is no code's.
int RankOf(clsBytes record) noexcept {
    const std::uint8_t storage = record.Get8(16);
    if (storage != external && storage != local && storage != label)
        return 0;
    if (record.Get16(14) == functionType)
        return 3;
    return storage == local ? 1 : 2;
}

std::string_view Without(std::string_view name, std::size_t count) noexcept {
    return {name.data() + count, name.size() - count};
}

std::string_view NameOf(const clsPeImage& image, clsBytes record) noexcept {
    const std::string_view name =
        record.Get32(0) != 0 ? record.PaddedText(0, 8) : image.StringTable().Text(record.Get32(4));
    if (name.starts_with('.'))
        return name.starts_with(sectionOfOne) ? Without(name, sectionOfOne.size()) : std::string_view();
    return name.starts_with('_') ? Without(name, 1) : name;
}

} // namespace

scNearestName UtilpNearestSymbol(const clsPeImage& image, std::uint32_t offset) noexcept {
    const std::uint32_t index = image.SectionIndexAt(offset);
    const scPeSection section = image.Section(index);
    const std::uint32_t value = offset - section.offset;
    const clsBytes table = image.SymbolTable();
    if (!section.isCode)
        return {};
    clsBytes best;
    std::uint32_t bestValue = 0;
    for (std::size_t at = 0; table.Holds(at, symbolBytes);) {
        const clsBytes record(table.Data() + at, symbolBytes);
        at += symbolBytes * (1u + record.Get8(17));
        const std::uint32_t itsValue = record.Get32(8);
        if (itsValue < bestValue || itsValue > value || record.Get16(12) != index + 1)
            continue;
        const int rank = RankOf(record);
        if (rank > 0 && (itsValue > bestValue || best.IsEmpty() || rank > RankOf(best))) {
            best = record;
            bestValue = itsValue;
        }
    }
    return best.IsEmpty() ? scNearestName() : scNearestName{NameOf(image, best), value - bestValue};
}

void UtilpWalkSymbols(const clsPeImage& image, IclsNameTaker& taker) noexcept {
    const clsBytes table = image.SymbolTable();
    std::uint32_t index = 0; // of the section that was asked for last, from 1
    scPeSection section;
    for (std::size_t at = 0; table.Holds(at, symbolBytes);) {
        const clsBytes record(table.Data() + at, symbolBytes);
        at += symbolBytes * (1u + record.Get8(17));
        const int rank = RankOf(record);
        if (rank == 0 || record.Get16(12) == 0)
            continue;
        if (record.Get16(12) != index) {
            index = record.Get16(12);
            section = image.Section(index - 1);
        }
        if (section.isCode && record.Get32(8) < section.size)
            taker.Name(section.offset + record.Get32(8), rank, NameOf(image, record));
    }
}

} // namespace tvut
