// Export of names of messages.
#include "exports/result_call.h"
#include "window/message_names.h"

#include <tvut22/window.h>

using namespace tvut;

namespace {

constexpr int longestName = 256; // of a class or a registered message, its terminator included
using NameBuffer = std::array<wchar_t, longestName>;

std::u16string_view ClassName(HWND window, NameBuffer& buffer) {
    const int length = window ? GetClassNameW(window, buffer.data(), longestName) : 0;
    return {FromWide(buffer.data()), static_cast<std::size_t>(length)};
}

// The text under which a number is registered; empty for a number that is not. Messages are in the same table
// as formats of the clipboard.
std::u16string_view RegisteredName(UINT message, NameBuffer& buffer) {
    const bool mayBe = message >= firstRegistered && message <= lastRegistered;
    const int length = mayBe ? GetClipboardFormatNameW(message, buffer.data(), longestName) : 0;
    return {FromWide(buffer.data()), static_cast<std::size_t>(length)};
}

} // namespace

INT TVUT22_CALL UtilWindowMessageName(UINT message, HWND window, BSTR* result) {
    return UtilpResultOf([&] {
        if (window && !IsWindow(window))
            return UtilResult::badArgument;
        NameBuffer buffer;
        const std::u16string_view registered = RegisteredName(message, buffer);
        if (!registered.empty())
            return UtilpGive({{result, registered}});
        const clsMessageText text(message, UtilpMessageOwner(ClassName(window, buffer)));
        return UtilpGive({{result, text.View()}});
    });
}
