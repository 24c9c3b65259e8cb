// Security: whom a thread acts for and how that ends, users and groups, rights to files, network paths.
//
// This system's logons give no token, its files keep rights for few accounts only, and it has no network
// drives but remembered ones: what else these calls do is shown over tables and lists in tests/unit.
#include "support/counted_allocations.h"
#include "support/log.h"
#include "support/ole_text.h"
#include "support/roles.h"

#include <tvut22/tvut22.hpp>

#include <sddl.h>
#include <thread>

namespace testing_prof {
namespace {

using tvut22::impersonation;

struct scHandleCloser {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Token = std::unique_ptr<void, scHandleCloser>;

Token ProcessToken() {
    HANDLE token = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &token);
    return Token(token);
}

// The process's token without the rights of administrators.
Token RestrictedToken() {
    BYTE administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size);
    SID_AND_ATTRIBUTES denied{administrators, 0};
    HANDLE token = nullptr;
    CreateRestrictedToken(ProcessToken().get(), 0, 1, &denied, 0, nullptr, 0, nullptr, &token);
    return Token(token);
}

// What tells the token that the thread acts by from all others; 0 for none.
DWORD ThreadTokenId() {
    HANDLE opened = nullptr;
    if (!OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &opened))
        return 0;
    const Token token(opened);
    TOKEN_STATISTICS statistics{};
    DWORD size = 0;
    GetTokenInformation(opened, TokenStatistics, &statistics, sizeof statistics, &size);
    return statistics.TokenId.LowPart;
}

// ---- Impersonation -------------------------------------------------------------------------------------

TEST(Impersonation, FormsAStack) {
    const Token restricted = RestrictedToken();
    ASSERT_EQ(UtilIsMember(nullptr), UTIL_YES);
    const UtilImpersonation first = UtilImpersonateToken(restricted.get());
    ASSERT_TRUE(first);
    const DWORD firstToken = ThreadTokenId();
    EXPECT_EQ(UtilIsMember(nullptr), UTIL_NO);
    const UtilImpersonation second = UtilImpersonateToken(nullptr);
    EXPECT_EQ(UtilIsMember(nullptr), UTIL_YES);
    SetLastError(17);
    EXPECT_EQ(UtilImpersonateEnd(first), UTIL_BAD_ARGUMENT) << "it is not the newest";
    std::thread([&] { EXPECT_EQ(UtilImpersonateEnd(second), UTIL_BAD_ARGUMENT) << "another thread"; }).join();
    EXPECT_EQ(UtilIsMember(nullptr), UTIL_YES);
    EXPECT_EQ(UtilImpersonateEnd(second), UTIL_OK);
    EXPECT_EQ(ThreadTokenId(), firstToken);
    EXPECT_EQ(UtilImpersonateEnd(second), UTIL_BAD_ARGUMENT) << "it has ended";
    EXPECT_EQ(UtilImpersonateEnd(first), UTIL_OK);
    EXPECT_EQ(UtilImpersonateEnd(nullptr), UTIL_OK);
    EXPECT_EQ(UtilImpersonateEnd(reinterpret_cast<UtilImpersonation>(1)), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(ThreadTokenId(), 0u);
}

TEST(Impersonation, PutsBackATokenOfTheThreadsOwn) {
    const Token primary = RestrictedToken();
    HANDLE own = nullptr;
    for (const SECURITY_IMPERSONATION_LEVEL level : {SecurityIdentification, SecurityImpersonation}) {
        DuplicateTokenEx(primary.get(), TOKEN_ALL_ACCESS, nullptr, level, TokenImpersonation, &own);
        const Token closer(own);
        ASSERT_TRUE(SetThreadToken(nullptr, own));
        const DWORD before = ThreadTokenId();
        {
            const impersonation process{HANDLE(nullptr)};
            EXPECT_TRUE(process);
            EXPECT_NE(ThreadTokenId(), before);
        }
        EXPECT_EQ(ThreadTokenId(), before);
        RevertToSelf();
        EXPECT_EQ(static_cast<bool>(impersonation(own)), level == SecurityImpersonation);
        EXPECT_EQ(ThreadTokenId(), 0u);
    }
    DuplicateTokenEx(primary.get(), TOKEN_ALL_ACCESS, nullptr, SecurityIdentification, TokenImpersonation,
                     &own);
    const Token closer(own);
    EXPECT_FALSE(UtilImpersonateToken(own));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_BAD_IMPERSONATION_LEVEL));
}

