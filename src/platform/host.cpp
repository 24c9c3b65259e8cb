#include "platform/host.h"

#include "platform/wide.h"

#include <array>
#include <windows.h>

namespace tvut {

namespace {

std::array<wchar_t, 32768> hostName; // as long as the system's paths get
std::wstring_view hostTag;

} // namespace

std::u16string_view PlatformHostTag() noexcept {
    return FromWide(hostTag);
}

const char16_t* PlatformHostFileName() noexcept {
    return FromWide(hostName.data());
}

void PlatformNoteHost() noexcept {
    const DWORD length = GetModuleFileNameW(nullptr, hostName.data(), static_cast<DWORD>(hostName.size()));
    hostName.back() = L'\0'; // older systems leave it off a name that they cut
    hostTag = {hostName.data(), length < hostName.size() ? length : hostName.size() - 1};
    hostTag.remove_prefix(hostTag.find_last_of(L"\\/") + 1);
    hostTag = hostTag.substr(0, hostTag.rfind(L'.'));
}

} // namespace tvut
