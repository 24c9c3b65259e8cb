#include "runtime/output/look_turn.h"

namespace tvut {

bool clsLookTurn::Await(clsCriticalSection& section) noexcept {
    const DWORD start = GetTickCount();
    DWORD waited = 0;
    for (; looker_ != 0 && looker_ != GetCurrentThreadId() && waited < longestWait;
         waited = GetTickCount() - start)
        section.Sleep(ended_, longestWait - waited);
    return waited < longestWait;
}

} // namespace tvut
