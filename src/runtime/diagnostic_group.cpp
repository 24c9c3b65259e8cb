// The indentation is that of the open groups at the moment a line is written, whichever function opened them;
// a group that is not wanted opens none, so that what is below it stands where it would without it.
#include "runtime/diagnostic_group.h"

#include "platform/host.h"

namespace tvut {

namespace {

std::size_t depth = 0; // of open groups; guarded by the global lock

} // namespace

clsDiagnosticGroup::clsDiagnosticGroup(bool wanted, const clsDiagnosticLine& head) noexcept
    : wanted_(wanted) {
    if (!wanted_)
        return;
    UtilpReport(head);
    ++depth;
}

clsDiagnosticGroup::~clsDiagnosticGroup() {
    if (wanted_)
        --depth;
}

void clsDiagnosticGroup::Line(const clsDiagnosticLine& line) const noexcept {
    if (wanted_)
        UtilpReport(line);
}

void UtilpReportCall(const clsDiagnosticLine& call, const clsDiagnosticLine& what) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(), call);
    report.Line(what);
}

void UtilpReport(const clsDiagnosticLine& line) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    clsDiagnosticLine()
        .PutPadded(PlatformHostTag(), 8)
        .Put(u":")
        .PutBlanks(depth)
        .Put(line.View())
        .Put(u"\n")
        .Write();
}

} // namespace tvut
