// A program's first start: a data folder for all users, what its settings dialog may offer, and the path that
// a colleague has to type to reach a document.
#include <tvut22/tvut22.hpp>

#include <cstdio>

namespace {

constexpr const wchar_t* everyone = L"S-1-1-0"; // its name depends on the language of Windows

const char* Answer(INT result) {
    return result == UTIL_YES ? "yes" : result == UTIL_NO ? "no" : "cannot tell";
}

void OpenToAll(const wchar_t* folder) {
    CreateDirectoryW(folder, nullptr);
    const INT granted = UtilGrantAccess(folder, everyone, UTIL_ACCESS_READ | UTIL_ACCESS_WRITE);
    std::printf("%ls is open to all users: %s\n", folder, granted == UTIL_OK ? "yes" : "no");
}

// Before work is lost in a dialog: could the file be made there at all?
void OfferExport(const wchar_t* file) {
    std::printf("%ls can be made: %s\n", file, Answer(UtilCheckAccess(file, UTIL_ACCESS_WRITE)));
}

void TellPath(const wchar_t* path) {
    BSTR network = nullptr;
    if (UtilPathToNetwork(path, &network) == UTIL_OK)
        std::printf("%ls: others open %ls\n", path, network);
    else
        std::printf("%ls: only on this computer\n", path);
    SysFreeString(network);
}

// Work that a service does for somebody; here it acts by a copy of its own token.
void WorkAsUser(const wchar_t* folder) {
    const tvut22::impersonation user{HANDLE(nullptr)};
    if (!user)
        std::printf("cannot act for the user: error %lu\n", GetLastError());
    else
        std::printf("the user may read %ls: %s\n", folder, Answer(UtilCheckAccess(folder, UTIL_ACCESS_READ)));
} // the thread is who it was

} // namespace

int main() {
    OpenToAll(L"data");
    OfferExport(L"data\\reports\\april.pdf");
    OfferExport(L"Q:\\april.pdf");
    std::printf("settings for all users can be changed: %s\n", Answer(UtilIsMember(nullptr)));
    WorkAsUser(L"data");
    TellPath(L"\\\\?\\UNC\\server\\team\\plan.docx");
    TellPath(L"C:\\plan.docx");
    const UtilImpersonation nobody = UtilImpersonateUser(L"", L"", 0);
    std::printf("nobody can be acted for: %s\n", nobody ? "no" : "yes");
    return UtilImpersonateEnd(nobody) == UTIL_OK ? 0 : 1;
}
