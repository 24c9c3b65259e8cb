// Text in and out: UTF-8 outside, UTF-16 towards the library.
//
// Pipes and files receive the bytes as they are, without any line end translation; a console receives
// UTF-16 through its own call, so that its code page does not matter.
#pragma once

#include "exit_code.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

// The same text in the type of what asks Windows nothing, and back.
inline std::u16string_view Units(std::wstring_view text) {
    return {reinterpret_cast<const char16_t*>(text.data()), text.size()};
}
inline std::wstring_view Wide(std::u16string_view text) {
    return {reinterpret_cast<const wchar_t*>(text.data()), text.size()};
}

std::wstring ToWide(std::string_view utf8);

// Lone surrogates become U+FFFD, for there is no UTF-8 for them.
std::string ToUtf8(std::wstring_view text);

// Appends a text in its printable form.
void AppendEscaped(std::string& line, std::wstring_view text);

// What a write to a pipe fails with whose reader has closed it.
struct scReaderGone : scFailure {};

// Standard output, buffered. Everything that fails throws Failure with cannotSave.
class clsOutput {
  public:
    static clsOutput& Standard();

    void Write(std::string_view utf8);
    void WriteLine(std::string_view utf8);

    // A saved profile. On a console its UTF-16 text is shown; other binary contents are refused there.
    void WriteDocument(std::string_view bytes);

    void Flush();

  private:
    clsOutput();

    void* handle_;
    bool console_;
    std::string buffer_;
};

// Writes "program: subject: reason" to standard error. Never throws for a standard error that is closed.
void PrintError(std::string_view program, std::string_view subject, std::string_view reason);

// All of standard input.
std::string ReadStandardInput();

} // namespace tool
