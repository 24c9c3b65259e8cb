// The row of controls above the lines.
#pragma once

#include "arguments.h"
#include "look.h"

namespace tool::logpan {

class clsFilterBar {
  public:
    clsFilterBar(HWND parent, const clsLook& look, const scArguments& arguments);

    // Lays the controls out in a row; the boxes share what the others leave.
    void Place(int width);
    int Height() const;

    // What stands in the boxes; throws BadPattern, whose reason then names the box.
    scFilter Filter() const;
    void ClearFilter();
    void GoTo(int box) const; // its number

    bool IsChecked(int id) const;
    void Check(int id, bool checked);
    void SetPauseText(bool paused);

  private:
    clsPattern PatternOf(HWND box, const char* name) const;

    HWND parent_;
    const clsLook& look_;
    HWND includeLabel_;
    HWND include_;
    HWND excludeLabel_;
    HWND exclude_;
    HWND regular_;
    HWND follow_;
    HWND pause_;
    HWND clear_;
};

} // namespace tool::logpan
