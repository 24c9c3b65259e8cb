// Users, rights and network paths against the system's own calls that the same work takes by hand.
#include "files.h"
#include "sections.h"

#include <tvut22/security.h>

#include <windows.h>

#include <oleauto.h>

#include <aclapi.h>
#include <sddl.h>

namespace bench {

namespace {

class clsProcessToken {
  public:
    clsProcessToken() {
        Require(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, &token_) != FALSE,
                "the process's token cannot be opened");
    }
    ~clsProcessToken() { CloseHandle(token_); }
    clsProcessToken(const clsProcessToken&) = delete;
    clsProcessToken& operator=(const clsProcessToken&) = delete;
    HANDLE Get() const { return token_; }

  private:
    HANDLE token_ = nullptr;
};

void ImpersonateByHand(HANDLE token) {
    HANDLE copy = nullptr, former = nullptr;
    bool isDone = DuplicateToken(token, SecurityImpersonation, &copy);
    isDone = isDone && !OpenThreadToken(GetCurrentThread(), TOKEN_IMPERSONATE, TRUE, &former);
    isDone = isDone && SetThreadToken(nullptr, copy) && SetThreadToken(nullptr, nullptr);
    CloseHandle(copy);
    Require(isDone, "the token could not be set");
}

void Impersonate(HANDLE token) {
    const UtilImpersonation impersonation = UtilImpersonateToken(token);
    Require(impersonation && UtilImpersonateEnd(impersonation) == UTIL_OK, "no impersonation");
}

void FindSidByHand() {
    alignas(TOKEN_USER) BYTE user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    const clsProcessToken token;
    DWORD size = 0;
    wchar_t* text = nullptr;
    Require(GetTokenInformation(token.Get(), TokenUser, user, sizeof user, &size) &&
                ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text),
            "the user cannot be read");
    LocalFree(text);
}

void CheckByHand(const wchar_t* path, HANDLE token) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    PSID owner = nullptr, group = nullptr;
    ACL* list = nullptr;
    constexpr SECURITY_INFORMATION all =
        OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    Require(GetNamedSecurityInfoW(path, SE_FILE_OBJECT, all, &owner, &group, &list, nullptr, &descriptor) ==
                ERROR_SUCCESS,
            "the rights cannot be read");
    HANDLE checking = nullptr;
    GENERIC_MAPPING mapping{FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE, FILE_ALL_ACCESS};
    PRIVILEGE_SET privileges;
    DWORD privilegeBytes = sizeof privileges, granted = 0;
    BOOL isGranted = FALSE;
    Require(DuplicateToken(token, SecurityImpersonation, &checking) &&
                AccessCheck(descriptor, checking, FILE_GENERIC_READ, &mapping, &privileges, &privilegeBytes,
                            &granted, &isGranted) &&
                isGranted,
            "the file may not be read");
    CloseHandle(checking);
    LocalFree(descriptor);
}

class clsConnectionCall {
  public:
    clsConnectionCall() : library_(LoadLibraryW(L"mpr.dll")) {
        call_ =
            reinterpret_cast<Call*>(reinterpret_cast<void*>(GetProcAddress(library_, "WNetGetConnectionW")));
        Require(call_ != nullptr, "the system has no network calls");
    }
    ~clsConnectionCall() { FreeLibrary(library_); }
    clsConnectionCall(const clsConnectionCall&) = delete;
    clsConnectionCall& operator=(const clsConnectionCall&) = delete;
    void operator()(const wchar_t* drive) const {
        wchar_t name[512];
        DWORD length = 512;
        Consume(call_(drive, name, &length));
    }

  private:
    using Call = DWORD WINAPI(const wchar_t*, wchar_t*, DWORD*);
    HMODULE library_;
    Call* call_;
};

void MeasurePaths(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 20 : 200;
    const clsConnectionCall findConnection;
    BSTR network = nullptr;
    const Round rounds[] = {
        [&] {
            return PerCall(calls * 100, [&](std::size_t) {
                UtilPathToNetwork(L"\\\\server\\share\\folder\\letter.docx", &network);
            });
        },
        [&] { return PerCall(calls, [&](std::size_t) { UtilPathToNetwork(L"C:\\letter.docx", &network); }); },
        [&] { return PerCall(calls, [&](std::size_t) { findConnection(L"C:"); }); },
    };
    const auto ns = Race(rounds, settings.rounds);
    SysFreeString(network);
    report.Against("UtilPathToNetwork, a share's path", ns[0], "a microsecond", 1000, AtMost(1));
    report.Against("UtilPathToNetwork, a drive's", ns[1], "WNetGetConnection", ns[2], AtMost(1.5));
}

} // namespace

void MeasureSecurity(const scSettings& settings, clsReport& report) {
    report.Section("Security: users, rights, network paths");
    const std::size_t calls = settings.quick ? 100 : 2000;
    const std::wstring file = settings.folder + L"rights";
    WriteWholeFile(file, {});
    const clsProcessToken token;
    BSTR sid = nullptr;
    const auto each = [&](auto work) { return PerCall(calls, [&](std::size_t) { work(); }); };
    const Round rounds[] = {
        [&] { return each([&] { Impersonate(token.Get()); }); },
        [&] { return each([&] { ImpersonateByHand(token.Get()); }); },
        [&] { return each([&] { UtilSidFromAccount(nullptr, &sid); }); },
        [&] { return each(FindSidByHand); },
        [&] { return each([&] { Consume(UtilCheckAccess(file.c_str(), UTIL_ACCESS_READ) == UTIL_YES); }); },
        [&] { return each([&] { CheckByHand(file.c_str(), token.Get()); }); },
    };
    const auto ns = Race(rounds, settings.rounds);
    SysFreeString(sid);
    Require(UtilCheckAccess(file.c_str(), UTIL_ACCESS_READ) == UTIL_YES, "a wrong answer");
    RemoveFile(file);
    report.Against("UtilImpersonateToken, End", ns[0],
                   "DuplicateToken, OpenThreadToken, SetThreadToken twice, CloseHandle", ns[1], AtMost(1.3));
    report.Against("UtilSidFromAccount of oneself", ns[2],
                   "OpenProcessToken, GetTokenInformation, ConvertSidToStringSid, CloseHandle", ns[3],
                   AtMost(1.2));
    report.Against("UtilCheckAccess", ns[4], "GetNamedSecurityInfo, DuplicateToken, AccessCheck", ns[5],
                   AtMost(1.3));
    MeasurePaths(settings, report);
    report.Remark(
        "By hand nothing is read back, and no former token is kept. A drive that leads nowhere: this "
        "system has no network drives.");
}

} // namespace bench
