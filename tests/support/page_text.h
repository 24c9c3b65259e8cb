// A page on the whole way of prof html2text, over the library's own conversion.
#pragma once

#include "html/line_layout.h"
#include "html/preparation.h"
#include "text/html/html.h"

#include <string>

namespace tvut {

inline std::u16string PageText(std::u16string_view page, tool::html::Links links, std::size_t width) {
    const std::u16string prepared = tool::html::PreparedPage(page, links);
    std::u16string text(prepared.size(), u'#');
    text.resize(UtilpHtmlToPlainText(prepared, HtmlForm::tags, text.data()));
    return tool::html::LaidOut(text, width);
}

} // namespace tvut
