// Controls are children of the main window itself: then the tab key goes through them and the lines alike.
#include "filter_bar.h"

#include "controls.h"
#include "resource.h"

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

// What goes wrong in a box is said with its name.
template <class Make>
auto InBox(const char* name, Make make) {
    try {
        return make();
    } catch (const scBadPattern& bad) {
        throw scBadPattern{std::string{name} + ": " + bad.reason};
    }
}

} // namespace

clsFilterBar::clsFilterBar(HWND parent, const clsLook& look)
    : parent_(parent), look_(look),
      includeLabel_(MakeControl(parent, label, -1, L"&Include:", look.Controls())),
      include_(MakeControl(parent, box, ID_INCLUDE, L"", look.Controls())),
      excludeLabel_(MakeControl(parent, label, -1, L"E&xclude:", look.Controls())),
      exclude_(MakeControl(parent, box, ID_EXCLUDE, L"", look.Controls())),
      regular_(MakeControl(parent, checkBox, ID_REGULAR, L"&Regular expressions", look.Controls())),
      pause_(MakeControl(parent, button, ID_PAUSE, L"&Pause", look.Controls())),
      clear_(MakeControl(parent, button, ID_CLEAR, L"&Clear", look.Controls())),
      onlyLabel_(MakeControl(parent, label, -1, L"&Only:", look.Controls())),
      only_(MakeControl(parent, box, ID_ONLY, L"", look.Controls())),
      findLabel_(MakeControl(parent, label, -1, L"Fin&d:", look.Controls())),
      find_(MakeControl(parent, box, ID_FIND, L"", look.Controls())),
      follow_(MakeControl(parent, checkBox, ID_FOLLOW, L"Follow &tail", look.Controls())) {
    for (const HWND edit : {include_, exclude_, find_})
        SendMessageW(edit, EM_LIMITTEXT, longestPattern, 0);
    Check(ID_FOLLOW, true);
}

int clsFilterBar::Height() const {
    return look_.Scaled(2 * (controlHeight + margin) + margin);
}

void clsFilterBar::Place(int width) {
    const int check = look_.Scaled(checkMark);
    const int right = TextWidth(regular_) + check;
    const int labels = std::max(TextWidth(includeLabel_), TextWidth(onlyLabel_));
    const int middle = std::max(TextWidth(excludeLabel_), TextWidth(findLabel_));
    const scPlace first[] = {{includeLabel_, labels},
                             {include_, 0},
                             {excludeLabel_, middle},
                             {exclude_, 0},
                             {regular_, right},
                             {pause_, look_.Scaled(buttonWidth)},
                             {clear_, look_.Scaled(buttonWidth)}};
    const scPlace second[] = {{onlyLabel_, labels},
                              {only_, 0},
                              {findLabel_, middle},
                              {find_, 0},
                              {follow_, right + 2 * look_.Scaled(buttonWidth + gap)}};
    PlaceRow(first, 0, width);
    PlaceRow(second, 1, width);
}

void clsFilterBar::PlaceRow(std::span<const scPlace> places, int row, int width) const {
    const int space = look_.Scaled(gap);
    int taken = 2 * look_.Scaled(margin) - space;
    for (const scPlace& place : places)
        taken += place.width + space;
    const int boxWidth = std::max((width - taken) / 2, look_.Scaled(smallestBox));
    const int y = look_.Scaled(margin + row * (controlHeight + margin));
    int x = look_.Scaled(margin);
    for (const scPlace& place : places) {
        const int own = place.width > 0 ? place.width : boxWidth;
        MoveWindow(place.control, x, y, own, look_.Scaled(controlHeight), TRUE);
        x += own + space;
    }
}

PatternKind clsFilterBar::Kind() const {
    return IsChecked(ID_REGULAR) ? PatternKind::regularExpression : PatternKind::substring;
}

scFilterText clsFilterBar::FilterText() const {
    return {TextOf(include_), TextOf(exclude_), Kind(),
            InBox("Only", [this] { return clsCriteria{TermsOf(TextOf(only_))}; })};
}

scFilter clsFilterBar::Filter() const {
    scFilterText text = FilterText();
    return {InBox("Include", [&] { return clsPattern(text.include, text.kind); }),
            InBox("Exclude", [&] { return clsPattern(text.exclude, text.kind); }), std::move(text.criteria)};
}

void clsFilterBar::SetFilter(const scFilterText& filter) {
    Check(ID_REGULAR, filter.kind == PatternKind::regularExpression);
    SetWindowTextW(include_, filter.include.c_str());
    SetWindowTextW(exclude_, filter.exclude.c_str());
    SetWindowTextW(only_, filter.criteria.Text().c_str());
}

clsPattern clsFilterBar::Find() const {
    return InBox("Find", [this] { return clsPattern(TextOf(find_), Kind()); });
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

void clsFilterBar::ApplyTheme(const clsTheme& theme) const {
    for (const HWND control : {pause_, clear_, include_, exclude_, only_, find_})
        theme.ApplyToControl(control);
    for (const HWND control : {regular_, follow_, includeLabel_, excludeLabel_, onlyLabel_, findLabel_})
        theme.ApplyToControl(control, true);
}

} // namespace tool::logpan
