// The layout that the writer of the XML form gives its lines.
#pragma once

#include "prof/formats/markup_scan.h"
#include "prof/formats/xml_form.h"
#include "text/units.h"

#include <string_view>

namespace tvut {

constexpr std::u16string_view xmlItemEndTag = xmlItemEnd.substr(0, xmlItemEnd.find(u'\r'));

struct scXmlItemLine {
    std::u16string_view name;
    std::u16string_view value;
    bool plain; // neither holds a reference
};

// Splits a line that stands to the letter as the writer writes it; false for any other. Quotes of
// xmlItemBegin are not in the scan.
inline bool ProfpSplitWrittenItem(std::u16string_view line, const scMarkupLine& scan, scXmlItemLine& item) {
    const char16_t* const end = scan.less;
    const char16_t* const name = line.data() + xmlItemBegin.size();
    if (scan.end - end != xmlItemEndTag.size() || end - scan.quote < 2 || scan.quote[1] != u'>' ||
        !UtilpEqual(line.substr(0, xmlItemBegin.size()), xmlItemBegin) ||
        !UtilpEqual({end, xmlItemEndTag.size()}, xmlItemEndTag))
        return false;
    item = {{name, scan.quote}, {scan.quote + 2, end}, !scan.marked};
    return true;
}

// Whether a text is what the writer writes, to the letter; or the beginning of that, for files are cut off by
// all kinds of accidents. A line end and fifteen more units must follow the text.
bool ProfpIsXmlAsWritten(std::u16string_view text);

} // namespace tvut
