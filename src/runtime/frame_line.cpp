// Symbols have names in UTF-8, the system's service has them in UTF-16; templates take both the same way.
// Nothing here asks for memory: lines of crash reports are made of it.
#include "runtime/frame_line.h"

#include "runtime/code_point.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr std::size_t longestName = 512; // characters; the rest of the line is worth more than a longer one

template <class Character>
std::basic_string_view<Character> LastComponent(std::basic_string_view<Character> path) noexcept {
    const auto isSeparator = [](Character c) { return c == '\\' || c == '/'; };
    const auto end = std::find_if(path.rbegin(), path.rend(), isSeparator);
    path.remove_prefix(static_cast<std::size_t>(path.rend() - end));
    return path;
}

void PutName(clsDiagnosticLine& line, std::u16string_view name) noexcept {
    line.Put({name.data(), std::min(name.size(), longestName)});
}

void PutName(clsDiagnosticLine& line, std::string_view name) noexcept {
    std::array<char16_t, longestName + 1> units; // a pair may end beyond the most
    char16_t* end = units.data();
    while (!name.empty() && end < units.data() + longestName)
        end = UtilpPutUtf16(end, UtilpTakeUtf8(name));
    line.Put({units.data(), end});
}

template <class Character>
void PutFunction(clsDiagnosticLine& line, std::basic_string_view<Character> name,
                 std::uint32_t offset) noexcept {
    if (name.empty())
        return;
    line.Put(u" ");
    PutName(line, name);
    line.Put(u"+0x").PutHex(offset, 1);
}

template <class Character>
void PutSource(clsDiagnosticLine& line, std::basic_string_view<Character> path,
               std::uint32_t number) noexcept {
    if (path.empty())
        return;
    line.Put(u" (");
    PutName(line, LastComponent(path));
    line.Put(u":").PutDecimal(number, 1).Put(u")");
}

} // namespace

void UtilpPutFramePlace(clsDiagnosticLine& line, std::uint32_t address, std::u16string_view modulePath,
                        std::uint32_t moduleAddress) noexcept {
    if (modulePath.empty()) {
        line.Put(u"0x").PutHex(address, 8);
        return;
    }
    PutName(line, LastComponent(modulePath));
    line.Put(u"+0x").PutHex(address - moduleAddress, 1);
}

void UtilpPutFrameFunction(clsDiagnosticLine& line, std::string_view name, std::uint32_t offset) noexcept {
    PutFunction(line, name, offset);
}

void UtilpPutFrameFunction(clsDiagnosticLine& line, std::u16string_view name, std::uint32_t offset) noexcept {
    PutFunction(line, name, offset);
}

void UtilpPutFrameSource(clsDiagnosticLine& line, std::string_view path, std::uint32_t number) noexcept {
    PutSource(line, path, number);
}

void UtilpPutFrameSource(clsDiagnosticLine& line, std::u16string_view path, std::uint32_t number) noexcept {
    PutSource(line, path, number);
}

} // namespace tvut
