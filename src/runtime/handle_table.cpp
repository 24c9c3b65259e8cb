// A slot's state is one word: its generation, whether its handle is open, and how many use its object. A slot
// is free when it is neither open nor used. All changes are one exchange of the word; whoever brings the uses
// of a closed slot to nothing is alone with the object, and the slot is free only when that is gone.
#include "runtime/handle_table.h"

namespace tvut {

namespace {

// Of a handle, from its lowest bit: mark 1, kind 4, slot 13, generation 14. Addresses of objects are even.
constexpr std::uint32_t mark = 1;
constexpr unsigned kindShift = 1, slotShift = 5, generationShift = 18;
constexpr std::uint32_t kindMask = 0xF, slotMask = clsHandleSlots::mostSlots - 1;

// Of a slot's state: uses 17, open 1, generation 14.
constexpr std::uint32_t mostUses = (1u << 17) - 1;
constexpr std::uint32_t open = 1u << 17;
constexpr std::uint32_t oneGeneration = 1u << generationShift;

std::uint32_t GenerationOf(std::uint32_t word) {
    return word & ~(oneGeneration - 1);
}

} // namespace

std::uint32_t clsHandleSlots::Add(void* object) const noexcept {
    for (std::size_t tried = 0; tried < slots_.size(); ++tried) {
        const auto index =
            static_cast<std::uint32_t>(next_.fetch_add(1, std::memory_order_relaxed) % slots_.size());
        scSlot& slot = slots_[index];
        std::uint32_t state = slot.state.load(std::memory_order_relaxed);
        if (state != GenerationOf(state)) // in use
            continue;
        const std::uint32_t generation = GenerationOf(state + oneGeneration);
        if (!slot.state.compare_exchange_strong(state, generation | 1, std::memory_order_acquire))
            continue; // somebody else's by now
        slot.object = object;
        slot.state.store(generation | open, std::memory_order_release);
        return mark | static_cast<std::uint32_t>(kind_) << kindShift | index << slotShift | generation;
    }
    return 0;
}

std::size_t clsHandleSlots::PlaceOf(std::uint32_t handle) noexcept {
    return handle >> slotShift & slotMask;
}

clsHandleSlots::scSlot* clsHandleSlots::SlotOf(std::uint32_t handle) const noexcept {
    const std::size_t index = PlaceOf(handle);
    const bool ours = (handle & mark) != 0 &&
                      (handle >> kindShift & kindMask) == static_cast<std::uint32_t>(kind_) &&
                      index < slots_.size();
    return ours ? &slots_[index] : nullptr;
}

void* clsHandleSlots::Change(std::uint32_t handle, bool close) const noexcept {
    scSlot* const slot = SlotOf(handle);
    if (!slot)
        return nullptr;
    std::uint32_t state = slot->state.load(std::memory_order_relaxed);
    for (;;) {
        const bool isOpen = (state & open) != 0 && GenerationOf(state) == GenerationOf(handle);
        if (!isOpen || (state & mostUses) == mostUses)
            return nullptr;
        const std::uint32_t wanted = (close ? state & ~open : state) + 1;
        if (slot->state.compare_exchange_weak(state, wanted, std::memory_order_acquire,
                                              std::memory_order_relaxed))
            return slot->object;
    }
}

void clsHandleSlots::Leave(std::uint32_t handle, void (*destroy)(void*) noexcept) const noexcept {
    scSlot& slot = *SlotOf(handle);
    std::uint32_t state = slot.state.load(std::memory_order_acquire);
    for (;;) {
        if (state == (GenerationOf(state) | 1)) { // closed, and this was the last use
            destroy(slot.object);
            slot.state.store(GenerationOf(state), std::memory_order_release);
            return;
        }
        if (slot.state.compare_exchange_weak(state, state - 1, std::memory_order_acq_rel,
                                             std::memory_order_acquire))
            return;
    }
}

} // namespace tvut
