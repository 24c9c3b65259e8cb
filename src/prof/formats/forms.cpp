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

const IclsFormReader& ProfpDetectForm(std::u16string_view firstLine, bool foreignXfdf) {
    if (!firstLine.starts_with(u'<'))
        return g_textReader;
    if (foreignXfdf && firstLine != xmlHeader.substr(0, xmlHeader.find(u'\r')))
        return g_foreignXfdfReader;
    if (IsBeginOf(xmlHeader, firstLine))
        return g_xmlReader;
    if (IsBeginOf(xfdfHeader, firstLine))
        return g_xfdfReader;
    return g_textBehindMarkupReader;
}

const IclsFormWriter& ProfpFormToWrite(std::uint32_t flags) {
    switch (flags & 0xFu) {
    case 0:
        return g_textWriter;
    case 2:
        return g_xfdfWriter;
    default:
        return g_xmlWriter;
    }
}

} // namespace tvut
