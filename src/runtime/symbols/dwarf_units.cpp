// The table of address ranges names a unit in .debug_info. Its first entry, laid out as .debug_abbrev tells,
// has the position of its lines as an attribute.
#include "runtime/symbols/dwarf_units.h"

#include "runtime/symbols/dwarf_reader.h"

#include <optional>

namespace tvut {

namespace {

constexpr std::uint64_t linesAttribute = 0x10; // DW_AT_stmt_list
constexpr std::uint8_t compileUnit = 1;        // DW_UT_compile
constexpr std::uint8_t partialUnit = 3;        // DW_UT_partial

// Up to where the next function begins, mostly at a multiple of 16, there is filler, which is in no range.
// The lines of the unit whose range ends there may go on over it.
constexpr std::uint64_t mostFiller = 15; // bytes
struct scUnitBefore {
    std::uint64_t filler = mostFiller + 1; // between its range and the address
    std::uint64_t unit = 0;
};

// A set of ranges belongs to one unit. Ranges without length are passed over wherever they stand: they are
// what is left of functions that the linker threw out.
std::optional<std::uint64_t> UnitOfSet(clsDwarfReader& sets, std::uint64_t address,
                                       scUnitBefore& before) noexcept {
    scDwarfWidths widths;
    clsDwarfReader set(sets.GetUnit(widths));
    const std::size_t lengthBytes = widths.offsetBytes == 8 ? 12 : 4;
    const std::uint16_t version = set.Get16();
    const std::uint64_t unit = set.GetNumber(widths.offsetBytes);
    const std::size_t addressBytes = set.Get8();
    const std::uint8_t segmentBytes = set.Get8();
    if (!sets.IsGood() || version != 2 || (addressBytes != 4 && addressBytes != 8) || segmentBytes != 0)
        return {};
    // Ranges begin at a multiple of their size, counted from the set's length.
    const std::size_t rangeBytes = addressBytes * 2;
    set.Skip((rangeBytes - (lengthBytes + set.Position()) % rangeBytes) % rangeBytes);
    while (!set.AtEnd()) {
        const std::uint64_t first = set.GetNumber(addressBytes);
        const std::uint64_t length = set.GetNumber(addressBytes);
        if (!set.IsGood() || length == 0 || address < first)
            continue;
        const std::uint64_t within = address - first;
        if (within < length)
            return unit;
        if (within - length < before.filler)
            before = {within - length, unit};
    }
    return {};
}

// The attributes' names and forms of an entry's kind, by its code.
clsDwarfReader AttributesOf(clsBytes abbreviations, std::uint64_t code) noexcept {
    clsDwarfReader reader(abbreviations);
    while (!reader.AtEnd()) {
        const std::uint64_t found = reader.GetUnsigned();
        reader.GetUnsigned(); // tag
        reader.Get8();        // whether it has children
        if (found == code)
            return reader;
        for (std::uint64_t name = 1, form = 1; (name != 0 || form != 0) && !reader.AtEnd();) {
            name = reader.GetUnsigned();
            form = reader.GetUnsigned();
            if (form == dwarfForm::implicitConstant)
                reader.GetSigned();
        }
    }
    return clsDwarfReader({});
}

std::optional<std::uint64_t> LinesOfEntry(clsDwarfReader& entry, clsDwarfReader attributes,
                                          const scDwarfWidths& widths) noexcept {
    while (!attributes.AtEnd() && entry.IsGood()) {
        const std::uint64_t name = attributes.GetUnsigned();
        const std::uint64_t form = attributes.GetUnsigned();
        if (form == dwarfForm::implicitConstant)
            attributes.GetSigned();
        if (name == 0 && form == 0)
            break;
        if (name != linesAttribute) {
            entry.SkipForm(form, widths);
            continue;
        }
        if (form != dwarfForm::sectionPosition && form != dwarfForm::data4 && form != dwarfForm::data8)
            break;
        const std::uint64_t lines = entry.GetNumber(form == dwarfForm::data4   ? 4
                                                    : form == dwarfForm::data8 ? 8
                                                                               : widths.offsetBytes);
        return entry.IsGood() ? std::optional(lines) : std::nullopt;
    }
    return {};
}

clsBytes From(clsBytes section, std::uint64_t position) noexcept {
    return position < section.Size() ? section.From(static_cast<std::size_t>(position)) : clsBytes();
}

// Where the lines of a unit in .debug_info begin.
std::optional<std::uint64_t> LinesOfUnit(const clsPeImage& image, std::uint64_t position) noexcept {
    scDwarfWidths widths;
    clsDwarfReader unit(
        clsDwarfReader(From(image.FindSection(".debug_info").bytes, position)).GetUnit(widths));
    const std::uint16_t version = unit.Get16();
    if (version < 2 || version > 5)
        return {};
    widths.version = static_cast<std::uint8_t>(version);
    std::uint8_t type = compileUnit;
    if (version == 5) {
        type = unit.Get8();
        widths.addressBytes = unit.Get8();
    }
    const std::uint64_t abbreviations = unit.GetNumber(widths.offsetBytes);
    if (version < 5)
        widths.addressBytes = unit.Get8();
    if (type != compileUnit && type != partialUnit)
        return {};
    const std::uint64_t code = unit.GetUnsigned();
    return LinesOfEntry(
        unit, AttributesOf(From(image.FindSection(".debug_abbrev").bytes, abbreviations), code), widths);
}

std::size_t CountUnits(clsBytes section) noexcept {
    std::size_t count = 0;
    scDwarfWidths widths;
    for (clsDwarfReader units(section); !units.AtEnd(); ++count)
        units.GetUnit(widths);
    return count;
}

} // namespace

scUnitOfAddress UtilpFindUnit(const clsPeImage& image, std::uint64_t address) noexcept {
    std::size_t listed = 0;
    scUnitBefore before;
    for (clsDwarfReader sets(image.FindSection(".debug_aranges").bytes); !sets.AtEnd(); ++listed)
        if (const auto unit = UnitOfSet(sets, address, before)) {
            const auto lines = LinesOfUnit(image, *unit);
            return lines ? scUnitOfAddress{true, *lines} : scUnitOfAddress();
        }
    if (listed < CountUnits(image.FindSection(".debug_info").bytes))
        return {};
    scUnitOfAddress unit{.isCertain = true};
    if (before.filler <= mostFiller)
        unit.lines = LinesOfUnit(image, before.unit).value_or(unit.lines);
    return unit;
}

} // namespace tvut
