// Names of messages and the list of handles against the calls of the system that each of them cannot do
// without.
#include "sections.h"

#include <tvut22/window.h>

#include <windows.h>

#include <oleauto.h>

namespace bench {

namespace {

// ---- Names of messages -----------------------------------------------------------------------------

double PerName(UINT message, std::size_t calls) {
    BSTR text = nullptr;
    const double ns = PerCall(calls, [&](std::size_t) {
        Require(UtilWindowMessageName(message, nullptr, &text) == UTIL_OK, "UtilWindowMessageName");
    });
    SysFreeString(text);
    return ns;
}

double PerRegisteredText(UINT message, std::size_t calls) {
    wchar_t text[256];
    return PerCall(calls, [&](std::size_t) {
        Require(GetClipboardFormatNameW(message, text, 256) > 0, "GetClipboardFormatNameW");
    });
}

void MeasureNames(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 500 : 5000;
    const UINT registered = RegisterWindowMessageW(L"tvUT22 benchmark message");
    const Round rounds[] = {[&] { return PerName(WM_SETTINGCHANGE, calls); },
                            [&] { return PerName(registered, calls); },
                            [&] { return PerRegisteredText(registered, calls); }};
    const auto ns = Race(rounds, settings.rounds);
    report.Against("name of a message", ns[0], "GetClipboardFormatNameW", ns[2], AtMost(0.1));
    report.Against("name of a registered message", ns[1], "GetClipboardFormatNameW", ns[2], AtMost(1.2));
}

// ---- Lists of handles ------------------------------------------------------------------------------

constexpr UINT_PTR keptHandles = 10000;

void Call(UINT command, UINT_PTR handle) {
    Require(UtilHandleListMgr(command, reinterpret_cast<HANDLE>(handle), UTIL_HANDLE_GDI, L"benchmark") ==
                UTIL_OK,
            "UtilHandleListMgr");
}

// As far below as a call of a window's procedure is.
template <typename Work>
[[gnu::noinline]] double Below(int depth, Work work) {
    const double ns = depth == 0 ? work() : Below(depth - 1, work);
    Consume(static_cast<std::size_t>(depth));
    return ns;
}

double PerAddAndRemove(std::size_t calls) {
    return PerCall(calls, [](std::size_t call) {
        const UINT_PTR handle = (keptHandles + 1 + call % 1000) * 4;
        Call(UTIL_HANDLES_ADD, handle);
        Call(UTIL_HANDLES_REMOVE, handle);
    });
}

double PerCaptureAndBlock(std::size_t calls) {
    void* frames[16];
    return PerCall(calls, [&](std::size_t) {
        for (int i = 0; i < 2; ++i)
            Require(CaptureStackBackTrace(0, 16, frames, nullptr) > 0, "CaptureStackBackTrace");
        void* const block = HeapAlloc(GetProcessHeap(), 0, 96);
        Require(block && HeapFree(GetProcessHeap(), 0, block), "HeapAlloc");
    });
}

void MeasureList(const scSettings& settings, clsReport& report) {
    const std::size_t calls = settings.quick ? 2000 : 50000;
    for (UINT_PTR handle = 1; handle <= keptHandles; ++handle)
        Call(UTIL_HANDLES_ADD, handle * 4);
    const Round rounds[] = {[&] { return Below(20, [&] { return PerAddAndRemove(calls); }); },
                            [&] { return Below(20, [&] { return PerCaptureAndBlock(calls); }); }};
    const auto ns = Race(rounds, settings.rounds);
    for (UINT_PTR handle = 1; handle <= keptHandles; ++handle)
        Call(UTIL_HANDLES_REMOVE, handle * 4);
    report.Against("a handle added and removed, 10,000 in the list", ns[0],
                   "2 captures of 16 frames, 1 block", ns[1], AtMost(3));
}

} // namespace

void MeasureHandles(const scSettings& settings, clsReport& report) {
    report.Section("Names of messages, lists of handles");
    MeasureNames(settings, report);
    MeasureList(settings, report);
}

} // namespace bench
