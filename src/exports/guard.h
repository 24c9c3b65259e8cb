// The one guard at the door: no exception leaves an export.
#pragma once

#include <utility>

namespace tvut {

// Calls the body of an export; whatever it throws becomes the export's failure value.
template <class Result, class Body>
Result UtilpGuard(Result failure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return failure;
    }
}

// The same for exports without a result.
template <class Body>
void UtilpGuard(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) { // there is no result to report it by, and the profile is as it was
    }
}

} // namespace tvut
