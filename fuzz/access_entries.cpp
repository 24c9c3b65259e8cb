// Grants rights in any list: the first byte says which, the second whether they are for what lies below, too;
// the rest is the list. Entries of others stay as they are and in their order, and what was granted once is
// there once.
#include "files/access_entries.h"
#include "require.h"

#include <algorithm>
#include <cstring>
#include <string_view>

using namespace tvut;

namespace {

using Bytes = std::vector<std::byte>;

std::size_t Number(const Bytes& bytes, std::size_t at, std::size_t count) {
    std::size_t number = 0;
    std::memcpy(&number, bytes.data() + at, count); // both are little-endian
    return number;
}

// The entries of a list that is sound, in three parts: those that deny, others, inherited ones.
struct scEntries {
    std::vector<Bytes> parts[3];
    bool isInOrder = true;

    explicit scEntries(const Bytes& list) {
        std::size_t part = 0, at = 8;
        for (std::size_t left = Number(list, 4, 2); left > 0; --left) {
            const auto first = list.begin() + static_cast<std::ptrdiff_t>(at);
            const Bytes entry(first, first + static_cast<std::ptrdiff_t>(Number(list, at + 2, 2)));
            constexpr std::string_view denying("\1\6\12\14", 4);
            const bool denies = denying.find(static_cast<char>(entry[0])) != denying.npos;
            const std::size_t own = (Number(entry, 1, 1) & 0x10) != 0 ? 2 : denies ? 0 : 1;
            isInOrder = isInOrder && own >= part;
            parts[part = own].push_back(entry);
            at += entry.size();
        }
    }
    // Without those that say what an account may.
    scEntries& Without(const Bytes& account) {
        for (std::size_t part = 0; part < 2; ++part)
            std::erase_if(parts[part], [&](const Bytes& entry) {
                constexpr std::string_view replaced("\0\1\11\12", 4);
                return replaced.find(static_cast<char>(entry[0])) != replaced.npos &&
                       entry.size() >= 8 + account.size() &&
                       std::equal(account.begin(), account.end(), entry.begin() + 8);
            });
        return *this;
    }
    bool operator==(const scEntries& other) const { return std::ranges::equal(parts, other.parts); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const auto* const bytes = reinterpret_cast<const std::byte*>(data);
    const Bytes list(bytes + 2, bytes + size); // memory of its own, so that reading past the end shows
    const Bytes everyone = [] {
        Bytes account(12);
        account[0] = account[1] = account[7] = std::byte{1};
        return account;
    }();
    const scGrant grant{*PlatformParseSid(u"S-1-1-0"), data[0], data[1] % 2 != 0};
    Bytes granted(1), again, removed, neverThere;
    if (const UtilResult outcome = UtilpGrantInList(list, grant, granted); outcome != UtilResult::ok) {
        Require(granted == Bytes(1) && (outcome == UtilResult::damaged || outcome == UtilResult::tooLarge));
        return 0;
    }
    Require(granted.size() <= 0xFFFF && Number(granted, 2, 2) == granted.size());
    Require(scEntries(granted).isInOrder);
    Require(scEntries(granted).Without(everyone) == scEntries(list).Without(everyone));
    Require(UtilpGrantInList(granted, grant, again) == UtilResult::ok && again == granted);
    Require(UtilpGrantInList(granted, {grant.account, 0, false}, removed) == UtilResult::ok);
    Require(UtilpGrantInList(list, {grant.account, 0, false}, neverThere) == UtilResult::ok);
    Require(removed == neverThere);
    Require(granted.size() - removed.size() == (grant.mask == 0 ? 0 : 20u));
    return 0;
}
