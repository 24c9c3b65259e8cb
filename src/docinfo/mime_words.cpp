// Words that follow each other with nothing but white space between them are one text: their bytes are joined
// before they are decoded, as long as they are in one character set, since makers cut characters in two.
#include "docinfo/mime_words.h"

#include "docinfo/document_text.h"
#include "text/bytes/base64.h"
#include "text/digits.h"
#include "text/encoding/charset_names.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tvut {

namespace {

constexpr std::size_t longestWord = 4096; // bytes; it should have 75 at most

constexpr std::string_view white = " \t\r\n";

struct scWord {
    unsigned codePage;
    char encoding; // B or Q
    std::string_view text;
    std::size_t length; // of the whole word
};

// =?charset?encoding?text?=
std::optional<scWord> WordAt(std::string_view rest) {
    rest = rest.substr(0, longestWord);
    if (!rest.starts_with("=?"))
        return {};
    const std::size_t charsetEnd = rest.find('?', 2);
    if (charsetEnd == rest.npos || charsetEnd + 2 >= rest.size() || rest[charsetEnd + 2] != '?')
        return {};
    const std::size_t textAt = charsetEnd + 3, end = rest.find("?=", textAt);
    if (end == rest.npos || rest.substr(0, end).find_first_of("\r\n") != rest.npos)
        return {};
    const std::string_view charset = rest.substr(2, charsetEnd - 2);
    const std::optional<unsigned> codePage = UtilpCodePageOfCharset(charset.substr(0, charset.find('*')));
    const char encoding = static_cast<char>(rest[charsetEnd + 1] & ~0x20);
    if (!codePage || (encoding != 'B' && encoding != 'Q'))
        return {};
    return scWord{*codePage, encoding, rest.substr(textAt, end - textAt), end + 2};
}

void AppendQuoted(std::string_view text, std::string& bytes) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        const unsigned high = at + 2 < text.size() || at + 3 == text.size()
                                  ? UtilpDigitOf(static_cast<unsigned char>(text[at + 1]))
                                  : 0xFF;
        const unsigned low = high < 16 ? UtilpDigitOf(static_cast<unsigned char>(text[at + 2])) : 0xFF;
        if (text[at] == '=' && low < 16) {
            bytes += static_cast<char>(high << 4 | low);
            at += 2;
        } else {
            bytes += text[at] == '_' ? ' ' : text[at];
        }
    }
}

bool AppendBase64(std::string_view text, std::string& bytes) {
    const std::u16string units = UtilpWidenLatin(text);
    clsBase64Decoder decoder(units);
    std::array<std::uint8_t, 96> room;
    std::size_t given = room.size();
    while (given == room.size()) {
        const std::optional<std::size_t> decoded = decoder.Decode(room);
        if (!decoded)
            return false;
        given = *decoded;
        bytes.append(reinterpret_cast<const char*>(room.data()), given);
    }
    return true;
}

bool AppendDecoded(const scWord& word, std::string& bytes) {
    const std::size_t before = bytes.size();
    if (word.encoding == 'Q')
        AppendQuoted(word.text, bytes);
    else if (!AppendBase64(word.text, bytes)) {
        bytes.resize(before);
        return false;
    }
    return true;
}

} // namespace

std::u16string UtilpDecodeMimeWords(std::string_view value) {
    std::u16string text;
    std::string bytes; // of words, in one character set, that are not in the text yet
    unsigned codePage = 0;
    const auto flush = [&] {
        text += UtilpDecodeText(codePage, bytes);
        bytes.clear();
    };
    while (!value.empty()) {
        const std::size_t start = std::min(value.find("=?"), value.size());
        const std::string_view plain = value.substr(0, start);
        value.remove_prefix(start);
        const std::optional<scWord> word = WordAt(value);
        const bool isBetween = !bytes.empty() && word && plain.find_first_not_of(white) == plain.npos;
        if (!isBetween || word->codePage != codePage)
            flush();
        if (!isBetween)
            text += UtilpDecodeLooseText(plain);
        if (word && (codePage = word->codePage, AppendDecoded(*word, bytes))) {
            value.remove_prefix(word->length);
            continue;
        }
        flush();
        const std::size_t asItStands = word ? word->length : std::min<std::size_t>(2, value.size());
        text += UtilpDecodeLooseText(value.substr(0, asItStands));
        value.remove_prefix(asItStands);
    }
    flush();
    return text;
}

} // namespace tvut
