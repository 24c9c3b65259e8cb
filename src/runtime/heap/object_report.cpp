// Everything that is shown is copied under one guard before the first line is written: the object may be
// damaged, and the program's other threads may write to it at any time.
#include "runtime/heap/object_report.h"

#include "runtime/diagnostic_group.h"
#include "runtime/frame_report.h"
#include "runtime/heap/object_check.h"
#include "runtime/stack_names.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

constexpr std::size_t mostDumped = 64; // bytes
constexpr std::size_t rowBytes = 8;

struct scDumped {
    std::uint32_t magic = 0;
    std::int32_t size = 0;
    scCallStack* stack = nullptr;
    std::size_t count = 0;
    std::array<unsigned char, mostDumped> bytes{};
};

// All that a dump shows, read before anything is written.
scDumped Read(scDebugHeader* header) noexcept {
    scDumped dumped;
    auto read = [&] {
        dumped.magic = header->magic;
        dumped.size = header->size;
        dumped.stack = header->stack;
        dumped.count = std::min(static_cast<std::size_t>(std::max(dumped.size, 0)), mostDumped);
        std::memcpy(dumped.bytes.data(), PayloadOf(header), dumped.count);
    };
    if (PlatformGuarded(read) != 0)
        dumped.count = 0;
    return dumped;
}

char16_t Shown(unsigned char byte) noexcept {
    return byte >= 0x20 && byte < 0x7F ? byte : u'.';
}

clsDiagnosticLine Row(const unsigned char* bytes, std::size_t count) noexcept {
    clsDiagnosticLine line;
    line.Put(u"  ");
    for (std::size_t i = 0; i < rowBytes; ++i)
        i < count ? line.PutHex(bytes[i], 2).Put(u" ") : line.PutBlanks(3);
    line.Put(u" ");
    for (std::size_t i = 0; i < rowBytes; ++i) {
        const char16_t shown = i < count ? Shown(bytes[i]) : u' ';
        line.Put({&shown, 1});
    }
    return line;
}

} // namespace

void UtilpDumpObject(scDebugHeader* header) noexcept {
    if (!UtilpDiagnosticsOn())
        return;
    const scDumped dumped = Read(header);
    if (dumped.magic != debugMagic)
        return;
    UtilpReport(clsDiagnosticLine()
                    .Put(u"-Object at ")
                    .PutPointer(PayloadOf(header))
                    .Put(u", ")
                    .Put(dumped.size)
                    .Put(u"(=0x")
                    .PutHex(static_cast<std::uint32_t>(dumped.size), 8)
                    .Put(u") Bytes"));
    for (std::size_t at = 0; at < dumped.count; at += rowBytes)
        UtilpReport(Row(dumped.bytes.data() + at, std::min(rowBytes, dumped.count - at)));
    UtilpReportCallStack(u"Memory object allocation", dumped.stack);
}

void UtilpReportOverrun(scDebugHeader* header) noexcept {
    const clsDiagnosticGroup report(
        UtilpDiagnosticsOn(),
        clsDiagnosticLine().Put(u"Error: Memory overrun, fence value has been changed"));
    UtilpDumpObject(header);
}

void UtilpReportBadPointer(const clsDiagnosticLine& call, std::uint32_t mark,
                           std::u16string_view end) noexcept {
    UtilpReportCall(call, clsDiagnosticLine()
                              .Put(u"bad pointer, or memory underrun (magic=0x")
                              .PutHex(mark, 8)
                              .Put(u")")
                              .Put(end));
}

void UtilpReportCallStack(std::u16string_view title, const scCallStack* stack) noexcept {
    scCallStack copy{};
    auto read = [&] { copy = *stack; };
    if (!stack || PlatformGuarded(read) != 0 || copy.count > scCallStack::mostFrames)
        return;
    UtilpReport(clsDiagnosticLine().Put(title));
    UtilpReportFrames({copy.addresses.data(), copy.count});
}

void UtilpReportObjects(clsHeapNode& heap) noexcept {
    const clsStackNames names; // for all of the objects
    UtilpReport(UtilpShownHeapLine(heap).Put(heap.objects).Put(u" objects"));
    UtilpReportCallStack(u"Heap allocation", heap.creation);
    auto dump = [&](void* block, std::size_t bytes) {
        if (scDebugHeader* const header = UtilpDebugObject(heap, block, bytes))
            UtilpDumpObject(header);
        return 0;
    };
    heap.system.Walk(dump);
}

} // namespace tvut
