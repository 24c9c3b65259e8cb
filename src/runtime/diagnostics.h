// Diagnostic output: one line at a time, for whoever listens.
//
// Lines are built in a buffer of fixed size, cut at its end, and never fail: a diagnostic must not
// disturb what it reports. While nobody listens a line costs a few nanoseconds; ask
// UtilpDiagnosticsOn first where building lines costs more.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Whether anybody listens. Any thread.
bool UtilpDiagnosticsOn() noexcept;

// Writes one line, without module tag and without changing the nesting level. Any thread.
void UtilpWriteDiagnosticLine(std::u16string_view text) noexcept;

// A line under construction.
class clsDiagnosticLine {
  public:
    static constexpr std::size_t longest = 1025; // characters

    clsDiagnosticLine() noexcept = default; // leaves the buffer as it is: only what is put counts

    clsDiagnosticLine& Put(std::u16string_view text) noexcept;
    clsDiagnosticLine& Put(std::int32_t number) noexcept;
    clsDiagnosticLine& PutBlanks(std::size_t count) noexcept;
    clsDiagnosticLine& PutPadded(std::u16string_view text, std::size_t width) noexcept; // blanks after it
    clsDiagnosticLine& PutDecimal(std::uint32_t number, std::size_t digits) noexcept;   // at least this many
    clsDiagnosticLine& PutLarge(std::uint64_t number) noexcept;
    clsDiagnosticLine& PutHex(std::uint32_t number, std::size_t digits) noexcept;
    clsDiagnosticLine& PutPointer(const void* pointer) noexcept; // 0X0012ABCD, or zeros for null

    std::u16string_view View() const noexcept { return {text_.data(), length_}; }
    void Write() const noexcept { UtilpWriteDiagnosticLine(View()); }
    void Clear() noexcept { length_ = 0; }

  private:
    std::array<char16_t, longest> text_;
    std::size_t length_ = 0;
};

} // namespace tvut
