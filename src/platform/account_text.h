// Accounts as people write them: "DOMAIN\name", "name@domain", "name", or the text of a SID, "S-1-5-32-544".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

// A security identifier as it lies in memory (MS-DTYP, 2.4.2.2).
struct scSid {
    static constexpr std::size_t mostParts = 15;

    std::uint8_t revision = 1;
    std::uint8_t partCount = 0;
    std::array<std::uint8_t, 6> authority{}; // the highest byte first
    std::array<std::uint32_t, mostParts> parts{};

    std::size_t Size() const noexcept { return 8 + std::size_t{partCount} * 4; }
    bool operator==(const scSid&) const = default; // parts that do not count are 0
};
static_assert(sizeof(scSid) == 68);

// Whether a text is meant as that of a SID: it begins with "S-1-", in either case.
bool PlatformIsSidText(std::u16string_view text) noexcept;

// The SID that a text says: an authority, decimal or hexadecimal after "0x", and 1 to 15 decimal numbers,
// leading zeros allowed. None for any other text.
std::optional<scSid> PlatformParseSid(std::u16string_view text) noexcept;

// The canonical text of a SID (MS-DTYP, 2.4.2.1): authorities from 2^32 on are hexadecimal.
class clsSidText {
  public:
    explicit clsSidText(const scSid& sid) noexcept;
    std::u16string_view View() const noexcept { return {text_.data(), length_}; }

  private:
    void Put(std::u16string_view text) noexcept;
    void Put(std::uint32_t number) noexcept;

    std::array<char16_t, 192> text_; // "S-1-0x" with 12 digits, and 15 times "-" with 10
    std::size_t length_ = 0;
};

// A name and the domain or computer that is to know it; "." for the domain is this computer.
struct scAccountName {
    std::u16string_view domain; // empty: none is named, or the name is of the form name@domain
    std::u16string_view name;
};

constexpr std::size_t longestAccount = 512; // characters, beyond what any directory takes

// None for an empty or malformed text: more than one "\", nothing on one side of it, or too long.
std::optional<scAccountName> PlatformSplitAccount(std::u16string_view account) noexcept;

} // namespace tvut
