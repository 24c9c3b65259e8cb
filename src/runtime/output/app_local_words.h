// The words that all copies of the library in one process share, as they lie in memory.
#pragma once

#include <cstdint>

namespace tvut {

// Copies of other versions read and write them, too: each word is changed atomically, and by itself.
struct scAppLocalData {
    std::int32_t level;   // of nesting
    std::int32_t lines;   // written
    std::int32_t modules; // attached
    std::int32_t socket;  // 0: none
};
static_assert(sizeof(scAppLocalData) == 16);

} // namespace tvut
