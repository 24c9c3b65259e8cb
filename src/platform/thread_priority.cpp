#include "platform/thread_priority.h"

#include "platform/owned.h"

#include <intrin.h>

namespace tvut {

namespace {

constexpr std::uint64_t share = 50;

} // namespace

clsThreadPriority::clsThreadPriority(bool background) noexcept
    : meant_(background ? THREAD_PRIORITY_BELOW_NORMAL : THREAD_PRIORITY_NORMAL) {
    if (background)
        PutBack();
    nextAt_ = 0; // after the first call in any case
}

clsThreadPriority::~clsThreadPriority() {
    PutBack();
}

void clsThreadPriority::BetweenCalls() noexcept {
    if (__rdtsc() >= nextAt_)
        PutBack();
}

void clsThreadPriority::PutBack() noexcept {
    const clsLastErrorKept lastError;
    const std::uint64_t start = __rdtsc();
    if (GetThreadPriority(GetCurrentThread()) != meant_)
        SetThreadPriority(GetCurrentThread(), meant_);
    const std::uint64_t end = __rdtsc();
    nextAt_ = end + share * (end - start);
}

} // namespace tvut
