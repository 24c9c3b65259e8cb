// Diagnostic lines on their way to a viewer: packets, the older mailslot, and viewers that misbehave.
#include "support/fake_viewer.h"

#include "support/copy.h"
#include "support/debug_output.h"
#include "support/import_hook.h"
#include "support/roles.h"

#include <tvut22/util.h>

#include <atomic>
#include <set>
#include <thread>

namespace testing_prof {
namespace {

LogpanSharedInfo InfoOf(const clsReceiver& receiver, UINT32 largest = 65507) {
    return {24, receiver.Port(), 1, largest, 0};
}

// A viewer in this process, which writes to it, too.
struct scViewer {
    explicit scViewer(const wchar_t* name = LOGPAN_SHARED_INFO_LOCAL) : info(name, InfoOf(receiver)) {
        EXPECT_TRUE(UtilLOGPAN4Attach());
    }
    ~scViewer() { UtilLOGPAN4Detach(); }

    clsReceiver receiver;
    clsPublishedInfo info;
};

TEST(Viewer, GetsALineAsAPacket) {
    const scViewer viewer;
    SYSTEMTIME before, after;
    GetLocalTime(&before);
    UtilDebugExt(L"a tag of more than thirty-one characters", 1, L"%s", L"one");
    GetLocalTime(&after);
    UtilDebugExt(L"REPORT", 1, L"two\n");
    UtilDebugExt(nullptr, -1, L"");
    UtilDebugExt(nullptr, -1, L"four");

    const scPacket one = viewer.receiver.Next(), two = viewer.receiver.Next();
    EXPECT_EQ(one.text, L"one");
    EXPECT_EQ(two.text, L" two\n") << "a blank a level, and the text as it is";
    EXPECT_EQ(viewer.receiver.Next().text, L" ");
    EXPECT_EQ(viewer.receiver.Next().text, L"four");
    EXPECT_STREQ(one.header.tag, L"a tag of more than thirty-one c");
    EXPECT_STREQ(two.header.tag, L"REPORT");
    EXPECT_EQ(one.header.thread, GetCurrentThreadId());
    EXPECT_EQ(two.header.sequence, L'0' + (one.header.sequence - L'0' + 1) % 10);
    EXPECT_EQ(one.header.reserved, 0u);
    EXPECT_EQ(one.header.kind, 1u);
    EXPECT_EQ(one.header.subKind, 0u);
    FILETIME early, at, late;
    SystemTimeToFileTime(&before, &early);
    SystemTimeToFileTime(&one.header.time, &at);
    SystemTimeToFileTime(&after, &late);
    EXPECT_LE(CompareFileTime(&early, &at), 0);
    EXPECT_LE(CompareFileTime(&at, &late), 0);
}

TEST(Viewer, GetsALongLineInPiecesThatItTakes) {
    const scViewer viewer;
    std::wstring text;
    for (int i = 0; text.size() < 3000; ++i)
        text += std::to_wstring(i) + L' ';
    const std::pair<UINT, UINT> limits[] = {{0, 200}, {512, 200}, {1024, 456}, {4096, 1025}, {~0u, 1025}};
    for (const auto& [limit, longest] : limits) {
        viewer.info->largestDatagram = limit;
        UtilDebug(L"%s", text.c_str());
        std::set<UINT32> sequences;
        for (UINT at = 0; at < 1025; at += longest) {
            const scPacket piece = viewer.receiver.Next();
            EXPECT_EQ(piece.text, text.substr(at, std::min(longest, 1025 - at))) << limit;
            sequences.insert(piece.header.sequence);
        }
        EXPECT_EQ(sequences.size(), 1u) << "one line";
    }
}

TEST(Viewer, ThatReservesItsMemoryOnlyIsNone) {
    const Handle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0,
                                            65536, LOGPAN_SHARED_INFO_LOCAL));
    const clsDebugOutput output;
    EXPECT_FALSE(UtilLOGPAN4Attach());
    EXPECT_EQ(output.Text().find(L"'LOGPAN4_SharedData' cannot be accessed: "), 0u) << output.Text();
}

SIZE_T largestView = 0;
void* lastView = nullptr;
void* WINAPI NoteView(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T bytes) {
    largestView = std::max(largestView, bytes);
    return lastView = MapViewOfFile(mapping, access, high, low, bytes);
}

