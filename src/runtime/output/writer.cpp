// A line passes four stations. The gate turns it away while it is known that nobody listens. A look for
// viewers is made if one is due, without the lock. Under the lock the sinks are asked, because a viewer may
// change its mind between two lines. Then the line is stamped and handed out. Threads of one process thus
// agree on the order of lines, and a thread within the loader never waits here for one that waits for the
// loader: what may need the loader is done before the lock is taken or after it is released, and not at all
// by a thread that has the global lock.
#include "runtime/output/writer.h"

#include "runtime/global_lock.h"
#include "runtime/output/settings.h"

namespace tvut {

namespace {

std::uint32_t Milliseconds() noexcept {
    return GetTickCount();
}

// What a line says of its thread, which needs no lock.
scOutputLine OwnLine(std::u16string_view tag, std::u16string_view text) noexcept {
    scOutputLine line;
    line.tag = tag;
    line.text = text;
    line.stamp.thread = GetCurrentThreadId();
    line.stamp.processor = GetCurrentProcessorNumber();
    return line;
}

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

clsDiagnosticWriter::clsDiagnosticWriter() noexcept : gate_(Milliseconds) {}

// ---- Is anybody listening? -------------------------------------------------------------------------

bool clsDiagnosticWriter::IsOn() noexcept {
    if (gate_.IsShut())
        return false;
    const clsLastErrorKept lastError;
    LookIfDue();
    return Locked([&] { return HasAudience(); });
}

bool clsDiagnosticWriter::LookAheadNow() noexcept {
    if (!gate_.IsSettled() && !IsOn())
        return false;
    OpenMissingSocket();
    return true;
}

bool clsDiagnosticWriter::HasAudience() noexcept {
    if (!Begin())
        return false;
    if (!logFile_.IsOpen() && !gate_.EverLooked())
        AwaitLook();
    const bool any = front_.HasListener();
    NoteSinks(); // a viewer whose memory has gone away is none from now on
    gate_.NoteAudience(any);
    return any;
}

void clsDiagnosticWriter::NoteSinks() noexcept {
    gate_.NoteSinks(viewer_.IsThere(), logFile_.IsOpen());
}

bool clsDiagnosticWriter::Begin() noexcept {
    if (!begun_)
        begun_ = ReadSettings();
    return shared_.IsOpen();
}

// False without memory for the settings: the next line asks for them again.
bool clsDiagnosticWriter::ReadSettings() noexcept {
    try {
        const scOutputSettings settings = UtilpReadOutputSettings();
        if (!shared_.Open())
            return true;
        clock_.Start(settings.counterTime);
        for (const std::wstring& name : settings.logFiles)
            if (!name.empty() && !logFile_.IsOpen())
                logFile_.Open(name.c_str(), settings.flushLogFile);
    } catch (...) {
        return false;
    }
    return true;
}

// ---- Looking for a viewer --------------------------------------------------------------------------

// Whether this thread holds no lock that a thread within the loader may wait for.
bool clsDiagnosticWriter::MayWait() const noexcept {
    return !section_.IsMine() && !UtilpGlobalLock().IsMine();
}

void clsDiagnosticWriter::LookIfDue() noexcept {
    if (!gate_.IsSettled() && gate_.LookIsDue() && MayWait() && ClaimLook(When::due))
        LookForViewer();
}

// One thread looks at a time; this one, when true.
bool clsDiagnosticWriter::ClaimLook(When when) noexcept {
    const Lock lock(section_);
    if (!Begin() || turn_.IsTaken() || (when == When::due && (logFile_.IsOpen() || !gate_.LookIsDue())))
        return false;
    turn_.Take();
    gate_.NoteLookBegins();
    return true;
}

// Another copy of the library may have closed the socket, and it is closed when the last module goes; whoever
// writes all the same opens it again.
void clsDiagnosticWriter::OpenMissingSocket() noexcept {
    if (!gate_.HasViewer() || viewer_.HasSocket() || !MayWait())
        return;
    const clsLastErrorKept lastError;
    if (Locked([&] { return viewer_.Wants(); }))
        viewer_.ReopenSocket();
}

void clsDiagnosticWriter::LookForViewer() noexcept {
    const bool mailslotOpen = Locked([&] { return mailslot_.IsOpen(); });
    clsViewerInfo info = clsViewerInfo::Find();
    clsMailslotViewer mailslot;
    if (info)
        viewer_.OpenSocket();
    else if (!mailslotOpen)
        mailslot.Attach();

    const Lock lock(section_); // what the found ones replace goes after it
    viewer_.Swap(info);
    if (viewer_.IsThere() || !mailslotOpen)
        std::swap(mailslot_, mailslot);
    NoteSinks();
    gate_.NoteLookEnds();
    turn_.End();
}

// Threads that write while the first look is under way wait for it, or their first lines would be lost.
void clsDiagnosticWriter::AwaitLook() noexcept {
    if (!turn_.Await(section_))
        gate_.NoteLookEnds(); // once is enough: no line after this one waits
}

// ---- Writing a line --------------------------------------------------------------------------------

void clsDiagnosticWriter::Write(std::u16string_view tag, scLevelChange change,
                                std::u16string_view text) noexcept {
    if (gate_.IsShut())
        return;
    const clsLastErrorKept lastError;
    LookIfDue();
    OpenMissingSocket();
    scOutputLine line = OwnLine(tag, text);
    std::unique_lock lock(section_);
    WriteLocked(lock, line, change);
}

// The lock is left before the line is written to the log file, so that others can have theirs written with
// it.
void clsDiagnosticWriter::WriteLocked(std::unique_lock<clsCriticalSection>& lock, scOutputLine& line,
                                      scLevelChange change) noexcept {
    if (front_.IsWriting() || logFile_.IsWritingMine())
        return;
    while (!logFile_.HasRoom()) {
        const std::uint32_t last = logFile_.LastTaken();
        lock.unlock();
        logFile_.Commit(last);
        lock.lock();
    }
    if (!HasAudience())
        return;
    HandOut(line, change);
    const std::uint32_t last = logFile_.LastTaken();
    lock.unlock();
    logFile_.Commit(last);
}

void clsDiagnosticWriter::HandOut(scOutputLine& line, scLevelChange change) noexcept {
    clock_.Stamp(line);
    front_.Write(shared_.Words(), line, change);
}

void clsDiagnosticWriter::WriteIfFree(std::u16string_view text) noexcept {
    std::unique_lock lock(section_, std::try_to_lock);
    if (!lock || !gate_.IsSettled() || gate_.IsShut() || logFile_.IsWriting())
        return;
    const clsLastErrorKept lastError;
    scOutputLine line = OwnLine({}, text);
    WriteLocked(lock, line, {0});
}

// ---- Coming and going ------------------------------------------------------------------------------

bool clsDiagnosticWriter::Attach() noexcept {
    if (MayWait() && ClaimLook(When::now))
        LookForViewer();
    const Lock lock(section_);
    if (!Begin())
        return false;
    AwaitLook(); // another thread's
    gate_.Open();
    return viewer_.IsThere() || mailslot_.Wants();
}

// The socket stays while there are modules: it may be another copy's way to the viewer.
void clsDiagnosticWriter::Detach() noexcept {
    clsViewerInfo info;
    clsMailslotViewer mailslot;
    clsTakenSocket unneeded; // these three are closed last, when the lock is free again
    const Lock lock(section_);
    viewer_.Swap(info);
    std::swap(mailslot_, mailslot);
    NoteSinks();
    gate_.NoteLookBegins();
    gate_.NoteLookEnds();
    if (shared_.IsOpen() && shared_.Modules() <= 0)
        unneeded = viewer_.GiveUpSocket();
}

void clsDiagnosticWriter::ModuleComes() noexcept {
    if (!Locked([&] { return Begin(); }))
        return;
    shared_.CountModule();
    if (Locked([&] { return viewer_.IsThere(); }))
        viewer_.OpenSocket();
}

void clsDiagnosticWriter::ModuleGoes(void (*lastGoes)() noexcept) noexcept {
    if (!Locked([&] { return Begin(); }) || !shared_.DiscountModule())
        return;
    lastGoes();
    clsTakenSocket unneeded; // is closed last, when the lock is free again
    const Lock lock(section_);
    unneeded = viewer_.GiveUpSocket();
}

// Asks for no lock: a thread that holds it may be dead, or its code about to vanish.
void clsDiagnosticWriter::End(bool processEnds) noexcept {
    gate_.End();
    if (processEnds)
        return;
    const std::unique_lock lock(section_, std::try_to_lock);
    if (!lock)
        return;
    mailslot_ = {};
    logFile_.Close();
    viewer_.Leave();
}

} // namespace tvut
