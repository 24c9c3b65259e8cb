// Masks a stretch of text; shared by masking and by the paragraphs of plain text.
#pragma once

#include <cstddef>

namespace tvut {

std::size_t UtilpMaskedRunLength(const char16_t* text, const char16_t* end);

// Writes as many units as were measured; what follows them, up to resultEnd, may be overwritten. Returns
// where the next one goes.
char16_t* UtilpMaskRun(const char16_t* text, const char16_t* end, char16_t* result, char16_t* resultEnd);

} // namespace tvut