TEST(Viewer, IsFoundWhateverItPublishes) {
    const clsReceiver receiver;
    for (const UINT32 size : {0u, 23u, 24u, 64u, 4097u, 0x40000000u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        for (const wchar_t* name : {LOGPAN_SHARED_INFO_LOCAL, LOGPAN_SHARED_INFO_GLOBAL}) {
            const clsPublishedInfo info(name, InfoOf(receiver));
            info->size = size;
            const clsImportHook hook("MapViewOfFile", NoteView);
            EXPECT_TRUE(UtilLOGPAN4Attach());
            UtilDebug(L"%u", size);
            EXPECT_EQ(receiver.Next().text, std::to_wstring(size));
            UtilLOGPAN4Detach();
        }
    EXPECT_GE(largestView, 24u);
    EXPECT_LE(largestView, 65536u) << "little of the address space";
}

// What a file on another machine does when it is cut short there.
void* WithoutPages(void* view) {
    DWORD before = 0;
    EXPECT_TRUE(VirtualProtect(view, 1, PAGE_NOACCESS, &before));
    return view;
}
void* WINAPI ViewWithoutPages(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T bytes) {
    return WithoutPages(MapViewOfFile(mapping, access, high, low, bytes));
}

TEST(Viewer, WhoseMemoryGoesAwayIsNone) {
    const clsReceiver receiver;
    const clsPublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, InfoOf(receiver));
    for (int round = 0; round < 2; ++round) {
        {
            const clsImportHook hook("MapViewOfFile", NoteView);
            EXPECT_TRUE(UtilLOGPAN4Attach());
        }
        WithoutPages(lastView);
        UtilDebug(L"lost");
        EXPECT_FALSE(UtilGetFlags());
        const clsImportHook hook("MapViewOfFile", ViewWithoutPages);
        EXPECT_FALSE(UtilLOGPAN4Attach()) << "nor the older way's memory";
    }
    EXPECT_TRUE(UtilLOGPAN4Attach());
    UtilDebug(L"there again");
    EXPECT_EQ(receiver.Next().text, L"there again");
    UtilLOGPAN4Detach();
}

TEST(Viewer, GetsNothingThatItDoesNotWant) {
    const scViewer viewer;
    viewer.info->mask = 0;
    EXPECT_FALSE(UtilGetFlags());
    UtilDebugExt(nullptr, 1, L"unwanted");
    viewer.info->mask = 1ull << 63;
    EXPECT_TRUE(UtilGetFlags());
    for (const UINT32 nowhere : {0u, 0x10000u, 0xFFFFFFFFu}) {
        viewer.info->port = nowhere;
        UtilDebug(L"to nowhere");
    }
    viewer.info->port = viewer.receiver.Port();
    UtilDebug(L"wanted");
    EXPECT_EQ(viewer.receiver.Next().text, L"wanted") << "and not indented by a line that was not written";
}

TEST(Viewer, IsFollowedToItsNewPort) {
    const scViewer viewer;
    UtilDebug(L"here");
    EXPECT_EQ(viewer.receiver.Next().text, L"here");
    const clsReceiver moved;
    const clsDebugOutput output;
    viewer.info->port = moved.Port();
    UtilDebug(L"there");
    EXPECT_EQ(moved.Next().text, L"there");
    EXPECT_EQ(output.Text(), L"re-attach to new LOGPAN port!\n");
}

// ---- Several copies of the library -----------------------------------------------------------------

// All copies in a process share one socket. Whichever copy gives it up, the others lose no line.
TEST(Copies, ShareASocket) {
    const scViewer viewer;
    const clsTempFolder folder;
    clsCopy::MakeFile(folder / L"copy.dll");
    clsCopy copy(folder / L"copy.dll");
    const auto write = copy.Find(PasDebug, "PasDebug");
    const auto attach = copy.Find(UtilLOGPAN4Attach, "UtilLOGPAN4Attach");
    const auto detach = copy.Find(UtilLOGPAN4Detach, "UtilLOGPAN4Detach");
    UINT16 port = 0;
    const auto arrives = [&](const wchar_t* text) {
        const scPacket packet = viewer.receiver.Next();
        EXPECT_EQ(packet.text, text);
        return std::exchange(port, packet.senderPort) == packet.senderPort;
    };
    PasDebug(L"first");
    arrives(L"first");
    EXPECT_FALSE(IsBound("WSASendTo", L"copy.dll"));
    EXPECT_TRUE(attach());
    EXPECT_TRUE(IsBound("WSASendTo", L"copy.dll")) << "a line would be sent under a lock";
    write(L"by the copy");
    EXPECT_TRUE(arrives(L"by the copy")) << "through the same socket";

    UtilModuleOnAttach(nullptr);
    viewer.receiver.Next();
    detach();
    PasDebug(L"while there are modules");
    EXPECT_TRUE(arrives(L"while there are modules")) << "it is still the same";
    EXPECT_TRUE(attach());
    UtilModuleOnDetach(nullptr);
    viewer.receiver.Next();
    write(L"after the last module");
    EXPECT_FALSE(arrives(L"after the last module")) << "a new one, at once";
    detach();
    UtilJobClose(UtilJobOpen(L"traced", UTIL_JOB_TRACE)); // whose lines are written under the global lock
    EXPECT_FALSE(arrives(L"viewer_test:UtilJobOpen('traced',0x80000000)\n"));
    for (int i = 0; i < 3; ++i)
        viewer.receiver.Next();
    EXPECT_TRUE(attach());
    copy.Unload();
    PasDebug(L"without the copy");
    EXPECT_TRUE(arrives(L"without the copy"));
}

TEST(Copies, AgreeOnSixteenBytes) {
    const scViewer viewer;
    wchar_t name[80] = {};
    _snwprintf(name, std::size(name) - 1, L"QmzLOGPANAppLocalData_%#p_%d", GetModuleHandleW(nullptr),
               GetCurrentProcessId());
    const Handle mapping(OpenFileMappingW(FILE_MAP_READ, FALSE, name));
    ASSERT_TRUE(mapping);
    struct scWords {
        LONG level, lines, modules, socket;
    };
    const auto* shared = static_cast<const scWords*>(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
    const scWords before = *shared;
    EXPECT_NE(before.socket, 0);
    UtilDebugExt(nullptr, 1, L"deeper");
    UtilModuleOnAttach(nullptr);
    EXPECT_EQ(shared->level, before.level + 1);
    EXPECT_EQ(shared->lines, before.lines + 2);
    EXPECT_EQ(shared->modules, before.modules + 1);
    UtilDebugExt(nullptr, -1, L"back");
    UtilModuleOnDetach(nullptr);
    EXPECT_EQ(shared->level, before.level);
    EXPECT_EQ(shared->modules, before.modules);
    EXPECT_EQ(shared->socket, 0) << "closed with the last module";
    UnmapViewOfFile(shared);
}

int startups = 0;
int WINAPI FailingStartup(WORD, WSADATA*) {
    ++startups;
    return WSASYSNOTREADY;
}

TEST(Socket, ThatCannotBeOpenedIsNotTriedForEveryLine) {
    const scViewer viewer;
    UtilLOGPAN4Detach();
    const clsImportHook hook("WSAStartup", FailingStartup);
    EXPECT_TRUE(UtilLOGPAN4Attach());
    const DWORD start = GetTickCount();
    for (int i = 0; i < 100; ++i)
        UtilDebug(L"lost");
    EXPECT_LE(static_cast<DWORD>(startups), 2 + (GetTickCount() - start) / 1000);
}

// ---- Callers within the loader ---------------------------------------------------------------------

// Stands for a thread within the loader while another needs the loader: `needsLoader` is called where the
// system would load a library, and does not return until the thread's lines and jobs are through.
struct scLoader {
    static inline int passed = 0;
    static inline std::atomic<bool> needed{false};
    static void NeedsLoader() {
        if (needed.exchange(true))
            return; // by the thread within it
        std::jthread([] {
            UtilDebug(L"from within the loader");
            UtilJobClose(UtilJobOpen(L"within the loader", 0));
            ++passed;
        }).join();
        needed = false;
    }
    static int WINAPI Startup(WORD version, WSADATA* data) {
        NeedsLoader();
        return WSAStartup(version, data);
    }
    static int WINAPI Cleanup() {
        NeedsLoader();
        return WSACleanup();
    }
    static HWND WINAPI LookForWindow(const wchar_t* name, const wchar_t* title) {
        NeedsLoader();
        return FindWindowW(name, title);
    }
    static HMODULE WINAPI Find(const wchar_t* name) {
        if (name) // the program itself stands in the process block
            NeedsLoader();
        return GetModuleHandleW(name);
    }
    static HMODULE WINAPI Load(const wchar_t* name, HANDLE file, DWORD flags) {
        NeedsLoader();
        return LoadLibraryExW(name, file, flags);
    }
    static BOOL WINAPI FindAt(DWORD flags, const wchar_t* address, HMODULE* library) {
        const BOOL found = GetModuleHandleExW(flags, address, library);
        const HMODULE own = GetModuleHandleW(L"tvUT22.dll");
        if (found && *library == own && static_cast<const void*>(address) != own)
            std::jthread([] { UtilExHandlerEndProtection(); }).join();
        return found;
    }
    // Another process has the mutex that guards the number of modules, and keeps it.
    static DWORD WINAPI Wait(HANDLE, DWORD milliseconds) {
        NeedsLoader();
        waits += milliseconds > 0;
        return WAIT_TIMEOUT;
    }
    static inline int waits = 0;
    static FARPROC WINAPI Function(HMODULE module, const char* name) {
        NeedsLoader();
        return GetProcAddress(module, name);
    }
};

// Child: everything that may need the loader. Each step that holds a lock meanwhile hangs.
void NeedLoader() {
    const clsImportHook hooks[] = {
        {"WaitForSingleObject", scLoader::Wait}, {"WSAStartup", scLoader::Startup},
        {"WSACleanup", scLoader::Cleanup},       {"GetModuleHandleW", scLoader::Find},
        {"LoadLibraryExW", scLoader::Load},      {"FindWindowW", scLoader::LookForWindow}};
    UtilJobOpen(L"traced", UTIL_JOB_TRACE);
    const clsReceiver receiver, moved;
    const clsPublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, InfoOf(receiver));
    UtilLOGPAN4Attach();
    info->port = moved.Port();
    UtilDebug(L"moved");
    UtilModuleOnAttach(L"module");
    UtilModuleOnDetach(L"module");
    UtilModuleOnAttach(L"module");
    UtilModuleOnDetach(L"module");
    for (const UINT call : {UTIL_HANDLES_ADD, UTIL_HANDLES_REPORT})
        UtilHandleListMgr(call, call == UTIL_HANDLES_ADD ? GetStockObject(WHITE_PEN) : nullptr,
                          UTIL_HANDLE_GDI, nullptr);
    UtilLOGPAN4Detach();
    const int passed = scLoader::passed, waits = scLoader::waits;
    UtilExHandlerStartProtection(nullptr);
    const clsImportHook reference("GetModuleHandleExW", scLoader::FindAt);
    UtilExHandlerEndProtection();
    const clsImportHook hook("GetProcAddress", scLoader::Function);
    UtilHeapValidate(UtilHeapCreate(UtilJobOpen(L"heaps", 0), L"H", 0), nullptr, 0);
    TerminateProcess(GetCurrentProcess(), passed < 8 ? 2 : waits != 1 ? 3 : 0);
}

TEST(Loader, IsNeverNeededWithALockHeld) {
    EXPECT_EQ(clsChild(L"loader").ExitCodeUnlessItHangs(), 0u) << "0xDEAD: a deadlock";
}

// ---- Second processes ------------------------------------------------------------------------------

constexpr const wchar_t* readyName = L"tvut22-viewer-test-ready";

struct scEvent {
    scEvent() : handle(CreateEventW(nullptr, FALSE, FALSE, readyName)) {}
    void Wait() const { EXPECT_EQ(WaitForSingleObject(handle.get(), 60000), WAIT_OBJECT_0); }
    Handle handle;
};

// Child: a viewer that publishes itself and never reads its socket.
void BeDeafViewer() {
    const clsReceiver receiver;
    const clsPublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, InfoOf(receiver, 600));
    SetEvent(scEvent().handle.get());
    Sleep(INFINITE);
}

