// The code page of 8-bit texts is itself a property, so those of fixed size are read first. Keywords have a
// number of the file's own, which a storage of names tells; their streams are looked for once it is known.
#include "docinfo/msg_info.h"

#include "docinfo/doc_info.h"
#include "docinfo/document_text.h"
#include "docinfo/first_damage.h"
#include "text/digits.h"

#include <map>

namespace tvut {

namespace {

constexpr std::u16string_view fixedName = u"__properties_version1.0", textPrefix = u"__substg1.0_",
                              namesName = u"__nameid_version1.0", nameRowsName = u"__substg1.0_00030102",
                              nameTextsName = u"__substg1.0_00040102", keywords = u"Keywords";
constexpr std::uint64_t fixedHeaderBytes = 32, fixedBytes = 16;
constexpr std::size_t longestText = 128 * 1024; // bytes; more than is shown, in any code page
constexpr std::size_t mostKeywords = 256;
constexpr unsigned codePageUtf16 = 1200;

constexpr std::uint16_t typeLong = 0x0003, typeTime = 0x0040, typeNarrow = 0x001E, typeWide = 0x001F,
                        typeSeveral = 0x1000; // above another type

namespace mapi {
constexpr std::uint16_t subject = 0x0037, submitted = 0x0039, senderName = 0x0C1A, senderAddress = 0x0C1F,
                        displayCc = 0x0E03, displayTo = 0x0E04, delivered = 0x0E06, messageId = 0x1035,
                        comment = 0x3004, lastModified = 0x3008, lastModifier = 0x3FFA, codePage = 0x3FFD,
                        senderMailAddress = 0x5D01;
} // namespace mapi

struct scMessageRow {
    std::uint16_t number;
    DocProperty property;
};
constexpr scMessageRow textRows[] = {
    {mapi::subject, DocProperty::title},       {mapi::subject, DocProperty::subject},
    {mapi::displayTo, DocProperty::to},        {mapi::displayCc, DocProperty::cc},
    {mapi::messageId, DocProperty::messageId}, {mapi::lastModifier, DocProperty::lastAuthor},
    {mapi::comment, DocProperty::comments},
};
constexpr scMessageRow dateRows[] = {
    {mapi::submitted, DocProperty::created},
    {mapi::lastModified, DocProperty::modified},
    {mapi::delivered, DocProperty::received},
};
constexpr std::uint16_t readTexts[] = {mapi::subject,      mapi::senderName,        mapi::senderAddress,
                                       mapi::displayCc,    mapi::displayTo,         mapi::messageId,
                                       mapi::lastModifier, mapi::senderMailAddress, mapi::comment};

// Eight hexadecimal digits.
std::optional<std::uint32_t> Hexadecimal(std::u16string_view digits) {
    if (digits.size() != 8)
        return {};
    std::uint32_t number = 0;
    for (const char16_t unit : digits) {
        const unsigned digit = UtilpDigitOf(unit);
        if (digit >= 16)
            return {};
        number = number << 4 | digit;
    }
    return number;
}

// Property above type, in the name of a text's stream.
std::optional<std::uint32_t> TagOf(std::u16string_view name) {
    return name.starts_with(textPrefix) ? Hexadecimal(name.substr(textPrefix.size())) : std::nullopt;
}

} // namespace

void clsMessageReader::Look(const scCompoundEntry& entry) {
    if (entry.kind == scCompoundEntry::Kind::storage && entry.Name() == namesName)
        names_ = entry;
    if (entry.kind != scCompoundEntry::Kind::stream)
        return;
    if (entry.Name() == fixedName)
        fixed_ = entry;
    const auto tag = TagOf(entry.Name());
    if (!tag || texts_.size() == 2 * std::size(readTexts))
        return;
    const auto property = static_cast<std::uint16_t>(*tag >> 16);
    const auto type = static_cast<std::uint16_t>(*tag);
    if ((type == typeNarrow || type == typeWide) &&
        std::ranges::find(readTexts, property) != std::end(readTexts))
        texts_.push_back({property, type == typeWide, entry});
}

void clsMessageReader::Read(clsDocInfo& info, clsFirstDamage& damage) {
    damage.Try([&] { ReadFixed(info); });
    for (const scMessageRow& row : textRows)
        damage.Try([&] { info.Add(row.property, Text(row.number)); });
    damage.Try([&] { info.Add(DocProperty::author, Sender()); });
    damage.Try([&] { ReadKeywords(info); });
}

void clsMessageReader::ReadFixed(clsDocInfo& info) {
    if (!fixed_)
        return;
    clsCompoundStream stream(file_, *fixed_);
    clsFields fields(stream);
    for (std::uint64_t at = fixedHeaderBytes; at + fixedBytes <= stream.Size(); at += fixedBytes) {
        const auto type = fields.At<std::uint16_t>(at);
        const auto property = fields.At<std::uint16_t>(at + 2);
        if (type == typeLong && property == mapi::codePage)
            codePage_ = fields.At<std::uint16_t>(at + 8);
        if (type != typeTime)
            continue;
        for (const scMessageRow& row : dateRows) {
            if (row.number == property)
                info.Add(row.property, UtilpDateOfFileTime(fields.At<std::uint64_t>(at + 8)));
        }
    }
}

std::u16string clsMessageReader::Text(std::uint16_t property) {
    const scText* best = nullptr;
    for (const scText& text : texts_) {
        if (text.property == property && (!best || text.isWide))
            best = &text;
    }
    if (!best)
        return {};
    return TextIn(best->entry, best->isWide);
}

std::u16string clsMessageReader::TextIn(const scCompoundEntry& entry, bool isWide) {
    clsCompoundStream stream(file_, entry);
    const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(stream.Size(), longestText));
    return UtilpDecodeText(isWide ? codePageUtf16 : codePage_, clsFields(stream).Text(0, bytes));
}

