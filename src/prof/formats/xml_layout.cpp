// Each line goes through the test by which the reader of lines knows the writer's own lines. Where all lines
// pass, that reader reads the text, as it always has. One line that another program has touched is enough
// for all of it to be read as XML.
#include "prof/formats/xml_layout.h"

#include <algorithm>

namespace tvut {

namespace {

bool TakeBegin(std::u16string_view& text, std::u16string_view begin) {
    const std::size_t length = std::min(begin.size(), text.size());
    const bool isSame = text.substr(0, length) == begin.substr(0, length);
    text.remove_prefix(length);
    return isSame;
}

bool IsWrittenList(std::u16string_view line, const scMarkupLine& scan) {
    return line.starts_with(xmlListBegin) && scan.less == scan.end && line.ends_with(u"\">") &&
           scan.quote == scan.end - 2;
}

// Takes a line that stands as it is written; levels is how many lists are open, the profile one of them.
bool TakeLine(std::u16string_view& text, std::size_t& levels) {
    const auto isBlank = [](char16_t c) { return c == u' ' || c == u'\t'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    scMarkupLine scan{};
    ProfpScanMarkupLine<xmlItemBegin.size()>(text.data(), scan);
    const auto length = static_cast<std::size_t>(scan.end - text.data());
    if (length >= text.size()) { // cut off, and not because all stands in one line
        text = {};
        return xmlItemEndTag.starts_with(std::u16string_view(scan.less, scan.end));
    }
    const std::u16string_view line = text.substr(0, length);
    text.remove_prefix(length);
    if (!TakeBegin(text, u"\r\n"))
        return false;
    scXmlItemLine item;
    if (ProfpSplitWrittenItem(line, scan, item))
        return true;
    if (IsWrittenList(line, scan))
        return ++levels != 0;
    const std::u16string_view end = levels > 1 ? xmlListEnd : xmlProfileEnd;
    return line == end.substr(0, end.find(u'\r')) && levels-- != 0;
}

} // namespace

bool ProfpIsXmlAsWritten(std::u16string_view text) {
    if (!TakeBegin(text, xmlHeader) || !TakeBegin(text, xmlProfileBegin))
        return false;
    std::size_t levels = 1;
    while (!text.empty() && levels != 0) {
        if (!TakeLine(text, levels))
            return false;
    }
    return text.empty();
}

} // namespace tvut
