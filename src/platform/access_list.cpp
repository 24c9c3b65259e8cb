// Rights are read and written through one open handle, so that nobody can put another file in its place
// between the two.
#include "platform/access_list.h"

#include "platform/long_path.h"
#include "platform/token.h"

#include <aclapi.h>
#include <array>

namespace tvut {

namespace {

constexpr SECURITY_INFORMATION ownerGroupAndList =
    OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
constexpr std::size_t usualBytes = 512;

PSECURITY_DESCRIPTOR Descriptor(std::span<const std::byte> bytes) {
    return const_cast<std::byte*>(bytes.data()); // which the system's calls only read
}

} // namespace

DWORD clsSecuredFile::Open(std::wstring_view path, DWORD access, DWORD flags) {
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    handle_ = clsFileHandle(CreateFileW(PlatformLongPath(path).c_str(),
                                        access | READ_CONTROL | FILE_READ_ATTRIBUTES, shared, nullptr,
                                        OPEN_EXISTING, flags | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return handle_ ? ERROR_SUCCESS : GetLastError();
}

DWORD clsSecuredFile::ReadAttributes(DWORD& attributes) const noexcept {
    FILE_BASIC_INFO info;
    if (!GetFileInformationByHandleEx(handle_.Get(), FileBasicInfo, &info, sizeof info))
        return GetLastError();
    attributes = info.FileAttributes;
    return ERROR_SUCCESS;
}

DWORD clsSecuredFile::OpenToRead(std::wstring_view path) {
    return Open(path, 0, 0);
}

DWORD clsSecuredFile::OpenToChange(std::wstring_view path) {
    return Open(path, WRITE_DAC, FILE_FLAG_OPEN_REPARSE_POINT);
}

DWORD clsSecuredFile::KeepsRights(bool& keeps) const noexcept {
    DWORD flags = 0;
    if (!GetVolumeInformationByHandleW(handle_.Get(), nullptr, 0, nullptr, nullptr, &flags, nullptr, 0))
        return GetLastError();
    keeps = (flags & FILE_PERSISTENT_ACLS) != 0;
    return ERROR_SUCCESS;
}

DWORD clsSecuredFile::ReadDescriptor(std::vector<std::byte>& descriptor) const {
    descriptor.resize(usualBytes);
    for (;;) {
        DWORD needed = 0;
        if (GetKernelObjectSecurity(handle_.Get(), ownerGroupAndList, descriptor.data(),
                                    static_cast<DWORD>(descriptor.size()), &needed))
            return ERROR_SUCCESS;
        const DWORD error = GetLastError();
        if (error != ERROR_INSUFFICIENT_BUFFER || needed <= descriptor.size())
            return error;
        descriptor.resize(needed);
    }
}

DWORD clsSecuredFile::ReplaceList(std::vector<std::byte>& list) const noexcept {
    return SetSecurityInfo(handle_.Get(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                           reinterpret_cast<ACL*>(list.data()), nullptr);
}

DWORD PlatformListOf(std::span<const std::byte> descriptor, std::span<const std::byte>& list) noexcept {
    BOOL isThere = FALSE, isDefault = FALSE;
    ACL* found = nullptr;
    if (!GetSecurityDescriptorDacl(Descriptor(descriptor), &isThere, &found, &isDefault))
        return GetLastError();
    list = {};
    if (isThere && found)
        list = {reinterpret_cast<const std::byte*>(found), found->AclSize};
    return ERROR_SUCCESS;
}

DWORD clsAccessCheck::Begin() noexcept {
    return PlatformCheckingToken(token_);
}

DWORD clsAccessCheck::Granted(std::vector<std::byte>& descriptor, DWORD& rights) const noexcept {
    GENERIC_MAPPING mapping{FILE_GENERIC_READ, FILE_GENERIC_WRITE, FILE_GENERIC_EXECUTE, FILE_ALL_ACCESS};
    alignas(PRIVILEGE_SET) std::array<std::byte, 256> privileges; // those that it took
    DWORD privilegeBytes = static_cast<DWORD>(privileges.size());
    BOOL isGranted = FALSE;
    rights = 0;
    if (!AccessCheck(Descriptor(descriptor), token_.Get(), MAXIMUM_ALLOWED, &mapping,
                     reinterpret_cast<PRIVILEGE_SET*>(privileges.data()), &privilegeBytes, &rights,
                     &isGranted))
        return GetLastError();
    if (!isGranted)
        rights = 0;
    return ERROR_SUCCESS;
}

} // namespace tvut
