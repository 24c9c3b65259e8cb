// The setting is kept under the host program's name. Where the machine asks for it, the hive is that of the
// user for whom the calling thread acts, opened for each call: threads of a server act for different users.
#include "runtime/language.h"

#include "platform/host.h"
#include "platform/registry.h"
#include "platform/token.h"
#include "platform/wide.h"

#include <atomic>

namespace tvut {

namespace {

constexpr const wchar_t* valueName = L"Language";

std::wstring KeyName() {
    const std::u16string_view tag = PlatformHostTag();
    return std::wstring(L"Software\\Velmor\\Appearance\\").append(ToWide(tag.data()), tag.size());
}

std::atomic<int> impersonationAware{-1}; // -1: not looked up yet; chosen once a process

bool ImpersonationAware() noexcept {
    if (impersonationAware < 0)
        impersonationAware =
            PlatformReadDword(HKEY_LOCAL_MACHINE, L"software\\Velmor", L"Registry.ImpersonationAware")
                .value_or(0) != 0;
    return impersonationAware > 0;
}

// The hive of the user that the calling thread acts for, on machines that ask for it; the process's own
// user otherwise, and when that hive cannot be opened.
class clsUserHive {
  public:
    explicit clsUserHive(REGSAM access) noexcept {
        if (ImpersonationAware() && PlatformOpenUserHive(access, opened_) != ERROR_SUCCESS)
            opened_ = {};
    }
    HKEY Get() const noexcept { return opened_ ? opened_.Get() : HKEY_CURRENT_USER; }

  private:
    clsRegistryKey opened_;
};

} // namespace

std::int32_t UtilpSetLanguage(std::uint32_t language) noexcept {
    try {
        const clsUserHive hive(KEY_ALL_ACCESS);
        HKEY key = nullptr;
        const LSTATUS status =
            RegCreateKeyExW(hive.Get(), KeyName().c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE,
                            nullptr, &key, nullptr);
        if (status != ERROR_SUCCESS)
            return status;
        RegSetValueExW(key, valueName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&language),
                       sizeof language);
        return RegCloseKey(key); // its result is the call's
    } catch (...) {
        return ERROR_NOT_ENOUGH_MEMORY;
    }
}

std::uint32_t UtilpLanguage() noexcept {
    try {
        const clsUserHive hive(KEY_READ);
        if (const auto kept = PlatformReadDword(hive.Get(), KeyName().c_str(), valueName))
            return *kept;
    } catch (...) { // no memory for the key's name
    }
    return PRIMARYLANGID(GetUserDefaultUILanguage());
}

} // namespace tvut
