// The jobs: one record a client module, found by its name, counted, and in charge of its heaps.
//
// Everything here is called under the global lock.
#pragma once

#include "runtime/call_stack.h"
#include "runtime/diagnostics.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace tvut {

struct clsHeapNode;

enum class JobResult : std::int32_t { success = 0, badHandle = -2, heapsLeft = -5 };

// A job; its handle is the record's address.
struct clsModuleNode {
    static constexpr std::size_t longestName = 32;             // characters; longer names are cut
    static constexpr std::int32_t traceFlag = INT32_MIN;       // bit 31: every call is traced
    static constexpr std::int32_t debugHeapsFlag = 0x40000000; // heaps are DEBUG unless they refuse

    std::array<char16_t, longestName + 1> name;
    std::int32_t flags;
    scCallStack* creation; // null without the trace flag
    std::int32_t references;
    clsModuleNode* next;
    clsModuleNode* previous;
    clsHeapNode* firstHeap;
    clsHeapNode* lastHeap;

    std::u16string_view Name() const noexcept { return name.data(); }
    bool Traced() const noexcept { return (flags & traceFlag) != 0; }
};

// What is done about the heaps that a job still has when it is closed: reports and destroys each of them.
using LeftHeapsHandler = void (*)(clsModuleNode& job);

class clsModuleList {
  public:
    explicit clsModuleList(LeftHeapsHandler handler) noexcept : leftHeaps_(handler) {}

    // Finds the job of that name and adds a reference, or makes it. Null when there is no memory.
    clsModuleNode* Open(std::u16string_view name, std::int32_t flags) noexcept;

    JobResult Close(clsModuleNode* job) noexcept;

    // Whether the pointer is a job's; it is only compared, never followed.
    bool Holds(const clsModuleNode* job) const noexcept;

  private:
    clsModuleNode* Find(std::u16string_view name) const noexcept;
    clsModuleNode* Add(std::u16string_view name, std::int32_t flags) noexcept;
    JobResult Delete(clsModuleNode& job) noexcept;
    void Unlink(clsModuleNode& job) noexcept;

    LeftHeapsHandler leftHeaps_;
    clsModuleNode* head_ = nullptr;
    clsModuleNode* tail_ = nullptr;
};

} // namespace tvut
