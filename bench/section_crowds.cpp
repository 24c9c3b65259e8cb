// Threads that meet at the same lock or file. What else is measured has one processor to itself, where
// threads only take turns; so this section is a run of its own, on all of them.
#include "sections.h"

namespace bench {

void MeasureCrowds(const scSettings& settings, clsReport& report) {
    report.Section("Crowds: threads on all processors");
    MeasureCrowdOfLines(settings, report);
    MeasureCrowdAtHeap(settings, report);
    report.Remark("A line or an object, by the time that all threads together took.");
}

} // namespace bench
