// Diagnostic lines on their way to a viewer: packets, the older mailslot, and viewers that misbehave.
#include "support/fake_viewer.h"

#include "support/child.h"
#include "support/copy.h"
#include "support/debug_output.h"
#include "support/import_hook.h"

#include <tvut22/util.h>

#include <atomic>
#include <map>
#include <thread>

namespace testing_prof {
namespace {

LogpanSharedInfo infoOf(const Receiver& receiver, UINT32 largest = 65507) {
    return {24, receiver.port(), 1, largest, 0};
}

/// A viewer in this process, which writes to it, too.
struct Viewer {
    explicit Viewer(const wchar_t* name = LOGPAN_SHARED_INFO_LOCAL) : info(name, infoOf(receiver)) {
        EXPECT_TRUE(UtilLOGPAN4Attach());
    }
    ~Viewer() { UtilLOGPAN4Detach(); }

    Receiver receiver;
    PublishedInfo info;
};

TEST(Viewer, GetsALineAsAPacket) {
    const Viewer viewer;
    SYSTEMTIME before, after;
    GetLocalTime(&before);
    UtilDebugExt(L"a tag of more than thirty-one characters", 1, L"%s", L"one");
    GetLocalTime(&after);
    UtilDebugExt(L"REPORT", 1, L"two\n");
    UtilDebugExt(nullptr, -1, L"");
    UtilDebugExt(nullptr, -1, L"four");

    const Packet one = viewer.receiver.next(), two = viewer.receiver.next();
    EXPECT_EQ(one.text, L"one");
    EXPECT_EQ(two.text, L" two\n") << "a blank a level, and the text as it is";
    EXPECT_EQ(viewer.receiver.next().text, L" ");
    EXPECT_EQ(viewer.receiver.next().text, L"four");
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
    const Viewer viewer;
    std::wstring text;
    for (int i = 0; text.size() < 3000; ++i)
        text += std::to_wstring(i) + L' ';
    const std::map<UINT32, std::size_t> longestPieces = {{0, 200},    {511, 200},   {512, 200},
                                                         {1024, 456}, {4096, 1025}, {0xFFFFFFFF, 1025}};
    for (const auto& [limit, longest] : longestPieces) {
        viewer.info->largestDatagram = limit;
        UtilDebug(L"%s", text.c_str());
        std::wstring joined;
        UINT32 sequence = 0;
        while (joined.size() < 1025) {
            const Packet piece = viewer.receiver.next();
            EXPECT_EQ(piece.text.size(), std::min<std::size_t>(longest, 1025 - joined.size()));
            EXPECT_EQ(piece.header.sequence, joined.empty() ? piece.header.sequence : sequence) << "one line";
            sequence = piece.header.sequence;
            joined += piece.text;
        }
        EXPECT_EQ(joined, text.substr(0, 1025)) << limit;
    }
}

TEST(Viewer, IsFoundWhateverItPublishes) {
    const Receiver receiver;
    for (const UINT32 size : {0u, 23u, 24u, 64u, 4097u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        for (const wchar_t* name : {LOGPAN_SHARED_INFO_LOCAL, LOGPAN_SHARED_INFO_GLOBAL}) {
            const PublishedInfo info(name, infoOf(receiver));
            info->size = size;
            EXPECT_TRUE(UtilLOGPAN4Attach());
            UtilDebug(L"%u", size);
            EXPECT_EQ(receiver.next().text, std::to_wstring(size));
            UtilLOGPAN4Detach();
        }
}

TEST(Viewer, ThatReservesItsMemoryOnlyIsNone) {
    const Handle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE | SEC_RESERVE, 0,
                                            65536, LOGPAN_SHARED_INFO_LOCAL));
    const DebugOutput output;
    EXPECT_FALSE(UtilLOGPAN4Attach());
    EXPECT_EQ(output.text().find(L"'LOGPAN4_SharedData' cannot be accessed: "), 0u) << output.text();
}

SIZE_T largestView = 0;
void* lastView = nullptr;
void* WINAPI noteView(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T bytes) {
    largestView = std::max(largestView, bytes);
    return lastView = MapViewOfFile(mapping, access, high, low, bytes);
}

/// What a file on another machine does when it is cut short there.
void* withoutPages(void* view) {
    DWORD before = 0;
    EXPECT_TRUE(VirtualProtect(view, 1, PAGE_NOACCESS, &before));
    return view;
}
void* WINAPI viewWithoutPages(HANDLE mapping, DWORD access, DWORD high, DWORD low, SIZE_T bytes) {
    return withoutPages(MapViewOfFile(mapping, access, high, low, bytes));
}

TEST(Viewer, WhoseMemoryGoesAwayIsNone) {
    const Receiver receiver;
    const PublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, infoOf(receiver));
    for (int round = 0; round < 2; ++round) {
        {
            const ImportHook hook("MapViewOfFile", reinterpret_cast<void*>(noteView));
            EXPECT_TRUE(UtilLOGPAN4Attach());
        }
        withoutPages(lastView);
        UtilDebug(L"lost");
        EXPECT_FALSE(UtilGetFlags());
        const ImportHook hook("MapViewOfFile", reinterpret_cast<void*>(viewWithoutPages));
        EXPECT_FALSE(UtilLOGPAN4Attach()) << "nor the older way's memory";
    }
    EXPECT_TRUE(UtilLOGPAN4Attach());
    UtilDebug(L"there again");
    EXPECT_EQ(receiver.next().text, L"there again");
    UtilLOGPAN4Detach();
}

TEST(Viewer, GetsLittleOfTheAddressSpace) {
    const Receiver receiver;
    const PublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, infoOf(receiver));
    info->size = 0x40000000;
    const ImportHook hook("MapViewOfFile", reinterpret_cast<void*>(noteView));
    EXPECT_TRUE(UtilLOGPAN4Attach());
    EXPECT_GE(largestView, 24u);
    EXPECT_LE(largestView, 65536u);
    UtilLOGPAN4Detach();
}

