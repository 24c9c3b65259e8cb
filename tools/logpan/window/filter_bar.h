// The row of controls above the lines.
#ifndef LOGPAN_FILTER_BAR_H
#define LOGPAN_FILTER_BAR_H

#include "arguments.h"
#include "look.h"

namespace tool::logpan {

class FilterBar {
  public:
    FilterBar(HWND parent, const Look& look, const Arguments& arguments);

    // Lays the controls out in a row; the boxes share what the others leave.
    void place(int width);
    int height() const;

    // What stands in the boxes; throws BadPattern, whose reason then names the box.
    Filter filter() const;
    void clearFilter();
    void goTo(int box) const; // its number

    bool isChecked(int id) const;
    void check(int id, bool checked);
    void setPauseText(bool paused);

  private:
    Pattern patternOf(HWND box, const char* name) const;

    HWND parent_;
    const Look& look_;
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

#endif
