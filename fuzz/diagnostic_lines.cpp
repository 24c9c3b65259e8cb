// Diagnostic lines against a model: what the C runtime prints for the same format, cut at its end; and the
// pieces in which a line leaves.
//
// The input is a program: each byte chooses what is added to a line, and the bytes after it say what.
#include "choices.h"
#include "require.h"

#include "runtime/line_stamp.h"
#include "runtime/output/line_pieces.h"
#include "runtime/output/narrow_line.h"
#include "unit/native_platform.h"

#include <cstdarg>

using namespace tvut;

namespace {

std::uint32_t Number(clsChoices& input) {
    const std::uint32_t low = input.Below(0x10000);
    return low | input.Below(0x10000) << 16;
}

// Up to 1,020 characters, so that the end of a line is met from all sides; with line ends among them. They
// are those of Latin-1, which the runtime's narrow functions pass on.
std::u16string Text(clsChoices& input) {
    std::u16string text(input.Below(256) * std::size_t{4}, u'x');
    for (char16_t& c : text)
        c = input.AtEnd() ? u'x' : static_cast<char16_t>(input.Below(256));
    return text;
}

std::string Narrow(std::u16string_view text) {
    return {text.begin(), text.end()};
}

__attribute__((format(printf, 1, 2))) std::u16string Printed(const char* format, ...) {
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return {reinterpret_cast<unsigned char*>(text), reinterpret_cast<unsigned char*>(text) + length};
}

std::u16string Cut(const std::u16string& text) {
    return text.substr(0, clsDiagnosticLine::longest);
}

// Adds the same to a line and to its model. What is put may hold zeros, which no format passes on.
void Put(clsChoices& input, clsDiagnosticLine& line, std::u16string& model) {
    const std::uint32_t all = Number(input), number = all >> input.Below(32);
    const unsigned digits = input.Below(20);
    const int shownDigits = std::clamp(static_cast<int>(digits), 1, 16); // at most so many are
    const std::u16string text = Text(input);
    switch (input.Below(7)) {
    case 0:
        line.Put(text);
        model += text;
        break;
    case 1:
        line.Put(static_cast<std::int32_t>(number));
        model += Printed("%d", static_cast<std::int32_t>(number));
        break;
    case 2:
        line.PutBlanks(number);
        model.append(std::min<std::size_t>(number, clsDiagnosticLine::longest), u' ');
        break;
    case 3:
        line.PutPadded(text, digits);
        model += text + std::u16string(digits - std::min<std::size_t>(text.size(), digits), u' ');
        break;
    case 4:
        line.PutDecimal(number, digits);
        model += Printed("%0*u", shownDigits, number);
        break;
    case 5:
        line.PutHex(number, digits);
        model += Printed("%0*x", shownDigits, number);
        break;
    default:
        line.PutPointer(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(number)));
        model += Printed(number != 0 ? "0X%08X" : "%08X", number);
    }
    Require(line.View() == Cut(model));
}

void CheckStamp(clsChoices& input, const std::u16string& text) {
    scLineStamp stamp;
    stamp.sinceStart = input.Below(2) != 0;
    stamp.hour = input.Below(24), stamp.minute = input.Below(60), stamp.second = input.Below(60);
    stamp.millisecond = Number(input) % 1000;
    stamp.thread = Number(input), stamp.processor = input.Below(256);
    stamp.lineNumber = Number(input);
    const auto wide = static_cast<std::int32_t>(Number(input)), level = wide >> input.Below(32);
    stamp.level = UtilpShownLevel(level);
    std::u16string tag = Text(input);
    std::erase(tag, u'\0');

    std::u16string model = tag.empty() ? u"" : Printed("%-8s: ", Narrow(tag).c_str());
    if (!stamp.sinceStart)
        model += Printed("%02u:", stamp.hour);
    model += Printed("%02u:%02u.%03u %08x/%02x %u %*s", stamp.minute, stamp.second, stamp.millisecond,
                     stamp.thread, stamp.processor, stamp.lineNumber % 10, std::clamp(level, 0, 50) + 1, "");
    clsDiagnosticLine line;
    UtilpPutStamp(line, tag, stamp);
    Require(line.Put(text).View() == Cut(model + text));
}

void CheckPieces(std::size_t longest, const std::u16string& text) {
    std::u16string joined;
    for (std::u16string_view left = text; !left.empty();) {
        const std::u16string_view piece = UtilpTakePiece(left, longest);
        Require(!piece.empty() && piece.size() <= longest && (left.empty() || piece.size() == longest));
        joined += piece;
    }
    Require(joined == text);
    clsNarrowLine narrow;
    Require(narrow.Set(text, "\r\n") && narrow.View() == Narrow(text) + "\r\n");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsChoices input(data, size);
    clsDiagnosticLine line;
    std::u16string model;
    for (unsigned steps = input.Below(16); steps > 0; --steps)
        Put(input, line, model);
    CheckStamp(input, Cut(model));
    CheckPieces(1 + input.Below(2000), Cut(model));
    return 0;
}
