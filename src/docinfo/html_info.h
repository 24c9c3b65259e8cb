// Properties of HTML pages: the title, and what meta elements say (HTML Living Standard, 4.2).
#pragma once

#include "docinfo/doc_reader.h"

namespace tvut {

bool UtilpIsHtmlLikely(std::string_view head) noexcept;
DocReader UtilpReadHtml;

} // namespace tvut
