#include "machine.h"

#include "harness.h"

#include <algorithm>
#include <windows.h>

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

} // namespace

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
