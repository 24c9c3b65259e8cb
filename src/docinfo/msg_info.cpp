// The code page of 8-bit texts is itself a property, so those of fixed size are read first.
#include "docinfo/msg_info.h"

#include "docinfo/doc_info.h"
#include "docinfo/document_text.h"
#include "docinfo/first_damage.h"
#include "text/digits.h"

namespace tvut {

namespace {

constexpr std::u16string_view fixedName = u"__properties_version1.0", textPrefix = u"__substg1.0_";
constexpr std::uint64_t fixedHeaderBytes = 32, fixedBytes = 16;
constexpr std::size_t longestText = 128 * 1024; // bytes; more than is shown, in any code page
constexpr unsigned codePageUtf16 = 1200;

constexpr std::uint16_t typeLong = 0x0003, typeTime = 0x0040, typeNarrow = 0x001E, typeWide = 0x001F;

namespace mapi {
constexpr std::uint16_t subject = 0x0037, submitted = 0x0039, senderName = 0x0C1A, senderAddress = 0x0C1F,
                        displayCc = 0x0E03, displayTo = 0x0E04, delivered = 0x0E06, messageId = 0x1035,
                        lastModified = 0x3008, lastModifier = 0x3FFA, codePage = 0x3FFD,
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
};
constexpr scMessageRow dateRows[] = {
    {mapi::submitted, DocProperty::created},
    {mapi::lastModified, DocProperty::modified},
    {mapi::delivered, DocProperty::received},
};
constexpr std::uint16_t readTexts[] = {mapi::subject,      mapi::senderName,       mapi::senderAddress,
                                       mapi::displayCc,    mapi::displayTo,        mapi::messageId,
                                       mapi::lastModifier, mapi::senderMailAddress};

// Property above type, in the name of a text's stream.
std::optional<std::uint32_t> TagOf(std::u16string_view name) {
    if (!name.starts_with(textPrefix) || name.size() != textPrefix.size() + 8)
        return {};
    std::uint32_t tag = 0;
    for (const char16_t unit : name.substr(textPrefix.size())) {
        const unsigned digit = UtilpDigitOf(unit);
        if (digit >= 16)
            return {};
        tag = tag << 4 | digit;
    }
    return tag;
}

} // namespace

void clsMessageReader::Look(const scCompoundEntry& entry) {
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
    clsCompoundStream stream(file_, best->entry);
    const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(stream.Size(), longestText));
    return UtilpDecodeText(best->isWide ? codePageUtf16 : codePage_, clsFields(stream).Text(0, bytes));
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

} // namespace tvut
