// The modules of a process, found by walking its address space: the loader's own list may be what is damaged.
#pragma once

#include "runtime/crash/process_memory.h"

#include <array>
#include <span>
#include <string_view>

namespace tvut {

struct scModule {
    scMemoryRange range;         // where it is loaded, and the size of its image
    std::uint32_t checksum = 0;  // of its header
    std::uint32_t timeStamp = 0; // of its header, seconds since 1970
    scMemoryRange codeView;      // the debug directory's record that names the PDB; no bytes: none
    bool hasVersion = false;     // its resources have one
    std::uint32_t fileVersionHigh = 0, fileVersionLow = 0;
    std::uint32_t productVersionHigh = 0, productVersionLow = 0;
    std::u16string_view path{}; // not set here: the system knows it
};

// The modules in the order of their addresses, at most as many as there is room for. Returns their number.
std::size_t UtilpFindModules(IclsProcessMemory& memory, std::span<scModule> modules) noexcept;

// Reads what a module's header and version resource say. False when no module begins there. What is damaged
// is left as it was: a header without a version gives a module without one.
bool UtilpReadModule(IclsProcessMemory& memory, std::uint32_t address, scModule& module) noexcept;

// A module's table of frames, the section .eh_frame; no bytes where it has none.
scMemoryRange UtilpFrameTableOf(IclsProcessMemory& memory, std::uint32_t module) noexcept;

// The one of sorted modules that an address lies in, or null.
const scModule* UtilpModuleAt(std::span<const scModule> modules, std::uint32_t address) noexcept;

} // namespace tvut
