#include "zip/zip_fault.h"

namespace tvut {

UtilResult UtilpResultOf(ZipFault fault) noexcept {
    switch (fault) {
    case ZipFault::unsafeName:
    case ZipFault::linkFolder:
        return UtilResult::unsafe;
    case ZipFault::tooManyBytes:
    case ZipFault::tooManyEntries:
    case ZipFault::longPath:
        return UtilResult::tooLarge;
    case ZipFault::severalDisks:
    case ZipFault::method:
    case ZipFault::link:
        return UtilResult::notSupported;
    case ZipFault::password:
        return UtilResult::badPassword;
    case ZipFault::noTarget:
        return UtilResult::noAccess;
    case ZipFault::unreadable:
    case ZipFault::unwritable:
        return UtilResult::failed;
    case ZipFault::cancelled:
        return UtilResult::cancelled;
    default:
        return UtilResult::damaged;
    }
}

} // namespace tvut
