// A property is an attribute of rdf:Description or an element in it; its value is the element's text, or the
// items of a list in it.
#include "docinfo/xmp.h"

#include "docinfo/xml_properties.h"

namespace tvut {

namespace {

constexpr std::string_view rdf = "http://www.w3.org/1999/02/22-rdf-syntax-ns#",
                           xmp = "http://ns.adobe.com/xap/1.0/", pdf = "http://ns.adobe.com/pdf/1.3/",
                           xml = "http://www.w3.org/XML/1998/namespace";

constexpr scXmlProperty rows[] = {
    {xmlspace::dc, "title", DocProperty::title},
    {xmlspace::dc, "creator", DocProperty::author},
    {xmlspace::dc, "description", DocProperty::subject},
    {pdf, "Keywords", DocProperty::keywords},
    {xmlspace::dc, "subject", DocProperty::keywords},
    {xmp, "CreatorTool", DocProperty::application},
    {pdf, "Producer", DocProperty::producer},
    {xmp, "CreateDate", DocProperty::created, DocValueKind::date},
    {xmp, "ModifyDate", DocProperty::modified, DocValueKind::date},
    {xmlspace::dc, "language", DocProperty::language},
};

const scXmlProperty* RowOf(std::string_view space, std::string_view name) {
    for (const scXmlProperty& row : rows) {
        if (row.name == name && row.space == space)
            return &row;
    }
    return nullptr;
}

class clsXmpReader {
  public:
    clsXmpReader(std::string packet, clsDocInfo& info) : reader_(std::move(packet)), info_(info) {}

    void Read() {
        for (;;) {
            const auto event = reader_.Next();
            if (event == clsXmlReader::Event::finished)
                return;
            if (event != clsXmlReader::Event::start)
                continue;
            if (reader_.Is(rdf, "Description"))
                ReadAttributes();
            else if (const scXmlProperty* row = RowOf(reader_.Space(), reader_.Name()))
                ReadProperty(*row);
        }
    }

  private:
    void Add(const scXmlProperty& row, std::u16string_view text) {
        UtilpAddValue(info_, row.property, row.kind, text, DocRank::lesser);
    }

    void ReadAttributes() {
        for (const auto& attribute : reader_.Attributes()) {
            if (const scXmlProperty* row = RowOf(reader_.SpaceOf(attribute), attribute.name))
                Add(*row, reader_.ValueOf(attribute));
        }
    }

    // Of alternatives one is taken: the default, else the first.
    void ReadProperty(const scXmlProperty& row) {
        const std::size_t depth = reader_.Depth();
        bool isChoice = false, hasItems = false;
        std::u16string text, choice;
        for (;;) {
            const auto event = reader_.Next();
            if (event == clsXmlReader::Event::finished || reader_.Depth() < depth)
                break;
            if (event == clsXmlReader::Event::text && text.size() < clsDocInfo::longestValue)
                text += reader_.Text();
            if (event != clsXmlReader::Event::start)
                continue;
            isChoice = isChoice || reader_.Is(rdf, "Alt");
            if (!reader_.Is(rdf, "li"))
                continue;
            const bool isDefault = reader_.Attribute(xml, "lang") == u"x-default";
            std::u16string item = reader_.ReadText(clsDocInfo::longestValue);
            if (!isChoice)
                Add(row, item);
            else if (isDefault || !hasItems)
                choice = std::move(item);
            hasItems = true;
        }
        Add(row, hasItems ? choice : text);
    }

    clsXmlReader reader_;
    clsDocInfo& info_;
};

} // namespace

void UtilpReadXmp(std::string packet, clsDocInfo& info) {
    try {
        clsXmpReader(std::move(packet), info).Read();
    } catch (const clsXmlError& error) {
        throw clsDocDamage(error.what());
    }
}

} // namespace tvut
