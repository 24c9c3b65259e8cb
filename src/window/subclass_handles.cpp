#include "window/subclass_handles.h"

#include "runtime/handle_table.h"

namespace tvut {

namespace {

constexpr std::size_t mostSubclasses = clsHandleSlots::mostSlots;

using SubclassReference = std::shared_ptr<scSubclass>;
constinit clsHandleTable<SubclassReference, HandleKind::subclass, mostSubclasses> subclasses;
constinit std::array<std::atomic<std::uint32_t>, mostSubclasses> gone{}; // the last one of each slot

} // namespace

bool UtilpGiveHandle(const std::shared_ptr<scSubclass>& subclass) {
    auto reference = std::make_unique<SubclassReference>(subclass);
    subclass->handle = subclasses.Add(reference);
    return subclass->handle != 0;
}

std::shared_ptr<scSubclass> UtilpFindSubclass(std::uint32_t handle) noexcept {
    const auto use = subclasses.Use(handle);
    return use ? *use : nullptr;
}

bool UtilpCloseSubclass(std::uint32_t handle) noexcept {
    return static_cast<bool>(subclasses.Close(handle));
}

void UtilpCloseGoneSubclass(std::uint32_t handle) noexcept {
    gone[clsHandleSlots::PlaceOf(handle)].store(handle, std::memory_order_release);
    UtilpCloseSubclass(handle);
}

bool UtilpForgetGoneSubclass(std::uint32_t handle) noexcept {
    std::uint32_t expected = handle;
    return handle != 0 && gone[clsHandleSlots::PlaceOf(handle)].compare_exchange_strong(
                              expected, 0, std::memory_order_acq_rel);
}

} // namespace tvut
