// Reads debug information front to back. Past the end, and after anything unknown, it gives zeros and says
// so.
//
// No heap, no lock, no C runtime: it serves a process that crashes.
#pragma once

#include "runtime/symbols/bytes.h"

namespace tvut {

// How wide a unit's numbers are.
struct scDwarfWidths {
    std::uint8_t version = 0;
    std::uint8_t offsetBytes = 4; // of positions in other sections: 4 or 8
    std::uint8_t addressBytes = 4;
};

class clsDwarfReader {
  public:
    explicit clsDwarfReader(clsBytes bytes) noexcept
        : begin_(bytes.Data()), at_(begin_), end_(begin_ + bytes.Size()) {}

    bool IsGood() const noexcept { return good_; }
    bool AtEnd() const noexcept { return at_ == end_; }
    std::size_t Position() const noexcept { return static_cast<std::size_t>(at_ - begin_); }
    clsBytes Rest() const noexcept { return {at_, static_cast<std::size_t>(end_ - at_)}; }

    std::uint8_t Get8() noexcept {
        if (at_ != end_)
            return *at_++;
        Fail();
        return 0;
    }
    std::uint16_t Get16() noexcept { return Get<std::uint16_t>(); }
    std::uint32_t Get32() noexcept { return Get<std::uint32_t>(); }
    std::uint64_t Get64() noexcept { return Get<std::uint64_t>(); }
    std::uint64_t GetNumber(std::size_t bytes) noexcept; // 1 to 8 of them
    std::uint64_t GetUnsigned() noexcept;                // LEB128
    std::int64_t GetSigned() noexcept;
    std::string_view GetText() noexcept;
    void Skip(std::uint64_t bytes) noexcept;

    // A unit's length, which tells how wide its positions are, and its bytes: these are read past.
    clsBytes GetUnit(scDwarfWidths& widths) noexcept;

    // Reads past an attribute of a form (DW_FORM).
    void SkipForm(std::uint64_t form, const scDwarfWidths& widths) noexcept;

  private:
    template <class Number>
    Number Get() noexcept {
        const Number number = Rest().Get<Number>(0);
        Skip(sizeof(Number));
        return number;
    }
    void Fail() noexcept {
        at_ = end_;
        good_ = false;
    }

    const unsigned char* begin_;
    const unsigned char* at_;
    const unsigned char* end_;
    bool good_ = true;
};

// The forms of attributes that are read and not only skipped.
namespace dwarfForm {
constexpr std::uint64_t data4 = 0x06, data8 = 0x07, string = 0x08, stringPosition = 0x0E,
                        sectionPosition = 0x17, implicitConstant = 0x21, lineStringPosition = 0x1F;
}

} // namespace tvut
