// The bar below: where the viewer listens, how fast lines come, how many there are and how many are lost.
#pragma once

#include "look.h"
#include "store.h"
#include "theme.h"

#include <array>
#include <string>

namespace tool::logpan {

class clsStatusBar {
  public:
    clsStatusBar(HWND parent, const clsLook& look);

    void Place();
    int Height() const;

    // What it says in its first part: the port, or what is wrong with the filter.
    void Say(const std::wstring& text);
    // The rate is that since the call before, or since counting began with these.
    void ShowRate(const scCounters& counters);
    void CountFrom(const scCounters& counters);
    void ShowCounts(const scCounters& counters, std::size_t shown, const wchar_t* state);

    // In a dark theme its parts are drawn by us, with WM_DRAWITEM.
    void ApplyTheme(const clsTheme& theme);
    void Draw(const DRAWITEMSTRUCT& item, const clsTheme& theme) const;

  private:
    void SetPart(int part, std::wstring text);
    void Send(int part) const;

    static constexpr std::size_t partCount = 5;

    HWND bar_;
    const clsLook& look_;
    std::array<std::wstring, partCount> texts_;
    WPARAM drawnByUs_ = 0; // the flag that says so
    std::uint64_t receivedBefore_ = 0;
    clsStore::Clock::time_point updatedBefore_ = clsStore::Clock::now();
};

} // namespace tool::logpan
