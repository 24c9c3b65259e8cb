// The text of a plain INI file, in which one item or section changes and everything else stays as it is.
//
// A unit is what the file's encoding has for CR, "=" and the like: a byte, or one of UTF-16. Names and values
// are texts of such units, so nothing here knows an encoding. Lines are understood as the library reads plain
// INI files: blanks around name and value do not belong to them, quotes and comments after a value do.
#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tool::prof {

// Whether a line can hold it so that it is read again.
bool IsIniItemName(std::u16string_view name);
bool IsIniSectionName(std::u16string_view name);
bool IsIniValue(std::u16string_view value);

class clsPlainIniText {
  public:
    // None: the items before the first section.
    using Section = std::optional<std::u16string_view>;

    explicit clsPlainIniText(std::u16string text);

    const std::u16string& Text() const { return text_; }

    // Gives the first item of that name in the first section of its name another value. A new item becomes
    // the last one of its section, and a new section the last one of the file.
    void Set(Section section, std::u16string_view name, std::u16string_view value);

    // Takes out the lines of all items of these names in all sections of theirs.
    struct scItem {
        std::optional<std::u16string> section;
        std::u16string name;
        auto operator<=>(const scItem&) const = default;
    };
    void DeleteItems(const std::set<scItem>& items);

    // Takes out all sections of these names. A comment directly above the next section belongs to that one.
    void DeleteSections(const std::set<std::u16string>& names);

  private:
    enum class LineKind { blank, comment, header, item };
    struct scLine { // places in the text
        std::size_t begin;
        std::size_t text; // after the indentation
        std::size_t end;  // before the line end
        std::size_t next; // the next line's begin
        LineKind kind;
    };
    struct scSection { // lines, the header not among them
        std::size_t first;
        std::size_t end;
    };

    void TakeLines();
    std::u16string_view Piece(std::size_t begin, std::size_t end) const;
    std::u16string_view HeaderName(const scLine& line) const;
    std::u16string_view ItemName(const scLine& line) const;
    std::size_t Equals(const scLine& line) const;
    std::size_t NextHeader(std::size_t line) const;
    std::size_t CommentsAbove(std::size_t line, std::size_t first) const;
    std::vector<scSection> Sections(Section name) const;
    void SetValue(const scLine& line, std::u16string_view value);
    void AppendItem(const scSection& section, std::u16string_view name, std::u16string_view value);
    void AppendSection(std::u16string_view section, std::u16string_view name, std::u16string_view value);
    void InsertLines(std::size_t before, const std::vector<std::u16string>& lines);
    std::u16string ItemLine(const scSection& section, std::u16string_view name,
                            std::u16string_view value) const;
    std::u16string LineEndNear(std::size_t line) const;
    bool BeginSectionsAfterBlankLine() const;
    void Erase(const std::vector<scSection>& lines);

    std::u16string text_;
    std::vector<scLine> lines_;
};

} // namespace tool::prof