TEST(ViewerProcess, ThatNeverReadsAndDiesDisturbsNobody) {
    const scEvent ready;
    clsChild deaf(L"deaf");
    ready.Wait();
    EXPECT_TRUE(UtilLOGPAN4Attach());
    const std::wstring text(1025, L'x');
    for (int i = 0; i < 3000; ++i) // far more than its socket holds
        PasDebug(text.c_str());
    EXPECT_TRUE(deaf.Runs());
    deaf.Kill();
    deaf.ExitCode();
    for (int i = 0; i < 100; ++i)
        PasDebug(text.c_str());
    // Its successor finds what it had published and takes it over; nobody has to look for it.
    const clsReceiver receiver;
    const clsPublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, InfoOf(receiver));
    UtilDebug(L"to the successor");
    EXPECT_EQ(receiver.Next().text, L"to the successor");
    UtilLOGPAN4Detach();
}

// ---- The older transport ---------------------------------------------------------------------------

class clsMailslot {
  public:
    clsMailslot() : slot_(CreateMailslotW(LOGPAN_MAILSLOT, 0, 20000, nullptr)) {
        EXPECT_NE(slot_.get(), INVALID_HANDLE_VALUE);
    }
    std::string Next() const {
        std::string message(4096, '\0');
        DWORD length = 0;
        EXPECT_TRUE(ReadFile(slot_.get(), message.data(), 4096, &length, nullptr)) << GetLastError();
        message.resize(length);
        return message;
    }

