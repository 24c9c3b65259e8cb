// Numbers are spelled here, so that a line needs neither memory nor a locale. Each Put takes what still
// fits, so nobody else has to check a line's length.
#include "runtime/diagnostics.h"

#include "runtime/digits.h"

#include <algorithm>

namespace tvut {

clsDiagnosticLine& clsDiagnosticLine::Put(std::u16string_view text) noexcept {
    text = text.substr(0, longest - length_);
    std::copy(text.begin(), text.end(), text_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += text.size();
    return *this;
}

clsDiagnosticLine& clsDiagnosticLine::Put(std::int32_t number) noexcept {
    const auto magnitude = static_cast<std::uint32_t>(number);
    if (number >= 0)
        return PutDecimal(magnitude, 1);
    return Put(u"-").PutDecimal(0 - magnitude, 1);
}

clsDiagnosticLine& clsDiagnosticLine::PutBlanks(std::size_t count) noexcept {
    count = std::min(count, longest - length_);
    std::fill_n(text_.begin() + static_cast<std::ptrdiff_t>(length_), count, u' ');
    length_ += count;
    return *this;
}

clsDiagnosticLine& clsDiagnosticLine::PutPadded(std::u16string_view text, std::size_t width) noexcept {
    return Put(text).PutBlanks(width - std::min(width, text.size()));
}

clsDiagnosticLine& clsDiagnosticLine::PutDecimal(std::uint32_t number, std::size_t digits) noexcept {
    return Put(clsDigits<char16_t>(number, 10, digits).View());
}

clsDiagnosticLine& clsDiagnosticLine::PutLarge(std::uint64_t number) noexcept {
    constexpr std::uint64_t billion = 1'000'000'000;
    if (number < billion)
        return PutDecimal(static_cast<std::uint32_t>(number), 1);
    PutLarge(number / billion); // at most twice
    return PutDecimal(static_cast<std::uint32_t>(number % billion), 9);
}

clsDiagnosticLine& clsDiagnosticLine::PutHex(std::uint32_t number, std::size_t digits) noexcept {
    return Put(clsDigits<char16_t>(number, 16, digits).View());
}

// As the C runtime prints "%#p", which callers' own lines show beside ours.
clsDiagnosticLine& clsDiagnosticLine::PutPointer(const void* pointer) noexcept {
    const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer));
    return Put(pointer ? u"0X" : u"").Put(clsDigits<char16_t>(address, 16, 8, upperDigits).View());
}

} // namespace tvut
