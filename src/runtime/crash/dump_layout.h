// The parts of a minidump file as they lie in it, little-endian and without padding of their own, after the
// documented structures of minidumpapiset.h (MINIDUMP_HEADER and so on).
#pragma once

#include <array>
#include <cstdint>

namespace tvut {

constexpr std::uint32_t dumpSignature = 0x504D444D; // "MDMP"
constexpr std::uint32_t dumpVersion = 0x0000A793;

enum class DumpStream : std::uint32_t {
    threadList = 3,
    moduleList = 4,
    memoryList = 5,
    exception = 6,
    systemInfo = 7,
    memory64List = 9,
    commentW = 11,
    miscInfo = 15,
};

#pragma pack(push, 4)

struct scDumpLocation {
    std::uint32_t bytes = 0;
    std::uint32_t position = 0; // in the file
};

struct scDumpHeader {
    std::uint32_t signature = dumpSignature;
    std::uint32_t version = dumpVersion;
    std::uint32_t streamCount = 0;
    std::uint32_t directoryPosition = 0;
    std::uint32_t checksum = 0;
    std::uint32_t time = 0;  // seconds since 1970
    std::uint64_t flags = 0; // 0x2: all memory
};
static_assert(sizeof(scDumpHeader) == 32);

struct scDumpDirectory {
    DumpStream stream{};
    scDumpLocation location;
};
static_assert(sizeof(scDumpDirectory) == 12);

struct scDumpSystemInfo {
    std::uint16_t architecture = 0; // x86
    std::uint16_t processorLevel = 0;
    std::uint16_t processorRevision = 0;
    std::uint8_t processors = 0;
    std::uint8_t productType = 1; // a workstation
    std::uint32_t major = 0, minor = 0, build = 0;
    std::uint32_t platform = 2; // NT
    std::uint32_t servicePackPosition = 0;
    std::uint16_t suiteMask = 0;
    std::uint16_t reserved = 0;
    std::array<std::uint32_t, 3> vendor{}; // CPUID 0: EBX, EDX, ECX
    std::uint32_t processorVersion = 0;    // CPUID 1: EAX
    std::uint32_t processorFeatures = 0;   // CPUID 1: EDX
    std::uint32_t extendedFeatures = 0;
};
static_assert(sizeof(scDumpSystemInfo) == 56);

struct scDumpMiscInfo {
    std::uint32_t size = sizeof(scDumpMiscInfo);
    std::uint32_t flags = 0; // 1: the process's identifier, 2: its times
    std::uint32_t processId = 0;
    std::uint32_t startTime = 0;  // seconds since 1970
    std::uint32_t userTime = 0;   // seconds
    std::uint32_t kernelTime = 0; // seconds
};
static_assert(sizeof(scDumpMiscInfo) == 24);

struct scDumpMemory {
    std::uint64_t address = 0;
    scDumpLocation location;
};
static_assert(sizeof(scDumpMemory) == 16);

struct scDumpMemory64 { // their bytes lie one after the other
    std::uint64_t address = 0;
    std::uint64_t bytes = 0;
};
static_assert(sizeof(scDumpMemory64) == 16);

struct scDumpThreadEntry {
    std::uint32_t id = 0;
    std::uint32_t suspendCount = 0;
    std::uint32_t priorityClass = 0;
    std::uint32_t priority = 0;
    std::uint64_t environment = 0; // of its TEB
    scDumpMemory stack;
    scDumpLocation context;
};
static_assert(sizeof(scDumpThreadEntry) == 48);

struct scDumpFileInfo { // VS_FIXEDFILEINFO
    std::uint32_t signature = 0, version = 0;
    std::uint32_t fileVersionHigh = 0, fileVersionLow = 0;
    std::uint32_t productVersionHigh = 0, productVersionLow = 0;
    std::array<std::uint32_t, 7> rest{};
};
static_assert(sizeof(scDumpFileInfo) == 52);

struct scDumpModuleEntry {
    std::uint64_t address = 0;
    std::uint32_t bytes = 0;
    std::uint32_t checksum = 0;
    std::uint32_t timeStamp = 0;
    std::uint32_t namePosition = 0;
    scDumpFileInfo version;
    scDumpLocation codeView;
    scDumpLocation misc;
    std::array<std::uint64_t, 2> reserved{};
};
static_assert(sizeof(scDumpModuleEntry) == 108);

struct scDumpException {
    std::uint32_t threadId = 0;
    std::uint32_t alignment = 0;
    std::uint32_t code = 0;
    std::uint32_t flags = 0;
    std::uint64_t record = 0;
    std::uint64_t address = 0;
    std::uint32_t parameterCount = 0;
    std::uint32_t alignment2 = 0;
    std::array<std::uint64_t, 15> parameters{};
    scDumpLocation context;
};
static_assert(sizeof(scDumpException) == 168);

#pragma pack(pop)

} // namespace tvut
