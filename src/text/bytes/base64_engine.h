// The engines of the Base64 codec: one portable, others for what a processor offers.
//
// An engine does the bulk, groups of three bytes and four characters without anything irregular; it may
// leave what is not worth its while, or does not fit, to the next simpler one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tvut {

struct scBase64Engine {
    const char* name;
    bool (*isAvailable)() noexcept;

    // Encodes bytes from the front; returns how many, a multiple of 3. The text has room for as many
    // groups of 4 as there are groups of 3 bytes.
    std::size_t (*encode)(const std::uint8_t* bytes, std::size_t count, char16_t* text);

    // Decodes characters from the front, up to the first group that holds anything but the alphabet;
    // returns how many, a multiple of 4. There is room for as many groups of 3 bytes as there are of 4
    // characters, all of which may be written to.
    std::size_t (*decode)(const char16_t* text, std::size_t count, std::uint8_t* bytes);
};

// All engines, the fastest first; the last is the portable one.
std::span<const scBase64Engine> UtilpBase64Engines();

// The portable engine: it does every whole group.
std::size_t UtilpBase64EncodeByTable(const std::uint8_t* bytes, std::size_t count, char16_t* text);
std::size_t UtilpBase64DecodeByTable(const char16_t* text, std::size_t count, std::uint8_t* bytes);

// The value of a character of the alphabet, or more than 63.
std::uint32_t UtilpBase64Value(char16_t character);

} // namespace tvut
