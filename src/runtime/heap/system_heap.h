// A heap of the system's, owned; the one place that enters it.
//
// A call may meet two kinds of damage. What callers pass may lead anywhere, and is looked at first; after
// that only the system's own memory can fail, which is a heap that is damaged within: it is broken then, and
// not entered again. Both are survived under one guard a call, so that an ordinary call pays for one.
#pragma once

#include "platform/guarded.h"
#include "runtime/heap/object_layout.h"

#include <atomic>
#include <utility>

namespace tvut {

class clsSystemHeap {
  public:
    // What is looked up by name, and may be missing.
    static bool CanWalk() noexcept;
    static bool CanCompact() noexcept;
    static bool CanValidate() noexcept; // and walk

    // In zeroed memory. False when the system has no memory for a heap.
    bool Create(DWORD options) noexcept;

    // A heap that is broken stays: to destroy it could take the system's own list of heaps with it.
    void Destroy() noexcept;

    HANDLE Handle() const noexcept { return handle_; }
    bool IsBroken() const noexcept { return broken_; }
    bool RaisesExceptions() const noexcept { return (options_ & HEAP_GENERATE_EXCEPTIONS) != 0; }
    bool IsSerialised() const noexcept { return (options_ & HEAP_NO_SERIALIZE) == 0; }
    DWORD Options() const noexcept { return options_; }

    // What a look has found: the heap to be entered, or null where that is not to be done, and what for.
    struct scWanted {
        clsSystemHeap* heap = nullptr;
        DWORD options = 0;
        std::size_t bytes = 0;
    };
    struct scBlock {
        clsSystemHeap* heap = nullptr;
        void* block = nullptr;
        std::uint32_t* mark = nullptr; // the word of it that is unmade, so that freeing it twice is noticed
    };

    // Both call `look`, which returns one of these and may fail in the memory of callers. The exception is
    // the system's, 0 for none.
    template <class Look>
    static void* Allocate(Look look, unsigned long& exception) noexcept {
        scWanted wanted;
        void* block = nullptr;
        exception = Enter(
            [&] {
                wanted = look();
                return wanted.heap && !wanted.heap->broken_ ? wanted.heap : nullptr;
            },
            [&](clsSystemHeap& heap) { block = HeapAlloc(heap.handle_, wanted.options, wanted.bytes); });
        if (exception != 0 || !block)
            return nullptr;
        ++wanted.heap->blocks_;
        return block;
    }
    template <class Look>
    static bool Free(Look look) noexcept {
        scBlock found;
        BOOL freed = FALSE;
        std::uint32_t mark = 0;
        Enter(
            [&]() -> clsSystemHeap* {
                found = look();
                if (!found.heap || found.heap->broken_)
                    return nullptr;
                LookBefore(found.block);
                mark = std::exchange(*found.mark, freedMark);
                return found.heap;
            },
            [&](clsSystemHeap& heap) {
                freed = HeapFree(heap.handle_, heap.Serialisation(), found.block);
                if (!freed)
                    *found.mark = mark;
            });
        if (freed)
            --found.heap->blocks_;
        return freed != FALSE;
    }

    // Bytes of a block; 0 where there is no telling.
    std::size_t SizeOf(const void* block) noexcept;

    // Of the whole heap, or of one block.
    bool IsValid(const void* block) noexcept;

    // Gives back what is free; the largest free block, 0 for a failure.
    std::size_t Compact() noexcept;

    // Visits every busy block while the heap is locked; a negative result ends the walk. False when the heap
    // could not be walked to its end because it is damaged: the system may say so, or come to an end without
    // having met every block.
    template <class Visitor>
    bool Walk(Visitor& visitor) noexcept {
        return WalkBlocks(
            [](void* context, void* block, std::size_t bytes) -> int {
                return (*static_cast<Visitor*>(context))(block, bytes);
            },
            &visitor);
    }

  private:
    using BlockVisitor = int (*)(void* context, void* block, std::size_t bytes);

    // The guard: `look`, which returns the heap to be entered or null, and then the system's work on it. The
    // fence keeps in front of the note whatever may fail before.
    template <class Look, class Work>
    static unsigned long Enter(Look look, Work work) noexcept {
        clsSystemHeap* entered = nullptr;
        auto body = [&] {
            clsSystemHeap* const heap = look();
            if (!heap)
                return;
            std::atomic_signal_fence(std::memory_order_seq_cst);
            entered = heap;
            work(*heap);
        };
        const unsigned long exception = PlatformGuarded(body);
        if (entered && exception != 0 && exception != STATUS_NO_MEMORY)
            entered->broken_ = true;
        return exception;
    }

    // The system reads its own words before a block. Where a page begins with what looks like an object, the
    // pointer is wrong, and not the heap.
    static void LookBefore(const void* block) noexcept {
        constexpr std::ptrdiff_t systemBytes = 8;
        static_cast<void>(static_cast<const volatile char*>(block)[-systemBytes]);
    }

    DWORD Serialisation() const noexcept { return options_ & HEAP_NO_SERIALIZE; }
    bool WalkBlocks(BlockVisitor visitor, void* context) noexcept;

    HANDLE handle_;
    DWORD options_;
    std::int32_t blocks_; // that were allocated and not freed
    bool broken_;
};

} // namespace tvut