TEST(Viewer, GetsNothingThatItDoesNotWant) {
    const Viewer viewer;
    viewer.info->mask = 0;
    EXPECT_FALSE(UtilGetFlags());
    UtilDebugExt(nullptr, 1, L"unwanted");
    viewer.info->mask = 1ull << 63;
    EXPECT_TRUE(UtilGetFlags());
    for (const UINT32 nowhere : {0u, 0x10000u, 0xFFFFFFFFu}) {
        viewer.info->port = nowhere;
        UtilDebug(L"to nowhere");
    }
    viewer.info->port = viewer.receiver.port();
    UtilDebug(L"wanted");
    EXPECT_EQ(viewer.receiver.next().text, L"wanted") << "and not indented by a line that was not written";
}

TEST(Viewer, IsFollowedToItsNewPort) {
    const Viewer viewer;
    UtilDebug(L"here");
    EXPECT_EQ(viewer.receiver.next().text, L"here");
    const Receiver moved;
    const DebugOutput output;
    viewer.info->port = moved.port();
    UtilDebug(L"there");
    EXPECT_EQ(moved.next().text, L"there");
    EXPECT_EQ(output.text(), L"re-attach to new LOGPAN port!\n");
}

// ---- Several copies of the library -----------------------------------------------------------------

// All copies in a process share one socket. Whichever copy gives it up, the others lose no line.
TEST(Copies, ShareASocket) {
    const Viewer viewer;
    const TempFolder folder;
    Copy::makeFile(folder / L"copy.dll");
    Copy copy(folder / L"copy.dll");
    const auto write = copy.find(PasDebug, "PasDebug");
    const auto attach = copy.find(UtilLOGPAN4Attach, "UtilLOGPAN4Attach");
    const auto detach = copy.find(UtilLOGPAN4Detach, "UtilLOGPAN4Detach");
    UINT16 port = 0;
    const auto arrives = [&](const wchar_t* text) {
        const Packet packet = viewer.receiver.next();
        EXPECT_EQ(packet.text, text);
        return std::exchange(port, packet.senderPort) == packet.senderPort;
    };
    PasDebug(L"first");
    arrives(L"first");
    EXPECT_TRUE(attach());
    write(L"by the copy");
    EXPECT_TRUE(arrives(L"by the copy")) << "through the same socket";

    UtilModuleOnAttach(nullptr);
    viewer.receiver.next();
    detach();
    PasDebug(L"while there are modules");
    EXPECT_TRUE(arrives(L"while there are modules")) << "it is still the same";
    EXPECT_TRUE(attach());
    UtilModuleOnDetach(nullptr);
    viewer.receiver.next();
    write(L"after the last module");
    EXPECT_FALSE(arrives(L"after the last module")) << "a new one, at once";
    detach();
    UtilJobClose(UtilJobOpen(L"traced", UTIL_JOB_TRACE)); // whose lines are written under the global lock
    EXPECT_FALSE(arrives(L"viewer_test:UtilJobOpen('traced',0x80000000)\n"));
    for (int i = 0; i < 3; ++i)
        viewer.receiver.next();
    EXPECT_TRUE(attach());
    copy.unload();
    PasDebug(L"without the copy");
    EXPECT_TRUE(arrives(L"without the copy"));
}