TEST(Impersonation, EndsWithItsThreadAndIsNotInherited) {
    UtilImpersonation left = nullptr;
    std::thread([&] {
        left = UtilImpersonateToken(RestrictedToken().get());
        EXPECT_NE(ThreadTokenId(), 0u);
        std::thread([] { EXPECT_EQ(ThreadTokenId(), 0u); }).join();
    }).join();
    EXPECT_TRUE(left);
    std::thread([&] { EXPECT_EQ(UtilImpersonateEnd(left), UTIL_BAD_ARGUMENT); }).join();
    const tvut22::thread_pool pool(L"security", 1);
    const impersonation guest(RestrictedToken().get());
    pool.add([] { EXPECT_EQ(ThreadTokenId(), 0u); });
    pool.finalize();
}

TEST(Impersonation, OfTooManyIsRefused) {
    std::vector<UtilImpersonation> all;
    while (const UtilImpersonation one = UtilImpersonateToken(nullptr))
        all.push_back(one);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_TOO_MANY_OPEN_FILES));
    EXPECT_EQ(all.size(), 4096u);
    for (; !all.empty(); all.pop_back())
        ASSERT_EQ(UtilImpersonateEnd(all.back()), UTIL_OK);
    EXPECT_EQ(ThreadTokenId(), 0u);
}

TEST(Impersonation, OfAUserFailsCleanlyAndSaysNoPassword) {
    const clsLog log;
    for (const UINT flags : {0u, UTIL_LOGON_NETWORK}) {
        SetLastError(0);
        EXPECT_FALSE(UtilImpersonateUser(L"OFFICE\\nobody", L"Secret-4711", flags)) << "its token is none";
        EXPECT_NE(GetLastError(), 0u);
    }
    EXPECT_FALSE(UtilImpersonateUser(L"OFFICE\\no\\body", L"Secret-4711", 0));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_NAME));
    for (const wchar_t* none : {L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_FALSE(UtilImpersonateUser(none, L"Secret-4711", 0));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    }
    EXPECT_FALSE(UtilImpersonateUser(L"nobody", nullptr, 2));
    EXPECT_EQ(ThreadTokenId(), 0u);
    const std::vector<std::string> lines = log.Lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0],
              "ERR: UtilImpersonateUser('OFFICE\\nobody'): " + std::to_string(ERROR_INVALID_HANDLE));
    for (const std::string& line : lines)
        EXPECT_EQ(line.find("Secret"), line.npos);
}

// ---- Faults --------------------------------------------------------------------------------------------

constexpr DWORD injected = 1450;

// A function of the system that fails once, after some calls that are let through.
template <auto* function>
struct scFault;
template <class... Arguments, BOOL(WINAPI* function)(Arguments...)>
struct scFault<function> {
    static inline int passes = 0;
    static BOOL WINAPI Call(Arguments... arguments) {
        if (passes-- != 0)
            return function(arguments...);
        SetLastError(injected);
        return FALSE;
    }
};

template <auto* function>
void FailOnce(const char* name, int passes, HANDLE token) {
    scFault<function>::passes = passes;
    const DWORD before = ThreadTokenId();
    const clsImportHook hook(name, scFault<function>::Call);
    ASSERT_TRUE(hook) << name;
    EXPECT_FALSE(UtilImpersonateToken(token)) << name << " after " << passes;
    EXPECT_EQ(GetLastError(), injected) << name << " after " << passes;
    EXPECT_LT(scFault<function>::passes, 0) << name << " was not called so often";
    EXPECT_EQ(ThreadTokenId(), before) << name << " after " << passes;
}

void FailEachCall(HANDLE token) {
    FailOnce<OpenThreadToken>("OpenThreadToken", 0, token);
    FailOnce<DuplicateTokenEx>("DuplicateTokenEx", 0, token);
    FailOnce<SetThreadToken>("SetThreadToken", 0, token);
    FailOnce<GetTokenInformation>("GetTokenInformation", 0, token);
    FailOnce<GetTokenInformation>("GetTokenInformation", 1, token);
}

