#include "prof/formats/form.h"
#include "prof/formats/xml_form.h"

#include <algorithm>

namespace tvut {

namespace {

// Whether our header begins with a line: its first line, or a piece of that.
template <class Header>
bool IsBeginOf(Header header, std::u16string_view line) {
    return line.size() <= header.size() && std::equal(line.begin(), line.end(), header.begin());
}

} // namespace

FormReader ProfpDetectForm(std::u16string_view firstLine, bool foreignXfdf) {
    if (!firstLine.starts_with(u'<'))
        return ProfpReadText;
    if (foreignXfdf && firstLine != xmlHeader.substr(0, xmlHeader.find(u'\r')))
        return ProfpReadForeignXfdf;
    if (IsBeginOf(xmlHeader, firstLine))
        return ProfpReadXml;
    if (IsBeginOf(xfdfHeader, firstLine))
        return ProfpReadXfdf;
    return ProfpReadTextAfterMarkup;
}

const scFormWriter& ProfpFormToWrite(std::uint32_t flags) {
    switch (flags & 0xFu) {
    case 0:
        return textWriter;
    case 2:
        return xfdfWriter;
    default:
        return xmlWriter;
    }
}

} // namespace tvut
