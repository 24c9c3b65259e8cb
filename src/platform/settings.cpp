#include "platform/settings.h"

#include "platform/host.h"
#include "platform/owned.h"

#include <string>

namespace tvut {

namespace {

std::wstring HostKeyName() {
    std::wstring name(PlatformHostTag());
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return L"software\\Velmor\\" + name;
}

} // namespace

bool PlatformProfCacheEnabled() {
    clsRegistryKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, HostKeyName().c_str(), 0, KEY_QUERY_VALUE, key.Receive()) !=
        ERROR_SUCCESS)
        return true;
    DWORD enabled = 0;
    DWORD type = 0;
    DWORD size = sizeof enabled;
    const LSTATUS status = RegQueryValueExW(key.Get(), L"ProfCacheEnabled", nullptr, &type,
                                            reinterpret_cast<BYTE*>(&enabled), &size);
    return status != ERROR_SUCCESS || type != REG_DWORD || enabled != 0;
}

} // namespace tvut