TEST(Impersonation, FailsCleanlyAtEachCallOfTheSystem) {
    const Token restricted = RestrictedToken();
    FailEachCall(restricted.get());
    FailEachCall(nullptr);
    FailOnce<OpenProcessToken>("OpenProcessToken", 0, nullptr);
    const impersonation outer(restricted.get());
    FailEachCall(restricted.get());
    FailOnce<SetThreadToken>("SetThreadToken", 1, nullptr);
}

BOOL WINAPI SetNothing(PHANDLE, HANDLE) {
    return TRUE;
}

BOOL WINAPI SetLess(PHANDLE thread, HANDLE token) {
    HANDLE less = nullptr;
    if (token)
        DuplicateTokenEx(token, TOKEN_ALL_ACCESS, nullptr, SecurityIdentification, TokenImpersonation, &less);
    const Token closer(less);
    return SetThreadToken(thread, less);
}

TEST(Impersonation, IsNoneWhereTheThreadDoesNotHaveTheToken) {
    for (auto* lie : {SetNothing, SetLess}) {
        const clsImportHook hook("SetThreadToken", lie);
        EXPECT_FALSE(UtilImpersonateToken(nullptr));
        EXPECT_EQ(GetLastError(),
                  static_cast<DWORD>(lie == SetLess ? ERROR_BAD_IMPERSONATION_LEVEL : ERROR_NO_TOKEN));
        EXPECT_EQ(ThreadTokenId(), 0u);
    }
}

// Children: the former token is refused, or the thread keeps the one that it has.
void EndWithout(BOOL(WINAPI* revert)(PHANDLE, HANDLE)) {
    const impersonation outer(RestrictedToken().get());
    const UtilImpersonation inner = UtilImpersonateToken(nullptr);
    const clsImportHook hook("SetThreadToken", revert);
    scFault<SetThreadToken>::passes = 0;
    UtilImpersonateEnd(inner);
}
void EndRefused() {
    EndWithout(scFault<SetThreadToken>::Call);
}
void EndWithInner() {
    EndWithout(SetNothing);
}
// The library acts for the process while it makes its folder of temporary files.
void MakeFileAsGuest() {
    const impersonation guest(RestrictedToken().get());
    const clsImportHook hook("SetThreadToken", scFault<SetThreadToken>::Call);
    scFault<SetThreadToken>::passes = 0;
    clsOleText path;
    UtilTempFileCreate(nullptr, L"a.txt", 0, path.Out());
}
const Roles roles{{"refused", EndRefused}, {"kept", EndWithInner}, {"temporary", MakeFileAsGuest}};

TEST(Impersonation, ThatCannotEndEndsTheProcess) {
    for (const auto& [role, error] :
         {std::pair(L"refused", injected), std::pair(L"kept", DWORD(ERROR_BAD_TOKEN_TYPE))}) {
        const clsLog log;
        EXPECT_EQ(clsChild(role).ExitCodeUnlessItHangs(), 0xC0000061u);
        EXPECT_EQ(log.Lines(),
                  std::vector<std::string>{"ERR: UtilImpersonateEnd(): the thread cannot be reverted (" +
                                           std::to_string(error) + ")"});
    }
    EXPECT_EQ(clsChild(L"temporary").ExitCodeUnlessItHangs(), 0xC0000061u);
}

// ---- Users ---------------------------------------------------------------------------------------------

std::wstring SidOf(const wchar_t* account) {
    clsOleText sid;
    const INT result = UtilSidFromAccount(account, sid.Out());
    return result == UTIL_OK ? sid.Text() : std::to_wstring(result);
}

std::wstring AccountOf(const wchar_t* sid) {
    clsOleText account;
    const INT result = UtilAccountFromSid(sid, account.Out());
    return result == UTIL_OK ? account.Text() : std::to_wstring(result);
}

TEST(Users, AreFoundBothWays) {
    const std::wstring self = SidOf(nullptr);
    EXPECT_TRUE(self.starts_with(L"S-1-5-")) << Bytes(self.begin(), self.end());
    for (const std::wstring& sid :
         {self, std::wstring(L"S-1-1-0"), std::wstring(L"S-1-5-18"), std::wstring(L"S-1-5-32-544")}) {
        const std::wstring account = AccountOf(sid.c_str());
        EXPECT_FALSE(account.starts_with(L"-")) << Bytes(sid.begin(), sid.end());
        EXPECT_EQ(SidOf(account.c_str()), sid);
        EXPECT_EQ(SidOf(sid.c_str()), sid);
    }
    EXPECT_EQ(AccountOf(L"S-1-1-0").find(L'\\'), std::wstring::npos);
    const std::wstring account = AccountOf(self.c_str());
    EXPECT_EQ(SidOf((L"." + account.substr(account.find(L'\\'))).c_str()), self);
}

