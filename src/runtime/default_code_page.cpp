#include "runtime/default_code_page.h"

#include "platform/code_page.h"

#include <atomic>

namespace tvut {

namespace {

// One word that is written rarely and read by every A form: an atomic does what a lock would.
std::atomic<std::uint16_t> chosenCodePage{0}; // 0: not set yet

} // namespace

unsigned UtilpCodePage() noexcept {
    const unsigned chosen = chosenCodePage.load(std::memory_order_relaxed);
    return chosen != 0 ? chosen : PlatformProcessCodePage();
}

void UtilpSetCodePage(std::uint16_t codePage) noexcept {
    chosenCodePage.store(codePage, std::memory_order_relaxed);
}

} // namespace tvut
