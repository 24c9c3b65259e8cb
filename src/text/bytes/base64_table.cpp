// Base64 by tables: what every machine can do, and what the vector engines are measured by.
#include "text/bytes/base64_engine.h"

#include <array>
#include <cstring>
#include <string_view>

namespace tvut {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint32_t invalid = 0x80000000;
constexpr std::size_t asciiCount = 128;

using Pair = std::array<char16_t, 2>;
using Additions = std::array<std::uint32_t, asciiCount>;

constexpr std::array<Pair, 4096> MakePairs() {
    std::array<Pair, 4096> table{};
    for (std::size_t bits = 0; bits < table.size(); ++bits)
        table[bits] = {static_cast<char16_t>(alphabet[bits / 64]),
                       static_cast<char16_t>(alphabet[bits % 64])};
    return table;
}

constexpr std::array<Additions, 4> MakeAdditions() {
    std::array<Additions, 4> table{};
    for (std::size_t place = 0; place < table.size(); ++place) {
        table[place].fill(invalid);
        for (std::uint32_t value = 0; value < alphabet.size(); ++value)
            table[place][static_cast<std::size_t>(alphabet[value])] = value << (18 - 6 * place);
    }
    return table;
}

constexpr auto pairs = MakePairs();         // the two characters of twelve bits
constexpr auto additions = MakeAdditions(); // what a character adds to a group, by its place in it

} // namespace

std::size_t UtilpBase64EncodeByTable(const std::uint8_t* bytes, std::size_t count, char16_t* text) {
    const std::uint8_t* const end = bytes + count / 3 * 3;
    for (; bytes != end; bytes += 3, text += 4) {
        const std::uint32_t group = std::uint32_t{bytes[0]} << 16 | std::uint32_t{bytes[1]} << 8 | bytes[2];
        const auto& first = pairs[group >> 12];
        const auto& second = pairs[group & 0xFFF];
        std::memcpy(text, first.data(), sizeof first);
        std::memcpy(text + 2, second.data(), sizeof second);
    }
    return count / 3 * 3;
}

std::size_t UtilpBase64DecodeByTable(const char16_t* text, std::size_t count, std::uint8_t* bytes) {
    std::size_t done = 0;
    for (; count - done >= 4; done += 4, text += 4, bytes += 3) {
        if ((text[0] | text[1] | text[2] | text[3]) >= static_cast<int>(asciiCount))
            break;
        const std::uint32_t group =
            additions[0][text[0]] | additions[1][text[1]] | additions[2][text[2]] | additions[3][text[3]];
        if ((group & invalid) != 0)
            break;
        bytes[0] = static_cast<std::uint8_t>(group >> 16);
        bytes[1] = static_cast<std::uint8_t>(group >> 8);
        bytes[2] = static_cast<std::uint8_t>(group);
    }
    return done;
}

std::uint32_t UtilpBase64Value(char16_t character) {
    return character < asciiCount ? additions[3][character] : invalid;
}

} // namespace tvut
