// The way from a function to its caller by the tables that compilers leave for exceptions: `.eh_frame`, which
// code without frame pointers has. Published: "DWARF Debugging Information Format", versions 2 to 5, chapter
// "Call Frame Information"; the Linux Standard Base, chapter "Exception Frames"; registers as the i386
// processor supplement of the System V ABI numbers them.
//
// No heap, no lock, no C runtime: it serves a process that crashes. Whatever the memory holds, a search ends.
#pragma once

#include "runtime/crash/process_memory.h"

#include <array>
#include <cstring>

namespace tvut {

// Where a function stands while it calls another one: esp as before the called function removes arguments.
struct scFrameRegisters {
    std::uint32_t eip = 0; // within the instruction
    std::uint32_t esp = 0;
    std::uint32_t ebp = 0; // 0: unknown
};

// Reads a table front to back, a block at a time, because each read may be a call to the system. Past the end
// it gives zeros and says so.
class clsTableReader {
  public:
    explicit clsTableReader(IclsProcessMemory& memory) noexcept : memory_(memory) {}

    void Open(const scMemoryRange& table) noexcept;
    const scMemoryRange& Table() const noexcept { return table_; }

    // Positions count from the beginning of the table.
    void GoTo(std::uint32_t position) noexcept;
    std::uint32_t Position() const noexcept { return position_; }
    std::uint32_t Address() const noexcept { return table_.address + position_; }
    bool IsGood() const noexcept { return good_; }

    std::uint8_t Get8() noexcept { return Get<std::uint8_t>(); }
    std::uint16_t Get16() noexcept { return Get<std::uint16_t>(); }
    std::uint32_t Get32() noexcept { return Get<std::uint32_t>(); }
    std::uint32_t GetUnsigned() noexcept; // LEB128
    std::int32_t GetSigned() noexcept;

  private:
    template <class Number>
    Number Get() noexcept {
        Number number = 0;
        if (Load(sizeof number))
            std::memcpy(&number, &block_[position_ - begin_], sizeof number);
        position_ += sizeof number;
        return number;
    }
    bool Load(std::uint32_t bytes) noexcept;
    std::uint32_t GetLeb(std::uint32_t& bits, bool& isNegative) noexcept;

    IclsProcessMemory& memory_;
    scMemoryRange table_;
    std::uint32_t position_ = 0;
    std::uint32_t begin_ = 0, count_ = 0; // of what is in the block
    std::uint32_t loaded_ = 0;            // bytes in all
    bool good_ = true;
    std::array<std::uint8_t, 1024> block_;
};

class clsFrameTables {
  public:
    explicit clsFrameTables(IclsProcessMemory& memory) noexcept : memory_(memory), reader_(memory) {}

    // Goes to the caller; eip becomes the return address. False when no table tells where it is: the
    // registers stay as they were.
    bool Leave(scFrameRegisters& registers) noexcept;

  private:
    bool OpenTableOf(std::uint32_t address) noexcept;

    IclsProcessMemory& memory_;
    clsTableReader reader_;
    std::uint32_t module_ = 0; // whose table is open
};

} // namespace tvut
