// The audience is asked once a line, and the answer on the viewer is kept until the line is out: a line
// goes to the viewer or to the others, never to both and never to nobody because the viewer changed its
// mind in between. The level and the number of lines lie in memory that all copies of the library share, so
// they are changed atomically, although one lock is held: other copies have locks of their own.
#include "runtime/output/line_front.h"

#include <algorithm>
#include <atomic>

namespace tvut {

namespace {

void Offer(IclsLineSink& sink, const scOutputLine& line) noexcept {
    if (sink.Wants())
        sink.Take(line);
}

} // namespace

bool clsLineFront::HasListener() noexcept {
    viewerWants_ = sinks_.viewer.Wants();
    return viewerWants_ || std::any_of(sinks_.listeners.begin(), sinks_.listeners.end(),
                                       [](IclsLineSink* sink) { return sink->Wants(); });
}

// A line that leads deeper stands on the level above, one that leads out on the level that it returns to.
void clsLineFront::Write(scAppLocalData& shared, scOutputLine& line, scLevelChange change) noexcept {
    std::atomic_ref level(shared.level), lines(shared.lines);
    writing_ = true;
    line.stamp.level = UtilpShownLevel(change.sign < 0 ? --level : level.load());
    line.stamp.lineNumber = static_cast<std::uint32_t>(++lines);
    HandOut(line);
    if (change.sign > 0)
        ++level;
    writing_ = false;
}

void clsLineFront::HandOut(scOutputLine& line) noexcept {
    if (viewerWants_) {
        sinks_.viewer.Take(line);
        return;
    }
    clsDiagnosticLine stamped;
    UtilpPutStamp(stamped, line.tag, line.stamp);
    line.stamped = stamped.Put(line.text).View();
    for (IclsLineSink* const sink : sinks_.listeners)
        Offer(*sink, line);
    Offer(sinks_.reader, line);
}

} // namespace tvut
