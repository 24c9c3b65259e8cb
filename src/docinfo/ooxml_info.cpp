// The package's own relationships name the parts: the main one, whose content type is the format, and those
// of the properties. Types are compared by their last component, which the transitional and the strict form
// share.
#include "docinfo/ooxml_info.h"

#include "docinfo/document_text.h"
#include "docinfo/xml_properties.h"
#include "text/encoding/utf8.h"

#include <algorithm>

namespace tvut {

namespace {

using enum DocProperty;
using enum DocValueKind;
using Event = clsXmlReader::Event;

constexpr std::string_view core = "http://schemas.openxmlformats.org/package/2006/metadata/core-properties";

constexpr scXmlProperty coreProperties[] = {
    {xmlspace::dc, "title", title},
    {xmlspace::dc, "creator", author},
    {xmlspace::dc, "subject", subject},
    {xmlspace::dc, "description", comments},
    {xmlspace::dc, "language", language},
    {core, "keywords", keywords},
    {core, "lastModifiedBy", lastAuthor},
    {core, "category", category},
    {core, "revision", revision},
    {core, "lastPrinted", printed, date},
    {xmlspace::dcterms, "created", created, date},
    {xmlspace::dcterms, "modified", modified, date},
};

constexpr std::string_view extended =
    "http://schemas.openxmlformats.org/officeDocument/2006/extended-properties";
constexpr std::string_view strictExtended = "http://purl.oclc.org/ooxml/officeDocument/extendedProperties";

constexpr scXmlProperty extendedProperties[] = {
    {extended, "Company", company},
    {extended, "Manager", manager},
    {extended, "Application", application},
    {extended, "Pages", pages, number},
    {extended, "Slides", pages, number, DocRank::lesser},
    {extended, "Words", words, number},
    {extended, "Characters", characters, number},
};

// The parts that the package names.
struct scParts {
    std::string main, core, extended, custom;
};

bool EndsWith(std::u16string_view type, std::u16string_view last) {
    return type.ends_with(last) && type.size() > last.size() && type[type.size() - last.size() - 1] == u'/';
}

std::string AsBytes(std::u16string_view text) {
    std::string bytes(text.size() * longestUtf8, '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

// The name of a part in the archive.
std::string PartName(std::u16string_view target) {
    while (target.starts_with(u"/") || target.starts_with(u"./"))
        target.remove_prefix(target.front() == u'/' ? 1 : 2);
    return AsBytes(target);
}

void ReadRelationships(clsXmlReader& xml, scParts& parts) {
    for (Event event = xml.Next(); event != Event::finished; event = xml.Next()) {
        if (event != Event::start || xml.Name() != "Relationship" ||
            xml.Attribute({}, "TargetMode") == u"External")
            continue;
        const std::u16string type = xml.Attribute({}, "Type");
        std::string* const part =
            EndsWith(type, u"officeDocument")    ? &parts.main
            : EndsWith(type, u"core-properties") ? &parts.core
            : EndsWith(type, u"extended-properties") || EndsWith(type, u"extendedProperties")
                ? &parts.extended
            : EndsWith(type, u"custom-properties") || EndsWith(type, u"customProperties") ? &parts.custom
                                                                                          : nullptr;
        if (part && part->empty())
            *part = PartName(xml.Attribute({}, "Target"));
    }
}

std::u16string_view FormatOf(std::u16string_view contentType) {
    constexpr std::pair<std::u16string_view, std::u16string_view> families[] = {
        {u"wordprocessingml", u"docx"}, {u"ms-word", u"docx"},        {u"spreadsheetml", u"xlsx"},
        {u"ms-excel", u"xlsx"},         {u"presentationml", u"pptx"}, {u"ms-powerpoint", u"pptx"}};
    for (const auto& [part, format] : families) {
        if (contentType.find(part) != contentType.npos)
            return format;
    }
    return u"ooxml";
}

// The content type of a part: its own, or that of its name's extension.
std::u16string ContentTypeOf(clsXmlReader& xml, std::string_view part) {
    const std::u16string wanted = UtilpDecodeText(65001, part);
    const std::u16string extension = wanted.substr(wanted.rfind(u'.') + 1);
    std::u16string type;
    for (Event event = xml.Next(); event != Event::finished; event = xml.Next()) {
        if (event != Event::start)
            continue;
        if (xml.Name() == "Override" && xml.Attribute({}, "PartName") == u"/" + wanted)
            return xml.Attribute({}, "ContentType");
        if (xml.Name() == "Default" && xml.Attribute({}, "Extension") == extension)
            type = xml.Attribute({}, "ContentType");
    }
    return type;
}

void ReadTable(clsXmlReader& xml, std::span<const scXmlProperty> table, clsDocInfo& info) {
    for (Event event = xml.Next(); event != Event::finished; event = xml.Next()) {
        if (event == Event::start)
            UtilpAddXmlProperty(xml, xml.Space() == strictExtended ? extended : xml.Space(), table, info);
    }
}

constexpr std::string_view textTypes[] = {"lpwstr", "lpstr", "bstr", "i1",  "i2",   "i4", "i8", "int",
                                          "ui1",    "ui2",   "ui4",  "ui8", "uint", "r4", "r8", "decimal"};

void AddCustomValue(clsXmlReader& xml, std::u16string_view name, clsDocInfo& info) {
    const std::string type(xml.Name());
    const std::u16string value = xml.ReadText(clsDocInfo::longestValue);
    if (type == "bool")
        info.AddCustom(name, value == u"1" || value == u"true" ? u"true" : u"false");
    else if (type == "filetime" || type == "date")
        info.AddCustom(name, UtilpReadIsoDate(value));
    else if (std::ranges::find(textTypes, type) != std::end(textTypes))
        info.AddCustom(name, value);
}

// Properties of the root, each with one value.
void ReadCustom(clsXmlReader& xml, clsDocInfo& info) {
    std::u16string name;
    for (Event event = xml.Next(); event != Event::finished; event = xml.Next()) {
        if (event == Event::start && xml.Depth() == 2)
            name = xml.Attribute({}, "name");
        else if (event == Event::start && xml.Depth() == 3)
            AddCustomValue(xml, name, info);
    }
}

} // namespace

void UtilpReadOoxml(clsZipPackage& package, clsDocInfo& info) {
    scParts parts;
    info.SetFormat(u"ooxml");
    UtilpReadXmlPart(package, "_rels/.rels", info, [&](clsXmlReader& xml) { ReadRelationships(xml, parts); });
    UtilpReadXmlPart(package, "[Content_Types].xml", info,
                     [&](clsXmlReader& xml) { info.SetFormat(FormatOf(ContentTypeOf(xml, parts.main))); });
    UtilpReadXmlPart(package, parts.core, info,
                     [&](clsXmlReader& xml) { ReadTable(xml, coreProperties, info); });
    UtilpReadXmlPart(package, parts.extended, info,
                     [&](clsXmlReader& xml) { ReadTable(xml, extendedProperties, info); });
    UtilpReadXmlPart(package, parts.custom, info, [&](clsXmlReader& xml) { ReadCustom(xml, info); });
}

} // namespace tvut
