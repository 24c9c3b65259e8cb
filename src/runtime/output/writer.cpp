#include "runtime/output/writer.h"

#include "runtime/global_lock.h"
#include "runtime/output/debugger.h"
#include "runtime/output/narrow_line.h"
#include "runtime/output/settings.h"

namespace tvut {

namespace {

constexpr DWORD retryInterval = 1000; // milliseconds between looks for a viewer

// Threads that write while the first look is under way wait for it, or their first lines would be
// lost; but not for ever, because one of them may keep the loader from the thread that looks.
constexpr DWORD longestFirstLook = 2000; // milliseconds

clsDiagnosticWriter writer;

} // namespace

clsDiagnosticWriter& UtilpDiagnosticWriter() noexcept {
    return writer;
}

bool UtilpDiagnosticsOn() noexcept {
    return writer.IsOn();
}

void UtilpWriteDiagnosticLine(std::u16string_view text) noexcept {
    writer.Write({}, {0}, text);
}

// ---- Is anybody listening? -------------------------------------------------------------------------

bool clsDiagnosticWriter::NobodyListened() const noexcept {
    return ended_.load(std::memory_order_relaxed) ||
           (quiet_.load(std::memory_order_acquire) &&
            GetTickCount() - lastLook_.load(std::memory_order_relaxed) < retryInterval);
}

bool clsDiagnosticWriter::IsOn() noexcept {
    if (NobodyListened())
        return false;
    const clsLastErrorKept lastError;
    LookIfDue();
    const Lock lock(section_);
    return Audience().any;
}

bool clsDiagnosticWriter::LookAhead() noexcept {
    if (NobodyListened())
        return false;
    if (!settled_.load(std::memory_order_relaxed) && !IsOn())
        return false;
    OpenMissingSocket();
    return true;
}

clsDiagnosticWriter::scAudience clsDiagnosticWriter::Audience() noexcept {
    if (!Begin())
        return {};
    if (!logFile_.IsOpen() && !everLooked_)
        AwaitLook();
    const scViewerWish wish = viewers_.info.Wish();
    NoteViewer();
    const bool viewing = static_cast<bool>(viewers_.info);
    const bool there = logFile_.IsOpen() || (viewing ? wish.lines : viewers_.mailslot.IsThere());
    // A viewer that is there but wants nothing may change its mind at any moment: no rest for that.
    quiet_.store(!there && !viewing, std::memory_order_release);
    return {there, wish};
}

void clsDiagnosticWriter::NoteViewer() noexcept {
    const bool viewing = static_cast<bool>(viewers_.info);
    viewing_.store(viewing, std::memory_order_relaxed);
    settled_.store(viewing || logFile_.IsOpen(), std::memory_order_relaxed);
}

bool clsDiagnosticWriter::Begin() noexcept {
    if (begun_)
        return shared_.IsOpen();
    try {
        const scOutputSettings settings = UtilpReadOutputSettings();
        begun_ = true;
        if (!shared_.Open())
            return false;
        clock_.Start(settings.counterTime);
        for (const std::wstring& name : settings.logFiles)
            if (!name.empty() && !logFile_.IsOpen())
                logFile_.Open(name.c_str(), settings.flushLogFile);
    } catch (...) { // no memory for the settings: the next line asks for them again
    }
    return shared_.IsOpen();
}

// ---- Looking for a viewer --------------------------------------------------------------------------

// Whether this thread holds no lock that a thread within the loader may wait for.
bool clsDiagnosticWriter::MayWait() const noexcept {
    return !section_.IsMine() && !UtilpGlobalLock().IsMine();
}

bool clsDiagnosticWriter::LookIsDue() const noexcept {
    return !everLooked_ || GetTickCount() - lastLook_ >= retryInterval;
}

void clsDiagnosticWriter::LookIfDue() noexcept {
    if (!settled_.load(std::memory_order_relaxed) && LookIsDue() && MayWait() && ClaimLook(When::due))
        LookForViewer();
}

// One thread looks at a time; this one, when true.
bool clsDiagnosticWriter::ClaimLook(When when) noexcept {
    const Lock lock(section_);
    if (!Begin() || looker_ != 0 || (when == When::due && (logFile_.IsOpen() || !LookIsDue())))
        return false;
    looker_ = GetCurrentThreadId();
    lastLook_ = GetTickCount();
    return true;
}

bool clsDiagnosticWriter::ViewerWantsLines() noexcept {
    const Lock lock(section_);
    return viewers_.info.Wish().lines;
}

// Another copy of the library may have closed the socket, and it is closed when the last module goes; whoever
// writes all the same opens it again.
void clsDiagnosticWriter::OpenMissingSocket() noexcept {
    if (!viewing_.load(std::memory_order_relaxed) || socket_.IsOpen() || !MayWait())
        return;
    const clsLastErrorKept lastError;
    if (ViewerWantsLines())
        socket_.Reopen();
}

bool clsDiagnosticWriter::HasOpenMailslot() noexcept {
    const Lock lock(section_);
    return viewers_.mailslot.IsOpen();
}

void clsDiagnosticWriter::LookForViewer() noexcept {
    const bool mailslotOpen = HasOpenMailslot();
    scViewers found;
    found.info = clsViewerInfo::Find();
    if (found.info)
        socket_.Open();
    else if (!mailslotOpen)
        found.mailslot.Attach();

    const Lock lock(section_); // what the found ones replace goes after it
    std::swap(viewers_.info, found.info);
    if (viewers_.info || !mailslotOpen)
        std::swap(viewers_.mailslot, found.mailslot);
    NoteViewer();
    looker_ = 0;
    everLooked_ = true;
    WakeAllConditionVariable(&looked_);
}

// Leaves the section while it waits.
void clsDiagnosticWriter::AwaitLook() noexcept {
    const DWORD start = GetTickCount();
    DWORD waited = 0;
    for (; looker_ != 0 && looker_ != GetCurrentThreadId() && waited < longestFirstLook;
         waited = GetTickCount() - start)
        section_.Sleep(looked_, longestFirstLook - waited);
    if (waited >= longestFirstLook)
        everLooked_ = true; // once is enough: no line after this one waits
}

// ---- Writing a line --------------------------------------------------------------------------------

void clsDiagnosticWriter::Write(std::u16string_view tag, scLevelChange change,
                                std::u16string_view text) noexcept {
    if (NobodyListened())
        return;
    const clsLastErrorKept lastError;
    LookIfDue();
    OpenMissingSocket();
    const Lock lock(section_);
    const scAudience audience = writing_ ? scAudience() : Audience();
    if (!audience.any)
        return;
    writing_ = true;
    scLineStamp stamp;
    const SYSTEMTIME time = clock_.Stamp(stamp);
    stamp.thread = GetCurrentThreadId();
    stamp.processor = GetCurrentProcessorNumber();
    stamp.level = UtilpShownLevel(change.sign < 0 ? shared_.LowerLevel() : shared_.Level());
    stamp.lineNumber = shared_.CountLine();
    Deliver(audience.viewer, tag, stamp, time, text);
    if (change.sign > 0)
        shared_.RaiseLevel();
    writing_ = false;
}

void clsDiagnosticWriter::WriteIfFree(std::u16string_view text) noexcept {
    const std::unique_lock lock(section_, std::try_to_lock);
    if (lock && settled_)
        Write({}, {0}, text);
}

void clsDiagnosticWriter::Deliver(const scViewerWish& viewer, std::u16string_view tag,
                                  const scLineStamp& stamp, const SYSTEMTIME& time,
                                  std::u16string_view text) noexcept {
    if (viewer.lines) {
        sender_.Send(viewer.address, time, tag, stamp, text);
        return;
    }
    clsDiagnosticLine line;
    UtilpPutStamp(line, tag, stamp);
    DeliverText(line.Put(text).View());
}

void clsDiagnosticWriter::DeliverText(std::u16string_view line) noexcept {
    if (viewers_.mailslot.IsOpen())
        viewers_.mailslot.Write(line);
    if (logFile_.IsOpen())
        WriteToLogFile(line);
    if (UtilpDebuggerListens())
        UtilpWriteToDebugger(line);
}

void clsDiagnosticWriter::WriteToLogFile(std::u16string_view line) noexcept {
    clsNarrowLine narrow;
    if (narrow.Set(line, "\r\n"))
        logFile_.Write(narrow.View());
    else
        UtilpWriteToDebugger(u"ERR converting LOGPAN output");
}

// ---- Coming and going ------------------------------------------------------------------------------

bool clsDiagnosticWriter::Attach() noexcept {
    if (MayWait() && ClaimLook(When::now))
        LookForViewer();
    const Lock lock(section_);
    if (!Begin())
        return false;
    AwaitLook(); // another thread's
    quiet_ = false;
    return viewers_.info || viewers_.mailslot.IsThere();
}

// The socket stays while there are modules: it may be another copy's way to the viewer.
void clsDiagnosticWriter::Detach() noexcept {
    scViewers left;
    clsTakenSocket unneeded; // these two are closed last, when the lock is free again
    const Lock lock(section_);
    std::swap(viewers_, left);
    NoteViewer();
    lastLook_ = GetTickCount();
    everLooked_ = true;
    if (shared_.IsOpen() && shared_.Modules() <= 0)
        unneeded = socket_.Take();
}

bool clsDiagnosticWriter::HasBegun() noexcept {
    const Lock lock(section_);
    return Begin();
}

bool clsDiagnosticWriter::HasViewer() noexcept {
    const Lock lock(section_);
    return static_cast<bool>(viewers_.info);
}

void clsDiagnosticWriter::ModuleComes() noexcept {
    if (!HasBegun())
        return;
    shared_.CountModule();
    if (HasViewer())
        socket_.Open();
}

void clsDiagnosticWriter::ModuleGoes() noexcept {
    if (!HasBegun() || !shared_.DiscountModule())
        return;
    clsTakenSocket unneeded; // is closed last, when the lock is free again
    const Lock lock(section_);
    unneeded = socket_.Take();
}

// Asks for no lock: a thread that holds it may be dead, or its code about to vanish.
void clsDiagnosticWriter::End(bool processEnds) noexcept {
    ended_ = true;
    if (processEnds)
        return;
    const std::unique_lock lock(section_, std::try_to_lock);
    if (!lock)
        return;
    viewers_ = {};
    logFile_.Close();
    socket_.Leave();
}

} // namespace tvut
