// Diagnostic output: one line at a time, for whoever listens.
//
// Lines are built in a buffer of fixed size, cut at its end, and never fail: a diagnostic must not
// disturb what it tells about. They go to the debugger's output.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tvut {

// Writes one line; the text is terminated. Any thread.
void UtilpWriteDiagnosticLine(const char16_t* text) noexcept;

// A line under construction; Write sends it with its line end.
class clsDiagnosticLine {
  public:
    static constexpr std::size_t longest = 1025; // characters

    clsDiagnosticLine& Put(std::u16string_view text) noexcept;
    clsDiagnosticLine& Put(std::int32_t number) noexcept;
    clsDiagnosticLine& PutBlanks(std::size_t count) noexcept;
    void Write() noexcept;

  private:
    std::array<char16_t, longest + 2> text_;
    std::size_t length_ = 0;
};

} // namespace tvut
