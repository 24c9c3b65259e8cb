// The bytes of an INI file as units of its encoding, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool::prof {

class clsIniEncoding {
  public:
    // Finds out the encoding as the library does: by the mark, else UTF-16 where its line ends, "=" and
    // brackets are, else UTF-8 when all is valid, else the code page.
    explicit clsIniEncoding(std::string_view bytes);

    // The file's text, without the mark and half a unit at the end.
    std::u16string Units(std::string_view bytes) const;

    // The file that holds a changed text; bytes is the one from before.
    std::string Bytes(std::u16string_view units, std::string_view bytes) const;

    // A name or value; nothing when the encoding has not all of its characters.
    std::optional<std::u16string> Encoded(std::wstring_view text) const;

  private:
    enum class Form { utf16, swappedUtf16, utf8, codePage };

    bool IsWide() const { return form_ == Form::utf16 || form_ == Form::swappedUtf16; }

    Form form_;
    std::size_t mark_; // bytes
};

} // namespace tool::prof
