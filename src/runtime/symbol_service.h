// Functions and lines from the system's debug-help service, which reads program databases.
//
// It serves one thread at a time and asks the loader. So it is made ready before locks are taken; a thread
// that finds it busy does without: one that makes it ready may wait for the loader, and one within the loader
// for those who ask it.
#pragma once

#include <array>
#include <cstdint>

namespace tvut {

struct scServiceFunction {
    std::array<wchar_t, 400> function; // terminated, readable; empty: not known
    std::uint32_t functionOffset = 0;
    std::array<wchar_t, 260> file; // terminated, without folder; empty: not known
    std::uint32_t line = 0;
};

// Loads the service, or has it look for new modules, at most once a second. False when nothing has changed.
bool UtilpPrepareSymbolService() noexcept;

// Nothing before the service is prepared, and of modules of which it knows exports alone: those are better
// known from the module itself. Asks the loader nothing.
void UtilpAskSymbolService(const void* address, scServiceFunction& found) noexcept;

} // namespace tvut
