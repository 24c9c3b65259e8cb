// The list of lines: a view that asks for the text of the rows it shows, however many there are.
#pragma once

#include "list_columns.h"
#include "look.h"
#include "marks.h"
#include "theme.h"

#include <windows.h>

#include <commctrl.h>

#include <optional>
#include <vector>

namespace tool::logpan {

class clsLineList {
  public:
    clsLineList(HWND parent, const clsLook& look, const clsShownLines& lines, const scMarks& marks,
                const clsTheme& theme);

    HWND Handle() const { return list_; }
    void Place(const RECT& area);
    void ScaleColumns(int dotsBefore, int dotsPerInch);

    // Shows the rows added at the end; the last of them when the tail is followed.
    void Grow(bool followTail);
    // This number of rows left the front: keeps the selection and what is in view where they are.
    void DropFirst(std::size_t rows);
    void ShowLast();
    // All rows are others.
    void Reset();

    // Widths as in the settings. A column that has none is shown as it is at first.
    void ShowColumns(const std::map<std::wstring, int>& widths);
    std::map<std::wstring, int> ColumnWidths() const;
    void ToggleColumn(std::size_t column);
    bool ShowsColumn(std::size_t column) const;

    void ApplyTheme();

    // Makes it the one that is selected, and shows it.
    void Select(std::size_t row);
    void SelectAll();
    std::vector<std::size_t> SelectedRows() const;
    std::optional<std::size_t> FocusedRow() const;
    bool ShowsLastRow() const;

    // Answers the list's questions.
    LRESULT Notified(UINT code, LPARAM notification);

    // Whether a notification means that the focused row may be another one. None does while rows leave the
    // front: they keep the focus, but the list tells of each that is selected.
    bool IsFocusChange(const NMHDR& header) const;

  private:
    void GiveText(LVITEMW& item);
    LRESULT ColourOf(NMLVCUSTOMDRAW& drawing) const;
    void FillWidth();
    int TextAt() const { return static_cast<int>(shown_.size()) - 1; } // where the text's column is

    HWND list_;
    const clsLook& look_;
    const clsShownLines& lines_;
    const scMarks& marks_;
    const clsTheme& theme_;
    bool dropping_ = false;          // rows leave the front
    std::vector<std::size_t> shown_; // columns, from left to right
    int width_ = 0;                  // inside, without a scroll bar
    std::wstring text_;              // of the cell asked for last; the list reads it before it asks again
};

} // namespace tool::logpan
