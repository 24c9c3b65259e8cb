// Feeds a viewer that runs with lines as a few programs would write them: for pictures, and for trying out.
//
//   logpan_feeder          a session of two programs
//   logpan_feeder COUNT    that many lines, as fast as possible
#include "sender.h"

#include "support/cases.h"

#include <commctrl.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace {

using namespace logpan_test;

void SendSamples(std::span<const clsSender, 2> programs, const std::vector<tvut::scCaseRow>& samples) {
    int numbers[2] = {};
    WORD millisecond = 104;
    for (const tvut::scCaseRow& row : samples) {
        const int program = row[0] == u"0" ? 0 : 1;
        const UINT32 thread = std::stoul(tvut::NarrowCase(row[2]), nullptr, 0);
        LogpanPacketHeader header =
            HeaderOf(tvut::WideCase(row[1]).c_str(), static_cast<char>('0' + numbers[program]++ % 10));
        header.thread = thread;
        header.processor = thread / 8 % 4;
        header.time.wMilliseconds = millisecond = static_cast<WORD>(millisecond + thread % 7 + 3);
        programs[program].Send(header, tvut::WideCase(row[3]));
    }
}

void SendMany(UINT32 port, int count) {
    const clsSender sender{port};
    const auto start = std::chrono::steady_clock::now();
    for (int at = 0; at < count; ++at)
        sender.Line(L"line " + std::to_wstring(at) + L" of a program that writes as fast as it can",
                    static_cast<char>('0' + at % 10));
    const double seconds = std::chrono::duration<double>{std::chrono::steady_clock::now() - start}.count();
    std::printf("%d lines in %.2f s\n", count, seconds);
}

void Press(HWND window, WPARAM key, int times) {
    for (; times > 0; --times)
        SendMessageW(window, WM_KEYDOWN, key, 0);
}

// Makes the viewer's window as large as the screen, waits until all samples are in it, and selects one
// of them. All is painted then.
void Arrange(HWND window, int sampleCount) {
    constexpr int selectedRow = 18;
    SetWindowPos(window, nullptr, 0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                 SWP_NOZORDER);
    const HWND list = FindWindowExW(window, nullptr, WC_LISTVIEWW, nullptr);
    while (list != nullptr && IsWindow(list) && SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) < sampleCount)
        Sleep(10);
    Press(list, VK_HOME, 1);
    Press(list, VK_DOWN, selectedRow);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

} // namespace

int main(int count, char** words) {
    LogpanSharedInfo info{};
    while ((info = PublishedInfo()).mask == 0)
        Sleep(10); // the viewer may be starting
    if (count > 1) {
        SendMany(info.port, std::atoi(words[1]));
        return 0;
    }
    const auto samples = tvut::CaseRows("logpan/session", 4);
    // They stay until the lines are there: who closes a socket at once is not known by it.
    const clsSender programs[] = {clsSender{info.port}, clsSender{info.port}};
    SendSamples(programs, samples);
    Arrange(reinterpret_cast<HWND>(static_cast<UINT_PTR>(info.window)), static_cast<int>(samples.size()));
    return 0;
}
