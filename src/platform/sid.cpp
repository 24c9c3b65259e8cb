#include "platform/sid.h"

#include "platform/wide.h"

#include <array>
#include <cstring>

namespace tvut {

namespace {

// Room for any domain's and any account's name; the system says when it is not enough.
using NameRoom = std::array<wchar_t, longestAccount + 1>;

// An account as the system's look-up takes it, which does not know "." for this computer.
std::wstring Qualified(const scAccountName& account) {
    std::wstring text;
    if (account.domain == u".") {
        std::array<wchar_t, MAX_COMPUTERNAME_LENGTH + 1> computer;
        DWORD length = static_cast<DWORD>(computer.size());
        text.assign(computer.data(), GetComputerNameW(computer.data(), &length) ? length : 0);
    } else {
        text.assign(ToWide(account.domain.data()), account.domain.size());
    }
    if (!text.empty())
        text += L'\\';
    return text.append(ToWide(account.name.data()), account.name.size());
}

} // namespace

DWORD PlatformFindSid(std::u16string_view account, scSid& sid) {
    if (PlatformIsSidText(account)) {
        const std::optional<scSid> said = PlatformParseSid(account);
        sid = said.value_or(scSid());
        return said ? ERROR_SUCCESS : ERROR_INVALID_NAME;
    }
    const std::optional<scAccountName> name = PlatformSplitAccount(account);
    if (!name)
        return ERROR_INVALID_NAME;
    NameRoom domain;
    DWORD sidBytes = sizeof sid, domainLength = static_cast<DWORD>(domain.size());
    SID_NAME_USE use = SidTypeUnknown;
    sid = {};
    return LookupAccountNameW(nullptr, Qualified(*name).c_str(), &sid, &sidBytes, domain.data(),
                              &domainLength, &use)
               ? ERROR_SUCCESS
               : GetLastError();
}

DWORD PlatformFindAccount(const scSid& sid, std::u16string& account) {
    scSid asked = sid; // the system's look-up wants to be able to write
    NameRoom name, domain;
    DWORD nameLength = static_cast<DWORD>(name.size()), domainLength = static_cast<DWORD>(domain.size());
    SID_NAME_USE use = SidTypeUnknown;
    if (!LookupAccountSidW(nullptr, &asked, name.data(), &nameLength, domain.data(), &domainLength, &use))
        return GetLastError();
    account.assign(FromWide(domain.data()), domainLength);
    if (!account.empty())
        account += u'\\';
    account.append(FromWide(name.data()), nameLength);
    return ERROR_SUCCESS;
}

} // namespace tvut
