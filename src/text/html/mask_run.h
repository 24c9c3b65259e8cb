// Masks a stretch of text; shared by masking and by the paragraphs of plain text.
#pragma once

#include <cstddef>

namespace tvut {

std::size_t UtilpMaskedRunLength(const char16_t* text, const char16_t* end);

// Writes that many units; scratches those behind it, as far as resultEnd. Gives where the next one goes.
char16_t* UtilpMaskRun(const char16_t* text, const char16_t* end, char16_t* result, char16_t* resultEnd);

} // namespace tvut
