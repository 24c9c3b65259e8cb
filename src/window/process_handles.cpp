// Each call does what takes long before the list's lock or after it: the stack is captured first, the list is
// changed or copied under the lock, and lines are written from the copy. So a thread that reports holds up
// none that adds. What the copy shows may have changed meanwhile; where that would be a lie, the list is
// asked again.
#include "window/process_handles.h"

#include "platform/loader.h"
#include "platform/lock.h"
#include "runtime/locked_call.h"
#include "runtime/stack_names.h"
#include "window/handle_kinds.h"
#include "window/handle_report.h"

#include <algorithm>
#include <mutex>
#include <windows.h>

namespace tvut {

namespace {

static_assert(handleKind::last < clsHandleList::kinds);

struct scProcessHandles {
    clsLock lock;
    clsHandleList list;
    bool fullIsTold = false;
    std::uint32_t reportedMark = 0; // after which the report at the end of modules has not been made
};
constinit scProcessHandles handles;

// The list, for the time of an access.
class clsListUse {
  public:
    clsListUse() noexcept : lock_(handles.lock, std::try_to_lock) {
        if (!lock_ && !PlatformProcessEnds())
            lock_.lock();
    }
    explicit operator bool() const noexcept { return lock_.owns_lock(); }
    clsHandleList* operator->() const noexcept { return &handles.list; }

  private:
    std::unique_lock<clsLock> lock_;
};

// The frames from the one that a call returns to; those above it are the library's own.
clsHandleStack StackFrom(const void* returnsTo) noexcept {
    std::array<void*, clsHandleStack::most + 8> frames;
    const auto* const begin = frames.data();
    const auto* const end =
        begin + CaptureStackBackTrace(0, static_cast<DWORD>(frames.size()), frames.data(), nullptr);
    const auto* const first = std::find(begin, end, returnsTo);
    return clsHandleStack({first == end ? begin : first, end});
}

// A report: what has to be loaded for it is loaded before the lock.
template <class Write>
void Report(Write write) noexcept {
    UtilpPrepareStackNames();
    UtilpPrepareHandleNames();
    const clsGlobalLockGuard lock;
    write();
}

} // namespace

UtilResult UtilpAddHandle(std::uint32_t handle, std::uint8_t kind, std::u16string_view label,
                          const void* returnsTo) {
    const DWORD now = GetTickCount();
    const clsHandleNote note(handle, kind, label, now);
    const clsHandleStack stack = StackFrom(returnsTo);
    UtilpWantStackNames();
    scKeptHandle old;
    auto added = clsHandleList::Added::asNew;
    bool tellsFull = false;
    if (const clsListUse list; list) {
        added = list->Add(note, stack, old);
        if (added == clsHandleList::Added::tooMany)
            tellsFull = !std::exchange(handles.fullIsTold, true);
    }
    if (tellsFull)
        Report(UtilpReportFullList);
    if (added == clsHandleList::Added::tooMany)
        return UtilResult::tooLarge;
    if (added == clsHandleList::Added::asNew)
        return UtilResult::ok;
    Report([&] { UtilpReportReplacedHandle(old, now); });
    return UtilResult::exists;
}

UtilResult UtilpRemoveHandle(std::uint32_t handle, std::uint8_t kind, const void* returnsTo) noexcept {
    auto removed = clsHandleList::Removed::yes;
    if (const clsListUse list; list)
        removed = list->Remove(handle, kind);
    if (removed == clsHandleList::Removed::yes)
        return UtilResult::ok;
    UtilpWantStackNames();
    const clsHandleStack stack = StackFrom(returnsTo);
    Report([&] {
        UtilpReportRefusedRemoval(handle,
                                  removed == clsHandleList::Removed::notThere
                                      ? u" is not in the list"
                                      : u" is in the list as a handle of another kind",
                                  stack);
    });
    return UtilResult::notFound;
}

std::uint32_t UtilpCountHandles(std::uint8_t kind) noexcept {
    const clsListUse list;
    return list ? list->Count(kind) : 0;
}

std::uint32_t UtilpCheckHandles(std::uint8_t kind) {
    std::vector<scHandleEntry> entries;
    if (const clsListUse list; list)
        entries = list->Entries(kind);
    std::erase_if(entries,
                  [](const scHandleEntry& entry) { return UtilpHandleIsAlive(entry.handle, entry.kind); });
    if (entries.empty())
        return 0;
    std::vector<scKeptHandle> dead; // what somebody has taken out meanwhile is not
    if (const clsListUse list; list)
        dead = list->StillIn(entries);
    Report([&] { UtilpReportDeadHandles(dead, GetTickCount()); });
    return static_cast<std::uint32_t>(dead.size());
}

std::uint32_t UtilpMarkHandles() noexcept {
    const clsListUse list;
    return list ? list->Mark() : 0;
}

bool UtilpIsHandleMark(std::uint32_t mark) noexcept {
    const clsListUse list;
    return list && mark <= list->Marks();
}

std::uint32_t UtilpReportHandles(std::uint8_t kind, std::uint32_t mark) {
    if (!UtilpDiagnosticsOn()) {
        const clsListUse list;
        return list ? list->CountSince(kind, mark) : 0;
    }
    scHandlesLeft left;
    if (const clsListUse list; list)
        left = list->Left(kind, mark, mostReportedStacks);
    Report([&] { UtilpReportHandlesLeft(left, mark, GetTickCount()); });
    return left.handles;
}

void UtilpReportHandlesAtEnd() noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    scHandlesLeft left;
    try {
        const clsListUse list;
        if (!list || list->Count(clsHandleList::anyKind) == 0)
            return;
        left = list->Left(clsHandleList::anyKind, handles.reportedMark, mostReportedStacks);
        handles.reportedMark = list->Mark();
    } catch (...) { // no memory, no report
        return;
    }
    if (!PlatformProcessEnds()) {
        Report([&] { UtilpReportHandlesLeft(left, 0, GetTickCount()); });
    } else if (const std::unique_lock lock(UtilpGlobalLock(), std::try_to_lock); lock) {
        UtilpReportHandlesLeft(left, 0, GetTickCount());
    }
}

} // namespace tvut
