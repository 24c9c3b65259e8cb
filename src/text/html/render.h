// Drops the tags of a page, puts in what stands for them, resolves references and folds white space.
#pragma once

#include "text/html/html.h"

namespace tvut {

// The result is never longer than the page and may take its place; returns its length.
std::size_t UtilpRenderPage(std::u16string_view html, HtmlForm form, char16_t* result);

} // namespace tvut
