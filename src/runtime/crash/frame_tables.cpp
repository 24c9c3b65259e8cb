// A table is a list of entries. One kind (CIE) holds what functions have in common, the other (FDE) belongs
// to one function: a small program that tells, instruction by instruction, where the caller's frame begins
// (CFA) and where registers were saved. It is run up to the instruction that is asked for. Only ebp and the
// return address are kept, because the frames of compilers are found by esp and ebp.
//
// PE files have no index of the table, so it is searched from its beginning; how much a walk reads in all is
// limited. What is not understood counts as no entry.
#include "runtime/crash/frame_tables.h"

#include "runtime/crash/module_walk.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::uint32_t wordSize = 4;
constexpr std::uint32_t mostLoaded = 32 * 1024 * 1024; // bytes, for a whole walk
constexpr std::uint32_t espNumber = 4, ebpNumber = 5, returnNumber = 8;

// How pointers are written: what they are relative to, and how wide they are.
constexpr std::uint8_t relativeToThemselves = 0x10, absolute = 0x00;

constexpr bool IsKnownEncoding(std::uint8_t encoding) noexcept {
    const std::uint8_t width = encoding & 0x0F, base = encoding & 0xF0;
    return (width == 0x00 || width == 0x03 || width == 0x0B) &&
           (base == absolute || base == relativeToThemselves);
}

std::uint32_t GetPointer(clsTableReader& reader, std::uint8_t encoding) noexcept {
    const std::uint32_t base = (encoding & 0xF0) == relativeToThemselves ? reader.Address() : 0;
    return base + reader.Get32();
}

// What functions have in common.
struct scCommon {
    std::uint32_t position = UINT32_MAX; // of its entry
    bool isKnown = false;
    bool hasSize = false; // of what augments an entry
    std::uint8_t encoding = absolute;
    std::uint32_t codeUnit = 1;
    std::int32_t dataUnit = 1;
    std::uint32_t program = 0, end = 0;
};

// One function.
struct scFunction {
    std::uint32_t begin = 0;
    std::uint32_t program = 0, end = 0;
};

// Reads past what the letters of an entry stand for. False for letters that are not known.
bool ReadAugmentation(clsTableReader& reader, std::span<const std::uint8_t> letters,
                      scCommon& common) noexcept {
    for (const std::uint8_t letter : letters) {
        if (letter == 'R') {
            common.encoding = reader.Get8();
        } else if (letter == 'P') {
            const std::uint8_t encoding = reader.Get8();
            if (!IsKnownEncoding(encoding & 0x7F)) // whether it is the address of a pointer does not matter
                return false;
            GetPointer(reader, encoding);
        } else if (letter == 'L') {
            reader.Get8();
        } else {
            return false;
        }
    }
    return IsKnownEncoding(common.encoding);
}

bool ReadCommon(clsTableReader& reader, scCommon& common) noexcept {
    reader.GoTo(common.position);
    const std::uint32_t length = reader.Get32();
    common.end = reader.Position() + length;
    const bool isCommon = reader.Get32() == 0;
    const std::uint8_t version = reader.Get8();
    std::array<std::uint8_t, 8> letters;
    std::size_t count = 0;
    for (std::uint8_t letter = 0; count < letters.size() && (letter = reader.Get8()) != 0; ++count)
        letters[count] = letter;
    common.codeUnit = reader.GetUnsigned();
    common.dataUnit = reader.GetSigned();
    const std::uint32_t returnColumn = version == 1 ? reader.Get8() : reader.GetUnsigned();
    if (!isCommon || (version != 1 && version != 3) || returnColumn != returnNumber ||
        count == letters.size())
        return false;
    common.hasSize = count != 0;
    std::span<const std::uint8_t> rest(letters.data(), count);
    if (common.hasSize) {
        const std::uint32_t size = reader.GetUnsigned();
        common.program = reader.Position() + size;
        if (rest[0] != 'z' || size > common.end || !ReadAugmentation(reader, rest.subspan(1), common))
            return false;
    } else {
        common.program = reader.Position();
    }
    return reader.IsGood() && common.program <= common.end;
}

