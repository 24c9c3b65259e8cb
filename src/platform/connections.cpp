// A connection that is not up is known in one of two ways: its letter is there and the system says what it
// was, or the letter is free and the user's registry remembers it. A letter that a disk has by now is
// neither. Libraries of the network are loaded when they are first needed; few programs need them.
#include "platform/connections.h"

#include "platform/registry.h"
#include "platform/system_function.h"
#include "platform/token.h"
#include "platform/wide.h"

#include <array>
#include <lm.h>
#include <winnetwk.h>

namespace tvut {

namespace {

constinit clsSystemFunction<decltype(WNetGetConnectionW)> getConnection(L"mpr.dll", "WNetGetConnectionW");
constinit clsSystemFunction<decltype(NetShareGetInfo)> getShare(L"netapi32.dll", "NetShareGetInfo");
constinit clsSystemFunction<decltype(NetApiBufferFree)> freeBuffer(L"netapi32.dll", "NetApiBufferFree");

constexpr DWORD longestName = 32768;
constexpr DWORD shareKinds = 0xFF; // of a share's type; the other bits are flags

struct scShareInfoPolicy {
    using Value = BYTE*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept {
        if (auto* const release = freeBuffer.Get())
            release(value);
    }
};
using clsShareInfo = clsOwned<scShareInfoPolicy>;

std::array<wchar_t, 3> DriveName(char16_t letter) {
    return {static_cast<wchar_t>(letter), L':', L'\0'};
}

std::u16string Text(const wchar_t* text) {
    return std::u16string(FromWide(std::wstring_view(text)));
}

// Calls a function that fills a buffer and says that it is too small; names are nearly always short.
template <class Fill>
DWORD Filled(Fill fill, DWORD tooSmall, std::u16string& text) {
    std::array<wchar_t, 512> room;
    room[0] = L'\0';
    DWORD error = fill(room.data(), static_cast<DWORD>(room.size()));
    if (error != tooSmall) {
        text = Text(room.data());
        return error;
    }
    std::wstring large(longestName, L'\0');
    error = fill(large.data(), longestName);
    text = Text(large.c_str());
    return error;
}

// Of a connection that is made again when its user logs on.
std::u16string RememberedName(char16_t letter) {
    clsRegistryKey hive;
    if (PlatformOpenUserHive(KEY_READ, hive) != ERROR_SUCCESS)
        return {};
    const wchar_t key[] = {L'N', L'e', L't', L'w', L'o', L'r', L'k', L'\\', static_cast<wchar_t>(letter), 0};
    return Text(PlatformReadText(hive.Get(), key, L"RemotePath").c_str());
}

} // namespace

std::u16string clsConnections::Device(char16_t letter) {
    std::u16string device;
    const DWORD error = Filled(
        [&](wchar_t* text, DWORD size) {
            return QueryDosDeviceW(DriveName(letter).data(), text, size) ? ERROR_SUCCESS : GetLastError();
        },
        ERROR_INSUFFICIENT_BUFFER, device);
    return error ? std::u16string() : device;
}

std::u16string clsConnections::RemoteName(char16_t letter) {
    auto* const find = getConnection.Get();
    std::u16string name;
    const DWORD error =
        find ? Filled([&](wchar_t* text, DWORD size) { return find(DriveName(letter).data(), text, &size); },
                      ERROR_MORE_DATA, name)
             : ERROR_NO_NETWORK;
    if (error == ERROR_SUCCESS || (error == ERROR_CONNECTION_UNAVAIL && !name.empty()))
        return name;
    const bool isFree = error == ERROR_CONNECTION_UNAVAIL || Device(letter).empty();
    return isFree ? RememberedName(letter) : std::u16string();
}

std::vector<std::u16string> clsConnections::ComputerNames() {
    std::vector<std::u16string> names;
    for (const COMPUTER_NAME_FORMAT form :
         {ComputerNameNetBIOS, ComputerNameDnsHostname, ComputerNameDnsFullyQualified}) {
        std::u16string name;
        const DWORD error = Filled(
            [&](wchar_t* text, DWORD size) {
                return GetComputerNameExW(form, text, &size) ? ERROR_SUCCESS : GetLastError();
            },
            ERROR_MORE_DATA, name);
        if (!error && !name.empty())
            names.push_back(std::move(name));
    }
    return names;
}

std::u16string clsConnections::SharedFolder(std::u16string_view share) {
    auto* const find = getShare.Get();
    std::wstring name(ToWide(share.data()), share.size());
    clsShareInfo info;
    if (!find || find(nullptr, name.data(), 2, info.Receive()) != NERR_Success || !info)
        return {};
    const auto& found = *reinterpret_cast<const SHARE_INFO_2*>(info.Get());
    const bool isFolder = (found.shi2_type & shareKinds) == STYPE_DISKTREE;
    return isFolder && found.shi2_path ? Text(found.shi2_path) : std::u16string();
}

} // namespace tvut