TEST(Copies, AgreeOnSixteenBytes) {
    const Viewer viewer;
    wchar_t name[80] = {};
    _snwprintf(name, std::size(name) - 1, L"QmzLOGPANAppLocalData_%#p_%d", GetModuleHandleW(nullptr),
               GetCurrentProcessId());
    const Handle mapping(OpenFileMappingW(FILE_MAP_READ, FALSE, name));
    ASSERT_TRUE(mapping);
    struct Words {
        LONG level, lines, modules, socket;
    };
    const auto* shared = static_cast<const Words*>(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0));
    const Words before = *shared;
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
int WINAPI failingStartup(WORD, WSADATA*) {
    ++startups;
    return WSASYSNOTREADY;
}

TEST(Socket, ThatCannotBeOpenedIsNotTriedForEveryLine) {
    const Viewer viewer;
    UtilLOGPAN4Detach();
    const ImportHook hook("WSAStartup", reinterpret_cast<void*>(failingStartup));
    EXPECT_TRUE(UtilLOGPAN4Attach());
    const DWORD start = GetTickCount();
    for (int i = 0; i < 100; ++i)
        UtilDebug(L"lost");
    EXPECT_LE(static_cast<DWORD>(startups), 2 + (GetTickCount() - start) / 1000);
}

// ---- Callers within the loader ---------------------------------------------------------------------

/// Stands for a thread within the loader while another needs the loader: `needsLoader` is called where the
/// system would load a library, and does not return until the thread's lines and jobs are through.
struct Loader {
    static inline int passed = 0;
    static inline std::atomic<bool> needed{false};
    static void needsLoader() {
        if (needed.exchange(true))
            return; // by the thread within it
        std::jthread([] {
            UtilDebug(L"from within the loader");
            UtilJobClose(UtilJobOpen(L"within the loader", 0));
            ++passed;
        }).join();
        needed = false;
    }
    static int WINAPI startup(WORD version, WSADATA* data) {
        needsLoader();
        return WSAStartup(version, data);
    }
    static int WINAPI cleanup() {
        needsLoader();
        return WSACleanup();
    }
    static HWND WINAPI findWindow(const wchar_t* name, const wchar_t* title) {
        needsLoader();
        return FindWindowW(name, title);
    }
    /// Another process has the mutex that guards the number of modules, and keeps it.
    static DWORD WINAPI wait(HANDLE, DWORD milliseconds) {
        needsLoader();
        waits += milliseconds > 0;
        return WAIT_TIMEOUT;
    }
    static inline int waits = 0;
    static FARPROC WINAPI function(HMODULE module, const char* name) {
        needsLoader();
        return GetProcAddress(module, name);
    }
};

