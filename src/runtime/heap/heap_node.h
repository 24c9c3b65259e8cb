// A heap: a private heap of the system with a name, an owner and counters.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/heap/object_layout.h"
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
namespace HeapFlag {
constexpr std::uint32_t zero = 0x1;    // allocation: zeroed
constexpr std::uint32_t fill = 0x2;    // allocation: filled
constexpr std::uint32_t noStack = 0x4; // allocation: DEBUG without a call stack
constexpr std::uint32_t unserialised = 0x10;
constexpr std::uint32_t exceptions = 0x20;
constexpr std::uint32_t neverDebug = 0x40;
constexpr std::uint32_t refused = 0x80;
constexpr std::uint32_t silentDelete = 0x100;
constexpr std::uint32_t debug = 0x40000000;
} // namespace HeapFlag

// A heap; its handle is the record's address.
struct clsHeapNode {
    static constexpr std::size_t longestName = 32; // characters; longer names are cut

    clsModuleNode* module;
    std::array<char16_t, longestName + 1> name;
    std::uint32_t flags;
    DWORD options;         // of the system's heap
    scCallStack* creation; // null unless DEBUG
    HANDLE heap;
    std::int32_t objects;
    std::int32_t payloadBytes; // of DEBUG objects
    std::int32_t allocations;  // ever
    std::int32_t mostObjects;
    clsHeapNode* next;
    clsHeapNode* previous;
    const void* self;          // the record's address: tells a heap from what a stale handle leads to
    std::int32_t blocks;       // of the system's heap that objects have; failed allocations are no blocks
    std::int32_t debugObjects; // of those
    bool broken;               // the system's heap failed within: it is not entered again

    bool IsDebug() const noexcept { return (flags & HeapFlag::debug) != 0; }
    bool Traced() const noexcept { return module->Traced(); }
    std::u16string_view ShownName() const noexcept { return name[0] ? name.data() : u"(NULL)"; }
};

// Null for refused flags, and when there is no memory.
clsHeapNode* UtilpCreateHeap(clsModuleNode& module, std::u16string_view name, std::uint32_t flags) noexcept;

// Reports what is left in the heap and destroys it.
HeapResult UtilpDeleteHeap(clsHeapNode& heap) noexcept;

// Whether a handle is a heap's. Follows it, under a guard.
bool UtilpIsHeap(const clsHeapNode* heap) noexcept;

// What a job does with the heaps that are left when it is closed.
void UtilpDestroyLeftHeaps(clsModuleNode& module) noexcept;

// "clsHeapNode['module'/'heap']::" behind a beginning such as "Error: ".
void UtilpPutHeapName(clsDiagnosticLine& line, std::u16string_view beginning,
                      const clsHeapNode& heap) noexcept;

} // namespace tvut
