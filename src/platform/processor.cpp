// The compiler's own support asks both the processor and, for AVX, the system.
#include "platform/processor.h"

namespace tvut {

bool PlatformHasSsse3() noexcept {
    __builtin_cpu_init(); // questions come from the start of the library, too
    return __builtin_cpu_supports("ssse3") != 0;
}

bool PlatformHasAvx2() noexcept {
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
}

} // namespace tvut
