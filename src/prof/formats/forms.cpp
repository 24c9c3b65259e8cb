// A form shows in its first line, and a line that breaks off within our own header is still ours: files are
// cut off by all kinds of accidents. What begins with other markup is no profile, unless the text form's root
// follows somewhere.
#include "prof/formats/flags.h"
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
    switch (flags & saveFlags::form) {
    case saveFlags::textForm:
        return textWriter;
    case saveFlags::xfdfForm:
        return xfdfWriter;
    default:
        return xmlWriter;
    }
}

} // namespace tvut