TEST(Users, ThatAreNotThereAreNotFound) {
    EXPECT_EQ(SidOf(L"nobody-of-that-name"), L"-6");
    EXPECT_EQ(SidOf(L"NOWHERE\\nobody"), L"-6");
    EXPECT_EQ(AccountOf(L"S-1-5-21-1-2-3-4"), L"-6");
    EXPECT_EQ(UtilIsMember(L"nobody-of-that-name"), UTIL_NOT_FOUND);
    for (const wchar_t* malformed : {L"", L"S-1-", L"S-1-5-x", L"\\a", L"a\\"}) {
        EXPECT_EQ(SidOf(malformed), L"-2");
        EXPECT_EQ(AccountOf(malformed), L"-2");
        EXPECT_EQ(UtilIsMember(malformed), UTIL_BAD_ARGUMENT);
    }
    EXPECT_EQ(AccountOf(nullptr), L"-2");
    EXPECT_EQ(AccountOf(L"BA"), L"-2");
    EXPECT_EQ(UtilSidFromAccount(nullptr, nullptr), UTIL_OK);
}

template <auto* function, class Call>
INT WithFault(const char* name, Call call) {
    scFault<function>::passes = 0;
    const clsImportHook hook(name, scFault<function>::Call);
    const INT result = call();
    EXPECT_LT(scFault<function>::passes, 0) << name << " was not called";
    return result;
}

TEST(Users, ThatCannotBeLookedUpAreNeitherThereNorMissing) {
    const std::wstring everyone = AccountOf(L"S-1-1-0");
    clsOleText text(L"untouched");
    EXPECT_EQ(WithFault<CheckTokenMembership>("CheckTokenMembership", [] { return UtilIsMember(nullptr); }),
              UTIL_FAILED);
    EXPECT_EQ(
        WithFault<LookupAccountNameW>("LookupAccountNameW", [&] { return UtilIsMember(everyone.c_str()); }),
        UTIL_FAILED);
    EXPECT_EQ(WithFault<LookupAccountNameW>("LookupAccountNameW",
                                            [&] { return UtilSidFromAccount(everyone.c_str(), text.Out()); }),
              UTIL_FAILED);
    EXPECT_EQ(WithFault<LookupAccountSidW>("LookupAccountSidW",
                                           [&] { return UtilAccountFromSid(L"S-1-1-0", text.Out()); }),
              UTIL_FAILED);
    EXPECT_EQ(text.Text(), L"untouched");
}

TEST(Users, BelongToGroups) {
    EXPECT_EQ(UtilIsMember(L"S-1-1-0"), UTIL_YES);
    EXPECT_EQ(UtilIsMember(L"S-1-5-32-546"), UTIL_NO); // guests
    EXPECT_EQ(UtilIsMember(AccountOf(L"S-1-5-32-544").c_str()), UTIL_YES);
}

// ---- Rights --------------------------------------------------------------------------------------------

constexpr UINT readWrite = UTIL_ACCESS_READ | UTIL_ACCESS_WRITE;

TEST(Rights, AreThoseOfTheFile) {
    const clsTempFolder folder;
    const std::wstring file = folder / L"file";
    WriteBytes(file, "x");
    for (const std::wstring& path : {file, folder.Path().wstring()}) {
        EXPECT_EQ(UtilCheckAccess(path.c_str(), readWrite | UTIL_ACCESS_DELETE), UTIL_YES);
        for (const UINT none : {0u, 0x20u})
            EXPECT_EQ(UtilCheckAccess(path.c_str(), none), UTIL_BAD_ARGUMENT);
    }
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(UtilCheckAccess(file.c_str(), UTIL_ACCESS_READ), UTIL_YES);
    EXPECT_EQ(UtilCheckAccess(file.c_str(), UTIL_ACCESS_WRITE), UTIL_NO);
    SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(ReadBytes(file), "x");
}

