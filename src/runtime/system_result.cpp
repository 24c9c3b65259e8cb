#include "runtime/system_result.h"

#include <windows.h>

namespace tvut {

UtilResult UtilpResultOfError(unsigned long error) noexcept {
    switch (error) {
    case ERROR_SUCCESS:
        return UtilResult::ok;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_NOT_READY:
    case ERROR_NONE_MAPPED:
        return UtilResult::notFound;
    case ERROR_INVALID_NAME:
        return UtilResult::badArgument;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
    case ERROR_PRIVILEGE_NOT_HELD:
        return UtilResult::noAccess;
    default:
        return UtilResult::failed;
    }
}

} // namespace tvut
