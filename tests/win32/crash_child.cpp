// Crashes by name: crash_child FOLDER FLAGS PLACE NAME. Each line that crashes says so, for the test that
// looks it up by the report's number.
#include "support/import_hook.h"

#include <tvut22/tvut22.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string_view>

// The debugger tells names of unnamed namespaces only where they were not cloned.
[[gnu::noinline, gnu::noclone]] int CrashOverflow(int depth) {
    volatile char room[3000];
    room[0] = static_cast<char>(depth);
    return depth >= 0 ? CrashOverflow(depth + 1) + room[0] : 0; // crashes
}

namespace {

volatile int* volatile nowhere = nullptr;
volatile int zero = 0, sink = 0;
HANDLE bothReady = nullptr;

// Any lock may be held for ever.
HANDLE out = nullptr;
void Write(const wchar_t* text) {
    DWORD length = 0, written = 0;
    while (text[length] != L'\0')
        ++length;
    WriteFile(out, text, length * sizeof(wchar_t), &written, nullptr);
}

// ---- Crashes --------------------------------------------------------------------------------------

[[gnu::noinline]] void CrashWrite() {
    *nowhere = 1; // crashes
}
void CrashRead() {
    sink = *nowhere; // crashes
}
void CrashExecute() {
    reinterpret_cast<void (*)()>(const_cast<int*>(nowhere))(); // crashes
}
void CrashStack() {
    sink = CrashOverflow(0);
}
void CrashInstruction() {
    __builtin_trap(); // crashes
}
void CrashDivision() {
    sink = sink / zero; // crashes
}
void CrashAbort() {
    std::abort(); // crashes
}
void CrashTerminate() {
    std::terminate(); // crashes
}
void CrashThrow() {
    throw 1; // crashes
}

// Another runtime than the program's own, as modules of other compilers bring it.
HMODULE runtime = nullptr;
template <class... Arguments>
auto OfRuntime(const char* name) {
    return reinterpret_cast<int(__cdecl*)(Arguments...)>(
        reinterpret_cast<void*>(GetProcAddress(runtime, name)));
}
void CrashForeignAbort() {
    const auto abort = OfRuntime<>("abort");
    sink = abort(); // crashes
}
void CrashPureCall() { // what compilers put into a vtable's empty places
    const auto pureCall = OfRuntime<>("_purecall");
    sink = pureCall(); // crashes
}
void CrashParameter() {
    const auto open = OfRuntime<void*, const char*, const char*>("fopen_s");
    sink = open(nullptr, "x", "r"); // crashes
}
void CrashRaise() {
    RaiseException(0xE0001234, 0, 0, nullptr); // crashes
}
void CrashBreakpoint() {
    __asm__ volatile("int3"); // crashes
}
DWORD WINAPI HoldHeap(void* held) {
    HeapLock(GetProcessHeap());
    SetEvent(held);
    Sleep(INFINITE);
    return 0;
}
void CrashHeapLocked() {
    const HANDLE held = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CreateThread(nullptr, 0, HoldHeap, held, 0, nullptr);
    WaitForSingleObject(held, INFINITE);
    CrashWrite();
}
void CrashHeapOverwritten() {
    char* first = nullptr;
    for (int i = 0; i < 100; ++i) {
        auto* const block = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, 100));
        first = first ? first : block;
    }
    std::memset(first - 8, 0xA5, 10000);      // blocks with what the heap keeps between them,
    std::memset(GetProcessHeap(), 0xA5, 128); // and the heap's own head
    CrashWrite();
}
DWORD WINAPI CrashTogether(void*) {
    WaitForSingleObject(bothReady, INFINITE);
    CrashWrite();
    return 0;
}
void CrashTwice() {
    bothReady = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    CreateThread(nullptr, 0, CrashTogether, nullptr, 0, nullptr);
    SetEvent(bothReady);
    CrashTogether(nullptr);
}
void CrashLoading() { // the client aborts in its DllMain
    SetEnvironmentVariableW(L"TVUT22_CRASH", L"abort");
    LoadLibraryW(L"crash_client.dll");
}
void CrashEnding() { // the same while the process ends, when no other thread is left
    SetEnvironmentVariableW(L"TVUT22_CRASH", L"end");
    LoadLibraryW(L"crash_client.dll");
    ExitProcess(17);
}

void Hang() {
    Write(L"hangs");
    Sleep(INFINITE);
}

constexpr struct {
    std::string_view name;
    void (*crash)();
} crashes[] = {
    {"write", CrashWrite},
    {"read", CrashRead},
    {"execute", CrashExecute},
    {"overflow", CrashStack},
    {"ud2", CrashInstruction},
    {"divide", CrashDivision},
    {"abort", CrashAbort},
    {"terminate", CrashTerminate},
    {"throw", CrashThrow},
    {"foreign", CrashForeignAbort},
    {"purecall", CrashPureCall},
    {"parameter", CrashParameter},
    {"raise", CrashRaise},
    {"break", CrashBreakpoint},
    {"locked", CrashHeapLocked},
    {"overwritten", CrashHeapOverwritten},
    {"twice", CrashTwice},
    {"loading", CrashLoading},
    {"ending", CrashEnding},
    {"none", [] {}},
    {"hang", Hang},
};
void (*crash)() = nullptr;

