// Feeds a viewer that runs with lines as a few programs would write them: for pictures, and for trying out.
//
//   logpan_feeder          a session of two programs
//   logpan_feeder COUNT    so many lines as fast as they go
#include "sender.h"

#include <commctrl.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace logpan_test;

struct Sample {
    int program;
    const wchar_t* tag;
    UINT32 thread;
    const wchar_t* text;
};

constexpr Sample samples[] = {
    {0, L"Kontor", 0x1b0, L"start: Kontor 7.2.1, build 4410"},
    {0, L"KX32UTIL", 0x1b0, L"job 00a31f00 opened by KXPRINT.DLL"},
    {0, L"KXPRINT", 0x1b0, L"load settings"},
    {0, L"KXPRINT", 0x1b0, L" profile C:\\ProgramData\\Kontor\\print.prf"},
    {0, L"KXPRINT", 0x1b0, L"  4 lists, 16 items"},
    {0, L"KXPRINT", 0x1b0, L" printer \"Laser, 2nd floor\": A4, duplex"},
    {0, L"KXPRINT", 0x1b0, L"WRN: tray 3 is empty, tray 2 is used"},
    {0, L"KXPRINT", 0x1b0, L"settings loaded in 3 ms"},
    {1, L"Archive", 0x7e4, L"connect to archive.example.com:5544"},
    {1, L"Archive", 0x7e4, L" TLS 1.3, certificate valid until 2027-03-01"},
    {0, L"KXFORM", 0x2c8, L"render form 'Invoice', 3 pages"},
    {0, L"KXFORM", 0x2c8, L" page 1"},
    {0, L"KXFORM", 0x2c8, L"  212 fields, 2 pictures"},
    {0, L"KXFORM", 0x2c8, L" page 2"},
    {0, L"KXFORM", 0x2c8, L"  188 fields"},
    {1, L"Archive", 0x7e4, L"ERR: query 77: the server closed the connection (10054)"},
    {1, L"Archive", 0x7e4, L" retry 1 of 3 in 500 ms"},
    {0, L"KXFORM", 0x2c8, L" page 3"},
    {0, L"KXFORM", 0x2c8, L"  font 'Letterhead' is missing; 'Sans' takes its place"},
    {0, L"KXFORM", 0x2c8, L"form rendered in 41 ms"},
    {1, L"Archive", 0x910, L"worker started"},
    {1, L"Archive", 0x7e4, L" retry 1: connected"},
    {1, L"Archive", 0x7e4, L"query 77: 1,204 documents"},
    {0, L"", 0x1b0, L"Kontor  :Error: clsHeapNode['KXFORM'/'Forms']::FreeObjectD(0X00A31F5C)"},
    {0, L"", 0x1b0, L"Kontor  : Memory overrun, fence value has been changed (object not freed)"},
    {0, L"", 0x1b0, L"Kontor  : -Object at 0X00A31F5C, 64(=0x00000040) Bytes"},
    {0, L"KX32UTIL", 0x1b0, L"job 00a31f00 closed"}};

void sendSamples(UINT32 port) {
    const Sender programs[] = {Sender{port}, Sender{port}};
    int numbers[2] = {};
    WORD millisecond = 104;
    for (const Sample& sample : samples) {
        LogpanPacketHeader header =
            headerOf(sample.tag, static_cast<char>('0' + numbers[sample.program]++ % 10));
        header.thread = sample.thread;
        header.processor = sample.thread / 8 % 4;
        header.time.wMilliseconds = millisecond = static_cast<WORD>(millisecond + sample.thread % 7 + 3);
        programs[sample.program].send(header, sample.text);
    }
}

void sendMany(UINT32 port, int count) {
    const Sender sender{port};
    const auto start = std::chrono::steady_clock::now();
    for (int at = 0; at < count; ++at)
        sender.line(L"line " + std::to_wstring(at) + L" of a program that writes as fast as it can",
                    static_cast<char>('0' + at % 10));
    const double seconds = std::chrono::duration<double>{std::chrono::steady_clock::now() - start}.count();
    std::printf("%d lines in %.2f s\n", count, seconds);
}

void press(HWND window, WPARAM key, int times) {
    for (; times > 0; --times)
        SendMessageW(window, WM_KEYDOWN, key, 0);
}

// Makes the viewer's window as large as the screen, waits until all samples are in it, and selects one
// of them. All is painted then.
void arrange(HWND window) {
    constexpr int selectedRow = 18;
    SetWindowPos(window, nullptr, 0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                 SWP_NOZORDER);
    const HWND list = FindWindowExW(window, nullptr, WC_LISTVIEWW, nullptr);
    while (list != nullptr && IsWindow(list) &&
           SendMessageW(list, LVM_GETITEMCOUNT, 0, 0) < int{std::size(samples)})
        Sleep(10);
    press(list, VK_HOME, 1);
    press(list, VK_DOWN, selectedRow);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
}

} // namespace

int main(int count, char** words) {
    LogpanSharedInfo info{};
    while ((info = publishedInfo()).mask == 0)
        Sleep(10); // the viewer may be starting
    if (count > 1) {
        sendMany(info.port, std::atoi(words[1]));
        return 0;
    }
    sendSamples(info.port);
    arrange(reinterpret_cast<HWND>(static_cast<UINT_PTR>(info.window)));
    return 0;
}
