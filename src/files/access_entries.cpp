// The entries are walked once. Each goes, unchanged to the byte, to one of three lists, or is left out
// because it is replaced; the lists in their order are the result. Sizes are checked before an entry is
// looked at, since the list is whatever somebody has written.
#include "files/access_entries.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tvut {

namespace {

using Bytes = std::span<const std::byte>;

// Of the list: revision, zero, bytes, number of entries, zero. Of an entry: type, flags, bytes; after these
// the mask and the account in the entries that are known here.
constexpr std::size_t headBytes = 8, entryHeadBytes = 4, accountPlace = 8;
constexpr std::size_t mostBytes = 0xFFFC; // a multiple of 4, in 16 bits

constexpr std::uint8_t allowed = 0, denied = 1, deniedObject = 6, allowedIf = 9, deniedIf = 10,
                       deniedObjectIf = 12;
constexpr std::uint8_t toFiles = 0x1, toFolders = 0x2, isInherited = 0x10;

std::uint8_t ByteAt(Bytes bytes, std::size_t at) {
    return std::to_integer<std::uint8_t>(bytes[at]);
}
std::size_t ShortAt(Bytes bytes, std::size_t at) {
    return ByteAt(bytes, at) | std::size_t{ByteAt(bytes, at + 1)} << 8;
}

template <class Number>
void Put(std::vector<std::byte>& bytes, Number number) {
    for (std::size_t at = 0; at < sizeof number; ++at)
        bytes.push_back(static_cast<std::byte>(number >> 8 * at & 0xFF));
}

// In the order of the result.
enum class EntrySort { denies, allows, inherited };
constexpr std::size_t sorts = 3;

EntrySort SortOf(Bytes entry) {
    constexpr std::array denying{denied, deniedObject, deniedIf, deniedObjectIf};
    if ((ByteAt(entry, 1) & isInherited) != 0)
        return EntrySort::inherited;
    return std::ranges::find(denying, ByteAt(entry, 0)) != denying.end() ? EntrySort::denies
                                                                         : EntrySort::allows;
}

std::vector<std::byte> BytesOf(const scSid& sid) {
    std::vector<std::byte> bytes;
    Put(bytes, sid.revision);
    Put(bytes, sid.partCount);
    for (const std::uint8_t byte : sid.authority)
        Put(bytes, byte);
    for (std::size_t at = 0; at < sid.partCount; ++at)
        Put(bytes, sid.parts[at]);
    return bytes;
}

// Whether an entry that is not inherited says what the account may or may not.
bool IsReplaced(Bytes entry, Bytes account) {
    constexpr std::array replaced{allowed, denied, allowedIf, deniedIf};
    return (ByteAt(entry, 1) & isInherited) == 0 &&
           std::ranges::find(replaced, ByteAt(entry, 0)) != replaced.end() &&
           entry.size() >= accountPlace + account.size() &&
           std::memcmp(entry.data() + accountPlace, account.data(), account.size()) == 0;
}

// Takes the next entry off; an empty one when there is no whole entry.
Bytes TakeEntry(Bytes& rest) {
    const std::size_t size = rest.size() < entryHeadBytes ? 0 : ShortAt(rest, 2);
    if (size < entryHeadBytes || size > rest.size())
        return {};
    const Bytes entry = rest.first(size);
    rest = rest.subspan(size);
    return entry;
}

void PutGrant(const scGrant& grant, Bytes account, std::vector<std::byte>& entries) {
    Put(entries, allowed);
    Put(entries, static_cast<std::uint8_t>(grant.inherits ? toFiles | toFolders : 0));
    Put(entries, static_cast<std::uint16_t>(accountPlace + account.size()));
    Put(entries, grant.mask);
    entries.insert(entries.end(), account.begin(), account.end());
}

} // namespace

UtilResult UtilpGrantInList(Bytes list, const scGrant& grant, std::vector<std::byte>& result) {
    if (list.size() < headBytes)
        return UtilResult::damaged;
    const std::size_t size = ShortAt(list, 2), count = ShortAt(list, 4);
    if (size < headBytes || size > list.size())
        return UtilResult::damaged;
    const std::vector<std::byte> account = BytesOf(grant.account);
    std::array<std::vector<std::byte>, sorts> entries;
    std::size_t kept = 0;
    Bytes rest = list.subspan(headBytes, size - headBytes);
    for (std::size_t at = 0; at < count; ++at) {
        const Bytes entry = TakeEntry(rest);
        if (entry.empty())
            return UtilResult::damaged;
        if (IsReplaced(entry, account))
            continue;
        auto& sort = entries[static_cast<std::size_t>(SortOf(entry))];
        sort.insert(sort.end(), entry.begin(), entry.end());
        ++kept;
    }
    if (grant.mask != 0) {
        PutGrant(grant, account, entries[static_cast<std::size_t>(EntrySort::allows)]);
        ++kept;
    }
    const std::size_t bytes = headBytes + entries[0].size() + entries[1].size() + entries[2].size();
    if (bytes > mostBytes)
        return UtilResult::tooLarge;
    result.assign(list.begin(), list.begin() + 2); // the revision stays
    Put(result, static_cast<std::uint16_t>(bytes));
    Put(result, static_cast<std::uint16_t>(kept));
    Put(result, std::uint16_t{0});
    for (const auto& sort : entries)
        result.insert(result.end(), sort.begin(), sort.end());
    return UtilResult::ok;
}

} // namespace tvut
