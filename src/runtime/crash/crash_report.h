// The text of a crash report: UTF-8 without mark, lines that end with CR LF, "Name: value" lines first, then
// blocks whose lines begin with two blanks.
//
// Each Put writes its lines at once into a small buffer; what the sink has no room for is lost, what was
// written before stays. Line ends and control characters in values become blanks.
#pragma once

#include "runtime/crash/bare_sink.h"
#include "runtime/crash/module_walk.h"
#include "runtime/crash/notes.h"
#include "runtime/crash/thread_context.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

struct scReportTime { // UTC
    std::uint16_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
};

struct scReportProgram {
    std::u16string_view product, version, path;
    scReportTime time;
    std::uint32_t processId = 0;
};

struct scReportSystem {
    std::uint32_t major = 0, minor = 0, build = 0;
    std::uint32_t processors = 0;
    std::uint32_t memoryUsed = 0, memoryThere = 0;       // MB
    std::uint32_t addressesUsed = 0, addressesThere = 0; // MB
};

// What a report calls an exception by its code; "exception" when there is no name for it.
std::u16string_view UtilpReasonOf(std::uint32_t exceptionCode) noexcept;

// Abort, pure virtual call and invalid parameter are no exceptions; reports give them this code.
constexpr std::uint32_t abortCode = 0x40000015;

class clsCrashReport {
  public:
    explicit clsCrashReport(IclsBareSink& sink) noexcept : sink_(sink) {}
    clsCrashReport(const clsCrashReport&) = delete;
    clsCrashReport& operator=(const clsCrashReport&) = delete;

    // In this order. Product to Process:
    void PutTitle() noexcept; // "tvUT22 report 1"
    void PutProgram(const scReportProgram& program) noexcept;
    // Thread to Registers. The access line is there for access violations that tell it.
    void PutEvent(const scException& exception, std::u16string_view reason,
                  const scThreadContext& context) noexcept;
    void PutSystem(const scReportSystem& system) noexcept;
    void PutNotes(const clsNotes& notes) noexcept;
    void PutStackHead() noexcept;
    void PutFrame(std::u16string_view line, bool isGuess) noexcept; // made by runtime/frame_line
    void PutModules(std::span<const scModule> modules) noexcept;
    void PutDump(std::u16string_view fileName) noexcept;
    void PutNoDump(std::u16string_view why) noexcept; // "none (why)"

    // "Name: value", for what only some reports have.
    void PutLine(std::string_view name, std::u16string_view value) noexcept;

    // Hands over what is in the buffer. False when anything was lost since the beginning.
    bool Flush() noexcept;

  private:
    clsCrashReport& Put(std::u16string_view text) noexcept; // as UTF-8, blanks for control characters
    clsCrashReport& Put(std::string_view ascii) noexcept;   // shorter than the buffer
    clsCrashReport& PutDecimal(std::uint32_t number, std::size_t digits = 1) noexcept;
    clsCrashReport& PutHex(std::uint32_t number) noexcept;  // 0012abcd
    clsCrashReport& PutCode(std::uint32_t number) noexcept; // 0x0012ABCD
    clsCrashReport& PutVersion(const scModule& module) noexcept;
    void PutAccess(const scException& exception) noexcept;
    void PutRegisters(const scThreadContext& context) noexcept;
    void EndLine() noexcept { Put(std::string_view("\r\n")); }

    IclsBareSink& sink_;
    std::array<char, 4096> buffer_;
    std::size_t length_ = 0;
    bool isWhole_ = true;
};

} // namespace tvut
