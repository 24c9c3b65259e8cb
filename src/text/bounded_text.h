// A text under construction of which the greatest length is known before: kept in the object when that is
// short, so that ordinary paths and names cost no allocation.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

namespace tvut {

class clsBoundedText {
  public:
    clsBoundedText() = default;
    clsBoundedText(const clsBoundedText&) = delete;
    clsBoundedText& operator=(const clsBoundedText&) = delete;

    // Empties the text and makes room for a number of characters. Throws std::bad_alloc.
    void Begin(std::size_t most) {
        length_ = 0;
        if (most <= room_)
            return;
        block_ = std::make_unique_for_overwrite<char16_t[]>(most);
        characters_ = block_.get();
        room_ = most;
    }

    // What is put must have room.
    void Put(std::u16string_view text) {
        std::copy(text.begin(), text.end(), characters_ + length_);
        length_ += text.size();
    }
    void Put(char16_t unit) { Put(std::u16string_view(&unit, 1)); }

    void Cut(std::size_t length) { length_ = length; }

    char16_t* Characters() { return characters_; }
    std::u16string_view View() const { return {characters_, length_}; }
    std::size_t Length() const { return length_; }

  private:
    std::array<char16_t, 512> inline_;
    std::unique_ptr<char16_t[]> block_;
    char16_t* characters_ = inline_.data();
    std::size_t length_ = 0;
    std::size_t room_ = inline_.size();
};

} // namespace tvut
