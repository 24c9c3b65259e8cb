// For functions of a few instructions in loops whose every call counts: the compiler's own judgement weighs
// the size of the code, and leaves some of them out of line.
#pragma once

#ifdef _MSC_VER
#define TVUT_ALWAYS_INLINE __forceinline
#else
#define TVUT_ALWAYS_INLINE inline __attribute__((always_inline))
#endif
