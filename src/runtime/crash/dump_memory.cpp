// Nobody knows which words of a stack are pointers, so each is taken for one: where it leads into writable
// memory, some of that is kept. Words beside each other mostly lead to the same place; what lies in the range
// that was added last is passed over, which spares most questions to the system. Settle joins what overlaps
// otherwise.
#include "runtime/crash/dump_memory.h"

#include <algorithm>
#include <array>

namespace tvut {

namespace {

constexpr std::uint32_t aroundCode = 512;   // bytes
constexpr std::uint32_t aroundNamed = 1024; // bytes
constexpr std::uint32_t topOfStack = 4096;  // bytes
constexpr std::uint32_t mostNamed = 512;    // addresses
constexpr std::uint32_t wordSize = 4;

// So many bytes around an address, as far as they lie in its region.
scMemoryRange Around(const scMemoryRegion& region, std::uint32_t address, std::uint32_t bytes) noexcept {
    const std::uint64_t begin =
        std::max<std::uint64_t>(region.range.address, address < bytes / 2 ? 0 : address - bytes / 2);
    const std::uint64_t end = std::min<std::uint64_t>(region.range.End(), std::uint64_t{address} + bytes / 2);
    return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin)};
}

bool IsBefore(const scMemoryRange& left, const scMemoryRange& right) noexcept {
    return left.address < right.address;
}

// Adds what words point at, each of them once where they follow each other.
class clsNamed {
  public:
    clsNamed(clsMemoryRanges& ranges, IclsProcessMemory& memory) noexcept
        : ranges_(ranges), memory_(memory) {}

    void Add(std::uint32_t address) noexcept {
        scMemoryRegion region;
        if (left_ == 0 || (address >= last_.address && address < last_.End()) ||
            !memory_.RegionAt(address, region) || !region.isReadable || !region.isWritable)
            return;
        last_ = Around(region, address, aroundNamed);
        ranges_.Add(last_);
        --left_;
    }

  private:
    clsMemoryRanges& ranges_;
    IclsProcessMemory& memory_;
    scMemoryRange last_;
    std::uint32_t left_ = mostNamed;
};

} // namespace

void clsMemoryRanges::Add(scMemoryRange range) noexcept {
    if (range.bytes != 0 && count_ < room_.size())
        room_[count_++] = range;
}

// The heap sort of the library needs no memory, and no stack to speak of.
void clsMemoryRanges::Settle() noexcept {
    std::make_heap(room_.data(), room_.data() + count_, IsBefore);
    std::sort_heap(room_.data(), room_.data() + count_, IsBefore);
    std::size_t kept = 0;
    for (const scMemoryRange& range : Ranges()) {
        if (kept == 0 || range.address > room_[kept - 1].End())
            room_[kept++] = range;
        else if (range.End() > room_[kept - 1].End())
            room_[kept - 1].bytes = static_cast<std::uint32_t>(range.End() - room_[kept - 1].address);
    }
    count_ = kept;
}

scMemoryRange UtilpStackRange(IclsProcessMemory& memory, std::uint32_t pointer, std::uint32_t stackEnd,
                              std::uint32_t mostBytes) noexcept {
    scMemoryRegion region;
    if (!memory.RegionAt(pointer, region) || !region.isReadable)
        return {};
    const std::uint64_t end =
        stackEnd > pointer ? std::min<std::uint64_t>(stackEnd, region.range.End()) : region.range.End();
    return {pointer, static_cast<std::uint32_t>(std::min<std::uint64_t>(end - pointer, mostBytes))};
}

void UtilpAddCode(clsMemoryRanges& ranges, IclsProcessMemory& memory, std::uint32_t eip) noexcept {
    scMemoryRegion region;
    if (memory.RegionAt(eip, region) && region.isReadable)
        ranges.Add(Around(region, eip, aroundCode));
}

void UtilpAddNamedMemory(clsMemoryRanges& ranges, IclsProcessMemory& memory, const scThreadContext& context,
                         scMemoryRange stack) noexcept {
    clsNamed named(ranges, memory);
    for (const std::uint32_t value : {context.eax, context.ebx, context.ecx, context.edx, context.esi,
                                      context.edi, context.ebp, context.esp})
        named.Add(value);
    std::array<std::uint32_t, topOfStack / wordSize> words;
    const std::size_t bytes = memory.Read(stack.address, words.data(), std::min(stack.bytes, topOfStack));
    for (std::size_t i = 0; i < bytes / wordSize; ++i)
        named.Add(words[i]);
}

} // namespace tvut
