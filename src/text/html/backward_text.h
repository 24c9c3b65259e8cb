// A text that is written from its end to its start.
#pragma once

#include <cstddef>
#include <string_view>

namespace tvut {

// What is put may lie in the same memory, below what it overwrites.
class clsBackwardText {
  public:
    explicit clsBackwardText(char16_t* end) : end_(end), start_(end) {}
    void Put(std::u16string_view text);
    void Put(char16_t unit) { *--start_ = unit; }
    const char16_t* Start() const { return start_; }
    std::u16string_view View() const { return {start_, static_cast<std::size_t>(end_ - start_)}; }

  private:
    char16_t* end_;
    char16_t* start_;
};

} // namespace tvut
