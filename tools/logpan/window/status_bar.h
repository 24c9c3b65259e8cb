// The bar below: where the viewer listens, how fast lines come, how many there are and how many are lost.
#pragma once

#include "look.h"
#include "store.h"

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
    // The rate is that since the call before.
    void ShowRate(const scCounters& counters);
    void ShowCounts(const scCounters& counters, std::size_t shown, bool paused);

  private:
    void SetPart(int part, std::wstring text);

    static constexpr std::size_t partCount = 5;

    HWND bar_;
    const clsLook& look_;
    std::array<std::wstring, partCount> texts_;
    std::uint64_t receivedBefore_ = 0;
    clsStore::Clock::time_point updatedBefore_ = clsStore::Clock::now();
};

} // namespace tool::logpan
