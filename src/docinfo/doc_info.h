// The properties of a document: what readers say of it, and what callers ask for by name.
//
// Readers add values as they meet them, raw; here they become what callers see: cleaned, joined, bounded.
#pragma once

#include "docinfo/dates.h"
#include "platform/exception.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace tvut {

// In the order in which callers see them.
enum class DocProperty : std::uint8_t {
    format,
    title,
    author,
    subject,
    keywords,
    comments,
    lastAuthor,
    company,
    manager,
    category,
    application,
    producer,
    language,
    copyright,
    revision,
    created,
    modified,
    printed,
    received,
    pages,
    words,
    characters,
    to,
    cc,
    messageId,
    encrypted,
    problem,
    count
};

// What a reader throws at its first impossibility; what it has added by then stays. The words are a literal
// and follow "damaged: ".
class clsDocDamage final : public clsException {
  public:
    explicit clsDocDamage(const char* words) noexcept : clsException(words) {}
};

inline void UtilpRequire(bool fine, const char* otherwise) {
    if (!fine)
        throw clsDocDamage(otherwise);
}

// Where a property has several sources in a format: values of a better one replace those of a lesser one,
// values of one rank are joined.
enum class DocRank : std::uint8_t { least, lesser, usual, better, best };

class clsDocInfo {
  public:
    static constexpr std::size_t longestValue = 32767;    // units
    static constexpr std::size_t longestCustomName = 256; // units
    static constexpr std::size_t mostCustom = 1000;
    static constexpr std::size_t mostUnits = 512 * 1024; // of all values together

    // ---- For readers. All throw std::bad_alloc. What is empty, or no date, is passed over.

    void Add(DocProperty property, std::u16string_view text, DocRank rank = DocRank::usual);
    void Add(DocProperty property, const std::optional<scDocDate>& date, DocRank rank = DocRank::usual);
    // A negative number is nonsense, and passed over.
    void AddNumber(DocProperty property, std::int64_t number, DocRank rank = DocRank::usual);
    // The same of a text that should be a number, decimal.
    void AddNumber(DocProperty property, std::u16string_view digits, DocRank rank = DocRank::usual);
    void AddCustom(std::u16string_view name, std::u16string_view text);
    void AddCustom(std::u16string_view name, const std::optional<scDocDate>& date);

    void SetFormat(std::u16string_view format); // replaces
    void SetEncrypted();
    bool Has(DocProperty property) const { return !ValueOf(property).text.empty(); }

    // Says what was wrong; the first one stays. The words are kept as they are.
    void SetProblem(std::u16string_view words);

    // Everything is added: lets go what only readers need.
    void Finish() noexcept;

    // ---- For callers.

    // A property's text; nothing when it is not there. Names compare without regard to ASCII case.
    std::optional<std::u16string_view> Find(std::u16string_view name) const noexcept;
    std::u16string_view Text(DocProperty property) const { return ValueOf(property).text; }

    // The names of all properties that are there, one a line. Throws std::bad_alloc.
    std::u16string Names() const;

  private:
    struct scValue {
        std::u16string text;
        DocRank rank = DocRank::least;
    };
    struct scCustom {
        std::u16string name;
        std::u16string text;
    };

    scValue& ValueOf(DocProperty property) { return values_[static_cast<std::size_t>(property)]; }
    const scValue& ValueOf(DocProperty property) const { return values_[static_cast<std::size_t>(property)]; }
    void Join(std::u16string& joined, std::u16string_view text, std::size_t owner);
    bool HasRoom(std::size_t units);

    std::array<scValue, static_cast<std::size_t>(DocProperty::count)> values_;
    std::vector<scCustom> custom_;
    std::vector<std::uint32_t> customHashes_; // of their names, until all are added
    std::size_t units_ = 0;
    std::unordered_set<std::uint64_t> seen_; // values that were joined, by owner and text
};

} // namespace tvut