  private:
    Handle slot_;
};

TEST(Mailslot, ThatIsNotReadDoesNotMakeTheWriterWait) {
    const clsDebugOutput output;
    {
        const clsMailslot slot;
        EXPECT_TRUE(UtilLOGPAN4Attach());
        for (int i = 0; i < 500; ++i)
            UtilDebug(L"%d %s", i, std::wstring(400, L'x').c_str());
    }
    while (UtilGetFlags()) // until it is noticed that the slot is gone
        UtilDebug(L"nobody there");
    EXPECT_EQ(output.Text(), L"LOGPAN: cannot write data!") << "said once, not a line";
    UtilLOGPAN4Detach();
}

TEST(Mailslot, FollowsTheViewersWindow) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.lpszClassName = LOGPAN_WINDOW_CLASS;
    RegisterClassW(&windowClass);
    const auto makeWindow = [] {
        return CreateWindowW(LOGPAN_WINDOW_CLASS, L"", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    };
    const clsDebugOutput output;
    HWND window = makeWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(UtilLOGPAN4Attach());
    EXPECT_EQ(output.Text(), L"DebugPipe FAIL") << "a window without a slot";
    EXPECT_TRUE(UtilGetFlags()) << "the window is known";
    const clsMailslot slot;
    EXPECT_TRUE(UtilLOGPAN4Attach());

    output.Text().clear();
    DestroyWindow(std::exchange(window, makeWindow()));
    UtilDebugExt(L"TAG", 0, L"to the next window\r\n\u20acsecond\n");
    EXPECT_EQ(output.Text(),
              L"trying to reattach to LOGPAN" + std::to_wstring(reinterpret_cast<INT_PTR>(window)));
    const std::string first = slot.Next();
    EXPECT_EQ(first.substr(0, 10) + first.substr(first.find('/') + 7), "TAG     : to the next window");
    EXPECT_EQ(slot.Next(), "\x80second");
    DestroyWindow(window);
    UtilDebug(L"to nobody");
    EXPECT_FALSE(UtilGetFlags());
    UtilLOGPAN4Detach();
}

