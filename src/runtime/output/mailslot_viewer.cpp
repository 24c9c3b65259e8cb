// The viewer's window is published in shared memory, which any process may write: it is read under a guard,
// and a window counts only while the system knows it. A window that has changed means another viewer, and
// the mailslot is opened anew. A mailslot that does not take a message is full or gone; it is opened again
// to find out which, and a full one is left alone for a moment, so that a viewer that hangs costs lines and
// not time.
#include "runtime/output/mailslot_viewer.h"

#include "platform/delay_load.h"
#include "platform/system_error.h"
#include "runtime/output/debugger.h"
#include "runtime/output/line_pieces.h"
#include "runtime/output/narrow_line.h"

#include <tvut22/viewer.h>

namespace tvut {

namespace {

constexpr DWORD pauseAfterFailure = 100; // milliseconds; a reader that does not read is not pressed

struct scGlobalData {
    UINT32 window;
};

HWND WindowOf(UINT32 handle) noexcept {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(handle));
}

clsMapping OpenGlobalData() noexcept {
    clsMapping mapping = clsMapping::OpenOrCreate(LOGPAN_GLOBAL_DATA, sizeof(scGlobalData));
    if (!mapping.HasObject())
        UtilpWriteToDebugger(clsDiagnosticLine()
                                 .Put(u"LOGPAN global info struct cannot be created: ")
                                 .Put(clsSystemErrorText(GetLastError()).View())
                                 .Put(u"\n"));
    else if (!mapping.HasView())
        UtilpWriteToDebugger(u"_pLOGPANInfo FAIL\n");
    return mapping;
}

} // namespace

// A viewer that was not there, or was another, when the mapping was made is looked up by its class; not while
// modules of a process without windows are loaded, for it can be looked up later.
HWND clsMailslotViewer::Published() noexcept {
    maySeeWindows_ = maySeeWindows_ || PlatformMayBind(L"user32.dll");
    if (!maySeeWindows_)
        return nullptr;
    if (const HWND window = PublishedAsItIs(); window && IsWindow(window))
        return window;
    const HWND found = FindWindowW(LOGPAN_WINDOW_CLASS, nullptr);
    global_.Write(scGlobalData{static_cast<UINT32>(reinterpret_cast<UINT_PTR>(found))});
    return found;
}

HWND clsMailslotViewer::PublishedAsItIs() const noexcept {
    scGlobalData published{};
    return global_.Read(published) ? WindowOf(published.window) : nullptr;
}

void clsMailslotViewer::Attach() noexcept {
    if (!global_.HasView())
        global_ = OpenGlobalData();
    if (!global_.HasView())
        return;
    window_ = Published();
    // Without a window there may be a reader all the same; its absence is no news then.
    if (!mailslot_.Open(LOGPAN_MAILSLOT) && (window_ || UtilpIsDeveloper()))
        UtilpWriteToDebugger(u"DebugPipe FAIL");
}

// Under the writer's lock, where nothing may be loaded.
void clsMailslotViewer::FollowWindow() noexcept {
    if (!maySeeWindows_)
        return;
    const HWND published = PublishedAsItIs();
    if (published == window_ && (!window_ || IsWindow(window_)))
        return;
    window_ = Published();
    UtilpWriteToDebugger(clsDiagnosticLine()
                             .Put(u"trying to reattach to LOGPAN")
                             .Put(static_cast<std::int32_t>(reinterpret_cast<INT_PTR>(window_))));
    mailslot_.Close();
    if (window_ && !mailslot_.Open(LOGPAN_MAILSLOT))
        UtilpWriteToDebugger(u"DebugPipe FAIL");
}

void clsMailslotViewer::Take(const scOutputLine& line) noexcept {
    if (IsOpen())
        Write(line.stamped);
}

void clsMailslotViewer::Write(std::u16string_view line) noexcept {
    FollowWindow();
    while (!line.empty() && mailslot_.IsOpen()) {
        if (const std::u16string_view message = UtilpTakeMessage(line); !message.empty())
            WriteMessage(message);
    }
}

void clsMailslotViewer::WriteMessage(std::u16string_view message) noexcept {
    if (failing_ && GetTickCount() - failedAt_ < pauseAfterFailure)
        return;
    clsNarrowLine narrow;
    if (!narrow.Set(message, {})) {
        UtilpWriteToDebugger(u"ERR converting LOGPAN output");
        return;
    }
    const bool written = mailslot_.Write(narrow.View());
    if (!written)
        NoteFailure();
    failing_ = !written;
}

// A slot that cannot be opened again is gone; one that can is full.
void clsMailslotViewer::NoteFailure() noexcept {
    if (!failing_)
        UtilpWriteToDebugger(u"LOGPAN: cannot write data!");
    failedAt_ = GetTickCount();
    mailslot_.Open(LOGPAN_MAILSLOT);
}

} // namespace tvut
