// The registers of a 32-bit thread, laid out as the system and a dump have them (CONTEXT of winnt.h, x86), so
// that one is copied to the other byte by byte.
#pragma once

#include <array>
#include <cstdint>

namespace tvut {

struct scThreadContext {
    std::uint32_t flags = 0; // which parts are set: CONTEXT_FULL and so on
    std::uint32_t dr0 = 0, dr1 = 0, dr2 = 0, dr3 = 0, dr6 = 0, dr7 = 0;
    std::array<std::uint32_t, 28> floatSave{};
    std::uint32_t segGs = 0, segFs = 0, segEs = 0, segDs = 0;
    std::uint32_t edi = 0, esi = 0, ebx = 0, edx = 0, ecx = 0, eax = 0;
    std::uint32_t ebp = 0, eip = 0, segCs = 0, eflags = 0, esp = 0, segSs = 0;
    std::array<std::uint8_t, 512> extended{};
};
static_assert(sizeof(scThreadContext) == 716);

// Why a thread stopped, as the system tells it (EXCEPTION_RECORD).
struct scException {
    std::uint32_t threadId = 0;
    std::uint32_t code = 0;
    std::uint32_t flags = 0;
    std::uint32_t address = 0;
    std::uint32_t parameterCount = 0; // at most 15
    std::array<std::uint32_t, 15> parameters{};
};

} // namespace tvut
