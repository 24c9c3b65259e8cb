#include "archive_call.h"

#include "interrupt.h"
#include "system_reason.h"

#include <charconv>

namespace tool::tvut {

namespace {

struct scResult {
    INT result;
    ExitCode code;
    const char* words;
};

constexpr scResult results[] = {
    {UTIL_BAD_ARGUMENT, ExitCode::usage, "not a possible name"},
    {UTIL_NO_ACCESS, ExitCode::cannotOpen, "access denied, or in use by another program"},
    {UTIL_FAILED, ExitCode::cannotSave, "reading or writing failed"},
    {UTIL_DAMAGED, ExitCode::malformed, "not a ZIP archive, or damaged"},
    {UTIL_NOT_FOUND, ExitCode::notFound, "no such file"},
    {UTIL_TOO_LARGE, ExitCode::malformed, "too large"},
    {UTIL_NOT_SUPPORTED, ExitCode::malformed, "of a kind that is not supported"},
    {UTIL_CANCELLED, ExitCode::interrupted, "interrupted"},
    {UTIL_UNSAFE, ExitCode::malformed, "would be written outside the folder"},
    {UTIL_BAD_PASSWORD, ExitCode::wrongType, "the password is missing or wrong"},
    {UTIL_EXISTS, ExitCode::usage, "the archive has an entry of this name"},
};

const scResult& RowOf(INT result) {
    for (const scResult& row : results)
        if (row.result == result)
            return row;
    return results[2];
}

} // namespace

clsArchiveOptions::clsArchiveOptions(UINT flags, const std::wstring& password, EntryFunction function)
    : function_(std::move(function)) {
    options_.size = sizeof options_;
    options_.flags = flags;
    options_.password = password.c_str();
    options_.callback = Call;
    options_.user = reinterpret_cast<UINT_PTR>(this);
}

void clsArchiveOptions::Rethrow() const {
    if (thrown_)
        std::rethrow_exception(thrown_);
}

// No exception passes through the library.
INT TVUT22_CALL clsArchiveOptions::Call(const UtilZipEntry* entry, UINT_PTR user) {
    auto& self = *reinterpret_cast<clsArchiveOptions*>(user);
    try {
        return IsInterrupted() ? UTIL_CANCELLED : self.function_(*entry);
    } catch (...) {
        self.thrown_ = std::current_exception();
        return UTIL_CANCELLED;
    }
}

ExitCode ExitCodeOf(INT result) {
    return result == UTIL_OK ? ExitCode::ok : RowOf(result).code;
}

scFailure FailureOf(INT result, const std::string& subject, const clsLibraryLog& log) {
    if (result == UTIL_CANCELLED)
        StopIfInterrupted();
    scFailure failure{ExitCodeOf(result), subject, RowOf(result).words};
    for (const std::string& line : log.Reports()) {
        std::string reason = ReasonIn(line, "'): ");
        if (reason.empty())
            reason = ReasonIn(line, "(): ");
        if (reason.empty() || !line.starts_with("ERR: "))
            continue;
        if (std::string file = PackedFileIn(line); !file.empty())
            failure.subject = std::move(file);
        if (reason.starts_with("cannot be read"))
            failure.code = ExitCode::cannotOpen;
        else if (reason.starts_with("cannot be written"))
            failure.code = ExitCode::cannotSave;
        if (result != UTIL_NOT_FOUND)
            failure.reason = std::move(reason);
        break;
    }
    return failure;
}

std::string PackedFileIn(std::string_view line) {
    constexpr std::string_view mark = "::Append('";
    const std::size_t at = line.find(mark), end = line.rfind("'): ");
    if (at == std::string_view::npos || end == std::string_view::npos || end < at + mark.size())
        return {};
    return std::string{line.substr(at + mark.size(), end - at - mark.size())};
}

std::string ReasonIn(std::string_view line, std::string_view mark) {
    const std::size_t at = line.rfind(mark);
    if (at == std::string_view::npos)
        return {};
    const std::string_view reason = line.substr(at + mark.size());
    const std::size_t open = reason.rfind(" (");
    unsigned long error = 0;
    if (open == std::string_view::npos || !reason.ends_with(')') ||
        std::from_chars(reason.data() + open + 2, reason.data() + reason.size() - 1, error).ec != std::errc{})
        return std::string{reason};
    return std::string{reason.substr(0, open)} + ": " + SystemReason(error);
}

} // namespace tool::tvut
