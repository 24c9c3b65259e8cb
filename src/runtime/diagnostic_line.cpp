#include "runtime/diagnostics.h"

#include <algorithm>
#include <charconv>

namespace tvut {

clsDiagnosticLine& clsDiagnosticLine::Put(std::u16string_view text) noexcept {
    text = text.substr(0, longest - length_);
    std::copy(text.begin(), text.end(), text_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += text.size();
    return *this;
}

clsDiagnosticLine& clsDiagnosticLine::Put(std::int32_t number) noexcept {
    std::array<char, 16> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    std::array<char16_t, 16> wide;
    const auto wideEnd = std::copy(digits.data(), end, wide.data());
    return Put({wide.data(), static_cast<std::size_t>(wideEnd - wide.data())});
}

clsDiagnosticLine& clsDiagnosticLine::PutBlanks(std::size_t count) noexcept {
    count = std::min(count, longest - length_);
    std::fill_n(text_.begin() + static_cast<std::ptrdiff_t>(length_), count, u' ');
    length_ += count;
    return *this;
}

void clsDiagnosticLine::Write() noexcept {
    text_[length_] = u'\n';
    text_[length_ + 1] = u'\0';
    UtilpWriteDiagnosticLine(text_.data());
    length_ = 0;
}

} // namespace tvut