/// Child: everything that may need the loader. Each step that holds a lock meanwhile hangs.
void needLoader() {
    const ImportHook hooks[] = {{"WaitForSingleObject", reinterpret_cast<void*>(Loader::wait)},
                                {"WSAStartup", reinterpret_cast<void*>(Loader::startup)},
                                {"WSACleanup", reinterpret_cast<void*>(Loader::cleanup)},
                                {"FindWindowW", reinterpret_cast<void*>(Loader::findWindow)}};
    UtilJobOpen(L"traced", UTIL_JOB_TRACE);
    const Receiver receiver, moved;
    const PublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, infoOf(receiver));
    UtilLOGPAN4Attach();
    info->port = moved.port();
    UtilDebug(L"moved");
    UtilModuleOnAttach(L"module");
    UtilModuleOnDetach(L"module");
    UtilModuleOnAttach(L"module");
    UtilModuleOnDetach(L"module");
    UtilLOGPAN4Detach();
    const int passed = Loader::passed;
    const ImportHook hook("GetProcAddress", reinterpret_cast<void*>(Loader::function));
    UtilHeapValidate(UtilHeapCreate(UtilJobOpen(L"heaps", 0), L"H", 0), nullptr, 0);
    TerminateProcess(GetCurrentProcess(), passed < 8 ? 2 : Loader::waits != 1 ? 3 : 0);
}

TEST(Loader, IsNeverNeededWithALockHeld) {
    const Child child(L"loader");
    if (!child.endsWithin(30000)) {
        child.kill();
        FAIL() << "a deadlock";
    }
    EXPECT_EQ(child.exitCode(), 0u);
}

// ---- Second processes ------------------------------------------------------------------------------

constexpr const wchar_t* kReady = L"tvut22-viewer-test-ready";

struct Event {
    Event() : handle(CreateEventW(nullptr, FALSE, FALSE, kReady)) {}
    void wait() const { EXPECT_EQ(WaitForSingleObject(handle.get(), 60000), WAIT_OBJECT_0); }
    Handle handle;
};

/// Child: a viewer that publishes itself and never reads its socket.
void beDeafViewer() {
    const Receiver receiver;
    const PublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, infoOf(receiver, 600));
    SetEvent(Event().handle.get());
    Sleep(INFINITE);
}

TEST(ViewerProcess, ThatNeverReadsAndDiesDisturbsNobody) {
    const Event ready;
    Child deaf(L"deaf");
    ready.wait();
    EXPECT_TRUE(UtilLOGPAN4Attach());
    const std::wstring text(1025, L'x');
    for (int i = 0; i < 3000; ++i) // far more than its socket holds
        PasDebug(text.c_str());
    EXPECT_TRUE(deaf.runs());
    deaf.kill();
    deaf.exitCode();
    for (int i = 0; i < 100; ++i)
        PasDebug(text.c_str());
    // Its successor finds what it had published and takes it over; nobody has to look for it.
    const Receiver receiver;
    const PublishedInfo info(LOGPAN_SHARED_INFO_LOCAL, infoOf(receiver));
    UtilDebug(L"to the successor");
    EXPECT_EQ(receiver.next().text, L"to the successor");
    UtilLOGPAN4Detach();
}

// ---- The older transport ---------------------------------------------------------------------------

class Mailslot {
  public:
    Mailslot() : slot_(CreateMailslotW(LOGPAN_MAILSLOT, 0, 20000, nullptr)) {
        EXPECT_NE(slot_.get(), INVALID_HANDLE_VALUE);
    }
    std::string next() const {
        std::string message(4096, '\0');
        DWORD length = 0;
        EXPECT_TRUE(ReadFile(slot_.get(), message.data(), 4096, &length, nullptr)) << GetLastError();
        message.resize(length);
        return message;
    }

