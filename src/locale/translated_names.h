// What countries and languages are called, in 46 languages and in their own.
//
// The names of one language are a deflated block; scripts/make-locale-tables, which makes it, says how.
#pragma once

#include "locale/country_table.h"
#include "locale/language_table.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tvut {

// Where the names of one language are, and how to read them.
struct scNameBlock {
    std::uint32_t begin;     // in g_foldedNames
    std::uint16_t size;      // there
    std::uint16_t unfolded;  // bytes
    std::uint8_t language;   // in whose order the names are sorted
    std::uint8_t dictionary; // the block that has to be unfolded first; the block itself: none
    std::uint8_t alphabet;   // in g_alphabets
};

constexpr std::size_t blockCount = 47;
constexpr std::uint8_t englishNames = 0;
constexpr std::uint8_t nativeNames = blockCount - 1;
extern const std::array<scNameBlock, blockCount> g_nameBlocks;
extern const std::array<std::u16string_view, 10> g_alphabets; // an empty one: the block is UTF-8
extern const unsigned char g_foldedNames[];

// A name, in a caller's buffer or here: at most 95 units and a zero.
using TranslatedName = std::array<char16_t, 96>;

// The names in one language, unfolded.
class clsTranslatedNames {
  public:
    using CountryOrder = std::array<std::uint8_t, countryCount>;

    explicit clsTranslatedNames(std::uint8_t block); // throws std::bad_alloc
    clsTranslatedNames(const clsTranslatedNames&) = delete;
    clsTranslatedNames& operator=(const clsTranslatedNames&) = delete;
    ~clsTranslatedNames() { delete order_.load(std::memory_order_acquire); }

    // Each returns the name's length.
    std::size_t Country(std::size_t country, TranslatedName& name) const noexcept;
    std::size_t Language(std::size_t language, TranslatedName& name) const noexcept;

    // The country of this name; upper and lower case are the same.
    std::optional<std::size_t> FindCountry(std::u16string_view name) const noexcept;

    // All countries in the language's alphabetical order, those of equal names by their codes. The first call
    // sorts them, and throws std::bad_alloc.
    const CountryOrder& InOrder() const;

  private:
    std::size_t Name(std::size_t number, TranslatedName& name) const noexcept;
    CountryOrder Sorted() const;

    const scNameBlock& block_;
    std::string names_;
    std::array<std::uint16_t, countryCount + languageCount> begins_;
    mutable std::atomic<const CountryOrder*> order_{nullptr};
};

} // namespace tvut
