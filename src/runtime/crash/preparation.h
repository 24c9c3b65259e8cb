// What a crash needs, made ready when protection starts: after it nobody can be asked any more.
#pragma once

#include "platform/crash_handlers.h"
#include "platform/drive_paths.h"
#include "runtime/crash/crash_report.h"
#include "runtime/crash/dump_layout.h"
#include "runtime/crash/fixed_text.h"

#include <cstdint>
#include <span>

namespace tvut {

constexpr std::size_t longestCrashPath = 900; // characters, with "\??\" before it
using CrashPath = clsFixedText<longestCrashPath>;

struct scPreparation {
    bool endsProcess = false;
    bool isFull = false;
    bool showsNotice = false;
    void(__stdcall* after)(const wchar_t* report, const wchar_t* dump, UINT_PTR user) = nullptr;
    UINT_PTR user = 0;

    clsFixedText<700> prefix; // the folder and the host's name: "\??\C:\folder\host-"
    clsFixedText<256> product, version;
    clsFixedText<1024> program; // its path
    scReportSystem system;      // what does not change
    scDumpSystemInfo dumpSystem;
    std::uint32_t pageSize = 4096;
    std::uint32_t lastAddress = 0; // of those that programs use
    std::uint32_t processId = 0;
    clsDrivePaths drives;
    std::span<std::byte> room; // a megabyte, not touched yet
};

// The notes of the process.
clsNotes& UtilpNotes() noexcept;

} // namespace tvut
