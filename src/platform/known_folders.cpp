// The folders are those of the user for whom the thread acts. The shell's library is loaded when a folder
// is first asked for; few programs ask.
#include "platform/known_folders.h"

#include "platform/host.h"
#include "platform/owned.h"
#include "platform/system_function.h"
#include "platform/system_text.h"
#include "platform/wide.h"

#include <algorithm>
#include <objbase.h>
#include <shlobj.h>

namespace tvut {

namespace {

constinit clsSystemFunction<decltype(SHGetKnownFolderPath)> getKnownFolderPath(L"shell32.dll",
                                                                               "SHGetKnownFolderPath");

// The system's identifiers, in full: the library that has their names would add all it has to the DLL.
// Folders of programs are those of 32-bit programs: this is one.
constexpr struct {
    KnownFolder folder;
    KNOWNFOLDERID id;
} shellFolders[] = {
    {KnownFolder::documents, {0xFDD39AD0, 0x238F, 0x46AF, {0xAD, 0xB4, 0x6C, 0x85, 0x48, 0x03, 0x69, 0xC7}}},
    {KnownFolder::commonAppData,
     {0x62AB5D82, 0xFDC1, 0x4DC3, {0xA9, 0xDD, 0x07, 0x0D, 0x1D, 0x49, 0x5D, 0x97}}},
    {KnownFolder::desktop, {0xB4BFCC3A, 0xDB2C, 0x424C, {0xB0, 0x29, 0x7F, 0xE9, 0x9A, 0x87, 0xC6, 0x41}}},
    {KnownFolder::commonDocuments,
     {0xED4824AF, 0xDCE4, 0x45A8, {0x81, 0xE2, 0xFC, 0x79, 0x65, 0x08, 0x36, 0x34}}},
    {KnownFolder::downloads, {0x374DE290, 0x123F, 0x4565, {0x91, 0x64, 0x39, 0xC4, 0x92, 0x5E, 0x46, 0x7B}}},
    {KnownFolder::programFiles,
     {0x905E63B6, 0xC1BF, 0x494E, {0xB2, 0x9C, 0x65, 0xB7, 0x32, 0xD3, 0xD2, 0x1A}}},
    {KnownFolder::pictures, {0x33E28130, 0x4E1E, 0x4676, {0x83, 0x5A, 0x98, 0x39, 0x5C, 0x3B, 0xC3, 0xBB}}},
    {KnownFolder::commonFiles,
     {0xF7F1ED05, 0x9F6D, 0x47A2, {0xAA, 0xAE, 0x29, 0xD3, 0x17, 0xC6, 0xF0, 0x66}}},
    {KnownFolder::appData, {0x3EB685DB, 0x65F9, 0x4CF6, {0xA0, 0x3A, 0xE3, 0xEF, 0x65, 0x72, 0x9F, 0x3D}}},
    {KnownFolder::fonts, {0xFD228CB7, 0xAE11, 0x4AE3, {0x86, 0x4C, 0x16, 0xF3, 0x91, 0x0A, 0xB8, 0xFE}}},
    {KnownFolder::localAppData,
     {0xF1B32785, 0x6FBA, 0x4FCF, {0x9D, 0x55, 0x7B, 0x8E, 0x7F, 0x15, 0x70, 0x91}}},
    {KnownFolder::system, {0xD65231B0, 0xB2F1, 0x4857, {0xA4, 0xCE, 0xA8, 0xE7, 0xC6, 0xEA, 0x7D, 0x27}}},
    {KnownFolder::profile, {0x5E6C858F, 0x0E22, 0x4760, {0x9A, 0xFE, 0xEA, 0x33, 0x17, 0xB6, 0x71, 0x73}}},
    {KnownFolder::windows, {0xF38BF404, 0x1D43, 0x42F2, {0x93, 0x05, 0x67, 0xDE, 0x0B, 0x28, 0xFC, 0x23}}},
};

struct scTaskMemoryPolicy {
    using Value = wchar_t*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { CoTaskMemFree(value); }
};
using clsTaskText = clsOwned<scTaskMemoryPolicy>;

std::wstring ShellFolder(KnownFolder folder, HANDLE token) {
    const auto* const row =
        std::ranges::find_if(shellFolders, [&](const auto& known) { return known.folder == folder; });
    auto* const find = getKnownFolderPath.Get();
    clsTaskText path;
    if (row == std::end(shellFolders) || !find ||
        FAILED(find(row->id, KF_FLAG_DONT_VERIFY, token, path.Receive())))
        return {};
    return path.Get();
}

std::wstring TemporaryFolder() {
    const std::wstring folder =
        PlatformText([](wchar_t* text, DWORD size) { return GetTempPathW(size, text); });
    std::wstring longForm =
        PlatformText([&](wchar_t* text, DWORD size) { return GetLongPathNameW(folder.c_str(), text, size); });
    return longForm.empty() ? folder : longForm; // it is not there
}

std::wstring HostFolder() {
    const std::wstring_view host = ToWide(PlatformHostFileName());
    return std::wstring(host.substr(0, host.find_last_of(L'\\') + 1)); // nothing found: npos + 1 is 0
}

std::wstring FolderOf(KnownFolder folder, HANDLE token) {
    if (folder == KnownFolder::temp)
        return TemporaryFolder();
    if (folder == KnownFolder::program)
        return HostFolder();
    return ShellFolder(folder, token);
}

} // namespace

// A thread that acts for nobody has no token. One whose token may not be looked at must not get another
// user's folders.
clsKnownFolders::clsKnownFolders() noexcept {
    const clsLastErrorKept lastError;
    if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY | TOKEN_IMPERSONATE | TOKEN_DUPLICATE, TRUE, &token_))
        return;
    userIsKnown_ = GetLastError() == ERROR_NO_TOKEN;
    token_ = nullptr;
}

clsKnownFolders::~clsKnownFolders() {
    if (token_)
        CloseHandle(token_);
}

std::u16string clsKnownFolders::Folder(KnownFolder folder) {
    const std::wstring path = userIsKnown_ ? FolderOf(folder, token_) : std::wstring();
    const bool isDriveRoot = path.size() == 3 && path[1] == L':';
    const bool endsEarly = path.ends_with(L'\\') && !isDriveRoot;
    return std::u16string(FromWide(path.c_str()), path.size() - (endsEarly ? 1 : 0));
}

} // namespace tvut