// Within an organisation the address is a path of its directory, which says nothing to a reader.
std::u16string clsMessageReader::Sender() {
    const std::u16string name = Text(mapi::senderName);
    std::u16string address = Text(mapi::senderMailAddress);
    if (address.empty())
        address = Text(mapi::senderAddress);
    if (address.find(u'@') == address.npos || address == name)
        return name;
    return name.empty() ? address : name + u" <" + address + u">";
}

// A row for each name: where it stands among the texts, its kind and family, and its number.
std::optional<std::uint16_t> clsMessageReader::KeywordsProperty() {
    constexpr std::uint64_t rowBytes = 8;
    constexpr std::uint16_t textOfPublicStrings = 5, firstNamed = 0x8000;
    std::optional<scCompoundEntry> rowsEntry, textsEntry;
    file_.EachChild(*names_, [&](const scCompoundEntry& entry) {
        if (entry.Name() == nameRowsName)
            rowsEntry = entry;
        else if (entry.Name() == nameTextsName)
            textsEntry = entry;
    });
    if (!rowsEntry || !textsEntry)
        return {};
    clsCompoundStream rows(file_, *rowsEntry), texts(file_, *textsEntry);
    clsFields rowFields(rows), textFields(texts);
    for (std::uint64_t at = 0; at + rowBytes <= rows.Size(); at += rowBytes) {
        if (rowFields.At<std::uint16_t>(at + 4) != textOfPublicStrings)
            continue;
        const std::uint64_t textAt = rowFields.At<std::uint32_t>(at);
        const std::size_t bytes = textFields.At<std::uint32_t>(textAt);
        if (bytes == 2 * keywords.size() &&
            UtilpDecodeUtf16(textFields.Text(textAt + 4, bytes), false) == keywords)
            return static_cast<std::uint16_t>(firstNamed + rowFields.At<std::uint16_t>(at + 6));
    }
    return {};
}

// Each has a stream, whose name ends with its place.
void clsMessageReader::ReadKeywords(clsDocInfo& info) {
    const auto property = names_ ? KeywordsProperty() : std::nullopt;
    if (!property)
        return;
    std::map<std::uint32_t, scText> texts;
    file_.EachChild(file_.Root(), [&](const scCompoundEntry& entry) {
        const std::size_t tagEnd = std::min(entry.Name().find(u'-'), entry.Name().size());
        const auto tag = TagOf(entry.Name().substr(0, tagEnd));
        const auto place = Hexadecimal(entry.Name().substr(std::min(tagEnd + 1, entry.Name().size())));
        const auto type = static_cast<std::uint16_t>(tag.value_or(0) & ~std::uint32_t{typeSeveral});
        if (place && tag && *tag >> 16 == *property && (type == typeNarrow || type == typeWide) &&
            texts.size() < mostKeywords)
            texts.insert({*place, {*property, type == typeWide, entry}});
    });
    for (const auto& [place, text] : texts)
        info.Add(DocProperty::keywords, TextIn(text.entry, text.isWide));
}

} // namespace tvut