// ---- Assertions ------------------------------------------------------------------------------------

constexpr const wchar_t* assertedText = L"count > 0 && count < limit && !name.empty() && somebody != nullptr";

void BeFailedAssertion() {
    UtilAssert(assertedText, L"c:\\source\\file.cpp", 42);
}

HWND AwaitBox(const clsChild& child) {
    HWND box = nullptr;
    while (!box && child.Runs()) {
        box = FindWindowW(nullptr, L"Assertion Failure");
        Sleep(1); // gives way to the process that makes the box; the condition is the loop's
    }
    return box;
}

TEST(Assertion, EndsTheProcessWhateverIsPressed) {
    for (const int button : {IDRETRY, IDCANCEL}) {
        const clsChild child(L"assertion");
        const HWND box = AwaitBox(child);
        ASSERT_TRUE(box) << "no message box; is there a display driver?";
        wchar_t text[200] = {};
        SendDlgItemMessageW(box, 0xFFFF, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
        EXPECT_EQ(text,
                  (L"line 42 in file c:\\source\\file.cpp:\n\"" + std::wstring(assertedText)).substr(0, 80));
        PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
        EXPECT_EQ(child.ExitCode(), 0xFFFFFFFFu);
    }
}

const Roles roles = {{"deaf", BeDeafViewer}, {"assertion", BeFailedAssertion}, {"loader", NeedLoader}};

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    return testing_prof::RunRoleOrTests(count, arguments, testing_prof::roles);
}
