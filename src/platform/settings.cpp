#include "platform/settings.h"

#include "platform/host.h"
#include "platform/letter_case.h"
#include "platform/registry.h"
#include "platform/wide.h"

namespace tvut {

namespace {

std::wstring HostKeyName() {
    const std::u16string_view tag = PlatformHostTag();
    std::u16string name(tag.size(), u'\0');
    PlatformToUpperCase(tag, name.data());
    return L"software\\Velmor\\" + std::wstring(ToWide(name.data()), name.size());
}

} // namespace

bool PlatformProfCacheEnabled() {
    return PlatformReadDword(HKEY_CURRENT_USER, HostKeyName().c_str(), L"ProfCacheEnabled").value_or(1) != 0;
}

} // namespace tvut
