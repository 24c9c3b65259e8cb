// The results that families share, for code that knows no public header of a family.
#pragma once

#include <tvut22/results.h>

#include <cstdint>

namespace tvut {

enum class UtilResult : std::int32_t {
    ok = UTIL_OK,
    badArgument = UTIL_BAD_ARGUMENT,
    noAccess = UTIL_NO_ACCESS,
    failed = UTIL_FAILED,
    notFound = UTIL_NOT_FOUND,
    tooLarge = UTIL_TOO_LARGE,
    unsafe = UTIL_UNSAFE,
};

} // namespace tvut
