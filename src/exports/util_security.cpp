// Exports of users, rights and paths on other computers.
#include "exports/reason_guard.h"
#include "exports/result_call.h"
#include "files/access_bits.h"
#include "files/file_access.h"
#include "files/network_path.h"
#include "platform/sid.h"
#include "platform/token.h"
#include "runtime/diagnostics.h"
#include "runtime/impersonation.h"
#include "runtime/system_result.h"

#include <tvut22/security.h>

using namespace tvut;

static_assert(UTIL_ACCESS_READ == access::read && UTIL_ACCESS_WRITE == access::write &&
              UTIL_ACCESS_EXECUTE == access::execute && UTIL_ACCESS_DELETE == access::remove &&
              UTIL_ACCESS_CHANGE_RIGHTS == access::changeRights);

namespace {

UtilImpersonation ToImpersonation(std::uint32_t handle) {
    return reinterpret_cast<UtilImpersonation>(static_cast<std::uintptr_t>(handle));
}
std::uint32_t FromImpersonation(UtilImpersonation impersonation) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(impersonation));
}

// The line of a logon that failed: it has the account alone.
[[noreturn]] void Refuse(const wchar_t* account, DWORD error) {
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilImpersonateUser('").Put(UtilpShown(account)).Put(u"'): ");
    line.PutDecimal(error, 1).Write();
    throw clsException("the user cannot be acted for", error);
}

UtilImpersonation LogOn(const wchar_t* account, const wchar_t* password, UINT flags) {
    clsHandle token;
    const Logon logon = (flags & UTIL_LOGON_NETWORK) != 0 ? Logon::network : Logon::interactive;
    if (const DWORD error = PlatformLogOn(UtilpView(account), password, logon, token))
        Refuse(account, error);
    try {
        return ToImpersonation(UtilpImpersonate(token.Get()));
    } catch (const clsException& exception) {
        Refuse(account, exception.Reason());
    }
}

// The SID of an account, or of the user whom the thread acts for.
DWORD SidOf(const wchar_t* account, scSid& sid) {
    return account ? PlatformFindSid(UtilpView(account), sid) : PlatformCurrentUser(sid);
}

void ReportGrant(const wchar_t* path, const wchar_t* account, DWORD error) {
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilGrantAccess('").Put(UtilpShown(path)).Put(u"','").Put(UtilpShown(account));
    line.Put(u"'): ").PutDecimal(error, 1).Write();
}

UtilResult Grant(const wchar_t* path, const wchar_t* account, UINT rights) {
    scSid sid;
    DWORD error = SidOf(account, sid);
    const UtilResult result =
        error ? UtilpResultOfError(error) : UtilpGrantAccess(UtilpView(path), sid, rights, error);
    if (error)
        ReportGrant(path, account, error);
    return result;
}

template <class Turn>
INT TurnPath(const wchar_t* path, BSTR* result, Turn* turn) {
    if (!path)
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        clsConnections connections;
        std::u16string turned;
        const UtilResult outcome = turn(UtilpView(path), connections, turned);
        return outcome == UtilResult::ok ? UtilpGive({{result, turned}}) : outcome;
    });
}

} // namespace

UtilImpersonation TVUT22_CALL UtilImpersonateUser(const wchar_t* account, const wchar_t* password,
                                                  UINT flags) {
    return UtilpGuardWithReason(UtilImpersonation(nullptr), [&] {
        RequireArguments(UtilpOnly(flags, UTIL_LOGON_NETWORK) && account && *account ? account : nullptr);
        return LogOn(account, password, flags);
    });
}

UtilImpersonation TVUT22_CALL UtilImpersonateToken(HANDLE token) {
    return UtilpGuardWithReason(UtilImpersonation(nullptr),
                                [&] { return ToImpersonation(UtilpImpersonate(token)); });
}

INT TVUT22_CALL UtilImpersonateEnd(UtilImpersonation impersonation) {
    if (!impersonation)
        return UTIL_OK;
    const clsLastErrorKept lastError;
    return UtilpEndImpersonation(FromImpersonation(impersonation)) ? UTIL_OK : UTIL_BAD_ARGUMENT;
}

INT TVUT22_CALL UtilSidFromAccount(const wchar_t* account, BSTR* sid) {
    return UtilpResultOf([&] {
        scSid found;
        if (const DWORD error = SidOf(account, found))
            return UtilpResultOfError(error);
        return UtilpGive({{sid, clsSidText(found).View()}});
    });
}

INT TVUT22_CALL UtilAccountFromSid(const wchar_t* sid, BSTR* account) {
    return UtilpResultOf([&] {
        const std::optional<scSid> asked = PlatformParseSid(UtilpView(sid));
        if (!asked)
            return UtilResult::badArgument;
        std::u16string name;
        const DWORD error = PlatformFindAccount(*asked, name);
        return error ? UtilpResultOfError(error) : UtilpGive({{account, name}});
    });
}

INT TVUT22_CALL UtilIsMember(const wchar_t* group) {
    return UtilpResultOf([&] {
        scSid sid;
        bool isMember = false;
        DWORD error = SidOf(group ? group : L"S-1-5-32-544", sid); // the administrators
        if (!error)
            error = PlatformIsMember(sid, isMember);
        return error || !isMember ? UtilpResultOfError(error) : UtilResult::yes;
    });
}

INT TVUT22_CALL UtilCheckAccess(const wchar_t* path, UINT rights) {
    if (!path || !*path || rights == 0 || !UtilpOnly(rights, access::all))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] { return UtilpCheckAccess(UtilpView(path), rights); });
}

INT TVUT22_CALL UtilGrantAccess(const wchar_t* path, const wchar_t* account, UINT rights) {
    if (!path || !*path || !UtilpOnly(rights, access::all))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] { return Grant(path, account, rights); });
}

INT TVUT22_CALL UtilPathToNetwork(const wchar_t* path, BSTR* network) {
    return TurnPath(path, network, UtilpPathToNetwork);
}

INT TVUT22_CALL UtilPathToLocal(const wchar_t* network, BSTR* path) {
    return TurnPath(network, path, UtilpPathToLocal);
}
