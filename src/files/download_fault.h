// Why a file was not fetched: its result, and the line that tells.
#pragma once

#include "runtime/diagnostics.h"
#include "runtime/result.h"

#include <cstdint>
#include <string>

namespace tvut {

enum class DownloadFault : std::uint8_t {
    none,
    badAddress,
    badOptions,
    badName,
    notSecure,    // http where only https is allowed
    status,       // number
    length,       // number of another
    tooLarge,     // more than number
    redirections, // too many
    redirectedTo, // text
    certificate,  // number, the service's
    noAnswer,     // number: milliseconds
    checksum,     // text: what it is
    cancelled,
    noFile,     // number, the system's: it cannot be made or replaced
    notWritten, // number, the system's
    service,    // number, the service's
};

struct scDownloadFault {
    DownloadFault fault = DownloadFault::none;
    std::uint64_t number = 0;
    std::uint64_t another = 0;
    std::u16string text;

    explicit operator bool() const noexcept { return fault != DownloadFault::none; }
};

UtilResult UtilpResultOf(const scDownloadFault& fault) noexcept;

// Puts the reason into a line.
void UtilpPutReason(clsDiagnosticLine& line, const scDownloadFault& fault) noexcept;

} // namespace tvut
