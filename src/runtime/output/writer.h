// The process's one writer of diagnostic lines: decides whether anybody listens, and delivers.
//
// While nobody listens a line costs a look at two words and the tick count: viewers are looked for once
// a second. While somebody does, one lock covers a line's stamp and its delivery, so that the sequence
// digits follow the order of the lines. Looking for a viewer, and opening and closing the way to it, loads
// and frees system libraries and so may need the loader's lock: it is done while ours is not held, because
// a caller may come from within the loader. What is found comes into the lock as a value, and what is
// given up leaves it as one.
#pragma once

#include "platform/critical_section.h"
#include "runtime/output/line_clock.h"
#include "runtime/output/log_file.h"
#include "runtime/output/mailslot_viewer.h"
#include "runtime/output/viewer_sender.h"

#include <atomic>
#include <mutex>

namespace tvut {

// A change of the nesting level that a line brings: only the sign counts.
struct scLevelChange {
    std::int32_t sign;
};

class clsDiagnosticWriter {
  public:
    bool IsOn() noexcept;

    // Makes ready what a line may need, if that is due: for threads that are about to take the global lock.
    // While they have it they look for no viewer, because a thread within the loader may wait for that lock.
    // False when nobody listens at the moment.
    bool LookAhead() noexcept;

    void Write(std::u16string_view tag, scLevelChange change, std::u16string_view text) noexcept;

    // Writes a line of a process that ends: only to whoever listens already, and only if no thread that is
    // dead by now stood in the way.
    void WriteIfFree(std::u16string_view text) noexcept;

    // Looks for a viewer now; true when there is one. Leaves the viewer until it is looked for again.
    bool Attach() noexcept;
    void Detach() noexcept;

    void ModuleComes() noexcept;
    void ModuleGoes() noexcept;

    // The library is unloaded, or the process ends. Nothing is written from now on.
    void End(bool processEnds) noexcept;

  private:
    using Lock = std::lock_guard<clsCriticalSection>;

    // The ways to viewers: one that publishes itself, and the older one.
    struct scViewers {
        clsViewerInfo info;
        clsMailslotViewer mailslot;
    };

    struct scAudience {
        bool any = false;
        scViewerWish viewer;
    };

    enum class When { due, now };

    bool NobodyListened() const noexcept;
    bool MayWait() const noexcept;
    bool LookIsDue() const noexcept;

    // Take the lock for a moment only.
    bool HasBegun() noexcept;
    bool HasViewer() noexcept;
    bool HasOpenMailslot() noexcept;
    bool ClaimLook(When when) noexcept;
    bool ViewerWantsLines() noexcept;
    void LookIfDue() noexcept;
    void LookForViewer() noexcept;
    void OpenMissingSocket() noexcept;

    // Under the lock.
    bool Begin() noexcept; // false: there will be no output, or not yet
    void AwaitLook() noexcept;
    void NoteViewer() noexcept;
    scAudience Audience() noexcept;
    void Deliver(const scViewerWish& viewer, std::u16string_view tag, const scLineStamp& stamp,
                 const SYSTEMTIME& time, std::u16string_view text) noexcept;
    void DeliverText(std::u16string_view line) noexcept;
    void WriteToLogFile(std::u16string_view line) noexcept;

    clsCriticalSection section_;
    CONDITION_VARIABLE looked_ = CONDITION_VARIABLE_INIT;
    bool begun_ = false;
    bool writing_ = false; // a sink's own output must not come back to it
    DWORD looker_ = 0;     // the thread that looks for a viewer right now
    std::atomic<bool> everLooked_{false};
    std::atomic<bool> ended_{false};
    std::atomic<bool> settled_{false}; // a log file or a viewer is there: no look is due
    std::atomic<bool> viewing_{false}; // a viewer is there
    std::atomic<bool> quiet_{false};   // nobody listened when last asked
    std::atomic<DWORD> lastLook_{0};   // milliseconds

    clsLineClock clock_;
    clsAppLocalData shared_;
    clsLogFile logFile_;
    scViewers viewers_;
    clsViewerSocket socket_{shared_};
    clsViewerSender sender_{socket_};
};

clsDiagnosticWriter& UtilpDiagnosticWriter() noexcept;

} // namespace tvut