// Looks for the function that an address lies in.
bool FindFunction(clsTableReader& reader, std::uint32_t address, scCommon& common,
                  scFunction& function) noexcept {
    reader.GoTo(0);
    while (reader.IsGood()) {
        const std::uint32_t length = reader.Get32(), entry = reader.Position();
        if (length < wordSize || length > reader.Table().bytes - entry)
            return false;
        const std::uint32_t back = reader.Get32(), next = entry + length;
        if (back != 0) {
            if (common.position != entry - back) {
                common = {};
                common.position = entry - back;
                common.isKnown = back <= entry && ReadCommon(reader, common);
                reader.GoTo(entry + wordSize);
            }
            if (common.isKnown) {
                const std::uint32_t begin = GetPointer(reader, common.encoding), bytes = reader.Get32();
                if (address - begin < bytes && reader.IsGood()) {
                    const std::uint32_t more = common.hasSize ? reader.GetUnsigned() : 0;
                    function = {begin, reader.Position() + more, next};
                    return reader.IsGood() && more <= next && function.program <= next;
                }
            }
        }
        reader.GoTo(next);
    }
    return false;
}

// Where a value is found.
struct scPlace {
    enum class Kind : std::uint8_t { same, atFrame, atRegister, unknown };
    Kind kind = Kind::same;
    std::uint32_t number = 0; // of the register
    std::uint32_t offset = 0; // from the frame or the register
};

struct scRules {
    scPlace frame{scPlace::Kind::unknown}; // atRegister: the sum itself
    bool isFrameStored = false;            // the frame's address stands there
    scPlace ebp, caller;

    scPlace* Of(std::uint32_t number) noexcept {
        return number == ebpNumber ? &ebp : number == returnNumber ? &caller : nullptr;
    }
};

// Runs the programs of a function.
class clsFrameProgram {
  public:
    clsFrameProgram(clsTableReader& reader, const scCommon& common) noexcept
        : reader_(reader), common_(common) {}

    // Up to where a function stands. False when something is not understood.
    bool Run(const scFunction& function, std::uint32_t address) noexcept {
        address_ = address;
        place_ = address; // the common part holds everywhere
        if (!RunPart(common_.program, common_.end))
            return false;
        first_ = rules_;
        place_ = function.begin;
        return RunPart(function.program, function.end);
    }
    const scRules& Rules() const noexcept { return rules_; }

  private:
    bool RunPart(std::uint32_t begin, std::uint32_t end) noexcept {
        reader_.GoTo(begin);
        while (reader_.Position() < end && !isThere_ && isKnown_ && reader_.IsGood())
            Step();
        return isKnown_ && reader_.IsGood() && reader_.Position() <= end;
    }

    void Step() noexcept {
        const std::uint8_t code = reader_.Get8(), operand = code & 0x3F;
        switch (code >> 6) {
        case 1:
            return Advance(operand);
        case 2:
            return SetSaved(operand, ScaledUnsigned());
        case 3:
            return Restore(operand);
        default:
            return StepLong(operand);
        }
    }

    void StepLong(std::uint8_t code) noexcept {
        switch (code) {
        case 0x00: // nop
            return;
        case 0x02: // advance_loc1, 2, 4
            return Advance(reader_.Get8());
        case 0x03:
            return Advance(reader_.Get16());
        case 0x04:
            return Advance(reader_.Get32());
        case 0x06: // restore_extended
            return Restore(reader_.GetUnsigned());
        case 0x0A:
            return Remember();
        case 0x0B:
            return Recall();
        case 0x2E: // GNU_args_size
            reader_.GetUnsigned();
            return;
        default:
            return code >= 0x0C && code <= 0x0F ? StepFrame(code) : StepRegister(code);
        }
    }

    void StepFrame(std::uint8_t code) noexcept {
        if (code == 0x0F) { // def_cfa_expression
            rules_.frame = GetExpression(rules_.isFrameStored);
            return;
        }
        rules_.frame.kind = scPlace::Kind::atRegister;
        if (code != 0x0E) // def_cfa, def_cfa_register
            rules_.frame.number = reader_.GetUnsigned();
        if (code != 0x0D) // def_cfa, def_cfa_offset
            rules_.frame.offset = reader_.GetUnsigned();
        rules_.isFrameStored = false;
    }

