// The rights are part of making the folder: set afterwards, there would be a moment in which others could
// open it. They are protected, so that nothing is inherited from the folder around it. A thread that acts for
// somebody else would make and remove files in that one's name; it acts for the process meanwhile.
#include "platform/private_folder.h"

#include "platform/owned.h"
#include "platform/token.h"

#include <array>

namespace tvut {

namespace {

class clsProcessUser {
  public:
    clsProcessUser() noexcept {
        clsHandle token;
        DWORD size = 0;
        known_ = OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receive()) &&
                 GetTokenInformation(token.Get(), TokenUser, buffer_.data(),
                                     static_cast<DWORD>(buffer_.size()), &size);
    }
    bool IsKnown() const noexcept { return known_; }
    PSID Sid() noexcept { return reinterpret_cast<TOKEN_USER*>(buffer_.data())->User.Sid; }

  private:
    alignas(TOKEN_USER) std::array<std::byte, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> buffer_;
    bool known_;
};

// Says that a user owns a folder and has all rights to it and to what will be in it; nobody else has any.
class clsPrivateRights {
  public:
    explicit clsPrivateRights(PSID user) noexcept {
        auto* const list = reinterpret_cast<ACL*>(list_.data());
        complete_ = InitializeAcl(list, static_cast<DWORD>(list_.size()), ACL_REVISION) &&
                    AddAccessAllowedAceEx(list, ACL_REVISION, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                                          FILE_ALL_ACCESS, user) &&
                    InitializeSecurityDescriptor(&rights_, SECURITY_DESCRIPTOR_REVISION) &&
                    SetSecurityDescriptorOwner(&rights_, user, FALSE) &&
                    SetSecurityDescriptorDacl(&rights_, TRUE, list, FALSE) &&
                    SetSecurityDescriptorControl(&rights_, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
    }
    bool IsComplete() const noexcept { return complete_; }
    SECURITY_ATTRIBUTES Attributes() noexcept { return {sizeof(SECURITY_ATTRIBUTES), &rights_, FALSE}; }

  private:
    alignas(
        ACL) std::array<std::byte, sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) + SECURITY_MAX_SID_SIZE> list_;
    SECURITY_DESCRIPTOR rights_;
    bool complete_;
};

} // namespace

DWORD PlatformMakePrivateFolder(const wchar_t* path) noexcept {
    clsProcessUser user;
    if (!user.IsKnown())
        return GetLastError();
    clsPrivateRights rights(user.Sid());
    if (!rights.IsComplete())
        return GetLastError();
    SECURITY_ATTRIBUTES attributes = rights.Attributes();
    return CreateDirectoryW(path, &attributes) ? ERROR_SUCCESS : GetLastError();
}

bool PlatformIsOwnFolder(const wchar_t* path) noexcept {
    alignas(SECURITY_DESCRIPTOR) std::array<std::byte, 1024> rights;
    clsProcessUser user;
    DWORD size = 0;
    BOOL defaulted = FALSE;
    PSID owner = nullptr;
    return user.IsKnown() &&
           GetFileSecurityW(path, OWNER_SECURITY_INFORMATION, rights.data(),
                            static_cast<DWORD>(rights.size()), &size) &&
           GetSecurityDescriptorOwner(rights.data(), &owner, &defaulted) && owner &&
           EqualSid(owner, user.Sid());
}

clsOwnIdentity::clsOwnIdentity() noexcept {
    if (OpenThreadToken(GetCurrentThread(), TOKEN_IMPERSONATE, TRUE, &token_))
        RevertToSelf();
    else
        token_ = nullptr;
}

clsOwnIdentity::~clsOwnIdentity() {
    if (!token_)
        return;
    const clsLastErrorKept lastError;
    if (!SetThreadToken(nullptr, token_))
        PlatformEndUnreverted();
    CloseHandle(token_);
}

} // namespace tvut