// ---- Places ---------------------------------------------------------------------------------------

DWORD WINAPI ThreadCrash(void*) {
    crash();
    return 0;
}
void InThread() {
    WaitForSingleObject(CreateThread(nullptr, 0, ThreadCrash, nullptr, 0, nullptr), INFINITE);
}
void InJob() {
    const tvut22::thread_pool pool(L"crash", 2);
    pool.add([] { crash(); });
    pool.finalize();
}
LRESULT CALLBACK WindowCrash(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_APP)
        crash();
    return DefWindowProcW(window, message, first, second);
}
void InWindow() {
    WNDCLASSW kind{};
    kind.lpszClassName = L"tvut22-crash";
    kind.lpfnWndProc = WindowCrash;
    RegisterClassW(&kind);
    const HWND window =
        CreateWindowW(kind.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SendMessageW(window, WM_APP, 0, 0);
}

LPTOP_LEVEL_EXCEPTION_FILTER protection = nullptr;
LONG WINAPI BackIntoProtection(EXCEPTION_POINTERS* exception) {
    protection(exception);
    ExitProcess(99);
}
// In a runtime that comes after the protection, with a module that tells of itself.
void InLateRuntime() {
    runtime = LoadLibraryW(L"msvcr120.dll");
    UtilModuleOnAttach(L"crash_child.exe");
    crash();
}
// A later filter that calls the one it found, when the library has taken the filter again.
void InChain() {
    protection = SetUnhandledExceptionFilter(BackIntoProtection);
    UtilModuleOnAttach(L"crash_child.exe");
    crash();
}
// Protection is over: what was there before it is called.
void AfterEnd() {
    UtilExHandlerStartProtection(nullptr);
    UtilExHandlerEndProtection();
    UtilExHandlerEndProtection();
    if (UtilExHandlerEndProtection() == UTIL_NOT_FOUND)
        crash();
}
LONG WINAPI Before(EXCEPTION_POINTERS*) {
    ExitProcess(98);
}

// Nobody reads the notice: the minute that the library waits for it passes at once.
LONG(NTAPI* wait)(HANDLE, BOOLEAN, const LARGE_INTEGER*) = nullptr;
LONG NTAPI WaitNoMinute(HANDLE object, BOOLEAN alertable, const LARGE_INTEGER* time) {
    const bool isMinute = time && time->QuadPart == -60 * 10000000LL;
    return isMinute ? STATUS_TIMEOUT : wait(object, alertable, time);
}
FARPROC WINAPI FindCall(HMODULE library, const char* name) {
    const FARPROC found = GetProcAddress(library, name);
    if (std::string_view(name) != "NtWaitForSingleObject")
        return found;
    wait = reinterpret_cast<decltype(wait)>(reinterpret_cast<void*>(found));
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(WaitNoMinute));
}

constexpr struct {
    std::string_view name;
    void (*run)();
} places[] = {
    {"main", [] { crash(); }}, {"thread", InThread}, {"job", InJob},      {"window", InWindow},
    {"late", InLateRuntime},   {"chain", InChain},   {"ended", AfterEnd}, {"unread", [] { crash(); }},
};

void TVUT22_CALL After(const wchar_t* report, const wchar_t* dump, UINT_PTR user) {
    Write(report ? report : L"-");
    Write(L"|");
    Write(dump ? dump : L"-");
    Write(user == 4711 ? L"|4711" : L"|?");
}

template <class Row, std::size_t count>
const Row* Find(const Row (&rows)[count], std::string_view name) {
    const auto found = std::find_if(rows, rows + count, [&](const Row& row) { return row.name == name; });
    return found == rows + count ? nullptr : found;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    const auto narrow = [&](int i) {
        static char text[2][100];
        std::snprintf(text[i % 2], sizeof text[0], "%ls", arguments[i]);
        return std::string_view(text[i % 2]);
    };
    if (count != 5)
        return 2;
    out = GetStdHandle(STD_OUTPUT_HANDLE);
    SetUnhandledExceptionFilter(Before);
    runtime = LoadLibraryW(L"ucrtbase.dll");
    UtilProtection options{};
    options.size = sizeof options;
    options.flags = static_cast<UINT>(_wtoi(arguments[2]));
    options.folder = arguments[1];
    options.product = L"Crash\r\nchild";
    options.version = L"4.2";
    options.after = After;
    options.user = 4711;
    const testing_prof::clsImportHook unread(narrow(3) == "unread" ? "GetProcAddress" : "", FindCall);
    const INT started = UtilExHandlerStartProtection(&options);
    UtilExHandlerSetNote(L"Document", L"C:\\x\\m\u00e4rz.rpt");
    UtilExHandlerSetNote(L"Step", L"two\r\nlines");
    const auto* const place = Find(places, narrow(3));
    const auto* const which = Find(crashes, narrow(4));
    if (started < 0 || !place || !which)
        return started < 0 ? 100 - started : 2;
    crash = which->crash;
    place->run(); // crashes
    return 17;
}
