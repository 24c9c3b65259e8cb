// The last pass over a page's text: folds blanks, resolves the bracket characters « and », limits blank
// lines.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

// The result is never longer than the text and may take its place; returns its length.
std::size_t UtilpFinishPlainText(std::u16string_view text, char16_t* result);

} // namespace tvut
