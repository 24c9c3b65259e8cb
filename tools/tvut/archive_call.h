// What the commands on archives share: options, callbacks in words of C++, results as failures.
#pragma once

#include "exit_code.h"
#include "library_log.h"

#include <tvut22/zip.h>

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tool::tvut {

// Answers UTIL_ZIP_GO, UTIL_ZIP_SKIP or another value to cancel, as of UtilZipCallback.
using EntryFunction = std::function<INT(const UtilZipEntry& entry)>;

// The options of a call, which live as long as the object. Ctrl+C cancels; so does what the function throws,
// which Rethrow throws again once the library has returned.
class clsArchiveOptions {
  public:
    clsArchiveOptions(UINT flags, const std::wstring& password, EntryFunction function);
    clsArchiveOptions(const clsArchiveOptions&) = delete;
    clsArchiveOptions& operator=(const clsArchiveOptions&) = delete;

    UtilZipOptions* Get() { return &options_; }
    void Rethrow() const;

  private:
    static INT TVUT22_CALL Call(const UtilZipEntry* entry, UINT_PTR user);

    UtilZipOptions options_{};
    EntryFunction function_;
    std::exception_ptr thrown_;
};

// A result other than UTIL_OK as a failure. The reason is the library's own where its lines tell one.
Failure FailureOf(INT result, const std::string& subject, const clsLibraryLog& log);

// The exit code for a result.
ExitCode ExitCodeOf(INT result);

// What a line of the library says after the last mark in it; "(32)" at its end is put into words. Empty for a
// line without the mark.
std::string ReasonIn(std::string_view line, std::string_view mark);

} // namespace tool::tvut
