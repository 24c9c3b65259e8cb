// A length counts only when nothing casts doubt on it: all fields that state one are read, the greatest is
// taken, and one that is no number, or a body in chunks, makes it unknown. Numbers stop at the greatest there
// is instead of wrapping.
#include "files/http_head.h"

#include <algorithm>
#include <limits>

namespace tvut {

namespace {

constexpr char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

bool IsSame(std::u16string_view text, std::u16string_view lower) {
    return std::ranges::equal(text, lower, {}, Lower);
}

std::u16string_view Trimmed(std::u16string_view text) {
    constexpr std::u16string_view blanks = u" \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == text.npos ? std::u16string_view()
                              : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Takes the part before a separator off a text; all of it when there is none.
std::u16string_view TakeUntil(std::u16string_view& text, std::u16string_view separators) {
    const std::size_t end = std::min(text.find_first_of(separators), text.size());
    const std::u16string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

std::optional<std::uint64_t> Number(std::u16string_view text) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    if (text.empty())
        return {};
    std::uint64_t number = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9')
            return {};
        const std::uint64_t digit = unit - u'0';
        number = number > (most - digit) / 10 ? most : number * 10 + digit;
    }
    return number;
}

// Collects the fields of one head.
class clsFields {
  public:
    void Add(std::u16string_view name, std::u16string_view value) {
        if (IsSame(name, u"content-length"))
            AddLengths(value);
        else if (IsSame(name, u"content-encoding"))
            head_.isEncoded = head_.isEncoded || !(value.empty() || IsSame(value, u"identity"));
        else if (IsSame(name, u"transfer-encoding"))
            head_.isChunked = head_.isChunked || !value.empty();
    }

    scHttpHead Head() const {
        scHttpHead head = head_;
        if (isBad_ || head.isChunked)
            head.length.reset();
        return head;
    }

  private:
    // Several fields of one name are as one with commas.
    void AddLengths(std::u16string_view value) {
        do {
            const std::optional<std::uint64_t> length = Number(Trimmed(TakeUntil(value, u",")));
            isBad_ = isBad_ || !length;
            head_.length = std::max(head_.length, length);
        } while (!value.empty());
    }

    scHttpHead head_;
    bool isBad_ = false;
};

} // namespace

scHttpHead UtilpReadHttpHead(std::u16string_view head) noexcept {
    constexpr std::u16string_view lineEnds(u"\r\n\0", 3);
    clsFields fields;
    while (!head.empty()) {
        std::u16string_view line = TakeUntil(head, lineEnds);
        if (line.size() > 5 && IsSame(line.substr(0, 5), u"http/")) {
            fields = {};
            continue;
        }
        const std::u16string_view name = Trimmed(TakeUntil(line, u":"));
        fields.Add(name, Trimmed(line));
    }
    return fields.Head();
}

} // namespace tvut
