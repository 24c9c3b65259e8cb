// All properties stand in the part meta.xml. The manifest says whether that is enciphered; then nothing of it
// is looked at.
#include "docinfo/odf_info.h"

#include "docinfo/xml_properties.h"

namespace tvut {

namespace {

constexpr std::string_view meta = "urn:oasis:names:tc:opendocument:xmlns:meta:1.0";
constexpr std::string_view oldMeta = "http://openoffice.org/2000/meta";

using enum DocProperty;
using enum DocValueKind;

constexpr scXmlProperty properties[] = {
    {xmlspace::dc, "title", title},
    {xmlspace::dc, "subject", subject},
    {xmlspace::dc, "description", comments},
    {xmlspace::dc, "language", language},
    {xmlspace::dc, "date", modified, date},
    {xmlspace::dc, "creator", lastAuthor},
    {xmlspace::dc, "creator", author, text, DocRank::lesser},
    {meta, "initial-creator", author},
    {meta, "keyword", keywords},
    {meta, "generator", application},
    {meta, "editing-cycles", revision},
    {meta, "creation-date", created, date},
    {meta, "print-date", printed, date},
};

struct scStatistic {
    std::string_view name;
    DocProperty property;
};
constexpr scStatistic statistics[] = {
    {"page-count", pages}, {"word-count", words}, {"character-count", characters}};

void AddUserDefined(clsXmlReader& xml, std::string_view space, clsDocInfo& info) {
    const std::u16string name = xml.Attribute(space, "name");
    const std::u16string type = xml.Attribute(space, "value-type");
    const std::u16string value = xml.ReadText(clsDocInfo::longestValue);
    if (type == u"date")
        info.AddCustom(name, UtilpReadIsoDate(value));
    else if (type != u"time")
        info.AddCustom(name, value);
}

void ReadMeta(clsXmlReader& xml, clsDocInfo& info) {
    for (auto event = xml.Next(); event != clsXmlReader::Event::finished; event = xml.Next()) {
        if (event != clsXmlReader::Event::start)
            continue;
        const std::string_view given = xml.Space(), space = given == oldMeta ? meta : given;
        if (UtilpAddXmlProperty(xml, space, properties, info) || space != meta)
            continue;
        if (xml.Name() == "user-defined") {
            AddUserDefined(xml, given, info);
        } else if (xml.Name() == "document-statistic") {
            for (const scStatistic& row : statistics)
                info.AddNumber(row.property, xml.Attribute(given, row.name));
        }
    }
}

// Whether anything is enciphered, and whether meta.xml is.
struct scEncryption {
    bool isAny = false, isMeta = false;
};

void ReadManifest(clsXmlReader& xml, scEncryption& encryption) {
    std::u16string path;
    for (auto event = xml.Next(); event != clsXmlReader::Event::finished; event = xml.Next()) {
        if (event != clsXmlReader::Event::start)
            continue;
        if (xml.Name() == "file-entry")
            path = xml.Attribute(xml.Space(), "full-path");
        if (xml.Name() != "encryption-data")
            continue;
        encryption.isAny = true;
        encryption.isMeta |= path == u"meta.xml" || path == u"encrypted-package";
    }
}

struct scFamily {
    std::string_view start; // of the media type
    std::u16string_view format;
};
constexpr scFamily families[] = {
    {"application/vnd.oasis.opendocument.text", u"odt"},
    {"application/vnd.oasis.opendocument.spreadsheet", u"ods"},
    {"application/vnd.oasis.opendocument.presentation", u"odp"},
    {"application/vnd.oasis.opendocument.", u"odf"},
    {"application/vnd.sun.xml.writer", u"odt"},
    {"application/vnd.sun.xml.calc", u"ods"},
    {"application/vnd.sun.xml.impress", u"odp"},
    {"application/vnd.sun.xml.", u"odf"},
};

} // namespace

std::u16string_view UtilpOdfFormat(std::string_view mediaType) {
    for (const scFamily& family : families) {
        if (mediaType.starts_with(family.start))
            return family.format;
    }
    return {};
}

void UtilpReadOdf(clsZipPackage& package, clsDocInfo& info) {
    scEncryption encryption;
    UtilpReadXmlPart(package, "META-INF/manifest.xml", info,
                     [&](clsXmlReader& xml) { ReadManifest(xml, encryption); });
    if (encryption.isAny)
        info.SetEncrypted();
    if (!encryption.isMeta)
        UtilpReadXmlPart(package, "meta.xml", info, [&](clsXmlReader& xml) { ReadMeta(xml, info); });
}

} // namespace tvut