TEST(Rights, ToMakeAFileAreThoseOfTheNearestFolder) {
    const clsTempFolder folder;
    WriteBytes(folder / L"file", "x");
    for (const wchar_t* missing : {L"new", L"new\\deeper\\file"}) {
        EXPECT_EQ(UtilCheckAccess((folder / missing).c_str(), UTIL_ACCESS_WRITE), UTIL_YES);
        EXPECT_EQ(UtilCheckAccess((folder / missing).c_str(), readWrite), UTIL_NOT_FOUND);
    }
    EXPECT_EQ(UtilCheckAccess((folder / L"file\\new").c_str(), UTIL_ACCESS_WRITE), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilCheckAccess(L"Q:\\nowhere\\file", UTIL_ACCESS_WRITE), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilCheckAccess(L"", UTIL_ACCESS_WRITE), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(folder.Count(), 1);
}

// The list of a file's rights as the system writes it.
std::wstring ListOf(const std::wstring& path) {
    BYTE descriptor[2048];
    DWORD size = 0;
    wchar_t* text = nullptr;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor, sizeof descriptor, &size);
    ConvertSecurityDescriptorToStringSecurityDescriptorW(descriptor, 1, DACL_SECURITY_INFORMATION, &text,
                                                         nullptr);
    std::wstring list = text ? text : L"";
    LocalFree(text);
    return list;
}

void SetList(const std::wstring& path, const wchar_t* list) {
    void* descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(list, 1, &descriptor, nullptr);
    SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                     descriptor);
    LocalFree(descriptor);
}

TEST(Rights, AreGivenAndTaken) {
    const clsTempFolder folder;
    const std::wstring file = folder / L"file";
    WriteBytes(file, "x");
    // What the folder gives its files they have again with each new list.
    SetList(folder.Path().wstring(), (L"D:P(A;;FA;;;" + SidOf(nullptr) + L")").c_str());
    SetList(file, (L"D:P(A;;FRWD;;;" + SidOf(nullptr) + L")").c_str());
    EXPECT_EQ(UtilCheckAccess(file.c_str(), UTIL_ACCESS_READ), UTIL_YES);
    EXPECT_EQ(UtilCheckAccess(file.c_str(), UTIL_ACCESS_WRITE), UTIL_NO);
    ASSERT_EQ(UtilGrantAccess(file.c_str(), nullptr, 0x1F), UTIL_OK);
    EXPECT_EQ(UtilCheckAccess(file.c_str(), UTIL_ACCESS_WRITE), UTIL_YES);
    EXPECT_EQ(ListOf(file).find(L";WD)"), std::wstring::npos);
    ASSERT_EQ(UtilGrantAccess(file.c_str(), L"S-1-1-0", UTIL_ACCESS_READ), UTIL_OK);
    EXPECT_NE(ListOf(file).find(L";WD)"), std::wstring::npos);
    ASSERT_EQ(UtilGrantAccess(file.c_str(), L"S-1-1-0", 0), UTIL_OK);
    EXPECT_EQ(ListOf(file).find(L";WD)"), std::wstring::npos);
}

TEST(Rights, StayWhereTheyCannotBeGiven) {
    const clsTempFolder folder;
    const std::wstring file = folder / L"file";
    WriteBytes(file, "x");
    const std::wstring before = ListOf(file);
    const clsLog log;
    EXPECT_EQ(UtilGrantAccess(file.c_str(), L"nobody-of-that-name", UTIL_ACCESS_READ), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilGrantAccess(file.c_str(), L"", UTIL_ACCESS_READ), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilGrantAccess(file.c_str(), L"S-1-1-0", 0x20), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilGrantAccess((folder / L"none").c_str(), L"S-1-1-0", UTIL_ACCESS_READ), UTIL_NOT_FOUND);
    EXPECT_EQ(ListOf(file), before);
    const std::vector<std::string> lines = log.Lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_TRUE(lines[0].ends_with("','nobody-of-that-name'): " + std::to_string(ERROR_NONE_MAPPED)))
        << lines[0];
}

