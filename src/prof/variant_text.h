// The text of a variant's bytes: "var://" and their text form, compressed from 101 bytes on.
#pragma once

#include <string>
#include <string_view>

namespace tvut {

// Throw clsException for more bytes than can be read again and for a text that is none, std::bad_alloc.
std::u16string ProfpVariantText(std::string_view bytes);
std::string ProfpVariantBytes(std::u16string_view text);

} // namespace tvut
