// Accounts and SIDs: each as the system finds the other.
#pragma once

#include "platform/account_text.h"

#include <string>
#include <windows.h>

namespace tvut {

// The SID of an account, or that which the text says. Result: 0 or the system's error, such as
// ERROR_NONE_MAPPED when nobody is called so; ERROR_INVALID_NAME for a malformed text. May ask a domain
// controller. Throws std::bad_alloc.
DWORD PlatformFindSid(std::u16string_view account, scSid& sid);

// "DOMAIN\name", or "name" where there is no domain. Result and throws as above.
DWORD PlatformFindAccount(const scSid& sid, std::u16string& account);

} // namespace tvut
