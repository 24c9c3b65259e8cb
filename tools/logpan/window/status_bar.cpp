// The common controls' status bar in five parts.
#include "status_bar.h"

#include "controls.h"
#include "resource.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cmath>

namespace tool::logpan {

namespace {

constexpr scControlKind barKind{STATUSCLASSNAMEW, SBARS_SIZEGRIP};

enum Part { partMessage, partState, partRate, partLines, partLost };
constexpr int partWidths[] = {0, 70, 110, 230, 150}; // the first one takes the rest
constexpr int gripWidth = 18;
constexpr int textMargin = 4;

std::wstring LostText(const scCounters& counters) {
    std::wstring text = L"No line lost";
    if (counters.lost > 0)
        text = L"At least " + std::to_wstring(counters.lost) + L" lost";
    if (counters.refused > 0)
        text += L", " + std::to_wstring(counters.refused) + L" refused";
    return text;
}

} // namespace

clsStatusBar::clsStatusBar(HWND parent, const clsLook& look)
    : bar_(MakeControl(parent, barKind, ID_STATUS, L"", look.Controls())), look_(look) {
    Place(); // a part that is not there yet takes no text
}

void clsStatusBar::Place() {
    SendMessageW(bar_, WM_SIZE, 0, 0);
    RECT area{};
    GetClientRect(bar_, &area);
    int right[partCount];
    static_assert(std::size(partWidths) == partCount);
    int x = area.right - look_.Scaled(gripWidth);
    for (std::size_t part = partCount; part-- > 0;) {
        right[part] = x;
        x = std::max(x - look_.Scaled(partWidths[part]), 0);
    }
    right[partCount - 1] = -1; // to the border
    SendMessageW(bar_, SB_SETPARTS, partCount, reinterpret_cast<LPARAM>(right));
}

int clsStatusBar::Height() const {
    RECT area{};
    GetWindowRect(bar_, &area);
    return area.bottom - area.top;
}

void clsStatusBar::Say(const std::wstring& text) {
    SetPart(partMessage, text);
}

void clsStatusBar::ShowRate(const scCounters& counters) {
    const double seconds = std::chrono::duration<double>{clsStore::Clock::now() - updatedBefore_}.count();
    const double rate = seconds > 0 ? static_cast<double>(counters.received - receivedBefore_) / seconds : 0;
    CountFrom(counters);
    SetPart(partRate, std::to_wstring(std::llround(rate)) + L" lines/s");
}

void clsStatusBar::CountFrom(const scCounters& counters) {
    receivedBefore_ = counters.received;
    updatedBefore_ = clsStore::Clock::now();
}

void clsStatusBar::ShowCounts(const scCounters& counters, std::size_t shown, const wchar_t* state) {
    SetPart(partState, state);
    SetPart(partLines, std::to_wstring(counters.held) + L" held, " + std::to_wstring(shown) + L" shown");
    SetPart(partLost, LostText(counters));
}

// Called often and mostly with what is there.
void clsStatusBar::SetPart(int part, std::wstring text) {
    std::wstring& before = texts_[static_cast<std::size_t>(part)];
    if (text == before)
        return;
    before = std::move(text);
    Send(part);
}

void clsStatusBar::Send(int part) const {
    const std::wstring& text = texts_[static_cast<std::size_t>(part)];
    SendMessageW(bar_, SB_SETTEXTW, static_cast<WPARAM>(part) | drawnByUs_,
                 reinterpret_cast<LPARAM>(text.c_str()));
}

void clsStatusBar::ApplyTheme(const clsTheme& theme) {
    theme.ApplyToControl(bar_, true);
    SendMessageW(bar_, SB_SETBKCOLOR, 0,
                 static_cast<LPARAM>(theme.IsDark() ? theme.Controls().background : CLR_DEFAULT));
    drawnByUs_ = theme.IsDark() ? SBT_OWNERDRAW : 0;
    for (int part = 0; part < static_cast<int>(partCount); ++part)
        Send(part);
}

void clsStatusBar::Draw(const DRAWITEMSTRUCT& item, const clsTheme& theme) const {
    if (item.itemID >= partCount)
        return;
    RECT area = item.rcItem;
    FillRect(item.hDC, &area, theme.Background());
    SetBkMode(item.hDC, TRANSPARENT);
    SetTextColor(item.hDC, theme.Controls().text);
    area.left += look_.Scaled(textMargin);
    DrawTextW(item.hDC, texts_[item.itemID].c_str(), -1, &area,
              DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

} // namespace tool::logpan