  private:
    Handle slot_;
};

std::string behindStamp(const std::string& line) {
    return line.substr(line.find('/') + 7);
}

TEST(Mailslot, GetsLinesInPieces) {
    const Mailslot slot;
    EXPECT_TRUE(UtilLOGPAN4Attach());
    EXPECT_TRUE(UtilGetFlags());
    UtilDebugExt(L"TAG", 0, L"first\r\n\u20acsecond\n");
    const std::string first = slot.next();
    EXPECT_EQ(first.substr(0, 10), "TAG     : ");
    EXPECT_EQ(behindStamp(first), "first");
    EXPECT_EQ(slot.next(), "\x80second");
    UtilLOGPAN4Detach();
}

TEST(Mailslot, ThatIsNotReadDoesNotMakeTheWriterWait) {
    const DebugOutput output;
    {
        const Mailslot slot;
        EXPECT_TRUE(UtilLOGPAN4Attach());
        for (int i = 0; i < 500; ++i)
            UtilDebug(L"%d %s", i, std::wstring(400, L'x').c_str());
    }
    while (UtilGetFlags()) // until it is noticed that the slot is gone
        UtilDebug(L"nobody there");
    EXPECT_EQ(output.text(), L"LOGPAN: cannot write data!") << "said once, not a line";
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
    const DebugOutput output;
    HWND window = makeWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(UtilLOGPAN4Attach());
    EXPECT_EQ(output.text(), L"DebugPipe FAIL") << "a window without a slot";
    EXPECT_TRUE(UtilGetFlags()) << "the window is known";
    const Mailslot slot;
    EXPECT_TRUE(UtilLOGPAN4Attach());

    output.text().clear();
    DestroyWindow(std::exchange(window, makeWindow()));
    UtilDebug(L"to the next window");
    EXPECT_EQ(output.text(),
              L"trying to reattach to LOGPAN" + std::to_wstring(reinterpret_cast<INT_PTR>(window)));
    EXPECT_EQ(behindStamp(slot.next()), "to the next window");
    DestroyWindow(window);
    UtilDebug(L"to nobody");
    EXPECT_FALSE(UtilGetFlags());
    UtilLOGPAN4Detach();
}

// ---- Assertions ------------------------------------------------------------------------------------

constexpr const wchar_t* kExpression = L"count > 0 && count < limit && !name.empty() && somebody != nullptr";

void beFailedAssertion() {
    UtilAssert(kExpression, L"c:\\source\\file.cpp", 42);
}

HWND awaitBox(const Child& child) {
    HWND box = nullptr;
    while (!box && child.runs()) {
        box = FindWindowW(nullptr, L"Assertion Failure");
        Sleep(1); // gives way to the process that makes the box; the condition is the loop's
    }
    return box;
}

TEST(Assertion, EndsTheProcessWhateverIsPressed) {
    for (const int button : {IDRETRY, IDCANCEL}) {
        const Child child(L"assertion");
        const HWND box = awaitBox(child);
        ASSERT_TRUE(box) << "no message box; is there a display driver?";
        wchar_t text[200] = {};
        SendDlgItemMessageW(box, 0xFFFF, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
        EXPECT_EQ(text,
                  (L"line 42 in file c:\\source\\file.cpp:\n\"" + std::wstring(kExpression)).substr(0, 80));
        PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
        EXPECT_EQ(child.exitCode(), 0xFFFFFFFFu);
    }
}

const std::map<std::string, void (*)()> kRoles = {
    {"deaf", beDeafViewer}, {"assertion", beFailedAssertion}, {"loader", needLoader}};

} // namespace
} // namespace testing_prof

int main(int count, char** arguments) {
    using namespace testing_prof;
    if (count == 2 && kRoles.contains(arguments[1])) {
        kRoles.at(arguments[1])();
        return 0;
    }
    ::testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
