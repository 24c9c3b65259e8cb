// The two rows of controls above the lines.
#pragma once

#include "filter_text.h"
#include "look.h"
#include "theme.h"

#include <span>

namespace tool::logpan {

class clsFilterBar {
  public:
    clsFilterBar(HWND parent, const clsLook& look);

    // Lays the controls out in rows; the boxes of a row share what the others leave.
    void Place(int width);
    int Height() const;

    // What stands in the boxes; throws BadPattern, whose reason then names the box.
    scFilterText FilterText() const;
    scFilter Filter() const;
    void SetFilter(const scFilterText& filter);
    // What is looked for, which is nothing while the box is empty. Throws BadPattern.
    clsPattern Find() const;
    void GoTo(int box) const; // its number

    bool IsChecked(int id) const;
    void Check(int id, bool checked);
    void SetPauseText(bool paused);
    void ApplyTheme(const clsTheme& theme) const;

  private:
    struct scPlace {
        HWND control;
        int width; // 0: that of a box
    };

    PatternKind Kind() const;
    void PlaceRow(std::span<const scPlace> places, int row, int width) const;

    HWND parent_;
    const clsLook& look_;
    HWND includeLabel_;
    HWND include_;
    HWND excludeLabel_;
    HWND exclude_;
    HWND regular_;
    HWND pause_;
    HWND clear_;
    HWND onlyLabel_;
    HWND only_;
    HWND findLabel_;
    HWND find_;
    HWND follow_;
};

} // namespace tool::logpan
