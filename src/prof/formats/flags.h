// What callers ask for when they load and save. The public header names these numbers; the exports assert
// that they are the same.
#pragma once

#include <cstdint>

namespace tvut {

namespace readFlags {
constexpr std::uint32_t foreignXfdf = 1;
constexpr std::uint32_t plainIni = 2;
constexpr std::uint32_t foreignXml = 4;
} // namespace readFlags

namespace saveFlags {
constexpr std::uint32_t form = 0xF; // the bits that name the form; what is none of these is XML
constexpr std::uint32_t textForm = 0;
constexpr std::uint32_t xfdfForm = 2;
constexpr std::uint32_t compressed = 0x40;
constexpr std::uint32_t compressedAsRead = 0x80;
} // namespace saveFlags

} // namespace tvut
