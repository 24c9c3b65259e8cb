// From Windows 8 on the tokens of the thread and of the process are looked at by handles that need no
// opening; older systems refuse these as no handles, and the token is opened there.
//
// A token that was set is read back: the system takes a token of another user from a process without the
// privilege to impersonate, and gives the thread one that can only be looked at.
#include "platform/token.h"

#include "platform/sid.h"
#include "platform/wide.h"

#include <array>
#include <cstdlib>
#include <string>

namespace tvut {

namespace {

// The system's constant handles, of the thread's token and of the one in effect.
HANDLE ThreadTokenHandle() {
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-5));
}
HANDLE EffectiveTokenHandle() {
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-6));
}

constexpr DWORD toActBy = TOKEN_QUERY | TOKEN_IMPERSONATE | TOKEN_DUPLICATE;

DWORD ErrorUnless(BOOL succeeded) {
    return succeeded ? ERROR_SUCCESS : GetLastError();
}

// Opens the thread's token by the rights of the process: those that the thread acts by may not suffice.
DWORD OpenOfThread(DWORD access, clsHandle& token) {
    return ErrorUnless(OpenThreadToken(GetCurrentThread(), access, TRUE, token.Receive()));
}

DWORD OpenOfProcess(DWORD access, clsHandle& token) {
    return ErrorUnless(OpenProcessToken(GetCurrentProcess(), access, token.Receive()));
}

// Opens the token in effect. One that may not be opened must not be taken for none.
DWORD OpenInEffect(DWORD access, clsHandle& token) {
    const DWORD error = OpenOfThread(access, token);
    return error == ERROR_NO_TOKEN ? OpenOfProcess(access, token) : error;
}

DWORD ReadUser(HANDLE token, scSid& user) {
    struct {
        TOKEN_USER head;
        std::array<std::byte, sizeof(scSid)> sid;
    } buffer;
    DWORD size = 0;
    if (!GetTokenInformation(token, TokenUser, &buffer, sizeof buffer, &size))
        return GetLastError();
    user = {};
    return ErrorUnless(CopySid(sizeof user, &user, buffer.head.User.Sid));
}

DWORD ReadStatistics(HANDLE token, TOKEN_STATISTICS& statistics) {
    DWORD size = 0;
    return ErrorUnless(GetTokenInformation(token, TokenStatistics, &statistics, sizeof statistics, &size));
}

DWORD ReadStatisticsOfThread(TOKEN_STATISTICS& statistics) {
    const DWORD error = ReadStatistics(ThreadTokenHandle(), statistics);
    if (error != ERROR_INVALID_HANDLE)
        return error;
    clsHandle token;
    const DWORD opening = OpenOfThread(TOKEN_QUERY, token);
    return opening ? opening : ReadStatistics(token.Get(), statistics);
}

bool IsSame(const LUID& a, const LUID& b) {
    return a.LowPart == b.LowPart && a.HighPart == b.HighPart;
}

} // namespace

DWORD PlatformCurrentUser(scSid& user) noexcept {
    const DWORD error = ReadUser(EffectiveTokenHandle(), user);
    if (error != ERROR_INVALID_HANDLE)
        return error;
    clsHandle token;
    const DWORD opening = OpenInEffect(TOKEN_QUERY, token);
    return opening ? opening : ReadUser(token.Get(), user);
}

DWORD PlatformIsMember(const scSid& group, bool& isMember) noexcept {
    scSid asked = group;
    BOOL answer = FALSE;
    const DWORD error = ErrorUnless(CheckTokenMembership(nullptr, &asked, &answer));
    isMember = answer != FALSE;
    return error;
}

DWORD PlatformCheckingToken(clsHandle& token) noexcept {
    const DWORD error = OpenOfThread(TOKEN_QUERY, token);
    if (error != ERROR_NO_TOKEN)
        return error;
    clsHandle process;
    const DWORD opening = OpenOfProcess(TOKEN_DUPLICATE, process);
    return opening ? opening
                   : ErrorUnless(DuplicateTokenEx(process.Get(), TOKEN_QUERY, nullptr, SecurityIdentification,
                                                  TokenImpersonation, token.Receive()));
}

