// The process's one writer of diagnostic lines: sees to it that whoever listens is known, and hands lines out
// one at a time.
//
// While nobody listens a line costs a look at the gate: viewers are looked for once a second. While somebody
// does, one lock covers a line's stamp and its delivery, so that the sequence digits follow the order of the
// lines. Looking for a viewer, and opening and closing the way to it, loads and frees system libraries and so
// may need the loader's lock: it is done while ours is not held, because a caller may come from within the
// loader. What is found comes into the lock as a value, and what is given up leaves it as one.
#pragma once

#include "platform/critical_section.h"
#include "runtime/output/audience_gate.h"
#include "runtime/output/debugger.h"
#include "runtime/output/line_clock.h"
#include "runtime/output/line_front.h"
#include "runtime/output/log_file.h"
#include "runtime/output/look_turn.h"
#include "runtime/output/mailslot_viewer.h"
#include "runtime/output/viewer.h"

#include <mutex>

namespace tvut {

class clsDiagnosticWriter {
  public:
    clsDiagnosticWriter() noexcept;

    bool IsOn() noexcept;

    // Makes ready what a line may need, if that is due: for threads that are about to take the global lock.
    // While they have it they look for no viewer, because a thread within the loader may wait for that lock.
    // False when nobody listens at the moment.
    bool LookAhead() noexcept { return !gate_.IsShut() && LookAheadNow(); }

    void Write(std::u16string_view tag, scLevelChange change, std::u16string_view text) noexcept;

    // Writes a line of a process that ends: only to whoever listens already, and only if no thread that is
    // dead by now stood in the way.
    void WriteIfFree(std::u16string_view text) noexcept;

    // Looks for a viewer now; true when there is one. Leaves the viewer until it is looked for again.
    bool Attach() noexcept;
    void Detach() noexcept;

    // When the last one has gone, a report may write its lines before the way to the viewer is given up.
    void ModuleComes() noexcept;
    void ModuleGoes(void (*lastGoes)() noexcept) noexcept;

    // The library is unloaded, or the process ends. Nothing is written from now on.
    void End(bool processEnds) noexcept;

  private:
    using Lock = std::lock_guard<clsCriticalSection>;

    enum class When { due, now };

    // Asks something under the lock, which is held for that moment only.
    template <class Ask>
    auto Locked(Ask ask) noexcept {
        const Lock lock(section_);
        return ask();
    }

    bool LookAheadNow() noexcept;
    bool MayWait() const noexcept;
    void LookIfDue() noexcept;
    bool ClaimLook(When when) noexcept;
    void LookForViewer() noexcept;
    void OpenMissingSocket() noexcept;

    // Under the lock.
    bool Begin() noexcept; // false: there will be no output, or not yet
    bool ReadSettings() noexcept;
    void AwaitLook() noexcept;
    void NoteSinks() noexcept;
    bool HasAudience() noexcept;
    void WriteLocked(std::unique_lock<clsCriticalSection>& lock, scOutputLine& line,
                     scLevelChange change) noexcept;
    void HandOut(scOutputLine& line, scLevelChange change) noexcept;

    clsCriticalSection section_;
    clsAudienceGate gate_;
    clsLookTurn turn_;
    bool begun_ = false;

    clsLineClock clock_;
    clsAppLocalData shared_;
    clsViewer viewer_{shared_};
    clsMailslotViewer mailslot_;
    clsLogFile logFile_;
    clsDebuggerSink debugger_;
    clsLineFront front_{{viewer_, {&mailslot_, &logFile_}, debugger_}};
};

clsDiagnosticWriter& UtilpDiagnosticWriter() noexcept;

} // namespace tvut
