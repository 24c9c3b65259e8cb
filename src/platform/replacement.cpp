// What the owner has set on the old file is copied just before the rename, when the new one is complete: a
// failure on the way has changed nothing. Access rights are set only where they differ from what both
// inherit from the folder, because setting them would end the inheritance.
#include "platform/replacement.h"

#include "platform/exception.h"
#include "platform/long_path.h"
#include "platform/patience.h"
#include "platform/wide.h"

#include <array>

namespace tvut {

namespace {

// Of a file that is there and may be replaced, or of none.
WIN32_FILE_ATTRIBUTE_DATA DataOfReplaceable(const wchar_t* target) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(target, GetFileExInfoStandard, &data))
        return {};
    if ((data.dwFileAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
        throw clsException("file is read-only or a folder", reason::accessDenied);
    return data;
}

using SecurityBuffer = std::array<char, 4096>;

bool ReadAccessRights(const std::wstring& file, SecurityBuffer& security) {
    DWORD needed = 0;
    return GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, security.data(),
                            static_cast<DWORD>(security.size()), &needed);
}

// The attributes that a file's owner sets; the file system keeps the others itself.
constexpr DWORD ownAttributes =
    FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

// Gives a new file the creation time, attributes and access rights of the one it is to replace, as
// far as the system allows. Rights that both have from their folder anyway are left alone.
void TakeOver(const std::wstring& from, const WIN32_FILE_ATTRIBUTE_DATA& data, const std::wstring& to,
              HANDLE file) {
    FILE_BASIC_INFO basic{};
    basic.CreationTime.LowPart = data.ftCreationTime.dwLowDateTime;
    basic.CreationTime.HighPart = static_cast<LONG>(data.ftCreationTime.dwHighDateTime);
    basic.FileAttributes = (data.dwFileAttributes & ownAttributes) | FILE_ATTRIBUTE_ARCHIVE; // it is new
    SetFileInformationByHandle(file, FileBasicInfo, &basic, sizeof basic);

    alignas(SECURITY_DESCRIPTOR) SecurityBuffer wanted{};
    alignas(SECURITY_DESCRIPTOR) SecurityBuffer given{};
    if (ReadAccessRights(from, wanted) && ReadAccessRights(to, given) && wanted != given)
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, wanted.data());
}

} // namespace

clsReplacement::clsReplacement(const char16_t* target) : clsReplacement(PlatformLongPath(ToWide(target))) {}

clsReplacement::clsReplacement(const std::wstring& target)
    : targetData_(DataOfReplaceable(target.c_str())), file_(target) {}

DWORD clsReplacement::PutInPlace(ULONGLONG patience) {
    if (targetData_.dwFileAttributes != 0)
        TakeOver(file_.Target(), targetData_, file_.Path(), file_.Handle());
    file_.Close();
    return clsPatience(patience).Try([this] { return file_.PutInPlace(true); });
}

} // namespace tvut
