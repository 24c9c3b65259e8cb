#include "runtime/default_code_page.h"

#include "platform/code_page.h"

#include <atomic>

namespace tvut {

namespace {

constexpr std::uint32_t notSet = 0x10000; // beyond what can be set

// One word that is written rarely and read by every A form: an atomic does what a lock would.
std::atomic<std::uint32_t> chosenCodePage{notSet};

} // namespace

unsigned UtilpCodePage() noexcept {
    const unsigned chosen = chosenCodePage.load(std::memory_order_relaxed) & 0xFFFF;
    return chosen != 0 ? chosen : PlatformProcessCodePage();
}

unsigned UtilpCodePageAsSet() noexcept {
    const unsigned chosen = chosenCodePage.load(std::memory_order_relaxed);
    return chosen != notSet ? chosen : PlatformProcessCodePage();
}

void UtilpSetCodePage(std::uint16_t codePage) noexcept {
    chosenCodePage.store(codePage, std::memory_order_relaxed);
}

} // namespace tvut
