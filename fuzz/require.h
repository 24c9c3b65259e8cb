// Ends a fuzzer that has found a fault.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tvut {

inline void Require(bool condition) {
    if (!condition)
        std::abort();
}

// The same with a fault's name, null when there is none.
inline void Require(const char* noFault) {
    if (noFault)
        std::fprintf(stderr, "%s\n", noFault);
    Require(noFault == nullptr);
}

} // namespace tvut
