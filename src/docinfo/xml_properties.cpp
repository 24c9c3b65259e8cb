// One element may stand for several properties, a row each. Its text can be read only once, so the first row
// that is about it reads it for all.
#include "docinfo/xml_properties.h"

namespace tvut {

void UtilpAddValue(clsDocInfo& info, DocProperty property, DocValueKind kind, std::u16string_view text,
                   DocRank rank) {
    switch (kind) {
    case DocValueKind::text:
        return info.Add(property, text, rank);
    case DocValueKind::number:
        return info.AddNumber(property, text, rank);
    case DocValueKind::date:
        return info.Add(property, UtilpReadIsoDate(text), rank);
    }
}

bool UtilpAddXmlProperty(clsXmlReader& xml, std::string_view space, std::span<const scXmlProperty> table,
                         clsDocInfo& info) {
    const std::string_view name = xml.Name();
    std::u16string text;
    bool isKnown = false;
    for (const scXmlProperty& row : table) {
        if (row.name != name || row.space != space)
            continue;
        if (!isKnown)
            text = xml.ReadText(clsDocInfo::longestValue);
        isKnown = true;
        UtilpAddValue(info, row.property, row.kind, text, row.rank);
    }
    return isKnown;
}

} // namespace tvut
