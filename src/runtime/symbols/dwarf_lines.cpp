// A unit's lines are a program for a small machine, which writes rows of address, file and line; a row holds
// for the addresses up to the next one. The program is run until the row is there, nothing is kept. Rows
// within a sequence ascend, and sequences begin by setting an address, so whatever the linker left of
// functions that it threw out lies below every module and matches nothing.
#include "runtime/symbols/dwarf_lines.h"

#include "runtime/symbols/dwarf_reader.h"
#include "runtime/symbols/dwarf_units.h"

namespace tvut {

namespace {

// DW_LNS and DW_LNE
enum Opcode : std::uint8_t {
    extended = 0,
    copy = 1,
    advanceAddress = 2,
    advanceLine = 3,
    setFile = 4,
    addLargestStep = 8,
    advanceFixed = 9,
};
enum ExtendedOpcode : std::uint8_t { endSequence = 1, setAddress = 2 };

constexpr std::uint64_t pathContent = 1; // DW_LNCT_path

struct scLineHeader {
    scDwarfWidths widths;
    std::uint8_t instructionBytes = 1;
    std::int8_t lineBase = 0;
    std::uint8_t lineRange = 0; // 0: the header is no good
    std::uint8_t firstSpecial = 0;
    clsBytes operandCounts; // of standard opcodes, from 1
    clsBytes names;         // folders and files
    clsBytes program;
};

struct scRow {
    std::uint64_t address = 0;
    std::uint64_t file = 1;
    std::uint32_t line = 1;
};

scLineHeader ReadHeader(clsBytes unit, scDwarfWidths widths) noexcept {
    clsDwarfReader reader(unit);
    scLineHeader header{};
    const std::uint16_t version = reader.Get16();
    if (version < 2 || version > 5)
        return header;
    if (version == 5)
        reader.Skip(2); // address and segment sizes: each address tells its own
    const std::uint64_t rest = reader.GetNumber(widths.offsetBytes);
    const clsBytes afterLength = reader.Rest();
    if (rest > afterLength.Size())
        return header;
    header.program = afterLength.From(static_cast<std::size_t>(rest));
    header.instructionBytes = reader.Get8();
    reader.Skip(version >= 4 ? 2 : 1); // operations an instruction; whether rows begin statements
    header.lineBase = static_cast<std::int8_t>(reader.Get8());
    const std::uint8_t lineRange = reader.Get8();
    header.firstSpecial = reader.Get8();
    const std::size_t counts = header.firstSpecial != 0 ? header.firstSpecial - 1u : 0;
    header.operandCounts = reader.Rest().First(counts);
    reader.Skip(counts);
    header.names = reader.Rest();
    header.widths = {static_cast<std::uint8_t>(version), widths.offsetBytes, widths.addressBytes};
    header.lineRange = reader.IsGood() ? lineRange : std::uint8_t{0};
    return header;
}

// Runs a program. Each row goes to rows.Take, which says whether that was enough.
template <class Rows>
class clsLineProgram {
  public:
    clsLineProgram(const scLineHeader& header, Rows& rows) noexcept
        : header_(header), reciprocal_(0x10000u / header.lineRange + 1), rows_(rows), code_(header.program) {}

    bool Run() noexcept {
        while (!code_.AtEnd()) {
            const std::uint8_t opcode = code_.Get8();
            if (opcode >= header_.firstSpecial ? Special(opcode) : Standard(opcode))
                return true;
        }
        return false;
    }

  private:
    bool Special(std::uint8_t opcode) noexcept {
        const unsigned step = opcode - unsigned{header_.firstSpecial};
        const unsigned advance = step * reciprocal_ >> 16; // step / lineRange, exact for steps below 256
        Advance(advance);
        AddToLine(header_.lineBase + static_cast<int>(step - advance * header_.lineRange));
        return rows_.Take(row_, false);
    }

