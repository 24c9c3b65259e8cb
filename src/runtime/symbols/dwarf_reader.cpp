// What is not wanted has to be read past, too. How long an attribute is, its form says alone, so a table
// holds the lengths. After a form that is not in it nobody knows where the next attribute begins: the reader
// fails for good.
#include "runtime/symbols/dwarf_reader.h"

#include <array>

namespace tvut {

namespace {

// How long an attribute is: so many bytes, or one of these.
enum : std::uint8_t { unknown = 0x80, address, offset, reference, leb, text, block1, block2, block4, block };

constexpr std::array<std::uint8_t, 0x2D> formLengths{
    unknown,   address, unknown, block2, block4, 2,      4,       8,      text, // 00 addr .. 08 string
    block,     block1,  1,       1,      leb,    offset, leb,                   // 09 block .. 0F udata
    reference, 1,       2,       4,      8,      leb,    unknown, offset, // 10 ref_addr .. 17 sec_offset
    block,     0,       leb,     leb,    4,      offset, 16,      offset, // 18 exprloc .. 1F line_strp
    8,         0,       leb,     leb,    8,      1,      2,       3,      // 20 ref_sig8 .. 27 strx3
    4,         1,       2,       3,      4,                               // 28 strx4 .. 2C addrx4
};

} // namespace

void clsDwarfReader::Skip(std::uint64_t bytes) noexcept {
    if (bytes <= Rest().Size())
        at_ += static_cast<std::size_t>(bytes);
    else
        Fail();
}

std::uint64_t clsDwarfReader::GetNumber(std::size_t bytes) noexcept {
    std::uint64_t number = 0;
    const clsBytes part = Rest().Part(0, bytes);
    for (std::size_t i = part.Size(); i-- > 0;)
        number = number << 8 | part.Get8(i);
    Skip(bytes);
    return number;
}

// Bits beyond the 64th are lost; such numbers are nothing that is looked for.
std::uint64_t clsDwarfReader::GetUnsigned() noexcept {
    std::uint64_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const std::uint8_t byte = Get8();
        if (shift < 64)
            number |= std::uint64_t{byte & 0x7Fu} << shift;
        if (byte < 0x80)
            return number;
    }
}

std::int64_t clsDwarfReader::GetSigned() noexcept {
    std::uint64_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const std::uint8_t byte = Get8();
        if (shift < 64)
            number |= std::uint64_t{byte & 0x7Fu} << shift;
        if (byte >= 0x80)
            continue;
        if (byte >= 0x40 && shift < 57)
            number |= ~std::uint64_t{0} << (shift + 7);
        return static_cast<std::int64_t>(number);
    }
}

std::string_view clsDwarfReader::GetText() noexcept {
    const std::string_view found = Rest().Text(0);
    found.data() ? Skip(found.size() + 1) : Fail();
    return found;
}

clsBytes clsDwarfReader::GetUnit(scDwarfWidths& widths) noexcept {
    std::uint64_t length = Get32();
    widths.offsetBytes = length == 0xFFFFFFFF ? 8 : 4;
    if (widths.offsetBytes == 8)
        length = Get64();
    const clsBytes rest = Rest();
    Skip(length);
    return good_ ? rest.First(static_cast<std::size_t>(length)) : clsBytes();
}

void clsDwarfReader::SkipForm(std::uint64_t form, const scDwarfWidths& widths) noexcept {
    const std::uint8_t length =
        form < formLengths.size() ? formLengths[static_cast<std::size_t>(form)] : std::uint8_t{unknown};
    switch (length) {
    case unknown:
        return Fail();
    case address:
        return Skip(widths.addressBytes);
    case offset:
        return Skip(widths.offsetBytes);
    case reference: // the second version took it for an address
        return Skip(widths.version == 2 ? widths.addressBytes : widths.offsetBytes);
    case leb:
        GetUnsigned();
        return;
    case text:
        GetText();
        return;
    case block1:
        return Skip(Get8());
    case block2:
        return Skip(Get16());
    case block4:
        return Skip(Get32());
    case block:
        return Skip(GetUnsigned());
    default:
        return Skip(length);
    }
}

} // namespace tvut
