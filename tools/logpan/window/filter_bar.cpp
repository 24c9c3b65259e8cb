// Controls are children of the main window itself: then the tab key goes through them and the lines alike.
#include "filter_bar.h"

#include "controls.h"
#include "resource.h"
#include "text_io.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr ControlKind label{L"STATIC", SS_CENTERIMAGE};
constexpr ControlKind box{L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
constexpr ControlKind checkBox{L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX};
constexpr ControlKind button{L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON};

constexpr int margin = 6;
constexpr int gap = 8;
constexpr int controlHeight = 23;
constexpr int checkMark = 22; // beside a check box's text
constexpr int buttonWidth = 72;
constexpr int smallestBox = 60;
constexpr WPARAM longestPattern = 300;

} // namespace

FilterBar::FilterBar(HWND parent, const Look& look, const Arguments& arguments)
    : parent_(parent), look_(look),
      includeLabel_(makeControl(parent, label, -1, L"&Include:", look.controls())),
      include_(makeControl(parent, box, ID_INCLUDE, toWide(arguments.filter).c_str(), look.controls())),
      excludeLabel_(makeControl(parent, label, -1, L"E&xclude:", look.controls())),
      exclude_(makeControl(parent, box, ID_EXCLUDE, toWide(arguments.exclude).c_str(), look.controls())),
      regular_(makeControl(parent, checkBox, ID_REGULAR, L"&Regular expressions", look.controls())),
      follow_(makeControl(parent, checkBox, ID_FOLLOW, L"Follow &tail", look.controls())),
      pause_(makeControl(parent, button, ID_PAUSE, L"&Pause", look.controls())),
      clear_(makeControl(parent, button, ID_CLEAR, L"&Clear", look.controls())) {
    for (const HWND edit : {include_, exclude_})
        SendMessageW(edit, EM_LIMITTEXT, longestPattern, 0);
    check(ID_REGULAR, arguments.regularExpressions);
    check(ID_FOLLOW, true);
}

int FilterBar::height() const {
    return look_.scaled(controlHeight + 2 * margin);
}

void FilterBar::place(int width) {
    struct Place {
        HWND control;
        int width;
    };
    const int check = look_.scaled(checkMark);
    const int space = look_.scaled(gap);
    Place places[] = {
        {includeLabel_, textWidth(includeLabel_)}, {include_, 0},
        {excludeLabel_, textWidth(excludeLabel_)}, {exclude_, 0},
        {regular_, textWidth(regular_) + check},   {follow_, textWidth(follow_) + check},
        {pause_, look_.scaled(buttonWidth)},       {clear_, look_.scaled(buttonWidth)},
    };
    int taken = 2 * look_.scaled(margin) - space;
    for (const Place& place : places)
        taken += place.width + space;
    const int boxWidth = std::max((width - taken) / 2, look_.scaled(smallestBox));
    int x = look_.scaled(margin);
    for (const Place& place : places) {
        const int own = place.width > 0 ? place.width : boxWidth;
        MoveWindow(place.control, x, look_.scaled(margin), own, look_.scaled(controlHeight), TRUE);
        x += own + space;
    }
}

Pattern FilterBar::patternOf(HWND control, const char* name) const {
    const PatternKind kind = isChecked(ID_REGULAR) ? PatternKind::regularExpression : PatternKind::substring;
    try {
        return {textOf(control), kind};
    } catch (const BadPattern& bad) {
        throw BadPattern{std::string{name} + ": " + bad.reason};
    }
}

Filter FilterBar::filter() const {
    return {patternOf(include_, "Include"), patternOf(exclude_, "Exclude")};
}

void FilterBar::clearFilter() {
    SetWindowTextW(include_, L"");
    SetWindowTextW(exclude_, L"");
}

void FilterBar::goTo(int id) const {
    const HWND control = GetDlgItem(parent_, id);
    SetFocus(control);
    SendMessageW(control, EM_SETSEL, 0, -1);
}

bool FilterBar::isChecked(int id) const {
    return IsDlgButtonChecked(parent_, id) == BST_CHECKED;
}

void FilterBar::check(int id, bool checked) {
    CheckDlgButton(parent_, id, checked ? BST_CHECKED : BST_UNCHECKED);
}

void FilterBar::setPauseText(bool paused) {
    SetWindowTextW(pause_, paused ? L"&Go on" : L"&Pause");
}

} // namespace tool::logpan
