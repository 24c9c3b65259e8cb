// A block of names is unfolded with another one's unfolded names as dictionary, which may have one itself:
// the chain is followed to the block that needs none, and walked back. In a name ASCII is itself, and a byte
// from 0x80 on is a place in the script's alphabet, on a later page where a byte below 0x20 stands before it.
// Names in a script without alphabet are in UTF-8.
#include "locale/translated_names.h"

#include "platform/language_order.h"
#include "platform/letter_case.h"
#include "runtime/code_point.h"
#include "text/bytes/deflate.h"

#include <algorithm>
#include <cassert>
#include <numeric>

namespace tvut {

namespace {

std::string Unfolded(const scNameBlock& block, std::string_view dictionary) {
    clsInflater inflater(Wrapping::none);
    if (!dictionary.empty())
        inflater.Presume(dictionary.data(), dictionary.size());
    inflater.Feed(g_foldedNames + block.begin, block.size);
    std::string names(block.unfolded, '\0');
    [[maybe_unused]] const std::size_t bytes = inflater.Unfold(names.data(), names.size());
    assert(bytes == names.size() && "a damaged table");
    return names;
}

// Dictionaries first, from the one that needs none.
std::string Unfolded(std::uint8_t block) {
    std::array<std::uint8_t, blockCount> chain;
    std::size_t length = 0;
    for (chain[length++] = block; g_nameBlocks[block].dictionary != block;)
        chain[length++] = block = g_nameBlocks[block].dictionary;
    std::string names;
    while (length != 0)
        names = Unfolded(g_nameBlocks[chain[--length]], names);
    return names;
}

// Takes the first character off a name that is not empty.
std::uint32_t TakeCharacter(std::string_view& bytes, std::u16string_view alphabet) noexcept {
    if (alphabet.empty())
        return UtilpTakeUtf8(bytes);
    constexpr unsigned page = 0x80;
    const unsigned first = static_cast<unsigned char>(bytes[0]);
    const bool isPair = first < 0x20; // a later page of the alphabet, and the place in it
    const unsigned last = static_cast<unsigned char>(bytes[isPair]);
    bytes.remove_prefix(isPair ? 2 : 1);
    if (last < page)
        return last;
    return alphabet[(isPair ? first : 0) * page + last - page];
}

} // namespace

clsTranslatedNames::clsTranslatedNames(std::uint8_t block)
    : block_(g_nameBlocks[block]), names_(Unfolded(block)) {
    std::uint16_t at = 0;
    for (std::uint16_t& begin : begins_) {
        begin = at;
        at = static_cast<std::uint16_t>(names_.find('\0', at) + 1);
    }
}

std::size_t clsTranslatedNames::Country(std::size_t country, TranslatedName& name) const noexcept {
    return Name(country, name);
}

std::size_t clsTranslatedNames::Language(std::size_t language, TranslatedName& name) const noexcept {
    return Name(countryCount + language, name);
}

std::size_t clsTranslatedNames::Name(std::size_t number, TranslatedName& name) const noexcept {
    const std::u16string_view alphabet = g_alphabets[block_.alphabet];
    std::string_view bytes(names_.c_str() + begins_[number]);
    char16_t* out = name.data();
    while (!bytes.empty())
        out = UtilpPutUtf16(out, TakeCharacter(bytes, alphabet));
    *out = 0;
    return static_cast<std::size_t>(out - name.data());
}

std::optional<std::size_t> clsTranslatedNames::FindCountry(std::u16string_view name) const noexcept {
    TranslatedName wanted, candidate;
    if (name.empty() || name.size() >= wanted.size())
        return std::nullopt;
    PlatformToUpperCase(name, wanted.data());
    for (std::size_t country = 0; country < countryCount; ++country) {
        const std::size_t length = Country(country, candidate);
        if (length != name.size())
            continue;
        PlatformToUpperCase({candidate.data(), length}, candidate.data());
        if (std::equal(candidate.data(), candidate.data() + length, wanted.data()))
            return country;
    }
    return std::nullopt;
}

// By binary insertion: it keeps countries of equal names as they are, by their codes, and does no harm where
// the system contradicts itself. The places to move are bytes.
clsTranslatedNames::CountryOrder clsTranslatedNames::Sorted() const {
    std::u16string texts;
    struct scPlace {
        std::uint16_t begin, length;
    };
    std::array<scPlace, countryCount> places;
    for (std::size_t country = 0; country < countryCount; ++country) {
        TranslatedName name;
        const std::size_t length = Country(country, name);
        places[country] = {static_cast<std::uint16_t>(texts.size()), static_cast<std::uint16_t>(length)};
        texts.append(name.data(), length);
    }
    std::array<char16_t, sizeof scLanguage::tag> language;
    std::ranges::copy(g_languages[block_.language].tag, language.begin());
    const auto textOf = [&](std::uint8_t country) {
        return std::u16string_view(texts.data() + places[country].begin, places[country].length);
    };
    const auto isBefore = [&](std::uint8_t a, std::uint8_t b) {
        return PlatformCompareInLanguage(language.data(), textOf(a), textOf(b)) < 0;
    };
    CountryOrder order;
    std::iota(order.begin(), order.end(), std::uint8_t{0});
    for (auto* at = order.data(); at != order.data() + order.size(); ++at)
        std::rotate(std::upper_bound(order.data(), at, *at, isBefore), at, at + 1);
    return order;
}

const clsTranslatedNames::CountryOrder& clsTranslatedNames::InOrder() const {
    if (const CountryOrder* const kept = order_.load(std::memory_order_acquire))
        return *kept;
    auto made = std::make_unique<const CountryOrder>(Sorted());
    const CountryOrder* other = nullptr; // another thread's
    if (order_.compare_exchange_strong(other, made.get(), std::memory_order_acq_rel))
        return *made.release();
    return *other;
}

} // namespace tvut