    void StepRegister(std::uint8_t code) noexcept {
        const std::uint32_t number = reader_.GetUnsigned();
        bool isStored = false;
        switch (code) {
        case 0x05: // offset_extended, offset_extended_sf
            return SetSaved(number, ScaledUnsigned());
        case 0x11:
            return SetSaved(number, static_cast<std::uint32_t>(reader_.GetSigned()) * DataUnit());
        case 0x07: // undefined, same_value
            return Set(number, {scPlace::Kind::unknown});
        case 0x08:
            return Set(number, {scPlace::Kind::same});
        case 0x10: { // expression: of the address
            const scPlace place = GetExpression(isStored);
            return Set(number, isStored ? scPlace{scPlace::Kind::unknown} : place);
        }
        default:
            isKnown_ = false;
        }
    }

    // A register and a distance, and whether the sum is where the value stands; other expressions are left
    // out.
    scPlace GetExpression(bool& isStored) noexcept {
        constexpr std::uint8_t firstRegister = 0x70, lastRegister = 0x8F, dereference = 0x06;
        const std::uint32_t length = reader_.GetUnsigned(), begin = reader_.Position();
        const std::uint8_t code = reader_.Get8();
        const auto offset = static_cast<std::uint32_t>(reader_.GetSigned());
        std::uint32_t read = reader_.Position() - begin;
        isStored = read < length && reader_.Get8() == dereference;
        read += isStored ? 1 : 0;
        reader_.GoTo(length <= reader_.Table().bytes ? begin + length : UINT32_MAX);
        if (code < firstRegister || code > lastRegister || read != length)
            return {scPlace::Kind::unknown};
        return {scPlace::Kind::atRegister, std::uint32_t{code} - firstRegister, offset};
    }

    void Advance(std::uint32_t units) noexcept {
        const std::uint32_t bytes = units * common_.codeUnit;
        isThere_ = bytes > address_ - place_;
        place_ += bytes;
    }

    void Set(std::uint32_t number, const scPlace& place) noexcept {
        if (scPlace* const rule = rules_.Of(number))
            *rule = place;
    }
    void SetSaved(std::uint32_t number, std::uint32_t offset) noexcept {
        Set(number, {scPlace::Kind::atFrame, 0, offset});
    }
    void Restore(std::uint32_t number) noexcept {
        if (const scPlace* const rule = first_.Of(number))
            Set(number, *rule);
    }
    void Remember() noexcept {
        isKnown_ = depth_ < remembered_.size();
        if (isKnown_)
            remembered_[depth_++] = rules_;
    }
    void Recall() noexcept {
        isKnown_ = depth_ > 0;
        if (isKnown_)
            rules_ = remembered_[--depth_];
    }

    std::uint32_t DataUnit() const noexcept { return static_cast<std::uint32_t>(common_.dataUnit); }
    std::uint32_t ScaledUnsigned() noexcept { return reader_.GetUnsigned() * DataUnit(); }

    clsTableReader& reader_;
    const scCommon& common_;
    std::uint32_t address_ = 0, place_ = 0;
    bool isThere_ = false, isKnown_ = true;
    scRules rules_, first_;
    std::array<scRules, 8> remembered_;
    std::size_t depth_ = 0;
};

// What rules say of a caller.
class clsCaller {
  public:
    clsCaller(IclsProcessMemory& memory, const scFrameRegisters& callee) noexcept
        : memory_(memory), callee_(callee) {}

    bool Find(const scRules& rules, scFrameRegisters& caller) noexcept {
        if (rules.frame.kind != scPlace::Kind::atRegister || !Sum(rules.frame, frame_) ||
            (rules.isFrameStored && !UtilpReadObject(memory_, frame_, frame_)))
            return false;
        caller.esp = frame_;
        if (rules.caller.kind == scPlace::Kind::same || !Value(rules.caller, 0, caller.eip))
            return false;
        if (!Value(rules.ebp, callee_.ebp, caller.ebp))
            caller.ebp = 0;
        return true;
    }

