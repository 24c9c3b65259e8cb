// Text in and out: UTF-8 outside, UTF-16 towards the library.
//
// Pipes and files receive the bytes as they are, without any line end translation; a console receives
// UTF-16 through its own call, so that its code page does not matter.
#ifndef TOOL_TEXT_IO_H
#define TOOL_TEXT_IO_H

#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

std::wstring toWide(std::string_view utf8);

// Lone surrogates become U+FFFD, for there is no UTF-8 for them.
std::string toUtf8(std::wstring_view text);

// Appends a text in its printable form.
void appendEscaped(std::string& line, std::wstring_view text);

// Standard output, buffered. Everything that fails throws Failure with cannotSave.
class Output {
  public:
    static Output& standard();

    void write(std::string_view utf8);
    void writeLine(std::string_view utf8);

    // A saved profile. On a console its UTF-16 text is shown; other binary contents are refused there.
    void writeDocument(std::string_view bytes);

    void flush();

  private:
    Output();

    void* handle_;
    bool console_;
    std::string buffer_;
};

// Writes "program: subject: reason" to standard error. Never throws for a standard error that is closed.
void printError(std::string_view program, std::string_view subject, std::string_view reason);

// All of standard input.
std::string readStandardInput();

} // namespace tool

#endif
