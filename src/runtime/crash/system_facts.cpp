// Asked in a crash, so by bare calls alone. The system's record of its memory has another size in each
// version of it, and a wrong one may be refused: known sizes are tried, then a larger room. Addresses in use
// are added up region by region.
#include "runtime/crash/system_facts.h"

#include "platform/bare_system.h"

namespace tvut {

namespace {

constexpr ULONG performanceKind = 2;
constexpr std::size_t availablePagesAt = 44; // bytes, in what it gives

std::uint32_t Megabytes(std::uint64_t bytes) noexcept {
    return static_cast<std::uint32_t>(bytes >> 20);
}

// Pages of memory that nobody uses; 0 when the system does not say.
std::uint32_t AvailablePages() noexcept {
    alignas(8) std::byte facts[1024];
    std::uint32_t pages = 0;
    for (const std::size_t size : {std::size_t{312}, std::size_t{344}, sizeof facts})
        if (PlatformBareSystemInformation(performanceKind, {facts, size}) >= 0) {
            pages = *reinterpret_cast<const std::uint32_t*>(facts + availablePagesAt);
            break;
        }
    return pages;
}

std::uint64_t UsedAddresses(std::uint32_t last) noexcept {
    std::uint64_t used = 0;
    MEMORY_BASIC_INFORMATION region{};
    for (std::uint32_t at = 0; at < last;) {
        const auto* const address = reinterpret_cast<const void*>(static_cast<std::uintptr_t>(at));
        if (!PlatformBareRegion(reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)), address, region) ||
            region.RegionSize == 0)
            break;
        if (region.State != MEM_FREE)
            used += region.RegionSize;
        const auto next = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(region.BaseAddress) +
                                                     region.RegionSize);
        if (next <= at)
            break;
        at = next;
    }
    return used;
}

} // namespace

scReportSystem UtilpSystemNow(const scPreparation& preparation) noexcept {
    scReportSystem now = preparation.system;
    const std::uint32_t available =
        Megabytes(static_cast<std::uint64_t>(AvailablePages()) * preparation.pageSize);
    now.memoryUsed = now.memoryThere - (available < now.memoryThere ? available : now.memoryThere);
    now.addressesUsed = Megabytes(UsedAddresses(preparation.lastAddress));
    return now;
}

} // namespace tvut
