// An engine does whole groups without anything irregular. The decoder lets it run as far as it gets, takes
// one group by hand (blanks, padding, the end, or a fault) and lets it run again, so a text of lines costs
// one slow group a line.
#include "text/bytes/base64.h"

#include "text/bytes/base64_engine.h"

#include <algorithm>
#include <limits>
#include <new>

namespace tvut {

namespace {

// Chosen once, when the library is loaded.
const scBase64Engine engine = *std::ranges::find_if(
    UtilpBase64Engines(), [](const auto& candidate) { return candidate.isAvailable(); });

bool IsBlank(char16_t character) {
    return character == u' ' || character == u'\t' || character == u'\r' || character == u'\n';
}

} // namespace

std::size_t UtilpBase64Length(std::size_t bytes) {
    if (bytes > std::numeric_limits<std::size_t>::max() / 4)
        throw std::bad_alloc();
    return (bytes + 2) / 3 * 4;
}

void UtilpBase64Encode(std::span<const std::uint8_t> bytes, char16_t* text) {
    const std::size_t whole = engine.encode(bytes.data(), bytes.size(), text);
    const auto rest = bytes.subspan(whole);
    if (rest.empty())
        return;
    const std::uint8_t last[] = {rest[0], rest.size() > 1 ? rest[1] : std::uint8_t{0}, 0};
    text += whole / 3 * 4;
    UtilpBase64EncodeByTable(last, 3, text);
    std::fill(text + rest.size() + 1, text + 4, u'=');
}

clsBase64Decoder::clsBase64Decoder(std::u16string_view text, Padding padding)
    : text_(text), padding_(padding) {}

std::optional<std::size_t> clsBase64Decoder::Decode(std::span<std::uint8_t> room) {
    std::size_t filled = 0;
    while (!text_.empty() && room.size() - filled >= 3) {
        const std::size_t most = std::min(text_.size() / 4, (room.size() - filled) / 3) * 4;
        const std::size_t done = engine.decode(text_.data(), most, room.data() + filled);
        text_.remove_prefix(done);
        filled += done / 4 * 3;
        if (room.size() - filled < 3)
            break;
        const auto irregular = DecodeGroup(room.data() + filled);
        if (!irregular)
            return {};
        filled += *irregular;
    }
    return filled;
}

struct clsBase64Decoder::scGroup {
    std::uint32_t bits = 0;
    unsigned characters = 0;
    unsigned padding = 0;
    bool bad = false;
};

// The next four characters that are not blank, or those that are left.
clsBase64Decoder::scGroup clsBase64Decoder::NextGroup() {
    scGroup group;
    for (; !text_.empty() && group.characters + group.padding < 4; text_.remove_prefix(1)) {
        const char16_t character = text_.front();
        if (IsBlank(character))
            continue;
        if (character == u'=') {
            ++group.padding;
            continue;
        }
        const std::uint32_t value = UtilpBase64Value(character);
        group.bad |= value > 63 || group.padding != 0;
        group.bits = group.bits << 6 | value;
        ++group.characters;
    }
    return group;
}

std::optional<std::size_t> clsBase64Decoder::DecodeGroup(std::uint8_t* bytes) {
    const scGroup group = NextGroup();
    if (group.characters + group.padding == 0)
        return 0; // blanks at the end
    if (group.bad || group.characters < 2 || (group.padding != 0 && group.characters + group.padding != 4))
        return {};
    if (group.characters < 4) {
        if (!std::ranges::all_of(text_, IsBlank))
            return {};
        text_ = {};
    }
    const std::uint32_t bits = group.bits << 6 * (4 - group.characters);
    const std::size_t count = padding_ == Padding::isZero ? 3 : group.characters - 1;
    for (std::size_t at = 0; at < count; ++at)
        bytes[at] = static_cast<std::uint8_t>(bits >> (16 - 8 * at));
    return count;
}

} // namespace tvut
