// The list of lines: a view that asks for the text of the rows it shows, however many there are.
#ifndef LOGPAN_LINE_LIST_H
#define LOGPAN_LINE_LIST_H

#include "look.h"
#include "shown_lines.h"

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <vector>

namespace tool::logpan {

class LineList {
  public:
    LineList(HWND parent, const Look& look, const ShownLines& lines);

    HWND handle() const { return list_; }
    void place(const RECT& area);

    // Shows the rows added behind; the last of them when the tail is followed.
    void grow(bool followTail);
    // So many rows went at the front: keeps the selection and what is in view where they are.
    void dropFirst(std::size_t rows);
    void showLast();
    // All rows are others.
    void reset();

    void selectAll();
    std::vector<std::size_t> selectedRows() const;
    std::optional<std::size_t> focusedRow() const;
    bool showsLastRow() const;

    // Answers the list's questions about texts and colours.
    LRESULT notified(const NMHDR& header);

    // Whether a notification tells that the focused row may be another one.
    static bool isFocusChange(const NMHDR& header);

  private:
    void giveText(LVITEMW& item);
    LRESULT colour(NMLVCUSTOMDRAW& drawing) const;
    void fillWidth();

    HWND list_;
    const Look& look_;
    const ShownLines& lines_;
    int width_ = 0;     // inside, without a scroll bar
    std::wstring text_; // of the cell asked for last; the list reads it before it asks again
};

} // namespace tool::logpan

#endif
