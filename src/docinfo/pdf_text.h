// Text of PDF (ISO 32000-2, 7.9.2.2): UTF-16 or UTF-8 after a byte-order mark, else PDFDocEncoding.
#pragma once

#include <string>
#include <string_view>

namespace tvut {

std::u16string UtilpDecodePdfText(std::string_view bytes); // throws std::bad_alloc

} // namespace tvut
