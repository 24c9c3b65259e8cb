// The older way to a viewer: its window's handle in a small shared mapping, and a mailslot.
#pragma once

#include "runtime/output/line_sink.h"
#include "runtime/output/mailslot.h"

namespace tvut {

class clsMailslotViewer final : public IclsLineSink {
  public:
    // Looks for the viewer's window and its mailslot.
    void Attach() noexcept;

    bool IsOpen() const noexcept { return mailslot_.IsOpen(); }

    // A viewer whose window is there may open its mailslot at any moment.
    bool Wants() noexcept override { return IsOpen() || window_; }

    // Writes a line in pieces that end at line ends or after 510 characters.
    void Take(const scOutputLine& line) noexcept override;

  private:
    HWND Published() noexcept;
    HWND PublishedAsItIs() const noexcept;
    void FollowWindow() noexcept;
    void Write(std::u16string_view line) noexcept;
    void WriteMessage(std::u16string_view message) noexcept;
    void NoteFailure() noexcept;

    clsMapping global_;
    clsMailslot mailslot_;
    bool maySeeWindows_ = false; // the library of windows is bound
    HWND window_ = nullptr;      // the one last used
    bool failing_ = false;       // the slot did not take the last piece: said once, not every time
    DWORD failedAt_ = 0;         // milliseconds
};

} // namespace tvut
