// Tokens: whom a thread acts for, and acting for another one.
//
// All functions return 0 or the system's error.
#pragma once

#include "platform/account_text.h"
#include "platform/owned.h"

namespace tvut {

// A token that a thread can act by, and what it is known by. Without a handle: that of the process.
struct scThreadToken {
    clsHandle handle;
    std::optional<LUID> id; // of a token that was a thread's: no other token has it
    LUID session{};         // the logon session, which belongs to one user
    SECURITY_IMPERSONATION_LEVEL level = SecurityAnonymous;
};

// The user that the calling thread acts for: its token's, else the process's.
DWORD PlatformCurrentUser(scSid& user) noexcept;

// Whether that user belongs to a group with effect: it is enabled, and not only there to deny.
DWORD PlatformIsMember(const scSid& group, bool& isMember) noexcept;

// A token of that user for checks of access.
DWORD PlatformCheckingToken(clsHandle& token) noexcept;

// The token of the calling thread, none when it acts for the process.
DWORD PlatformReadThreadToken(scThreadToken& token) noexcept;

// A copy of any token, null for the process's own, that a thread can act by.
// ERROR_BAD_IMPERSONATION_LEVEL for one that does not allow it.
DWORD PlatformCopyToken(HANDLE token, scThreadToken& copy) noexcept;

// Lets the calling thread act by a token, and looks whether it does: the system takes some tokens, but lets
// the thread have less. After an error the thread may have any token or none.
DWORD PlatformSetThreadToken(const scThreadToken& token) noexcept;

// Ends the process: the thread cannot be given its former token back and would go on as somebody else. It
// ends at once and without running any more code of anybody's in that user's name.
[[noreturn]] void PlatformEndUnreverted() noexcept;

// Logs a user on. The password goes to the system as it is, and is kept nowhere. Throws std::bad_alloc.
enum class Logon { interactive, network };
DWORD PlatformLogOn(std::u16string_view account, const wchar_t* password, Logon logon, clsHandle& token);

// The registry's hive of the user that the calling thread acts for.
LSTATUS PlatformOpenUserHive(REGSAM access, clsRegistryKey& hive) noexcept;

} // namespace tvut
