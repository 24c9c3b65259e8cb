// The record of a heap: a private heap of the system with a name, an owner and counters.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/system_heap.h"
#include "runtime/module_list.h"

#include <string_view>

namespace tvut {

enum class HeapResult : std::int32_t {
    success = 0,
    failed = -2,
    corrupted = -3,
    badObject = -6,
    notSupported = -7,
};

// Flags of heaps and of allocations.
namespace heapFlag {
constexpr std::uint32_t zero = 0x1;    // allocation: zeroed
constexpr std::uint32_t fill = 0x2;    // allocation: filled
constexpr std::uint32_t noStack = 0x4; // allocation: DEBUG without a call stack
constexpr std::uint32_t unserialised = 0x10;
constexpr std::uint32_t exceptions = 0x20;
constexpr std::uint32_t neverDebug = 0x40;
constexpr std::uint32_t refused = 0x80;
constexpr std::uint32_t silentDelete = 0x100;
constexpr std::uint32_t debug = 0x40000000;
} // namespace heapFlag

// A heap; its handle is the record's address. Made in zeroed memory.
struct clsHeapNode {
    static constexpr std::size_t longestName = 32; // characters; longer names are cut

    clsModuleNode* module;
    std::array<char16_t, longestName + 1> name;
    std::uint32_t flags;
    scCallStack* creation; // null unless DEBUG
    clsSystemHeap system;
    std::int32_t objects;
    std::int32_t payloadBytes; // of DEBUG objects
    std::int32_t allocations;  // ever
    std::int32_t mostObjects;
    std::int32_t debugObjects; // blocks that are DEBUG objects; failed allocations are none
    clsHeapNode* next;
    clsHeapNode* previous;
    const void* self; // the record's address: tells a heap from what a stale handle leads to

    bool IsDebug() const noexcept { return (flags & heapFlag::debug) != 0; }
    bool Traced() const noexcept { return module->Traced(); }
    std::u16string_view ShownName() const noexcept { return name[0] ? name.data() : u"(NULL)"; }
};

// Whether a handle is a heap's. Follows it, under a guard.
bool UtilpIsHeap(const clsHeapNode* heap) noexcept;

// "Error: clsHeapNode['module'/'heap']::" with a beginning such as "Error: ".
clsDiagnosticLine UtilpHeapLine(std::u16string_view beginning, const clsHeapNode& heap) noexcept;

// "Heap['module'/'heap']: "
clsDiagnosticLine UtilpShownHeapLine(const clsHeapNode& heap) noexcept;

// "Error: clsHeapNode['module'/'heap']::FreeObject(0X0012ABCD)"
clsDiagnosticLine UtilpHeapCallLine(std::u16string_view beginning, const clsHeapNode& heap,
                                    std::u16string_view call, const void* payload) noexcept;

} // namespace tvut
