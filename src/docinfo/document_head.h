// The beginning of a document as bytes in one place, read on as it is asked for.
#pragma once

#include "docinfo/paged_source.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tvut {

class clsDocumentHead {
  public:
    // At most that many bytes of the document. One that begins with a mark of UTF-16 is read as UTF-8; marks
    // are passed over.
    clsDocumentHead(clsPagedSource& source, std::size_t most);

    // The byte at a place, 0 after the end. All of these read on, and throw what the source throws,
    // std::bad_alloc.
    char At(std::size_t at) { return Reach(at + 1) ? bytes_[at] : '\0'; }
    bool IsAtEnd(std::size_t at) { return !Reach(at + 1); }

    // Whether a text stands at a place; without regard to ASCII case, the text is in lower case.
    bool StartsWith(std::size_t at, std::string_view lower);

    // The first place of a text from a place on; the end where there is none.
    std::size_t Find(std::string_view text, std::size_t from);
    std::size_t FindIgnoringCase(std::string_view lower, std::size_t from);

    // What lies between two places; until the next read.
    std::string_view Between(std::size_t from, std::size_t to) const {
        return std::string_view(bytes_).substr(from, to - from);
    }

    bool HasMark() const { return hasMark_; } // it is UTF-8, then

  private:
    enum class Form { bytes, utf16Little, utf16Big };

    bool Reach(std::size_t size); // false when there are fewer
    bool ReadOn();

    clsPagedSource& source_;
    std::uint64_t position_ = 0, end_;
    Form form_ = Form::bytes;
    bool hasMark_ = false;
    std::string bytes_;
};

constexpr char UtilpLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

} // namespace tvut
