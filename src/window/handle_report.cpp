#include "window/handle_report.h"

#include "runtime/diagnostic_group.h"
#include "runtime/frame_report.h"
#include "window/handle_kinds.h"

namespace tvut {

namespace {

const void* Shown(std::uint32_t handle) {
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(handle));
}

std::int32_t Number(std::size_t count) {
    return static_cast<std::int32_t>(count);
}

// "bitmap 0X0005005E 'page cache'"
clsDiagnosticLine& PutHandle(clsDiagnosticLine& line, const clsHandleNote& note) {
    line.Put(UtilpHandleTypeName(note.Handle(), note.Kind())).Put(u" ").PutPointer(Shown(note.Handle()));
    return note.Label().empty() ? line : line.Put(u" '").Put(note.Label()).Put(u"'");
}

clsDiagnosticLine& PutAge(clsDiagnosticLine& line, std::u16string_view since, const clsHandleNote& note,
                          std::uint32_t now) {
    return line.Put(since).PutDecimal(now - note.AddedAt(), 1).Put(u" ms ago");
}

clsDiagnosticLine AddedLine(const clsHandleNote& note, std::uint32_t now) {
    clsDiagnosticLine line;
    return PutAge(PutHandle(line, note), u" added ", note, now);
}

clsDiagnosticLine GroupLine(const scHandleGroup& group, std::uint32_t now) {
    clsDiagnosticLine line;
    line.Put(Number(group.handles)).Put(u" x ");
    return PutAge(PutHandle(line, group.first.note), u" first ", group.first.note, now);
}

// "12 handles are", "1 handle is"
clsDiagnosticLine& PutCount(clsDiagnosticLine& line, std::size_t count) {
    return line.Put(Number(count)).Put(count == 1 ? u" handle is" : u" handles are");
}

void ReportObjectsOfProcess(const clsDiagnosticGroup& report) {
    if (const scObjectCounts objects = UtilpObjectsOfProcess(); objects.gdi != 0 || objects.user != 0)
        report.Line(clsDiagnosticLine()
                        .Put(u"GDI objects ")
                        .PutDecimal(objects.gdi, 1)
                        .Put(u", user objects ")
                        .PutDecimal(objects.user, 1)
                        .Put(u" of this process"));
}

} // namespace

void UtilpReportHandlesLeft(const scHandlesLeft& left, std::uint32_t mark, std::uint32_t now) noexcept {
    if (left.handles == 0)
        return;
    clsDiagnosticLine head;
    PutCount(head.Put(u"Warning: "), left.handles).Put(u" left");
    if (mark != 0)
        head.Put(u" since mark ").PutDecimal(mark, 1);
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(), head);
    for (const scHandleGroup& group : left.groups) {
        report.Line(GroupLine(group, now));
        UtilpReportFrames(group.first.stack.Frames());
    }
    if (left.stacks > left.groups.size())
        report.Line(
            clsDiagnosticLine().Put(u"... and ").Put(Number(left.stacks - left.groups.size())).Put(u" more"));
    ReportObjectsOfProcess(report);
}

void UtilpReportDeadHandles(std::span<const scKeptHandle> dead, std::uint32_t now) noexcept {
    if (dead.empty())
        return;
    clsDiagnosticLine head;
    PutCount(head.Put(u"Warning: "), dead.size()).Put(u" in the list and not alive");
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(), head);
    for (std::size_t i = 0; i < dead.size(); ++i) {
        report.Line(AddedLine(dead[i].note, now));
        if (i + 1 == dead.size() || dead[i + 1].stack != dead[i].stack)
            UtilpReportFrames(dead[i].stack.Frames());
    }
}

void UtilpReportReplacedHandle(const scKeptHandle& old, std::uint32_t now) noexcept {
    const clsDiagnosticGroup report(UtilpDiagnosticsOn(),
                                    clsDiagnosticLine()
                                        .Put(u"Warning: UtilHandleListMgr: ")
                                        .PutPointer(Shown(old.note.Handle()))
                                        .Put(u" was freed without being removed from the list"));
    report.Line(AddedLine(old.note, now));
    UtilpReportFrames(old.stack.Frames());
}

void UtilpReportRefusedRemoval(std::uint32_t handle, std::u16string_view what,
                               const clsHandleStack& stack) noexcept {
    const clsDiagnosticGroup report(
        UtilpDiagnosticsOn(),
        clsDiagnosticLine().Put(u"Error: UtilHandleListMgr: ").PutPointer(Shown(handle)).Put(what));
    UtilpReportFrames(stack.Frames());
}

void UtilpReportFullList() noexcept {
    UtilpReport(clsDiagnosticLine()
                    .Put(u"Warning: UtilHandleListMgr: ")
                    .Put(Number(clsHandleList::most))
                    .Put(u" handles are in the list, no more are noted"));
}

} // namespace tvut
