// The bar below: where the viewer listens, how fast lines come, how many there are and how many are lost.
#ifndef LOGPAN_STATUS_BAR_H
#define LOGPAN_STATUS_BAR_H

#include "look.h"
#include "store.h"

#include <array>
#include <string>

namespace tool::logpan {

class StatusBar {
  public:
    StatusBar(HWND parent, const Look& look);

    void place();
    int height() const;

    // What it says in its first part: the port, or what is wrong with the filter.
    void say(const std::wstring& text);
    // The rate is that since the call before.
    void showRate(const Counters& counters);
    void showCounts(const Counters& counters, std::size_t shown, bool paused);

  private:
    void setPart(int part, std::wstring text);

    static constexpr std::size_t partCount = 5;

    HWND bar_;
    const Look& look_;
    std::array<std::wstring, partCount> texts_;
    std::uint64_t receivedBefore_ = 0;
    Store::Clock::time_point updatedBefore_ = Store::Clock::now();
};

} // namespace tool::logpan

#endif
