// A text in fixed memory, cut at its end; terminated.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tvut {

template <std::size_t most>
class clsFixedText {
  public:
    clsFixedText() noexcept { text_[0] = u'\0'; } // the rest is not touched

    clsFixedText& Put(std::u16string_view text) noexcept {
        const std::size_t room = most - length_;
        const std::size_t count = text.size() < room ? text.size() : room;
        for (std::size_t i = 0; i < count; ++i)
            text_[length_ + i] = text[i];
        length_ += count;
        text_[length_] = u'\0';
        return *this;
    }
    void Set(std::u16string_view text) noexcept {
        length_ = 0;
        Put(text);
    }

    std::u16string_view View() const noexcept { return {text_.data(), length_}; }
    const char16_t* Terminated() const noexcept { return text_.data(); }
    bool IsEmpty() const noexcept { return length_ == 0; }
    bool IsFull() const noexcept { return length_ == most; } // and perhaps cut

  private:
    std::array<char16_t, most + 1> text_;
    std::size_t length_ = 0;
};

} // namespace tvut
