// The results that families share, for code that knows no public header of a family.
#pragma once

#include <tvut22/results.h>

#include <cstdint>

namespace tvut {

enum class UtilResult : std::int32_t {
    ok = UTIL_OK,
    yes = UTIL_YES, // an answer; no is ok
    badArgument = UTIL_BAD_ARGUMENT,
    noAccess = UTIL_NO_ACCESS,
    failed = UTIL_FAILED,
    damaged = UTIL_DAMAGED,
    notFound = UTIL_NOT_FOUND,
    tooLarge = UTIL_TOO_LARGE,
    notSupported = UTIL_NOT_SUPPORTED,
    cancelled = UTIL_CANCELLED,
    unsafe = UTIL_UNSAFE,
    badPassword = UTIL_BAD_PASSWORD,
    exists = UTIL_EXISTS,
    jobsLeft = UTIL_JOBS_LEFT,
    fromJob = UTIL_FROM_JOB,
    inLoader = UTIL_IN_LOADER,
    timeout = UTIL_TIMEOUT,
    wrongThread = UTIL_WRONG_THREAD,
    notParsed = UTIL_NOT_PARSED,
    serverRefused = UTIL_SERVER_REFUSED,
    mismatch = UTIL_MISMATCH,
};

} // namespace tvut
