// The characters that XML text cannot hold as they are, and the references that stand for them.
#pragma once

#include "prof/formats/form_output.h"
#include "text/scan.h"

#include <array>
#include <string>
#include <string_view>

namespace tvut {

// What cannot stand in XML text as it is.
struct scXmlSpecial {
    static constexpr bool Is(char16_t c) {
        return c < 0x20 || c == u'<' || c == u'>' || c == u'&' || c == u'\'' || c == u'"';
    }
    // A byte for each of sixteen characters, all its bits set where one is special.
    static __m128i Find(__m128i low, __m128i high) {
        const __m128i block = UtilpPackAscii(low, high);
        const __m128i control = UtilpEqualBytes(_mm_subs_epu8(block, _mm_set1_epi8(0x1F)), 0);
        const __m128i angle = UtilpEqualBytes(_mm_or_si128(block, _mm_set1_epi8(2)), '>');  // 3C and 3E
        const __m128i quote = UtilpEqualBytes(_mm_or_si128(block, _mm_set1_epi8(1)), '\''); // 26 and 27
        return _mm_or_si128(_mm_or_si128(control, angle), _mm_or_si128(quote, UtilpEqualBytes(block, '"')));
    }
};

// What a character is written as; the text after a character decides, too: of CR LF only the LF is
// written. Room for the longest reference, &#x001f;
class clsXmlReference {
  public:
    static constexpr std::size_t longest = 8;

    clsXmlReference(char16_t c, bool lineFeedFollows);
    std::u16string_view View() const { return {text_.data(), length_}; }

  private:
    std::array<char16_t, longest> text_{};
    std::size_t length_ = 0;
};

// Puts a text, escaped, into an output: anything with Put(view).
template <class Output>
void ProfpPutEscaped(Output& output, std::u16string_view text) {
    for (;;) {
        const std::size_t plain = UtilpLengthBefore<scXmlSpecial>(text);
        output.Put(text.substr(0, plain));
        if (plain == text.size())
            return;
        const bool lineFeedFollows = plain + 1 < text.size() && text[plain + 1] == u'\n';
        output.Put(clsXmlReference(text[plain], lineFeedFollows).View());
        text.remove_prefix(plain + 1);
    }
}

namespace detail {
std::size_t EscapedLength(std::u16string_view text);
std::size_t PutEscaped(char16_t* out, std::u16string_view text);
} // namespace detail

// How long a text is once it is escaped. Most texts need no escaping.
inline std::size_t ProfpEscapedLength(std::u16string_view text) {
    return UtilpLengthBefore<scXmlSpecial>(text) == text.size() ? text.size() : detail::EscapedLength(text);
}

// The text is copied first and looked at while that is done. In line, so that the place where the output
// stands stays in a register.
TVUT_ALWAYS_INLINE void ProfpPutEscaped(clsReservedOutput<char16_t>& output, std::u16string_view text) {
    const bool special = UtilpCopyFinding<scXmlSpecial>(output.Next(), text);
    output.Took(special ? detail::PutEscaped(output.Next(), text) : text.size());
}

// The text that an escaped one stands for: itself when it holds no reference, else made in the buffer.
// A NUL, which no text of a profile can hold, becomes the picture of it.
std::u16string_view ProfpUnescape(std::u16string_view text, std::u16string& buffer);

} // namespace tvut
