// What a system's error means in the results that families share.
#pragma once

#include "runtime/result.h"

namespace tvut {

// Of Windows' errors: notFound, noAccess (denied, in use, write-protected), badArgument for a name that
// none can have, or failed for all others.
UtilResult UtilpResultOfError(unsigned long error) noexcept;

} // namespace tvut
