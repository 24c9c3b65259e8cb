// A number below 0x400 means the same to all windows. Above, each class counts anew, so its own name comes
// first, even where the common controls have one for all of them: two of them use that range for themselves.
#include "window/message_names.h"

#include <algorithm>

namespace tvut {

namespace {

constexpr std::uint32_t firstOfUser = 0x400, firstOfApp = 0x8000;

struct scClass {
    std::string_view name; // in lower case
    MessageOwner owner;
};
constexpr scClass classes[] = {
    {"toolbarwindow32", MessageOwner::toolbar},
    {"msctls_statusbar32", MessageOwner::statusBar},
    {"msctls_trackbar32", MessageOwner::trackBar},
    {"tooltips_class32", MessageOwner::toolTip},
    {"msctls_progress32", MessageOwner::progress},
    {"msctls_updown32", MessageOwner::upDown},
    {"rebarwindow32", MessageOwner::rebar},
    {"msctls_hotkey32", MessageOwner::hotKey},
    {"sysdatetimepick32", MessageOwner::datePicker},
    {"sysmonthcal32", MessageOwner::monthCalendar},
    {"sysipaddress32", MessageOwner::ipAddress},
    {"richedit", MessageOwner::richEdit},
    {"richedit20a", MessageOwner::richEdit},
    {"richedit20w", MessageOwner::richEdit},
    {"richedit50w", MessageOwner::richEdit},
    {"richedit60w", MessageOwner::richEdit},
    {"#32770", MessageOwner::dialog},
    // All that these have of their own are numbers that no other class uses.
    {"edit", MessageOwner::none},
    {"listbox", MessageOwner::none},
    {"combobox", MessageOwner::none},
    {"button", MessageOwner::none},
};

constexpr char16_t Lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

bool Names(std::u16string_view part, std::string_view name) {
    return std::equal(part.begin(), part.end(), name.begin(), name.end(), [](char16_t unit, char letter) {
        return Lower(unit) == static_cast<unsigned char>(letter);
    });
}

const scClass* FindClass(std::u16string_view part) {
    const auto* const found = std::find_if(std::begin(classes), std::end(classes),
                                           [&](const scClass& row) { return Names(part, row.name); });
    return found == std::end(classes) ? nullptr : found;
}

std::string_view KnownName(std::uint32_t message, MessageOwner owner) {
    if (message < firstOfUser)
        return UtilpFindMessageName(MessageOwner::system, message);
    const std::string_view own = UtilpFindMessageName(owner, message);
    return own.empty() ? UtilpFindMessageName(MessageOwner::commonControl, message) : own;
}

} // namespace

MessageOwner UtilpMessageOwner(std::u16string_view className) noexcept {
    for (std::size_t begin = 0; begin <= className.size();) {
        const std::size_t end = std::min(className.find(u'.', begin), className.size());
        if (const scClass* const found = FindClass(className.substr(begin, end - begin)))
            return found->owner;
        begin = end + 1;
    }
    return MessageOwner::none;
}

clsMessageText::clsMessageText(std::uint32_t message, MessageOwner owner) noexcept {
    const std::string_view name = KnownName(message, owner);
    const bool isApp = message >= firstOfApp;
    if (!name.empty()) {
        Put(name);
    } else if (message < firstOfUser || message >= firstRegistered) {
        Put("0x");
        PutHex(message, 4);
    } else {
        Put(isApp ? "WM_APP" : "WM_USER");
        const std::uint32_t offset = message - (isApp ? firstOfApp : firstOfUser);
        if (offset != 0) {
            Put("+0x");
            PutHex(offset, 1);
        }
    }
}

void clsMessageText::Put(std::string_view ascii) noexcept {
    for (const char character : ascii.substr(0, longest - length_))
        text_[length_++] = static_cast<unsigned char>(character);
}

void clsMessageText::PutHex(std::uint32_t number, unsigned digits) noexcept {
    constexpr std::string_view figures = "0123456789ABCDEF";
    while (digits < 8 && number >> 4 * digits != 0)
        ++digits;
    while (digits-- != 0)
        text_[length_++] = static_cast<unsigned char>(figures[number >> 4 * digits & 0xF]);
}

} // namespace tvut
