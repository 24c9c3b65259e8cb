// For functions of a few instructions in loops whose every call counts: the compiler's own judgement weighs
// the size of the code, and leaves some of them out of line. And for what is rare there, which would cost
// each call the registers that it needs.
#pragma once

#ifdef _MSC_VER
#define TVUT_ALWAYS_INLINE __forceinline
#define TVUT_NEVER_INLINE __declspec(noinline)
#else
#define TVUT_ALWAYS_INLINE inline __attribute__((always_inline))
#define TVUT_NEVER_INLINE __attribute__((noinline))
#endif