TEST(Rights, AndUsersFailCleanlyAtEachAllocation) {
    const clsTempFolder folder;
    const std::wstring file = folder / L"file", everyone = AccountOf(L"S-1-1-0");
    WriteBytes(file, "x");
    SetList(file, (L"D:P(A;;FA;;;" + SidOf(nullptr) + L")").c_str());
    const std::wstring before = ListOf(file);
    const auto fails = [&](INT good, auto call) {
        INT result = 0;
        clsOleText text(L"untouched");
        FailEachAllocation([&] { result = call(text.Out()); },
                           [&](bool failed) {
                               EXPECT_EQ(result, failed && result != good ? UTIL_FAILED : good);
                               if (result != good) {
                                   EXPECT_EQ(text.Text(), L"untouched");
                                   EXPECT_EQ(ListOf(file), before);
                               }
                           });
    };
    fails(UTIL_OK, [](BSTR* text) { return UtilSidFromAccount(nullptr, text); });
    fails(UTIL_OK, [&](BSTR* text) { return UtilSidFromAccount(everyone.c_str(), text); });
    fails(UTIL_OK, [](BSTR* text) { return UtilAccountFromSid(L"S-1-5-18", text); });
    fails(UTIL_YES, [&](BSTR*) { return UtilIsMember(everyone.c_str()); });
    fails(UTIL_YES, [&](BSTR*) { return UtilCheckAccess(file.c_str(), readWrite); });
    fails(UTIL_OK, [](BSTR* text) { return UtilPathToNetwork(L"\\\\srv\\share\\a", text); });
    fails(UTIL_OK, [](BSTR* text) { return UtilPathToLocal(L"C:\\a", text); });
    fails(UTIL_OK, [](BSTR*) {
        const UtilImpersonation guest = UtilImpersonateToken(nullptr);
        EXPECT_EQ(ThreadTokenId() != 0, guest != nullptr);
        return guest ? UtilImpersonateEnd(guest) : UTIL_FAILED;
    });
    fails(UTIL_OK, [&](BSTR*) { return UtilGrantAccess(file.c_str(), L"S-1-1-0", UTIL_ACCESS_READ); });
    EXPECT_EQ(ThreadTokenId(), 0u);
}

// ---- Network paths -------------------------------------------------------------------------------------

std::wstring Turned(INT(TVUT22_CALL* turn)(const wchar_t*, BSTR*), const wchar_t* path) {
    clsOleText turned(L"untouched");
    const INT result = turn(path, turned.Out());
    EXPECT_TRUE(result == UTIL_OK || turned.Text() == L"untouched");
    return result == UTIL_OK ? turned.Text() : std::to_wstring(result);
}

TEST(NetworkPaths, GoByTheDrivesOfThisSystem) {
    HKEY key = nullptr;
    constexpr wchar_t remote[] = L"\\\\srv\\share";
    RegCreateKeyW(HKEY_CURRENT_USER, L"Network\\Q", &key);
    RegSetValueExW(key, L"RemotePath", 0, REG_SZ, reinterpret_cast<const BYTE*>(remote), sizeof remote);
    RegCloseKey(key);
    EXPECT_EQ(Turned(UtilPathToNetwork, L"Q:\\a"), L"\\\\srv\\share\\a");
    EXPECT_EQ(Turned(UtilPathToLocal, L"\\\\srv\\share\\a"), L"Q:\\a");
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Network\\Q");
    EXPECT_EQ(Turned(UtilPathToNetwork, L"Q:\\a"), L"-6");
    EXPECT_EQ(Turned(UtilPathToNetwork, L"C:\\a"), L"-6");
    EXPECT_EQ(Turned(UtilPathToNetwork, L"\\\\?\\UNC\\srv\\share\\a"), L"\\\\srv\\share\\a");
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    GetComputerNameW(name, &length);
    EXPECT_EQ(Turned(UtilPathToLocal, (L"\\\\" + std::wstring(name) + L"\\c$\\a").c_str()), L"C:\\a");
    EXPECT_EQ(Turned(UtilPathToLocal, L"\\\\localhost\\none\\a"), L"-6");
    EXPECT_EQ(Turned(UtilPathToLocal, L"C:\\a"), L"C:\\a");
    for (auto* turn : {UtilPathToNetwork, UtilPathToLocal}) {
        EXPECT_EQ(Turned(turn, nullptr), L"-2");
        EXPECT_EQ(turn(L"\\\\?\\UNC\\srv\\share", nullptr) == UTIL_OK, turn == UtilPathToNetwork);
    }
}

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    return testing_prof::RunRoleOrTests(count, arguments, testing_prof::roles, 17);
}
