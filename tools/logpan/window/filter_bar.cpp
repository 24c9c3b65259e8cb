// Controls are children of the main window itself: then the tab key goes through them and the lines alike.
#include "filter_bar.h"

#include "controls.h"
#include "resource.h"
#include "text_io.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr scControlKind label{L"STATIC", SS_CENTERIMAGE};
constexpr scControlKind box{L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
constexpr scControlKind checkBox{L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX};
constexpr scControlKind button{L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON};

constexpr int margin = 6;
constexpr int gap = 8;
constexpr int controlHeight = 23;
constexpr int checkMark = 22; // beside a check box's text
constexpr int buttonWidth = 72;
constexpr int smallestBox = 60;
constexpr WPARAM longestPattern = 300;

} // namespace

clsFilterBar::clsFilterBar(HWND parent, const clsLook& look, const scArguments& arguments)
    : parent_(parent), look_(look),
      includeLabel_(MakeControl(parent, label, -1, L"&Include:", look.Controls())),
      include_(MakeControl(parent, box, ID_INCLUDE, ToWide(arguments.filter).c_str(), look.Controls())),
      excludeLabel_(MakeControl(parent, label, -1, L"E&xclude:", look.Controls())),
      exclude_(MakeControl(parent, box, ID_EXCLUDE, ToWide(arguments.exclude).c_str(), look.Controls())),
      regular_(MakeControl(parent, checkBox, ID_REGULAR, L"&Regular expressions", look.Controls())),
      follow_(MakeControl(parent, checkBox, ID_FOLLOW, L"Follow &tail", look.Controls())),
      pause_(MakeControl(parent, button, ID_PAUSE, L"&Pause", look.Controls())),
      clear_(MakeControl(parent, button, ID_CLEAR, L"&Clear", look.Controls())) {
    for (const HWND edit : {include_, exclude_})
        SendMessageW(edit, EM_LIMITTEXT, longestPattern, 0);
    Check(ID_REGULAR, arguments.regularExpressions);
    Check(ID_FOLLOW, true);
}

int clsFilterBar::Height() const {
    return look_.Scaled(controlHeight + 2 * margin);
}

void clsFilterBar::Place(int width) {
    struct scPlace {
        HWND control;
        int width;
    };
    const int check = look_.Scaled(checkMark);
    const int space = look_.Scaled(gap);
    scPlace places[] = {
        {includeLabel_, TextWidth(includeLabel_)}, {include_, 0},
        {excludeLabel_, TextWidth(excludeLabel_)}, {exclude_, 0},
        {regular_, TextWidth(regular_) + check},   {follow_, TextWidth(follow_) + check},
        {pause_, look_.Scaled(buttonWidth)},       {clear_, look_.Scaled(buttonWidth)},
    };
    int taken = 2 * look_.Scaled(margin) - space;
    for (const scPlace& place : places)
        taken += place.width + space;
    const int boxWidth = std::max((width - taken) / 2, look_.Scaled(smallestBox));
    int x = look_.Scaled(margin);
    for (const scPlace& place : places) {
        const int own = place.width > 0 ? place.width : boxWidth;
        MoveWindow(place.control, x, look_.Scaled(margin), own, look_.Scaled(controlHeight), TRUE);
        x += own + space;
    }
}

clsPattern clsFilterBar::PatternOf(HWND control, const char* name) const {
    const PatternKind kind = IsChecked(ID_REGULAR) ? PatternKind::regularExpression : PatternKind::substring;
    try {
        return {TextOf(control), kind};
    } catch (const scBadPattern& bad) {
        throw scBadPattern{std::string{name} + ": " + bad.reason};
    }
}

scFilter clsFilterBar::Filter() const {
    return {PatternOf(include_, "Include"), PatternOf(exclude_, "Exclude")};
}

void clsFilterBar::ClearFilter() {
    SetWindowTextW(include_, L"");
    SetWindowTextW(exclude_, L"");
}

void clsFilterBar::GoTo(int id) const {
    const HWND control = GetDlgItem(parent_, id);
    SetFocus(control);
    SendMessageW(control, EM_SETSEL, 0, -1);
}

bool clsFilterBar::IsChecked(int id) const {
    return IsDlgButtonChecked(parent_, id) == BST_CHECKED;
}

void clsFilterBar::Check(int id, bool checked) {
    CheckDlgButton(parent_, id, checked ? BST_CHECKED : BST_UNCHECKED);
}

void clsFilterBar::SetPauseText(bool paused) {
    SetWindowTextW(pause_, paused ? L"&Go on" : L"&Pause");
}

} // namespace tool::logpan
