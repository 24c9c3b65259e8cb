#include "runtime/heap/object_check.h"

namespace tvut {

scDebugHeader* UtilpDebugObject(const clsHeapNode& heap, void* block, std::size_t bytes) noexcept {
    auto* const header = static_cast<scDebugHeader*>(block);
    bool ours = false;
    auto look = [&] { ours = header->magic == debugMagic && header->heap == heap.system.Handle(); };
    return bytes >= debugOverhead && PlatformGuarded(look) == 0 && ours ? header : nullptr;
}

Damage UtilpExamineObject(scDebugHeader* header) noexcept {
    Damage damage = Damage::magic;
    auto examine = [&] {
        if (header->magic != debugMagic)
            return;
        damage = Damage::fence;
        if (HasFence(header))
            damage = Damage::none;
    };
    PlatformGuarded(examine); // what cannot be read is as damaged as had been found by then
    return damage;
}

} // namespace tvut
