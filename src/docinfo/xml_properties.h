// Properties that are elements of an XML part, as tables.
#pragma once

#include "docinfo/doc_info.h"
#include "text/xml/xml_reader.h"

#include <span>
#include <string_view>

namespace tvut {

namespace xmlspace {
constexpr std::string_view dc = "http://purl.org/dc/elements/1.1/";
constexpr std::string_view dcterms = "http://purl.org/dc/terms/";
} // namespace xmlspace

enum class DocValueKind : std::uint8_t { text, number, date };

// An element whose text is a value.
struct scXmlProperty {
    std::string_view space, name;
    DocProperty property;
    DocValueKind kind = DocValueKind::text;
    DocRank rank = DocRank::usual;
};

// Adds the values that the element at hand stands for, in a namespace, and reads to its end; false when no
// row is about it, and nothing is read.
bool UtilpAddXmlProperty(clsXmlReader& xml, std::string_view space, std::span<const scXmlProperty> table,
                         clsDocInfo& info);

void UtilpAddValue(clsDocInfo& info, DocProperty property, DocValueKind kind, std::u16string_view text,
                   DocRank rank = DocRank::usual);

} // namespace tvut
