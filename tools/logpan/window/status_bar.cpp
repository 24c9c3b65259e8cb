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

constexpr ControlKind barKind{STATUSCLASSNAMEW, SBARS_SIZEGRIP};

enum Part { partMessage, partState, partRate, partLines, partLost };
constexpr int partWidths[] = {0, 70, 110, 230, 150}; // the first one takes the rest
constexpr int gripWidth = 18;

std::wstring lostText(const Counters& counters) {
    std::wstring text = L"No line lost";
    if (counters.lost > 0)
        text = L"At least " + std::to_wstring(counters.lost) + L" lost";
    if (counters.refused > 0)
        text += L", " + std::to_wstring(counters.refused) + L" refused";
    return text;
}

} // namespace

StatusBar::StatusBar(HWND parent, const Look& look)
    : bar_(makeControl(parent, barKind, ID_STATUS, L"", look.controls())), look_(look) {
    place(); // a part that is not there yet takes no text
}

void StatusBar::place() {
    SendMessageW(bar_, WM_SIZE, 0, 0);
    RECT area{};
    GetClientRect(bar_, &area);
    int right[partCount];
    static_assert(std::size(partWidths) == partCount);
    int x = area.right - look_.scaled(gripWidth);
    for (std::size_t part = partCount; part-- > 0;) {
        right[part] = x;
        x = std::max(x - look_.scaled(partWidths[part]), 0);
    }
    right[partCount - 1] = -1; // to the border
    SendMessageW(bar_, SB_SETPARTS, partCount, reinterpret_cast<LPARAM>(right));
}

int StatusBar::height() const {
    RECT area{};
    GetWindowRect(bar_, &area);
    return area.bottom - area.top;
}

void StatusBar::say(const std::wstring& text) {
    setPart(partMessage, text);
}

void StatusBar::showRate(const Counters& counters) {
    const Store::Clock::time_point now = Store::Clock::now();
    const double seconds = std::chrono::duration<double>{now - updatedBefore_}.count();
    const double rate = seconds > 0 ? static_cast<double>(counters.received - receivedBefore_) / seconds : 0;
    receivedBefore_ = counters.received;
    updatedBefore_ = now;
    setPart(partRate, std::to_wstring(std::llround(rate)) + L" lines/s");
}

void StatusBar::showCounts(const Counters& counters, std::size_t shown, bool paused) {
    setPart(partState, paused ? L"Paused" : L"Live");
    setPart(partLines, std::to_wstring(counters.held) + L" held, " + std::to_wstring(shown) + L" shown");
    setPart(partLost, lostText(counters));
}

// Called often and mostly with what is there.
void StatusBar::setPart(int part, std::wstring text) {
    std::wstring& before = texts_[static_cast<std::size_t>(part)];
    if (text == before)
        return;
    before = std::move(text);
    SendMessageW(bar_, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(before.c_str()));
}

} // namespace tool::logpan
