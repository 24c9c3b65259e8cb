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
    const Lock lock(section_);
    return Listening();
}

bool clsDiagnosticWriter::LookAhead() noexcept {
    if (NobodyListened())
        return false;
    return settled_.load(std::memory_order_relaxed) || IsOn();
}

bool clsDiagnosticWriter::Listening() noexcept {
    if (!Begin())
        return false;
    settled_.store(logFile_.IsOpen() || viewer_, std::memory_order_relaxed);
    if (logFile_.IsOpen())
        return true;
    if (AttachIsDue() && !UtilpGlobalLock().IsMine())
        LookForViewer();
    else if (!everLooked_)
        AwaitFirstLook();
    const bool there = viewer_ ? viewer_.WantsLines() : mailslot_.IsThere();
    // A viewer that is there but wants nothing may change its mind at any moment: no rest for that.
    quiet_.store(!there && !viewer_, std::memory_order_release);
    return there;
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
        if (!settings.logFile.empty())
            logFile_.Open(settings.logFile.c_str(), settings.flushLogFile);
    } catch (...) { // no memory for the settings: the next line asks for them again
    }
    return shared_.IsOpen();
}

bool clsDiagnosticWriter::AttachIsDue() const noexcept {
    return (!viewer_ || !socket_.IsOpen()) && looker_ == 0 &&
           (!everLooked_ || GetTickCount() - lastLook_ >= retryInterval);
}

void clsDiagnosticWriter::LookForViewer() noexcept {
    looker_ = GetCurrentThreadId();
    lastLook_ = GetTickCount();
    const bool mailslotOpen = mailslot_.IsOpen();
    section_.unlock();

    clsViewerInfo viewer = clsViewerInfo::Find();
    clsMailslotViewer mailslot;
    if (viewer)
        socket_.Open();
    else if (!mailslotOpen)
        mailslot.Attach();

    section_.lock();
    if (viewer)
        mailslot_.Detach();
    else if (!mailslotOpen)
        mailslot_ = std::move(mailslot);
    viewer_ = std::move(viewer);
    looker_ = 0;
    everLooked_ = true;
    WakeAllConditionVariable(&looked_);
}

void clsDiagnosticWriter::AwaitFirstLook() noexcept {
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
    const Lock lock(section_);
    if (writing_ || !Listening())
        return;
    writing_ = true;
    scLineStamp stamp;
    const SYSTEMTIME time = clock_.Stamp(stamp);
    stamp.thread = GetCurrentThreadId();
    stamp.processor = GetCurrentProcessorNumber();
    stamp.level = UtilpShownLevel(change.sign < 0 ? shared_.LowerLevel() : shared_.Level());
    stamp.lineNumber = shared_.CountLine();
    Deliver(tag, stamp, time, text);
    if (change.sign > 0)
        shared_.RaiseLevel();
    writing_ = false;
}

void clsDiagnosticWriter::WriteIfFree(std::u16string_view text) noexcept {
    if (!settled_ || !section_.try_lock())
        return;
    const Lock lock(section_, std::adopt_lock);
    Write({}, {0}, text);
}

void clsDiagnosticWriter::Deliver(std::u16string_view tag, const scLineStamp& stamp, const SYSTEMTIME& time,
                                  std::u16string_view text) noexcept {
    if (viewer_.WantsLines()) {
        sender_.Send(viewer_.Address(), time, tag, stamp, text);
        return;
    }
    clsDiagnosticLine line;
    UtilpPutStamp(line, tag, stamp);
    DeliverText(line.Put(text).View());
}

void clsDiagnosticWriter::DeliverText(std::u16string_view line) noexcept {
    if (mailslot_.IsOpen())
        mailslot_.Write(line);
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
    const Lock lock(section_);
    if (!Begin())
        return false;
    if (looker_ != 0)
        AwaitFirstLook();
    else
        LookForViewer();
    quiet_ = false;
    return viewer_ || mailslot_.IsThere();
}

void clsDiagnosticWriter::Detach() noexcept {
    const Lock lock(section_);
    viewer_ = {};
    mailslot_.Detach();
    settled_ = logFile_.IsOpen();
    lastLook_ = GetTickCount();
    everLooked_ = true;
    const LONG unneeded = shared_.IsOpen() ? socket_.Take() : 0;
    section_.unlock();
    UtilpCloseSocket(unneeded);
}

void clsDiagnosticWriter::ModuleComes() noexcept {
    const Lock lock(section_);
    if (!Begin())
        return;
    UtilpCountModule(shared_);
    const bool attached = static_cast<bool>(viewer_);
    section_.unlock();
    if (attached)
        socket_.Open();
}

void clsDiagnosticWriter::ModuleGoes() noexcept {
    const Lock lock(section_);
    if (!shared_.IsOpen() || !UtilpDiscountModule(shared_))
        return;
    lastLook_ = GetTickCount() - retryInterval; // whoever writes all the same opens it again at once
    const LONG unneeded = socket_.Take();
    section_.unlock();
    UtilpCloseSocket(unneeded);
}

// Asks for no lock: a thread that holds it may be dead, or its code about to vanish.
void clsDiagnosticWriter::End(bool processEnds) noexcept {
    ended_ = true;
    if (processEnds || !section_.try_lock())
        return;
    const Lock lock(section_, std::adopt_lock);
    viewer_ = {};
    mailslot_.Detach();
    logFile_.Close();
    if (shared_.IsOpen())
        socket_.Abandon();
    shared_.Close();
}

} // namespace tvut
