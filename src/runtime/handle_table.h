// Opaque handles of objects: a closed, foreign or damaged handle is refused, never followed.
//
// A handle is 32 bits: a mark that no address has, the kind of object, its slot in the kind's table, and the
// slot's generation, which counts how often the slot was taken. Slots are taken in turn, so that a value
// comes back only after 16,384 times as many objects as the table has room for. Any thread at any time; no
// lock, so none that a thread could have died with, and no memory but the table's own, which is zero at the
// start.
//
// An object that is in use when its handle is closed ends when the last user is done with it.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

namespace tvut {

enum class HandleKind : std::uint32_t { archive, document, threadPool, subclass, hook, help, impersonation };

// What the tables of all kinds do, on objects of a type that only the table knows.
class clsHandleSlots {
  public:
    struct scSlot {
        std::atomic<std::uint32_t> state{0};
        void* object = nullptr;
    };
    static constexpr std::size_t mostSlots = 1u << 13;

    clsHandleSlots(std::span<scSlot> slots, std::atomic<std::uint32_t>& next, HandleKind kind) noexcept
        : slots_(slots), next_(next), kind_(kind) {}

    std::uint32_t Add(void* object) const noexcept; // 0: no slot is free

    // The handle's object, which stays until Leave; null when there is none. Close refuses all later uses.
    void* Enter(std::uint32_t handle) const noexcept { return Change(handle, false); }
    void* Close(std::uint32_t handle) const noexcept { return Change(handle, true); }
    void Leave(std::uint32_t handle, void (*destroy)(void*) noexcept) const noexcept;

    // The place of a handle's slot in the table, below mostSlots, whatever the handle is.
    static std::size_t PlaceOf(std::uint32_t handle) noexcept;

  private:
    scSlot* SlotOf(std::uint32_t handle) const noexcept;
    void* Change(std::uint32_t handle, bool close) const noexcept;

    std::span<scSlot> slots_;
    std::atomic<std::uint32_t>& next_;
    HandleKind kind_;
};

// A table for a fixed number of objects of a type, made for static storage.
template <class Object, HandleKind kind, std::size_t most>
class clsHandleTable {
    static_assert(most <= clsHandleSlots::mostSlots);

  public:
    constexpr clsHandleTable() noexcept = default;
    clsHandleTable(const clsHandleTable&) = delete;
    clsHandleTable& operator=(const clsHandleTable&) = delete;

    // An object that stays while this does; none for a handle that was refused.
    class clsUse {
      public:
        clsUse(clsHandleTable& table, std::uint32_t handle, void* object) noexcept
            : table_(table), handle_(handle), object_(static_cast<Object*>(object)) {}
        clsUse(clsUse&& other) noexcept
            : table_(other.table_), handle_(other.handle_), object_(std::exchange(other.object_, nullptr)) {}
        clsUse& operator=(clsUse&&) = delete;
        ~clsUse() {
            if (object_)
                table_.Slots().Leave(handle_, Destroy);
        }
        explicit operator bool() const noexcept { return object_; }
        Object* operator->() const noexcept { return object_; }
        Object& operator*() const noexcept { return *object_; }

      private:
        clsHandleTable& table_;
        std::uint32_t handle_;
        Object* object_;
    };

    // Gives an object a handle; 0 when there are too many, and the object stays the caller's.
    std::uint32_t Add(std::unique_ptr<Object>& object) noexcept {
        const std::uint32_t handle = Slots().Add(object.get());
        if (handle != 0)
            (void)object.release();
        return handle;
    }

    clsUse Use(std::uint32_t handle) noexcept { return {*this, handle, Slots().Enter(handle)}; }

    // The last use that is given for a handle: whoever closes it finishes the object's work here.
    clsUse Close(std::uint32_t handle) noexcept { return {*this, handle, Slots().Close(handle)}; }

  private:
    clsHandleSlots Slots() noexcept { return {room_, next_, kind}; }
    static void Destroy(void* object) noexcept { delete static_cast<Object*>(object); }

    std::array<clsHandleSlots::scSlot, most> room_{};
    std::atomic<std::uint32_t> next_{0};
};

} // namespace tvut
