// Time stands first: a list view aligns its first column to the left only.
#include "list_columns.h"

#include "columns.h"
#include "elapsed.h"
#include "printable.h"

namespace tool::logpan {

namespace {

template <std::wstring (*Text)(const scLine&)>
std::wstring Of(const clsShownLines& lines, std::size_t row) {
    return Text(*lines[row]);
}

std::wstring SinceText(const clsShownLines& lines, std::size_t row) {
    return row == 0 ? std::wstring{} : ElapsedText(*lines[row - 1], *lines[row]);
}

std::wstring ModuleText(const scLine& line) {
    return Printable(line.module);
}
std::wstring DeepText(const scLine& line) {
    return IndentedText(line, 2); // easier to see
}

constexpr scListColumn columns[] = {
    {L"Time", 13, true, Of<TimeText>},       {L"Elapsed", 9, true, SinceText},
    {L"Process", 18, true, Of<ProcessText>}, {L"Module", 11, true, Of<ModuleText>},
    {L"Thread", 9, true, Of<ThreadText>},    {L"CPU", 4, false, Of<ProcessorText>},
    {L"Seq", 4, false, Of<SequenceText>},    {L"Text", 0, true, Of<DeepText>},
};

} // namespace

std::span<const scListColumn> ListColumns() {
    return columns;
}

} // namespace tool::logpan
