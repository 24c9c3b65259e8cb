// A weekly meeting at a fixed time in UTC, as the clock on the wall shows it before and after clocks change.
#include <cstdio>
#include <initializer_list>
#include <tvut22/locale.h>

namespace {

void Print(const char* what, const SYSTEMTIME& time) {
    std::printf("%s %04d-%02d-%02d %02d:%02d\n", what, time.wYear, time.wMonth, time.wDay, time.wHour,
                time.wMinute);
}

} // namespace

int main() {
    SYSTEMTIME start = {}, end = {};
    UtilLocGetDSTStartAndEndInUTC(2018, &start, &end);
    Print("daylight time starts, in UTC: ", start);
    Print("daylight time ends, in UTC:   ", end);

    for (const WORD day : {WORD{22}, WORD{29}}) {
        SYSTEMTIME meeting = {2018, 3, 0, day, 8, 0, 0, 0};
        UtilLocConvertUTCTimeToLocalTime(&meeting);
        Print("meeting, local time:          ", meeting);
        UtilLocConvertLocalTimeToUTCTime(&meeting);
        Print("the same in UTC:              ", meeting);
    }

    SYSTEMTIME never = {};
    std::printf("a record that was never filled: %#lx\n",
                static_cast<unsigned long>(UtilLocConvertLocalTimeToUTCTime(&never)));
}
