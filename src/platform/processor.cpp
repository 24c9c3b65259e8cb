#include "platform/processor.h"

#if defined(TVUT_HAS_X86) && !defined(__GNUC__)
#include <immintrin.h>
#include <intrin.h>
#elif defined(TVUT_HAS_X86)
#include <cpuid.h>
#endif

namespace tvut {

#ifndef TVUT_HAS_X86

bool PlatformHasSsse3() noexcept {
    return false;
}
bool PlatformHasAvx2() noexcept {
    return false;
}
bool PlatformHasClmul() noexcept {
    return false;
}
scProcessorIdentity PlatformProcessorIdentity() noexcept {
    return {};
}

#elif defined(__GNUC__)

// The compiler's own support asks both the processor and, for AVX, the system.
bool PlatformHasSsse3() noexcept {
    __builtin_cpu_init(); // questions come from the start of the library, too
    return __builtin_cpu_supports("ssse3") != 0;
}
bool PlatformHasAvx2() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
}
bool PlatformHasClmul() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("pclmul") != 0;
}
scProcessorIdentity PlatformProcessorIdentity() noexcept {
    scProcessorIdentity identity;
    unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(0, &eax, &ebx, &ecx, &edx) != 0)
        identity.vendor = {ebx, edx, ecx};
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0) {
        identity.version = eax;
        identity.features = edx;
    }
    return identity;
}

#else

namespace {

bool Bit(int leaf, int word, int bit) noexcept {
    int answer[4];
    __cpuid(answer, 0);
    if (answer[0] < leaf)
        return false;
    __cpuidex(answer, leaf, 0);
    return (answer[word] >> bit & 1) != 0;
}

} // namespace

bool PlatformHasSsse3() noexcept {
    return Bit(1, 2, 9);
}
bool PlatformHasAvx2() noexcept {
    constexpr unsigned long long bothHalves = 6;
    return Bit(1, 2, 27) && (_xgetbv(0) & bothHalves) == bothHalves && Bit(7, 1, 5);
}
bool PlatformHasClmul() noexcept {
    return Bit(1, 2, 1);
}
scProcessorIdentity PlatformProcessorIdentity() noexcept {
    int first[4], second[4];
    __cpuid(first, 0);
    __cpuid(second, 1);
    const auto word = [](int value) { return static_cast<std::uint32_t>(value); };
    return {{word(first[1]), word(first[3]), word(first[2])}, word(second[0]), word(second[3])};
}

#endif

} // namespace tvut
