// Exports of crash protection, stack traces and dumps.
#include "exports/result_call.h"
#include "runtime/crash/notes.h"
#include "runtime/crash/protection.h"

#include <tvut22/crash.h>

#include <type_traits>

using namespace tvut;

static_assert(sizeof(UtilProtection) == 32);
static_assert(std::is_same_v<UtilCrashHandler, decltype(scProtectionWish::after)>);

namespace {

constexpr UtilProtection noOptions{sizeof(UtilProtection), 0, nullptr, nullptr, nullptr, 0, nullptr, 0};

} // namespace

TVUT22_API INT TVUT22_CALL UtilExHandlerStartProtection(const UtilProtection* options) {
    const UtilProtection& given = options ? *options : noOptions;
    if (!UtilpIsWhole(&given) ||
        !UtilpOnly(given.flags, UTIL_PROTECT_END | UTIL_PROTECT_FULL | UTIL_PROTECT_NOTICE))
        return UTIL_BAD_ARGUMENT;
    std::size_t waiting = 0;
    const INT result = UtilpResultOf([&] {
        return UtilpStartProtection({.endsProcess = (given.flags & UTIL_PROTECT_END) != 0,
                                     .isFull = (given.flags & UTIL_PROTECT_FULL) != 0,
                                     .showsNotice = (given.flags & UTIL_PROTECT_NOTICE) != 0,
                                     .folder = UtilpView(given.folder),
                                     .product = UtilpView(given.product),
                                     .version = UtilpView(given.version),
                                     .keep = given.keep,
                                     .after = given.after,
                                     .user = given.user},
                                    waiting);
    });
    return result == UTIL_OK ? static_cast<INT>(waiting) : result;
}

TVUT22_API INT TVUT22_CALL UtilExHandlerEndProtection() {
    return UtilpResultOf([] { return UtilpEndProtection(); });
}

TVUT22_API INT TVUT22_CALL UtilExHandlerSetNote(const wchar_t* name, const wchar_t* value) {
    return UtilpResultOf([&] {
        return value ? UtilpNotes().Set(UtilpView(name), UtilpView(value)) : UtilpNotes().Remove(UtilpView(name));
    });
}
