// Export of the support archive.
#include "exports/result_call.h"
#include "support/support_archive.h"

#include <tvut22/crash.h>

#include <algorithm>
#include <vector>

using namespace tvut;

namespace {

bool IsNone(const wchar_t* text) noexcept {
    return !text || !*text;
}

} // namespace

TVUT22_API INT TVUT22_CALL UtilDebugHelpWriteSupportArchive(const wchar_t* archive,
                                                            const wchar_t* const* files, UINT count,
                                                            UINT flags) {
    if (IsNone(archive) || (count != 0 && !files) || std::any_of(files, files + count, IsNone) ||
        !UtilpOnly(flags, UTIL_SUPPORT_TAKE))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        std::vector<std::u16string> paths;
        for (UINT i = 0; i < count; ++i)
            paths.emplace_back(UtilpView(files[i]));
        return UtilpWriteSupportArchive(UtilpView(archive), paths, (flags & UTIL_SUPPORT_TAKE) != 0);
    });
}
