// How objects lie in a heap, and the words that tell what they are.
//
//     plain    [plainMark] payload
//     DEBUG    [scDebugHeader ... debugMark] payload [fence]
//
// The word just before a payload tells the two apart; anything else there is no object, or a damaged one.
#pragma once

#include "runtime/call_stack.h"

#include <cstring>
#include <windows.h>

namespace tvut {

constexpr std::uint32_t plainMark = 0xFAAFFAAF;
constexpr std::uint32_t debugMark = 0xAFFEAFFE;
constexpr std::uint32_t debugMagic = 0xC0FFEEEE;
constexpr std::uint32_t fenceMark = 0xE5E55E5E;
constexpr std::uint32_t freedMark = 0xCCCCCCCC; // where a mark was, so that freeing twice is noticed
constexpr int freedFill = 0xCC;
constexpr int freshFill = 0xF5;

struct scDebugHeader {
    std::uint32_t magic;
    HANDLE heap;        // the system's heap that holds it
    std::uint32_t tick; // milliseconds, when it was allocated
    scCallStack* stack; // of the allocating call, or null
    std::uint32_t tag;  // the caller's
    std::int32_t size;  // of the payload
    std::uint32_t mark; // last: the word before the payload
};

constexpr std::size_t plainOverhead = sizeof(std::uint32_t);
constexpr std::size_t debugOverhead = sizeof(scDebugHeader) + sizeof(std::uint32_t);

// Addresses are computed as numbers: payloads are what callers pass, sizes may be damaged, and neither need
// lead anywhere.
template <class T>
T* At(const void* base, std::uintptr_t offset) noexcept {
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(base) + offset);
}

inline std::uint32_t& MarkOf(void* payload) noexcept {
    return *At<std::uint32_t>(payload, 0 - sizeof(std::uint32_t));
}
inline scDebugHeader* HeaderOf(void* payload) noexcept {
    return At<scDebugHeader>(payload, 0 - sizeof(scDebugHeader));
}
inline void* PayloadOf(scDebugHeader* header) noexcept {
    return header + 1;
}

// The fence may lie at any address.
inline unsigned char* FenceOf(scDebugHeader* header) noexcept {
    return At<unsigned char>(PayloadOf(header), static_cast<std::uint32_t>(header->size));
}
inline void PutFence(scDebugHeader* header) noexcept {
    std::memcpy(FenceOf(header), &fenceMark, sizeof fenceMark);
}
inline bool HasFence(scDebugHeader* header) noexcept {
    return std::memcmp(FenceOf(header), &fenceMark, sizeof fenceMark) == 0;
}

} // namespace tvut
