// The system's table of UDP sockets with their owners. Its library is loaded from the system's folder when
// the first line comes: a viewer that shows a file never needs it.
#include "sender_process.h"

#include "owned.h"
#include "system_function.h"

#include <winsock2.h>

#include <iphlpapi.h>

#include <optional>
#include <vector>

namespace tool::logpan {

namespace {

using GetTable = decltype(&GetExtendedUdpTable);

// The owner of the IPv4 socket.
std::optional<DWORD> OwnerOf(std::uint16_t port) {
    static const auto get = SystemFunction<GetTable>(L"\\iphlpapi.dll", "GetExtendedUdpTable");
    if (get == nullptr)
        return std::nullopt;
    std::vector<DWORD> room(4 * 1024);
    DWORD result = ERROR_INSUFFICIENT_BUFFER;
    for (int attempt = 0; attempt < 4 && result == ERROR_INSUFFICIENT_BUFFER; ++attempt) {
        auto bytes = static_cast<DWORD>(room.size() * sizeof(DWORD));
        result = get(room.data(), &bytes, FALSE, AF_INET, UDP_TABLE_OWNER_PID, 0);
        if (result == ERROR_INSUFFICIENT_BUFFER)
            room.resize(bytes / sizeof(DWORD) + room.size()); // the table grows meanwhile
    }
    if (result != NO_ERROR)
        return std::nullopt;
    const auto* table = reinterpret_cast<const MIB_UDPTABLE_OWNER_PID*>(room.data());
    for (DWORD row = 0; row < table->dwNumEntries; ++row)
        if (ntohs(static_cast<u_short>(table->table[row].dwLocalPort)) == port)
            return table->table[row].dwOwningPid;
    return std::nullopt;
}

std::wstring NameOf(DWORD id) {
    const clsHandle process{OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id)};
    std::wstring path(32 * 1024, L'\0');
    auto length = static_cast<DWORD>(path.size());
    if (!process || !QueryFullProcessImageNameW(process.get(), 0, path.data(), &length))
        return {};
    path.resize(length);
    return path.substr(path.find_last_of(L'\\') + 1);
}

} // namespace

ProcessPtr ProcessOfPort(std::uint16_t port) {
    const std::optional<DWORD> owner = OwnerOf(port);
    return owner ? std::make_shared<const scProcess>(scProcess{*owner, NameOf(*owner)}) : nullptr;
}

} // namespace tool::logpan
