#include "prof/options.h"

#include "platform/code_page.h"

#include <atomic>

namespace tvut {

namespace {

// One word that is written rarely and read by every A form: an atomic does what a lock would.
std::atomic<std::uint16_t> codePage{0}; // 0: not set yet

} // namespace

unsigned ProfpCodePage() noexcept {
    const unsigned chosen = codePage.load(std::memory_order_relaxed);
    return chosen != 0 ? chosen : PlatformProcessCodePage();
}

void ProfpSetCodePage(std::uint16_t value) noexcept {
    codePage.store(value, std::memory_order_relaxed);
}

} // namespace tvut
