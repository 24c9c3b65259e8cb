// What the processor at hand can do beyond the SSE2 that the library takes for granted, and how a
// function says that it is compiled for more.
//
// A function marked TVUT_FOR_... may only be called where the matching question is answered by yes.
#pragma once

#include <array>
#include <cstdint>

#if defined(__i386__) || defined(__x86_64__) || defined(_M_IX86) || defined(_M_X64)
#define TVUT_HAS_X86 1
#ifdef __GNUC__
#define TVUT_FOR_SSSE3 __attribute__((target("ssse3")))
#define TVUT_FOR_AVX2 __attribute__((target("avx2")))
#define TVUT_FOR_CLMUL __attribute__((target("pclmul")))
#else // any function may use any instruction
#define TVUT_FOR_SSSE3
#define TVUT_FOR_AVX2
#define TVUT_FOR_CLMUL
#endif
#endif

namespace tvut {

bool PlatformHasSsse3() noexcept;
bool PlatformHasAvx2() noexcept;  // and the system keeps its registers
bool PlatformHasClmul() noexcept; // PCLMULQDQ

// What the processor says of itself; zeros for one of another family.
struct scProcessorIdentity {
    std::array<std::uint32_t, 3> vendor{};   // "GenuineIntel" and the like: EBX, EDX, ECX of question 0
    std::uint32_t version = 0, features = 0; // EAX, EDX of question 1
};
scProcessorIdentity PlatformProcessorIdentity() noexcept;

} // namespace tvut
