// One diagnostic line as the viewer holds it.
#pragma once

#include "writing_process.h"

namespace tool::logpan {

// Comes from outside: nothing says that it is a real time.
struct scStamp {
    std::uint16_t year = 0;
    std::uint16_t month = 0;
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t millisecond = 0;

    bool operator==(const scStamp&) const = default;
};

inline constexpr scStamp noTime{0, 0, 0, 99, 99, 99, 999}; // of a line that has none

constexpr bool IsClock(const scStamp& time) {
    return time.hour < 24 && time.minute < 60 && time.second < 60 && time.millisecond < 1000;
}

constexpr bool IsDate(const scStamp& time) {
    return time.year < 10000 && time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31;
}

inline constexpr std::size_t longestLine = 64 * 1024; // characters; a longer one is cut

struct scLine {
    scStamp time;
    std::wstring module;
    std::uint32_t thread = 0;
    std::uint32_t processor = 0;
    std::uint32_t sequence = 0; // '0' to '9'; anything else: none
    std::uint16_t port = 0;     // the sender's; 0: it came by the mailslot
    ProcessPtr process;         // that of the port
    std::size_t level = 0;      // the blanks before the text
    std::wstring text;          // without the line ends after it
};

using LinePtr = std::shared_ptr<const scLine>;

constexpr bool HasSequence(const scLine& line) {
    return line.sequence >= '0' && line.sequence <= '9';
}

// What a line takes in memory.
inline std::size_t BytesOf(const scLine& line) {
    return sizeof line + (line.text.capacity() + line.module.capacity()) * sizeof(wchar_t);
}

} // namespace tool::logpan