    bool Standard(std::uint8_t opcode) noexcept {
        switch (opcode) {
        case extended:
            return RunExtended();
        case copy:
            return rows_.Take(row_, false);
        case advanceAddress:
            Advance(code_.GetUnsigned());
            return false;
        case advanceLine:
            AddToLine(code_.GetSigned());
            return false;
        case setFile:
            row_.file = code_.GetUnsigned();
            return false;
        case addLargestStep:
            Advance((255u - header_.firstSpecial) / header_.lineRange);
            return false;
        case advanceFixed:
            row_.address += code_.Get16();
            return false;
        default: // columns, marks, and what later versions may add
            for (std::uint8_t i = header_.operandCounts.Get8(opcode - 1u); i > 0; --i)
                code_.GetUnsigned();
            return false;
        }
    }

    bool RunExtended() noexcept {
        const std::uint64_t length = code_.GetUnsigned();
        clsDwarfReader operand(code_.Rest());
        code_.Skip(length);
        if (length == 0 || !code_.IsGood())
            return false;
        const std::uint8_t opcode = operand.Get8();
        if (opcode == setAddress && length <= 9)
            row_.address = operand.GetNumber(static_cast<std::size_t>(length) - 1);
        if (opcode != endSequence)
            return false;
        const bool isEnough = rows_.Take(row_, true);
        row_ = {};
        return isEnough;
    }

    void Advance(std::uint64_t steps) noexcept { row_.address += steps * header_.instructionBytes; }
    void AddToLine(std::int64_t difference) noexcept {
        row_.line = static_cast<std::uint32_t>(row_.line + static_cast<std::uint64_t>(difference));
    }

    const scLineHeader& header_;
    const unsigned reciprocal_; // to divide by lineRange
    Rows& rows_;
    clsDwarfReader code_;
    scRow row_;
};

// Looks for the row that holds for an address.
struct scRowSearch {
    std::uint64_t wanted;
    scRow last{};
    bool hasLast = false;

    // The row before holds up to this one.
    bool Take(const scRow& row, bool endsSequence) noexcept {
        if (hasLast && wanted >= last.address && wanted < row.address)
            return true;
        last = row;
        hasLast = !endsSequence;
        return false;
    }
};

// Passes all rows on.
struct scRowPasser {
    IclsLineTaker& taker;

    bool Take(const scRow& row, bool endsSequence) noexcept {
        endsSequence ? taker.End(row.address) : taker.Row(row.address, row.file, row.line);
        return false;
    }
};

std::string_view WithoutFolder(std::string_view path) noexcept {
    std::size_t begin = path.size();
    while (begin > 0 && path[begin - 1] != '/' && path[begin - 1] != '\\')
        --begin;
    return {path.data() + begin, path.size() - begin};
}

// Versions 2 to 4: the folders' names, then the files', each list ended by an empty name. Files count from 1.
// "use" gets each file's number and name and says whether that was enough.
template <class Use>
void EachOldFile(clsDwarfReader names, Use use) noexcept {
    while (!names.GetText().empty())
        continue;
    for (std::uint64_t i = 1; !names.AtEnd(); ++i) {
        const std::string_view name = names.GetText();
        if (name.empty() || use(i, name))
            return;
        for (int number = 0; number < 3; ++number) // folder, time, length
            names.GetUnsigned();
    }
}

class clsEntryTable {
  public:
    // Reads what the entries consist of and how many there are; the first one is next.
    clsEntryTable(clsDwarfReader& reader, const clsPeImage& image, const scDwarfWidths& widths) noexcept
        : reader_(reader), texts_(image.FindSection(".debug_str").bytes),
          lineTexts_(image.FindSection(".debug_line_str").bytes), widths_(widths), fieldCount_(reader.Get8()),
          fields_(reader.Rest()) {
        for (unsigned i = 0; i < fieldCount_ * 2u; ++i)
            reader.GetUnsigned();
        count_ = reader.GetUnsigned();
    }

    // Reads so many entries, or what there is of them; "use" as above.
    template <class Use>
    void Each(Use use) noexcept {
        for (std::uint64_t i = 0; i < count_ && reader_.IsGood(); ++i) {
            const std::size_t before = reader_.Position();
            if (use(i, ReadEntry()) || reader_.Position() == before)
                return; // entries without bytes, however many, are nothing
        }
    }

