// The protection of the process against crashes that leave nothing behind.
#pragma once

#include "runtime/crash/preparation.h"
#include "runtime/result.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tvut {

struct scProtectionWish {
    bool endsProcess = false;
    bool isFull = false;
    bool showsNotice = false;
    std::u16string_view folder, product, version; // empty: what the system knows
    std::size_t keep = 0;                         // reports; 0: as many as usual
    void(__stdcall* after)(const wchar_t* report, const wchar_t* dump, UINT_PTR user) = nullptr;
    UINT_PTR user = 0;
};

// Starts protection, or counts a further start, which changes nothing. `waiting`: the reports in the folder.
// Throws std::bad_alloc.
UtilResult UtilpStartProtection(const scProtectionWish& wish, std::size_t& waiting);

// Takes back a start; the last one ends it. notFound: there was none.
UtilResult UtilpEndProtection() noexcept;

// Whether the process is protected, and where its reports go then: a full path; else empty. Throws
// std::bad_alloc.
std::wstring UtilpReportFolder();

// The product as reports call it: as protection was told, else what is known of the host program. Throws
// std::bad_alloc.
struct scProductName {
    std::u16string name, version;
};
scProductName UtilpProductName();

// A module was loaded, perhaps with a C runtime of its own. May be called within the loader.
void UtilpProtectModule() noexcept;

// A thread begins; within the loader.
void UtilpProtectThread() noexcept;

// The library is unloaded, but the process goes on.
void UtilpUnloadProtection() noexcept;

} // namespace tvut
