// Diagnostic lines against a model: what the C runtime prints for the same format, cut at its end; and the
// pieces in which a line leaves.
//
// The input is a program: each byte chooses what is added to a line, and the bytes after it say what.
#include "require.h"

#include "runtime/diagnostic_group.h"
#include "runtime/line_stamp.h"
#include "runtime/output/line_pieces.h"
#include "runtime/output/narrow_line.h"
#include "unit/native_platform.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace tvut;

namespace {

class clsInput {
  public:
    clsInput(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}
    bool AtEnd() const { return next_ == end_; }
    std::uint8_t Byte() { return AtEnd() ? std::uint8_t{0} : *next_++; }
    std::uint32_t Number() {
        std::uint32_t number = 0;
        for (int shift = 0; shift < 32; shift += 8)
            number |= static_cast<std::uint32_t>(Byte()) << shift;
        return number;
    }
    // Up to 1,020 characters, so that the end of a line is met from all sides; with line ends among them.
    std::u16string Text() {
        std::u16string text(Byte() * std::size_t{4}, u'x');
        for (char16_t& c : text)
            c = AtEnd() ? u'x' : static_cast<char16_t>(*next_++);
        return text;
    }

  private:
    const std::uint8_t *next_, *end_;
};

// Characters are those of Latin-1 here, which the runtime's narrow functions pass on.
std::string Narrow(std::u16string_view text) {
    return {text.begin(), text.end()};
}

std::u16string Wide(std::string_view text) {
    std::u16string wide;
    for (const char c : text)
        wide += static_cast<unsigned char>(c);
    return wide;
}

__attribute__((format(printf, 1, 2))) std::string Printed(const char* format, ...) {
    char text[4096];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return {text, static_cast<std::size_t>(length)};
}

std::u16string Cut(std::u16string text) {
    return text.substr(0, clsDiagnosticLine::longest);
}

// Builds the same line twice; what is put may hold zeros, which no format passes on.
std::u16string CheckLine(clsInput& input) {
    clsDiagnosticLine line;
    std::u16string model;
    for (int steps = input.Byte() % 16; steps > 0; --steps) {
        const std::uint32_t number = input.Number() >> input.Byte() % 32;
        const std::size_t digits = input.Byte() % 20u;
        const int shownDigits =
            static_cast<int>(std::clamp<std::size_t>(digits, 1, 16)); // at most so many are
        switch (input.Byte() % 7) {
        case 0: {
            const std::u16string text = input.Text();
            line.Put(text);
            model += text;
            break;
        }
        case 1:
            line.Put(static_cast<std::int32_t>(number));
            model += Wide(Printed("%d", static_cast<std::int32_t>(number)));
            break;
        case 2:
            line.PutBlanks(number);
            model.append(std::min<std::size_t>(number, clsDiagnosticLine::longest), u' ');
            break;
        case 3: {
            const std::u16string text = input.Text();
            line.PutPadded(text, digits);
            model += text;
            model.append(digits - std::min(text.size(), digits), u' ');
            break;
        }
        case 4:
            line.PutDecimal(number, digits);
            model += Wide(Printed("%0*u", shownDigits, number));
            break;
        case 5:
            line.PutHex(number, digits);
            model += Wide(Printed("%0*x", shownDigits, number));
            break;
        default:
            line.PutPointer(reinterpret_cast<const void*>(static_cast<std::uintptr_t>(number)));
            model += Wide(Printed(number != 0 ? "0X%08X" : "%08X", number));
        }
        Require(line.View() == Cut(model));
    }
    return std::u16string(line.View());
}

void CheckStamp(clsInput& input, const std::u16string& text) {
    scLineStamp stamp;
    stamp.sinceStart = input.Byte() % 2 != 0;
    stamp.hour = input.Byte() % 24, stamp.minute = input.Byte() % 60, stamp.second = input.Byte() % 60;
    stamp.millisecond = input.Number() % 1000;
    stamp.thread = input.Number(), stamp.processor = input.Byte();
    stamp.lineNumber = input.Number();
    const auto level = static_cast<std::int32_t>(input.Number()) >> input.Byte() % 32;
    stamp.level = UtilpShownLevel(level);
    std::u16string tag = input.Text();
    std::erase(tag, u'\0');

    const int blanks = (level < 0 ? 0 : level > 50 ? 50 : level) + 1;
    std::string model = tag.empty() ? "" : Printed("%-8s: ", Narrow(tag).c_str());
    if (!stamp.sinceStart)
        model += Printed("%02u:", stamp.hour);
    model +=
        Printed("%02u:%02u.%03u %08x/%02x %c %s%*s", stamp.minute, stamp.second, stamp.millisecond,
                stamp.thread, stamp.processor, '0' + static_cast<int>(stamp.lineNumber % 10), "", blanks, "");
    clsDiagnosticLine line;
    UtilpPutStamp(line, tag, stamp);
    Require(line.Put(text).View() == Cut(Wide(model) + text));
}

void CheckPieces(clsInput& input, const std::u16string& text) {
    const std::size_t longest = 1 + input.Number() % 2000;
    std::u16string_view left = text;
    std::u16string joined;
    while (!left.empty()) {
        const std::u16string_view piece = UtilpTakePiece(left, longest);
        Require(!piece.empty() && piece.size() <= longest && (left.empty() || piece.size() == longest));
        joined += piece;
    }
    Require(joined == text);

    // The model of messages walks by character.
    std::vector<std::u16string> messages, model(1);
    for (left = text; !left.empty();)
        messages.emplace_back(UtilpTakeMessage(left));
    std::erase(messages, u"");
    for (const char16_t c : text) {
        if (c == u'\r' || c == u'\n' || model.back().size() == 510)
            model.emplace_back();
        if (c != u'\r' && c != u'\n')
            model.back() += c;
    }
    std::erase(model, u"");
    Require(messages == model);

    clsNarrowLine narrow;
    Require(narrow.Set(text, "\r\n") && narrow.View() == Narrow(text) + "\r\n");
}

// Groups open and close in any depth; some are not wanted, and what belongs to them is silent.
void CheckGroups(clsInput& input) {
    struct scOpen {
        std::unique_ptr<clsDiagnosticGroup> group;
        bool wanted;
    };
    std::vector<scOpen> open;
    std::vector<std::u16string> model;
    std::size_t depth = 0;
    DiagnosticLines().clear();
    const auto expect = [&](std::u16string_view text) {
        model.push_back(Cut(Wide(Printed("%-8s:%*s", "host", static_cast<int>(depth), "")) +
                            std::u16string(text) + u"\n"));
    };
    const auto close = [&] {
        depth -= open.back().wanted ? 1 : 0;
        open.pop_back();
    };
    for (int steps = input.Byte() % 64; steps > 0; --steps) {
        const std::uint8_t step = input.Byte();
        clsDiagnosticLine line;
        line.Put(input.Text());
        switch (step % 4) {
        case 0:
            open.push_back({std::make_unique<clsDiagnosticGroup>(step % 8 != 0, line), step % 8 != 0});
            if (open.back().wanted) {
                expect(line.View());
                ++depth;
            }
            break;
        case 1:
            if (!open.empty())
                close();
            break;
        case 2:
            if (open.empty())
                break;
            open.back().group->Line(line);
            if (open.back().wanted)
                expect(line.View());
            break;
        default:
            UtilpReport(line);
            expect(line.View());
        }
    }
    while (!open.empty())
        close();
    Require(DiagnosticLines() == model);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsInput input(data, size);
    const std::u16string text = CheckLine(input);
    CheckStamp(input, text);
    CheckPieces(input, text);
    CheckGroups(input);
    return 0;
}
