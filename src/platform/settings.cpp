#include "platform/settings.h"

#include "platform/host.h"
#include "platform/registry.h"
#include "platform/wide.h"

namespace tvut {

namespace {

std::wstring HostKeyName() {
    const std::u16string_view tag = PlatformHostTag();
    std::wstring name(ToWide(tag.data()), tag.size());
    CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
    return L"software\\Velmor\\" + name;
}

} // namespace

bool PlatformProfCacheEnabled() {
    return PlatformReadDword(HKEY_CURRENT_USER, HostKeyName().c_str(), L"ProfCacheEnabled").value_or(1) != 0;
}

} // namespace tvut
