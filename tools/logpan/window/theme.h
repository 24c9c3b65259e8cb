// Colours of the window, light or dark.
#pragma once

#include "highlights.h"
#include "settings.h"
#include "severity.h"

#include <windows.h>

#include <memory>
#include <type_traits>

namespace tool::logpan {

struct scCellColours {
    COLORREF text;
    COLORREF background;
};

class clsTheme {
  public:
    explicit clsTheme(ThemeChoice choice) { Choose(choice); }

    // What the user chose; for "as the system", what the system's setting for programs says now. Colours of
    // high contrast come before both: they are the system's own.
    void Choose(ThemeChoice choice);
    ThemeChoice Choice() const { return choice_; }
    bool IsDark() const { return dark_; }
    bool IsPlain() const { return plain_; } // high contrast: nothing is coloured

    scCellColours Lines() const;
    scCellColours Of(Severity severity) const; // not none
    scCellColours Of(Colour colour) const;
    scCellColours Controls() const;
    HBRUSH Background() const { return background_.get(); } // of controls

    // Makes the frame, or a control, dark or light as far as the system can. The rest is painted with our
    // colours.
    void ApplyToFrame(HWND window) const;
    // One that paints itself in the colours it is told needs no such help.
    void ApplyToControl(HWND control, bool paintsItself = false) const;

  private:
    struct scDelete {
        void operator()(HBRUSH brush) const { DeleteObject(brush); }
    };
    using Brush = std::unique_ptr<std::remove_pointer_t<HBRUSH>, scDelete>;

    ThemeChoice choice_ = ThemeChoice::system;
    bool dark_ = false;
    bool plain_ = false;
    Brush background_;
};

} // namespace tool::logpan