DWORD PlatformReadThreadToken(scThreadToken& token) noexcept {
    const DWORD error = OpenOfThread(toActBy & ~TOKEN_DUPLICATE, token.handle);
    if (error)
        return error == ERROR_NO_TOKEN ? ERROR_SUCCESS : error;
    TOKEN_STATISTICS statistics;
    if (const DWORD reading = ReadStatistics(token.handle.Get(), statistics))
        return reading;
    token.id = statistics.TokenId;
    token.session = statistics.AuthenticationId;
    token.level = statistics.ImpersonationLevel;
    return ERROR_SUCCESS;
}

DWORD PlatformCopyToken(HANDLE token, scThreadToken& copy) noexcept {
    clsHandle process;
    if (!token) {
        if (const DWORD error = OpenOfProcess(TOKEN_QUERY | TOKEN_DUPLICATE, process))
            return error;
        token = process.Get();
    }
    TOKEN_STATISTICS statistics;
    if (const DWORD error = ReadStatistics(token, statistics))
        return error;
    copy.session = statistics.AuthenticationId;
    copy.level = statistics.TokenType == TokenPrimary ? SecurityImpersonation : statistics.ImpersonationLevel;
    if (copy.level < SecurityImpersonation)
        return ERROR_BAD_IMPERSONATION_LEVEL;
    return ErrorUnless(
        DuplicateTokenEx(token, toActBy, nullptr, copy.level, TokenImpersonation, copy.handle.Receive()));
}

DWORD PlatformSetThreadToken(const scThreadToken& token) noexcept {
    if (!SetThreadToken(nullptr, token.handle.Get()))
        return GetLastError();
    if (!token.handle)
        return ERROR_SUCCESS;
    TOKEN_STATISTICS statistics;
    if (const DWORD error = ReadStatisticsOfThread(statistics))
        return error;
    if (!IsSame(statistics.AuthenticationId, token.session) ||
        (token.id && !IsSame(statistics.TokenId, *token.id)))
        return ERROR_BAD_TOKEN_TYPE;
    return statistics.ImpersonationLevel < token.level ? ERROR_BAD_IMPERSONATION_LEVEL : ERROR_SUCCESS;
}

void PlatformEndUnreverted() noexcept {
    constexpr UINT cannotRevert = 0xC0000061; // STATUS_PRIVILEGE_NOT_HELD
    TerminateProcess(GetCurrentProcess(), cannotRevert);
    std::abort();
}

// The text of a SID has no password: the system wants its account's name.
DWORD PlatformLogOn(std::u16string_view account, const wchar_t* password, Logon logon, clsHandle& token) {
    std::u16string named;
    if (PlatformIsSidText(account)) {
        scSid sid;
        DWORD error = PlatformFindSid(account, sid);
        if (!error)
            error = PlatformFindAccount(sid, named);
        if (error)
            return error;
        account = named;
    }
    const std::optional<scAccountName> split = PlatformSplitAccount(account);
    if (!split)
        return ERROR_INVALID_NAME;
    const std::wstring domain(ToWide(split->domain.data()), split->domain.size());
    const std::wstring name(ToWide(split->name.data()), split->name.size());
    const bool isNetwork = logon == Logon::network;
    return ErrorUnless(
        LogonUserW(name.c_str(), domain.empty() ? nullptr : domain.c_str(), password ? password : L"",
                   isNetwork ? LOGON32_LOGON_NEW_CREDENTIALS : LOGON32_LOGON_INTERACTIVE,
                   isNetwork ? LOGON32_PROVIDER_WINNT50 : LOGON32_PROVIDER_DEFAULT, token.Receive()));
}

LSTATUS PlatformOpenUserHive(REGSAM access, clsRegistryKey& hive) noexcept {
    return RegOpenCurrentUser(access, hive.Receive());
}

} // namespace tvut