  private:
    bool Sum(const scPlace& place, std::uint32_t& sum) const noexcept {
        const std::uint32_t value = place.number == espNumber   ? callee_.esp
                                    : place.number == ebpNumber ? callee_.ebp
                                                                : 0;
        sum = value + place.offset;
        return value != 0;
    }

    bool Value(const scPlace& place, std::uint32_t unchanged, std::uint32_t& value) noexcept {
        std::uint32_t at = frame_ + place.offset;
        switch (place.kind) {
        case scPlace::Kind::same:
            value = unchanged;
            return true;
        case scPlace::Kind::atRegister:
            return Sum(place, at) && UtilpReadObject(memory_, at, value);
        case scPlace::Kind::atFrame:
            return UtilpReadObject(memory_, at, value);
        default:
            return false;
        }
    }

    IclsProcessMemory& memory_;
    const scFrameRegisters& callee_;
    std::uint32_t frame_ = 0;
};

} // namespace

void clsTableReader::Open(const scMemoryRange& table) noexcept {
    table_ = table;
    count_ = 0;
    GoTo(0);
}

void clsTableReader::GoTo(std::uint32_t position) noexcept {
    position_ = position;
    good_ = position <= table_.bytes;
}

// Whether so many bytes stand at the position and are in the block.
bool clsTableReader::Load(std::uint32_t bytes) noexcept {
    if (!good_ || position_ > table_.bytes || bytes > table_.bytes - position_)
        return good_ = false;
    if (position_ >= begin_ && position_ - begin_ <= count_ && bytes <= count_ - (position_ - begin_))
        return true;
    const std::size_t wanted = std::min<std::size_t>(table_.bytes - position_, block_.size());
    begin_ = position_;
    count_ =
        loaded_ < mostLoaded ? static_cast<std::uint32_t>(memory_.Read(Address(), block_.data(), wanted)) : 0;
    loaded_ += count_;
    return good_ = bytes <= count_;
}

// The bits of a number, which may be more than there is room for.
std::uint32_t clsTableReader::GetLeb(std::uint32_t& bits, bool& isNegative) noexcept {
    constexpr std::uint32_t mostBits = 70; // of a number of 64 bits
    std::uint32_t number = 0;
    std::uint8_t byte = 0x80;
    for (bits = 0; (byte & 0x80) != 0 && good_ && bits < mostBits; bits += 7) {
        byte = Get8();
        if (bits < 32)
            number |= static_cast<std::uint32_t>(byte & 0x7F) << bits;
    }
    isNegative = (byte & 0x40) != 0;
    return number;
}

std::uint32_t clsTableReader::GetUnsigned() noexcept {
    std::uint32_t bits = 0;
    bool isNegative = false;
    return GetLeb(bits, isNegative);
}

std::int32_t clsTableReader::GetSigned() noexcept {
    std::uint32_t bits = 0;
    bool isNegative = false;
    const std::uint32_t number = GetLeb(bits, isNegative);
    return static_cast<std::int32_t>(isNegative && bits < 32 ? number | ~std::uint32_t{0} << bits : number);
}

bool clsFrameTables::OpenTableOf(std::uint32_t address) noexcept {
    scMemoryRegion region;
    if (!memory_.RegionAt(address, region) || !region.isImage)
        return false;
    if (region.allocation != module_) {
        module_ = region.allocation;
        reader_.Open(UtilpFrameTableOf(memory_, module_));
    }
    return reader_.Table().bytes != 0;
}

bool clsFrameTables::Leave(scFrameRegisters& registers) noexcept {
    scCommon common;
    scFunction function;
    if (!OpenTableOf(registers.eip) || !FindFunction(reader_, registers.eip, common, function))
        return false;
    clsFrameProgram program(reader_, common);
    scFrameRegisters caller;
    if (!program.Run(function, registers.eip) || !clsCaller(memory_, registers).Find(program.Rules(), caller))
        return false;
    registers = caller;
    return true;
}

} // namespace tvut