  private:
    // Reads an entry and returns its path.
    std::string_view ReadEntry() noexcept {
        clsDwarfReader fields(fields_);
        std::string_view path;
        for (unsigned i = 0; i < fieldCount_ && reader_.IsGood(); ++i) {
            const std::uint64_t content = fields.GetUnsigned();
            const std::uint64_t form = fields.GetUnsigned();
            content == pathContent ? void(path = ReadPath(form)) : reader_.SkipForm(form, widths_);
        }
        return reader_.IsGood() ? path : std::string_view();
    }

    std::string_view ReadPath(std::uint64_t form) noexcept {
        if (form == dwarfForm::string)
            return reader_.GetText();
        const bool isLineString = form == dwarfForm::lineStringPosition;
        if (!isLineString && form != dwarfForm::stringPosition)
            return reader_.SkipForm(form, widths_), std::string_view();
        const std::uint64_t position = reader_.GetNumber(widths_.offsetBytes);
        const clsBytes& texts = isLineString ? lineTexts_ : texts_;
        return position < texts.Size() ? texts.Text(static_cast<std::size_t>(position)) : std::string_view();
    }

    clsDwarfReader& reader_;
    const clsBytes texts_, lineTexts_;
    const scDwarfWidths widths_;
    const std::uint8_t fieldCount_;
    const clsBytes fields_; // pairs of content and form
    std::uint64_t count_ = 0;
};

// Version 5: tables of folders and of files that tell what their entries consist of. Files count from 0.
template <class Use>
void EachNewFile(clsDwarfReader names, const clsPeImage& image, const scDwarfWidths& widths,
                 Use use) noexcept {
    clsEntryTable(names, image, widths).Each([](std::uint64_t, std::string_view) { return false; });
    clsEntryTable(names, image, widths).Each(use);
}

template <class Use>
void EachFile(const clsPeImage& image, const scLineHeader& header, Use use) noexcept {
    const clsDwarfReader names(header.names);
    header.widths.version == 5 ? EachNewFile(names, image, header.widths, use) : EachOldFile(names, use);
}

std::string_view FileName(const clsPeImage& image, const scLineHeader& header, std::uint64_t file) noexcept {
    std::string_view found;
    EachFile(image, header, [&](std::uint64_t number, std::string_view name) {
        found = number == file ? WithoutFolder(name) : found;
        return number == file;
    });
    return found;
}

// The head of the unit that the bytes begin with; moves them past it.
scLineHeader ReadNextHeader(clsBytes& lines) noexcept {
    scDwarfWidths widths;
    clsDwarfReader reader(lines);
    const scLineHeader header = ReadHeader(reader.GetUnit(widths), widths);
    lines = reader.Rest();
    return header;
}

// Looks in the unit that the bytes begin with, and moves them past it.
scSourceLine FindInNextUnit(const clsPeImage& image, clsBytes& lines, std::uint64_t address) noexcept {
    const scLineHeader header = ReadNextHeader(lines);
    if (header.lineRange == 0)
        return {};
    scRowSearch search{address};
    if (!clsLineProgram(header, search).Run())
        return {};
    return {FileName(image, header, search.last.file), search.last.line};
}

} // namespace

scSourceLine UtilpFindSourceLine(const clsPeImage& image, std::uint32_t offset) noexcept {
    const std::uint64_t address = std::uint64_t{image.BaseAddress()} + offset;
    clsBytes lines = image.FindSection(".debug_line").bytes;
    const scUnitOfAddress unit = UtilpFindUnit(image, address);
    if (unit.isCertain) {
        lines = unit.lines < lines.Size() ? lines.From(static_cast<std::size_t>(unit.lines)) : clsBytes();
        return FindInNextUnit(image, lines, address);
    }
    while (!lines.IsEmpty())
        if (const scSourceLine found = FindInNextUnit(image, lines, address); found.line != 0)
            return found;
    return {};
}

void UtilpWalkSourceLines(const clsPeImage& image, IclsLineTaker& taker) noexcept {
    scRowPasser passer{taker};
    for (clsBytes lines = image.FindSection(".debug_line").bytes; !lines.IsEmpty();) {
        const scLineHeader header = ReadNextHeader(lines);
        if (header.lineRange == 0)
            continue;
        taker.Unit();
        EachFile(image, header, [&](std::uint64_t number, std::string_view name) {
            taker.File(number, WithoutFolder(name));
            return false;
        });
        clsLineProgram(header, passer).Run();
    }
}

} // namespace tvut
