// The mailslot and its loop.
#include "mailslot_receiver.h"

#include <tvut22/viewer.h>

#include <new>
#include <string>

namespace tool::logpan {

namespace {

constexpr DWORD largestMessage = 64 * 1024;
constexpr unsigned mostFailures = 1000; // in a row: then the mailslot is beyond help

scStamp Now() {
    SYSTEMTIME time;
    GetLocalTime(&time);
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

std::wstring FromCodePage(const char* text, DWORD bytes) {
    std::wstring wide(bytes, L'\0');
    const int length = MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(bytes), wide.data(),
                                           static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

} // namespace

clsMailslotReceiver::clsMailslotReceiver(clsStore& store)
    : store_(store), mailslot_(FileHandle(
                         CreateMailslotW(LOGPAN_MAILSLOT, largestMessage, MAILSLOT_WAIT_FOREVER, nullptr))) {
    if (IsOpen())
        thread_ = std::thread{[this] { Receive(); }};
}

clsMailslotReceiver::~clsMailslotReceiver() {
    if (!IsOpen())
        return;
    stopping_ = true;
    const clsHandle self =
        FileHandle(CreateFileW(LOGPAN_MAILSLOT, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    WriteFile(self.get(), "\n", 1, &written, nullptr); // wakes the thread
    thread_.join();
}

void clsMailslotReceiver::Receive() {
    static char message[largestMessage];
    unsigned failures = 0;
    while (!stopping_ && failures < mostFailures) {
        DWORD bytes = 0;
        const bool read = ReadFile(mailslot_.get(), message, sizeof message, &bytes, nullptr) != 0;
        if (stopping_)
            return;
        failures = read ? 0 : failures + 1;
        if (bytes == 0)
            continue;
        try {
            store_.AddText(FromCodePage(message, bytes), Now());
        } catch (const std::bad_alloc&) {
            store_.Refuse();
        }
    }
}

} // namespace tool::logpan
