// The attributes of a tag: with values in double quotes, in single ones, in none, or without a value.
#pragma once

#include <optional>
#include <string_view>

namespace tool::html {

// Walks over attributes; the text may go on after the tag's end. A > within quotes ends no tag.
class clsAttributeWalk {
  public:
    explicit clsAttributeWalk(std::u16string_view text) : text_(text) {}

    // Whether there is one more before the tag's end.
    bool Next();
    std::u16string_view Name() const { return name_; }
    std::u16string_view Value() const { return value_; } // its references are not resolved

    // Where the walk stands: after Next has returned false, at the > or at the text's end.
    std::size_t At() const { return at_; }

  private:
    void SkipBlanks();
    void ReadValue();
    std::u16string_view ReadUntil(std::u16string_view ends);

    std::u16string_view text_;
    std::u16string_view name_;
    std::u16string_view value_;
    std::size_t at_ = 0;
};

// The value of the first attribute of that name, which is in lower case; nothing when there is none.
std::optional<std::u16string_view> AttributeOf(std::u16string_view attributes, std::u16string_view name);

} // namespace tool::html
