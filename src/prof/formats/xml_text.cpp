// References are taken one after the other from the front. Whether a semicolon follows at all is looked up
// once a text, or a value of a million ampersands would be searched a million times. A text without an
// ampersand, which nearly all are, is not copied.
#include "prof/formats/xml_text.h"

#include "text/digits.h"
#include "text/encoding/input_text.h"

#include <algorithm>

namespace tvut {

namespace {

struct scNamedReference {
    std::u16string_view reference;
    std::u16string_view text;
};

// A line end is written as one reference and comes back as CR LF, whichever kind it was.
constexpr scNamedReference namedReferences[] = {
    {u"&cr;", u"\r\n"}, {u"&tab;", u"\t"}, {u"&lt;", u"<"},    {u"&gt;", u">"},
    {u"&amp;", u"&"},   {u"&apos;", u"'"}, {u"&quot;", u"\""},
};

std::u16string_view NamedReferenceFor(char16_t c) {
    for (const scNamedReference& named : namedReferences) {
        if (named.text.find(c) != named.text.npos)
            return named.reference;
    }
    return {};
}

constexpr std::uint32_t lastCharacter = 0x10FFFF;
constexpr char16_t replacement = u'\uFFFD';

void AppendCharacter(std::u16string& text, std::uint32_t code) {
    if (code == 0) {
        text += clsInputText::pictureOfZero;
    } else if (code < 0x10000) {
        text += static_cast<char16_t>(code);
    } else if (code > lastCharacter) {
        text += replacement;
    } else {
        text += static_cast<char16_t>(0xD7C0 + (code >> 10));
        text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
    }
}

// Returns the length of the reference at the beginning of a text and appends what it stands for; 0 when
// there is none. One of digits takes all of a text that holds no semicolon, and stands for nothing.
std::size_t TakeNumericReference(std::u16string_view text, bool holdsSemicolon, std::u16string& buffer) {
    if (!text.starts_with(u"&#"))
        return 0;
    const bool hexadecimal = text.starts_with(u"&#x");
    const std::size_t first = hexadecimal ? 3 : 2;
    const std::uint32_t base = hexadecimal ? 16 : 10;
    std::uint32_t code = 0;
    std::size_t at = first;
    for (; at < text.size(); ++at) {
        const unsigned digit = UtilpDigitOf(text[at]);
        if (digit >= base)
            break;
        code = std::min(code * base + digit, lastCharacter + 1);
    }
    if (at == first)
        return 0;
    if (!holdsSemicolon)
        return text.size();
    if (text[at] != u';')
        return 0;
    AppendCharacter(buffer, code);
    return at + 1;
}

std::size_t TakeReference(std::u16string_view text, bool holdsSemicolon, std::u16string& buffer) {
    for (const scNamedReference& named : namedReferences) {
        if (text.starts_with(named.reference)) {
            buffer += named.text;
            return named.reference.size();
        }
    }
    return TakeNumericReference(text, holdsSemicolon, buffer);
}

} // namespace

clsXmlReference::clsXmlReference(char16_t c, bool lineFeedFollows) {
    if (c == u'\r' && lineFeedFollows)
        return;
    constexpr std::u16string_view digits = u"0123456789abcdef";
    const char16_t numeric[] = {u'&', u'#', u'x', u'0', u'0', digits[c >> 4 & 0xF], digits[c & 0xF], u';'};
    const std::u16string_view named = NamedReferenceFor(c);
    const std::u16string_view text = named.empty() ? std::u16string_view(numeric, std::size(numeric)) : named;
    length_ = text.copy(text_.data(), longest);
}

std::size_t detail::EscapedLength(std::u16string_view text) {
    struct scCount {
        std::size_t length = 0;
        void Put(std::u16string_view part) { length += part.size(); }
    } count;
    ProfpPutEscaped(count, text);
    return count.length;
}

std::size_t detail::PutEscaped(char16_t* out, std::u16string_view text) {
    clsReservedOutput<char16_t> output(out);
    ProfpPutEscaped<clsReservedOutput<char16_t>>(output, text);
    return output.Length();
}

std::u16string_view ProfpUnescape(std::u16string_view text, std::u16string& buffer) {
    std::size_t reference = text.find(u'&');
    if (reference == text.npos)
        return text;
    buffer.clear();
    const std::size_t semicolon = text.rfind(u';'); // looked for once: texts of many references stay cheap
    const char16_t* const last = semicolon == text.npos ? nullptr : text.data() + semicolon;
    for (; reference != text.npos; reference = text.find(u'&')) {
        buffer.append(text.substr(0, reference));
        text.remove_prefix(reference);
        std::size_t taken = TakeReference(text, last && text.data() <= last, buffer);
        if (taken == 0) {
            buffer += u'&';
            taken = 1;
        }
        text.remove_prefix(taken);
    }
    buffer.append(text);
    return buffer;
}

} // namespace tvut
