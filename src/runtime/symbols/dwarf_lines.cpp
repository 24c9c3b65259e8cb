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
    Extended = 0,
    Copy = 1,
    AdvanceAddress = 2,
    AdvanceLine = 3,
    SetFile = 4,
    AddLargestStep = 8,
    AdvanceFixed = 9,
};
enum ExtendedOpcode : std::uint8_t { EndSequence = 1, SetAddress = 2 };

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

// Runs a program until a row holds for the wanted address.
class clsLineProgram {
  public:
    clsLineProgram(const scLineHeader& header, std::uint64_t wanted) noexcept
        : header_(header), reciprocal_(0x10000u / header.lineRange + 1), wanted_(wanted),
          code_(header.program) {}

    bool Run() noexcept {
        while (!code_.AtEnd()) {
            const std::uint8_t opcode = code_.Get8();
            if (opcode >= header_.firstSpecial ? Special(opcode) : Standard(opcode))
                return true;
        }
        return false;
    }
    const scRow& Found() const noexcept { return last_; }

  private:
    bool Special(std::uint8_t opcode) noexcept {
        const unsigned step = opcode - unsigned{header_.firstSpecial};
        const unsigned advance = step * reciprocal_ >> 16; // step / lineRange, exact for steps below 256
        Advance(advance);
        AddToLine(header_.lineBase + static_cast<int>(step - advance * header_.lineRange));
        return Write();
    }

    bool Standard(std::uint8_t opcode) noexcept {
        switch (opcode) {
        case Extended:
            return RunExtended();
        case Copy:
            return Write();
        case AdvanceAddress:
            Advance(code_.GetUnsigned());
            return false;
        case AdvanceLine:
            AddToLine(code_.GetSigned());
            return false;
        case SetFile:
            row_.file = code_.GetUnsigned();
            return false;
        case AddLargestStep:
            Advance((255u - header_.firstSpecial) / header_.lineRange);
            return false;
        case AdvanceFixed:
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
        if (opcode == SetAddress && length <= 9)
            row_.address = operand.GetNumber(static_cast<std::size_t>(length) - 1);
        if (opcode != EndSequence || Write())
            return opcode == EndSequence;
        row_ = {};
        hasLast_ = false;
        return false;
    }

    void Advance(std::uint64_t steps) noexcept { row_.address += steps * header_.instructionBytes; }
    void AddToLine(std::int64_t difference) noexcept {
        row_.line = static_cast<std::uint32_t>(row_.line + static_cast<std::uint64_t>(difference));
    }

    // The row before holds up to this one.
    bool Write() noexcept {
        if (hasLast_ && wanted_ >= last_.address && wanted_ < row_.address)
            return true;
        last_ = row_;
        hasLast_ = true;
        return false;
    }

    const scLineHeader& header_;
    const unsigned reciprocal_; // to divide by lineRange
    const std::uint64_t wanted_;
    clsDwarfReader code_;
    scRow row_, last_;
    bool hasLast_ = false;
};

std::string_view WithoutFolder(std::string_view path) noexcept {
    std::size_t begin = path.size();
    while (begin > 0 && path[begin - 1] != '/' && path[begin - 1] != '\\')
        --begin;
    return {path.data() + begin, path.size() - begin};
}

// Versions 2 to 4: the folders' names, then the files', each list ended by an empty name. Files count from 1.
std::string_view OldFileName(clsDwarfReader names, std::uint64_t file) noexcept {
    while (!names.GetText().empty())
        continue;
    for (std::uint64_t i = 1; !names.AtEnd(); ++i) {
        const std::string_view name = names.GetText();
        if (name.empty() || i == file)
            return name;
        for (int number = 0; number < 3; ++number) // folder, time, length
            names.GetUnsigned();
    }
    return {};
}

class clsEntryTable {
  public:
    // Reads what the entries consist of and how many there are; the first one is next.
    clsEntryTable(clsDwarfReader& reader, const clsPeImage& image, const scDwarfWidths& widths) noexcept
        : reader_(reader), image_(image), widths_(widths), fieldCount_(reader.Get8()),
          fields_(reader.Rest()) {
        for (unsigned i = 0; i < fieldCount_ * 2u; ++i)
            reader.GetUnsigned();
        count_ = reader.GetUnsigned();
    }
    std::uint64_t Count() const noexcept { return count_; }

    // Reads so many entries, or what there is of them.
    void Skip(std::uint64_t count) noexcept {
        for (; count > 0 && reader_.IsGood(); --count) {
            const std::size_t before = reader_.Position();
            ReadEntry();
            if (reader_.Position() == before)
                return; // entries without bytes, however many, are nothing
        }
    }

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

  private:
    std::string_view ReadPath(std::uint64_t form) noexcept {
        if (form == DwarfForm::string)
            return reader_.GetText();
        const bool isLineString = form == DwarfForm::lineStringPosition;
        if (!isLineString && form != DwarfForm::stringPosition)
            return reader_.SkipForm(form, widths_), std::string_view();
        const std::uint64_t position = reader_.GetNumber(widths_.offsetBytes);
        const clsBytes texts = image_.FindSection(isLineString ? ".debug_line_str" : ".debug_str").bytes;
        return position < texts.Size() ? texts.Text(static_cast<std::size_t>(position)) : std::string_view();
    }

    clsDwarfReader& reader_;
    const clsPeImage& image_;
    const scDwarfWidths widths_;
    const std::uint8_t fieldCount_;
    const clsBytes fields_; // pairs of content and form
    std::uint64_t count_ = 0;
};

// Version 5: tables of folders and of files that tell what their entries consist of. Files count from 0.
std::string_view NewFileName(clsDwarfReader names, const clsPeImage& image, const scDwarfWidths& widths,
                             std::uint64_t file) noexcept {
    clsEntryTable folders(names, image, widths);
    folders.Skip(folders.Count());
    clsEntryTable files(names, image, widths);
    if (file >= files.Count())
        return {};
    files.Skip(file);
    return files.ReadEntry();
}

// Looks in the unit that the bytes begin with, and moves them past it.
scSourceLine FindInNextUnit(const clsPeImage& image, clsBytes& lines, std::uint64_t address) noexcept {
    scDwarfWidths widths;
    clsDwarfReader reader(lines);
    const scLineHeader header = ReadHeader(reader.GetUnit(widths), widths);
    lines = reader.Rest();
    if (header.lineRange == 0)
        return {};
    clsLineProgram program(header, address);
    if (!program.Run())
        return {};
    const clsDwarfReader names(header.names);
    const std::uint64_t file = program.Found().file;
    return {WithoutFolder(header.widths.version == 5 ? NewFileName(names, image, header.widths, file)
                                                     : OldFileName(names, file)),
            program.Found().line};
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

} // namespace tvut
