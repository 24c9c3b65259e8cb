#include "runtime/line_stamp.h"

#include <algorithm>

namespace tvut {

namespace {

void PutTime(clsDiagnosticLine& line, const scLineStamp& stamp) noexcept {
    if (!stamp.sinceStart)
        line.PutDecimal(stamp.hour, 2).Put(u":");
    line.PutDecimal(stamp.minute, 2).Put(u":").PutDecimal(stamp.second, 2);
    line.Put(u".").PutDecimal(stamp.millisecond, 3);
}

} // namespace

std::size_t UtilpShownLevel(std::int32_t level) noexcept {
    return static_cast<std::size_t>(std::clamp<std::int32_t>(level, 0, deepestShownLevel));
}

void UtilpPutStamp(clsDiagnosticLine& line, std::u16string_view tag, const scLineStamp& stamp) noexcept {
    if (!tag.empty())
        line.PutPadded(tag, 8).Put(u": ");
    PutTime(line, stamp);
    const char16_t sequence[] = {u' ', UtilpSequenceCharacter(stamp.lineNumber), u' '};
    line.Put(u" ").PutHex(stamp.thread, 8).Put(u"/").PutHex(stamp.processor, 2);
    line.Put({sequence, std::size(sequence)});
    line.PutBlanks(stamp.level + 1); // the one more stands in for a thread's name
}

} // namespace tvut
