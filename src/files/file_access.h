// What a user may do with a file or a folder, and giving him rights to it.
#pragma once

#include "platform/account_text.h"
#include "runtime/result.h"

#include <string_view>

namespace tvut {

// yes when the user whom the calling thread acts for has all of the rights, ok for no; notFound where there
// is nothing, except that for writing alone the folder is looked at in which it would be made. Throws
// std::bad_alloc.
UtilResult UtilpCheckAccess(std::u16string_view path, std::uint32_t rights);

// Gives an account exactly these rights. "error" is the system's, where the result is one. Throws
// std::bad_alloc.
UtilResult UtilpGrantAccess(std::u16string_view path, const scSid& account, std::uint32_t rights,
                            unsigned long& error);

} // namespace tvut
