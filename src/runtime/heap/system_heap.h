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

    // Calls of the hot path derive from these: what they look at, ask for and find stands in one object, so
    // that the guarded code gets one pointer. Their Look, which may fail in the memory of callers, fills in
    // the rest, and returns the heap to be entered, or null where that is not to be done.
    struct scCall {
        clsSystemHeap* entered = nullptr;
    };
    struct scAllocateCall : scCall {
        DWORD options = 0;
        std::size_t bytes = 0;
        void* block = nullptr; // found
    };
    struct scFreeCall : scCall {
        void* block = nullptr;
        std::uint32_t* mark = nullptr; // the word of it that is unmade, so that freeing it twice is noticed
        BOOL freed = FALSE;            // found
    };

    // The exception is the system's, 0 for none.
    template <class Call>
    static void* Allocate(Call& call, unsigned long& exception) noexcept {
        auto body = [&call] {
            if (clsSystemHeap* const heap = Usable(call.Look())) {
                Note(call, *heap);
                call.block = HeapAlloc(heap->handle_, call.options, call.bytes);
            }
        };
        exception = Guard(call, body);
        if (exception != 0 || !call.block)
            return nullptr;
        ++call.entered->blocks_;
        return call.block;
    }
    template <class Call>
    static bool Free(Call& call) noexcept {
        auto body = [&call] {
            clsSystemHeap* const heap = Usable(call.Look());
            if (!heap)
                return;
            LookBefore(call.block);
            const std::uint32_t mark = std::exchange(*call.mark, freedMark);
            Note(call, *heap);
            call.freed = HeapFree(heap->handle_, heap->Serialisation(), call.block);
            if (!call.freed)
                *call.mark = mark;
        };
        Guard(call, body);
        if (call.freed)
            --call.entered->blocks_;
        return call.freed != FALSE;
    }

    // Bytes of a block; 0 where there is no telling.
    std::size_t SizeOf(const void* block) noexcept;

    // Of the whole heap, or of one block.
    bool IsValid(const void* block) noexcept;

    // Returns what is free to the system. The size of the largest free block, 0 for a failure.
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

    // From here on what fails is the heap itself. The fence keeps in front of the note whatever may fail
    // before.
    static void Note(scCall& call, clsSystemHeap& heap) noexcept {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        call.entered = &heap;
    }
    template <class Body>
    static unsigned long Guard(const scCall& call, Body& body) noexcept {
        const unsigned long exception = PlatformGuarded(body);
        if (call.entered && exception != 0 && exception != STATUS_NO_MEMORY)
            call.entered->broken_ = true;
        return exception;
    }

    // The system's work on this heap, after a look that may fail in the memory of callers.
    template <class Look, class Work>
    unsigned long Enter(Look look, Work work) noexcept {
        scCall call;
        auto body = [&] {
            look();
            Note(call, *this);
            work();
        };
        return Guard(call, body);
    }
    template <class Work>
    unsigned long Enter(Work work) noexcept {
        return Enter([] {}, work);
    }

    static clsSystemHeap* Usable(clsSystemHeap* heap) noexcept {
        return heap && !heap->broken_ ? heap : nullptr;
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
