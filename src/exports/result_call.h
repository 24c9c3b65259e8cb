// The frame of exports that return a result of results.h: what every family after the first ones shares.
#pragma once

#include "exports/guard.h"
#include "exports/wide_text.h"
#include "platform/ole_string.h"
#include "platform/owned.h"
#include "runtime/result.h"

#include <initializer_list>
#include <string_view>

namespace tvut {

// Calls the body of an export. What it throws is a failure, as memory that runs out is; the thread's
// last-error value stays the caller's.
template <class Body>
INT UtilpResultOf(Body&& body) noexcept {
    const clsLastErrorKept lastError;
    return static_cast<INT>(UtilpGuard(UtilResult::failed, std::forward<Body>(body)));
}

// Whether flags hold none but known ones.
constexpr bool UtilpOnly(UINT flags, UINT known) noexcept {
    return (flags & ~known) == 0;
}

// Whether a caller's structure, which begins with its size, is there and at least as long as it is known
// here.
template <class Structure>
bool UtilpIsWhole(const Structure* structure) noexcept {
    return structure && structure->size >= sizeof(Structure);
}

// A text that a caller wants back, unless the string's place is null.
struct scWantedText {
    BSTR* place;
    std::u16string_view text;
};

// Hands texts to the caller. All are made before the first is handed over: without memory for one, all stay
// as they were. A text may be part of a string that it replaces.
UtilResult UtilpGive(std::initializer_list<scWantedText> texts) noexcept;

} // namespace tvut
