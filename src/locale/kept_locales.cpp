// A lock is held for looking and for exchanging a pointer, never while the system is asked: two threads that
// miss the same locale ask twice. Who still works with names that were replaced keeps them until it has done.
#include "locale/kept_locales.h"

#include "platform/spin_lock.h"

#include <algorithm>
#include <array>
#include <mutex>

namespace tvut {

namespace {

constexpr std::size_t mostKept = 8;
constexpr std::uint32_t freshFor = 1000; // milliseconds

using NamesPointer = std::shared_ptr<const clsLocaleNames>;

struct scKept {
    std::array<char16_t, longestLocaleName> name{};
    std::uint8_t length = 0;
    bool isUsers = false; // of null instead of a name
    bool withUser = false;
    std::uint32_t askedAt = 0;
    std::uint32_t lastUse = 0;
    NamesPointer names;
};

constinit clsSpinLock g_lock;
constinit std::array<scKept, mostKept> g_kept{};
constinit std::uint32_t g_uses = 0;

// What the choice's name is, but for its terminator.
std::u16string_view NameOf(const scLocaleChoice& locale) {
    return locale.name ? std::u16string_view(locale.name) : std::u16string_view();
}

bool IsFor(const scKept& kept, const scLocaleChoice& locale, std::u16string_view name) {
    return kept.names && kept.withUser == locale.withUser && kept.isUsers == !locale.name &&
           std::u16string_view(kept.name.data(), kept.length) == name;
}

scKept* Find(const scLocaleChoice& locale, std::u16string_view name) {
    const auto found =
        std::ranges::find_if(g_kept, [&](const scKept& kept) { return IsFor(kept, locale, name); });
    return found != g_kept.end() ? &*found : nullptr;
}

NamesPointer Kept(const scLocaleChoice& locale, std::u16string_view name, std::uint32_t now) {
    const std::lock_guard guard(g_lock);
    scKept* const kept = Find(locale, name);
    if (!kept || (locale.withUser && now - kept->askedAt >= freshFor))
        return nullptr;
    kept->lastUse = ++g_uses;
    return kept->names;
}

// Keeps names in place of older ones of the same locale, or of the locale that was not used for longest.
// Result: what was there, for its end to come when the lock is free again.
NamesPointer Keep(const scLocaleChoice& locale, std::u16string_view name, std::uint32_t now,
                  NamesPointer names) {
    const std::lock_guard guard(g_lock);
    scKept* place = Find(locale, name);
    if (!place)
        place = &*std::ranges::min_element(
            g_kept, {}, [](const scKept& kept) { return kept.names ? std::uint64_t{kept.lastUse} + 1 : 0; });
    std::ranges::copy(name, place->name.begin());
    place->length = static_cast<std::uint8_t>(name.size());
    place->isUsers = !locale.name;
    place->withUser = locale.withUser;
    place->askedAt = now;
    place->lastUse = ++g_uses;
    names.swap(place->names);
    return names;
}

} // namespace

std::shared_ptr<const clsLocaleNames> UtilpLocale(const scLocaleChoice& locale) {
    const std::u16string_view name = NameOf(locale);
    if (name.size() > longestLocaleName)
        return nullptr;
    const std::uint32_t now = PlatformMilliseconds();
    if (NamesPointer kept = Kept(locale, name, now))
        return kept;
    if (!PlatformHasLocale(locale))
        return nullptr;
    NamesPointer names = std::make_shared<const clsLocaleNames>(locale);
    Keep(locale, name, now, names);
    return names;
}

} // namespace tvut
