#include "platform/host.h"

#include <array>
#include <windows.h>

namespace tvut {

namespace {

std::array<wchar_t, MAX_PATH> hostName;
std::wstring_view hostTag;

} // namespace

std::wstring_view PlatformHostTag() {
    return hostTag;
}

void PlatformNoteHost() noexcept {
    const DWORD length = GetModuleFileNameW(nullptr, hostName.data(), static_cast<DWORD>(hostName.size()));
    hostTag = {hostName.data(), length < hostName.size() ? length : hostName.size() - 1};
    hostTag.remove_prefix(hostTag.find_last_of(L"\\/") + 1);
    hostTag = hostTag.substr(0, hostTag.rfind(L'.'));
}

} // namespace tvut
