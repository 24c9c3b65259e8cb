// What the processor at hand can do beyond the SSE2 that the library takes for granted, and how a
// function says that it is compiled for more.
//
// A function marked TVUT_FOR_... may only be called where the matching question is answered by yes.
#pragma once

#define TVUT_FOR_SSSE3 __attribute__((target("ssse3")))
#define TVUT_FOR_AVX2 __attribute__((target("avx2")))

namespace tvut {

bool PlatformHasSsse3() noexcept;
bool PlatformHasAvx2() noexcept; // and the system keeps its registers

} // namespace tvut
