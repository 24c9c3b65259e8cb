// A file has one name here, however it is written: that of its folder as the system knows it, and its own in
// capitals. The mutex bears a number made of both; two files of one number would only wait for each other.
#include "file_turn.h"

#include "exit_code.h"
#include "owned.h"
#include "system_reason.h"
#include "text_io.h"

#include <cstdint>

namespace tool::prof {

namespace {

constexpr DWORD patience = 10'000; // milliseconds, as the library has for a file that others hold

std::wstring Grown(DWORD (*fill)(const void* of, wchar_t* buffer, DWORD size), const void* of) {
    std::wstring text(MAX_PATH, L'\0');
    for (DWORD length = 0; (length = fill(of, text.data(), static_cast<DWORD>(text.size()))) > text.size();)
        text.resize(length);
    text.resize(std::wcslen(text.c_str()));
    return text;
}

std::wstring FullPath(const std::wstring& path) {
    const auto fill = [](const void* of, wchar_t* buffer, DWORD size) {
        return GetFullPathNameW(static_cast<const wchar_t*>(of), size, buffer, nullptr);
    };
    return Grown(fill, path.c_str());
}

// Without links, substitutes for drives and short names, where the system knows.
std::wstring FinalFolder(const std::wstring& folder) {
    const clsHandle handle =
        FileHandle(CreateFileW(folder.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                               nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle)
        return folder;
    const auto fill = [](const void* of, wchar_t* buffer, DWORD size) {
        return GetFinalPathNameByHandleW(const_cast<void*>(of), buffer, size, FILE_NAME_NORMALIZED);
    };
    const std::wstring path = Grown(fill, handle.get());
    return path.empty() ? folder : path;
}

// FNV-1a.
std::uint64_t NumberOf(const std::wstring& text) {
    std::uint64_t number = 0xcbf29ce484222325;
    for (const wchar_t unit : text)
        number = (number ^ unit) * 0x100000001b3;
    return number;
}

std::wstring MutexName(const std::string& file) {
    const std::wstring path = FullPath(ToWide(file));
    const std::size_t name = path.find_last_of(L'\\') + 1;
    std::wstring one = FinalFolder(path.substr(0, name)) + L'\\' + path.substr(name);
    CharUpperBuffW(one.data(), static_cast<DWORD>(one.size()));
    return L"Global\\prof-" + std::to_wstring(NumberOf(one));
}

// Everybody may wait for it: without a list of who may, only its maker's own sessions could.
clsHandle MakeMutex(const std::wstring& name) {
    SECURITY_DESCRIPTOR everybody;
    InitializeSecurityDescriptor(&everybody, SECURITY_DESCRIPTOR_REVISION);
    SetSecurityDescriptorDacl(&everybody, TRUE, nullptr, FALSE);
    SECURITY_ATTRIBUTES attributes{sizeof attributes, &everybody, FALSE};
    return clsHandle{CreateMutexW(&attributes, FALSE, name.c_str())};
}

} // namespace

clsFileTurn::clsFileTurn(const std::string& file) {
    clsHandle mutex = MakeMutex(MutexName(file));
    if (!mutex)
        throw scFailure{ExitCode::cannotOpen, file, SystemReason(GetLastError())};
    // One whose holder died is as good: files are replaced whole.
    const DWORD result = WaitForSingleObject(mutex.get(), patience);
    if (result != WAIT_OBJECT_0 && result != WAIT_ABANDONED)
        throw scFailure{ExitCode::cannotOpen, file, "others have been changing it for ten seconds"};
    mutex_.reset(mutex.release());
}

void clsFileTurn::scRelease::operator()(void* mutex) const {
    ReleaseMutex(mutex);
    CloseHandle(mutex);
}

} // namespace tool::prof
