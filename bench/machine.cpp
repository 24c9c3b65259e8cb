#include "machine.h"

#include "harness.h"

#include <algorithm>
#include <cstdint>
#include <vector>
#include <windows.h>

#include <psapi.h>

namespace bench {

namespace {

// Some fifty microseconds that need nothing but the processor.
double ShortWork() {
    return Timed([] {
        std::size_t value = 1;
        for (int i = 0; i < 50000; ++i)
            value = value * 1664525u + 1013904223u;
        Consume(value);
    });
}

// Calls a function with each committed region of the address space.
template <class Function>
void EachCommittedRegion(Function function) {
    MEMORY_BASIC_INFORMATION region;
    for (std::uintptr_t address = 0;
         VirtualQuery(reinterpret_cast<void*>(address), &region, sizeof region) != 0;) {
        if (region.State == MEM_COMMIT)
            function(region);
        const std::uintptr_t next = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
        if (next <= address)
            break;
        address = next;
    }
}

} // namespace

std::size_t CommittedPrivateBytes() {
    std::size_t bytes = 0;
    EachCommittedRegion([&](const MEMORY_BASIC_INFORMATION& region) {
        bytes += region.Type == MEM_PRIVATE ? region.RegionSize : 0;
    });
    return bytes;
}

std::size_t ResidentPrivateBytes() {
    constexpr std::size_t page = 4096;
    std::vector<PSAPI_WORKING_SET_EX_INFORMATION> pages;
    pages.reserve(1 << 16); // or the pages of this list would count
    EachCommittedRegion([&](const MEMORY_BASIC_INFORMATION& region) {
        for (std::size_t at = 0; at < region.RegionSize; at += page)
            pages.push_back({static_cast<char*>(region.BaseAddress) + at, {}});
    });
    Require(K32QueryWorkingSetEx(GetCurrentProcess(), pages.data(),
                                 static_cast<DWORD>(pages.size() * sizeof pages[0])) != FALSE,
            "the pages in memory cannot be asked for");
    return page * static_cast<std::size_t>(std::ranges::count_if(pages, [](const auto& each) {
               return each.VirtualAttributes.Valid && !each.VirtualAttributes.Shared;
           }));
}

std::string ProcessorName() {
    char name[128] = "";
    DWORD bytes = sizeof name - 1;
    RegGetValueA(HKEY_LOCAL_MACHINE, R"(HARDWARE\DESCRIPTION\System\CentralProcessor\0)",
                 "ProcessorNameString", RRF_RT_REG_SZ, nullptr, name, &bytes);
    const std::string text = name;
    const std::size_t end = text.find_last_not_of(' ');
    return end == std::string::npos ? "unknown processor" : text.substr(0, end + 1);
}

double Noise() {
    constexpr double duration = 0.5e9;
    const double start = NowNs();
    double least = ShortWork();
    std::size_t count = 1;
    for (; NowNs() - start < duration; ++count)
        least = std::min(least, ShortWork());
    return (NowNs() - start) / static_cast<double>(count) / least;
}

} // namespace bench
