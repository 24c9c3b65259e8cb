// The table of names of window messages: a part for each owner, its numbers in ascending order.
#pragma once

#include <cstdint>
#include <string_view>

namespace tvut {

// Who gives a number its meaning.
enum class MessageOwner : std::uint8_t {
    system, // numbers below 0x400, those of the system's own controls among them
    commonControl,
    toolbar,
    statusBar,
    trackBar,
    toolTip,
    progress,
    upDown,
    rebar,
    hotKey,
    datePicker,
    monthCalendar,
    ipAddress,
    richEdit,
    dialog,
    none, // has no part
};

// The owner's name of a number; empty when it has none. One search by halves.
std::string_view UtilpFindMessageName(MessageOwner owner, std::uint32_t message) noexcept;

} // namespace tvut
