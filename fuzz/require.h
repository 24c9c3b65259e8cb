// Ends a fuzzer that has found a fault, and names it.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace tvut {

inline void Require(const char* noFault) {
    if (!noFault)
        return;
    std::fprintf(stderr, "%s\n", noFault);
    std::abort();
}

} // namespace tvut
