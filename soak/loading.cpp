// Copies of the library that come and go, alone and side by side, while a viewer listens or not. Nothing may
// be left of them: no index of thread-local storage, no memory, no handle.
#include <winsock2.h>

#include "workloads.h"

#include "support/copy.h"

#include <tvut22/prof.h>
#include <tvut22/util.h>
#include <tvut22/viewer.h>

#include <oleauto.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace soak {

namespace {

using testing_prof::clsCopy;
using testing_prof::Handle;

// A viewer that publishes itself and never reads.
class clsViewer {
  public:
    clsViewer() {
        WSADATA data;
        WSAStartup(MAKEWORD(2, 2), &data);
        socket_ = socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof address;
        bind(socket_, reinterpret_cast<sockaddr*>(&address), size);
        getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
        mapping_.reset(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                          sizeof(LogpanSharedInfo), LOGPAN_SHARED_INFO_LOCAL));
        info_ = static_cast<LogpanSharedInfo*>(MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, 0));
        *info_ = {sizeof *info_, ntohs(address.sin_port), 0, 1024, 0};
    }
    ~clsViewer() {
        UnmapViewOfFile(info_);
        closesocket(socket_);
        WSACleanup();
    }
    clsViewer(const clsViewer&) = delete;
    clsViewer& operator=(const clsViewer&) = delete;

    void WantLines(bool wanted) { info_->mask = wanted; }

  private:
    SOCKET socket_;
    Handle mapping_;
    LogpanSharedInfo* info_;
};

// Something of everything, on a thread that may end before the copy goes or has ended long since.
bool Use(const clsCopy& copy) {
    VARIANT variant;
    bool good = copy.Find(ProfGetVariantFromContents,
                          "ProfGetVariantFromContents")(L"no variant", &variant) == PROF_NOT_PARSED;
    copy.Find(UtilLOGPAN4Attach, "UtilLOGPAN4Attach")();
    copy.Find(UtilModuleOnAttach, "UtilModuleOnAttach")(L"module");
    const std::wstring name = L"job of thread " + std::to_wstring(GetCurrentThreadId());
    const UtilJob job = copy.Find(UtilJobOpen, "UtilJobOpen")(name.c_str(), UTIL_JOB_TRACE);
    const UtilHeap heap = copy.Find(UtilHeapCreate, "UtilHeapCreate")(job, L"H", UTIL_HEAP_DEBUG);
    void* const object = copy.Find(UtilHeapObjectAlloc, "UtilHeapObjectAlloc")(heap, 100, 0);
    good = good && copy.Find(UtilHeapObjectFree, "UtilHeapObjectFree")(heap, object) == UTIL_OK;
    good = good && copy.Find(UtilJobClose, "UtilJobClose")(job) == UTIL_HEAPS_LEFT;
    copy.Find(UtilModuleOnDetach, "UtilModuleOnDetach")(L"module");
    const ProfJob profile = copy.Find(ProfJobOpenW, "ProfJobOpenW")(nullptr);
    copy.Find(ProfSetIntW, "ProfSetIntW")(profile, nullptr, L"a/b", 1);
    copy.Find(ProfJobClose, "ProfJobClose")(profile);
    return good;
}

struct scHeld {
    std::size_t tlsIndexes, blocks, handle;
};

scHeld Held() {
    scHeld held{};
    std::vector<DWORD> indexes;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc())
        indexes.push_back(index);
    for (const DWORD index : indexes)
        TlsFree(index);
    held.tlsIndexes = indexes.size();
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        held.blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    HeapUnlock(GetProcessHeap());
    const Handle next(CreateEventW(nullptr, FALSE, FALSE, nullptr)); // the lowest that is free
    held.handle = reinterpret_cast<UINT_PTR>(next.get());
    return held;
}

void Cycle(clsRun& run, const std::array<std::wstring, 2>& files) {
    std::array<std::unique_ptr<clsCopy>, 2> copies;
    const unsigned count = 1 + run.Random(2);
    for (unsigned i = 0; i < count; ++i)
        copies[i] = std::make_unique<clsCopy>(files[i]);
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (unsigned i = 0; i < count; ++i) {
        run.Require(static_cast<bool>(*copies[i]), "a copy cannot be loaded");
        if (*copies[i] && run.Random(4) != 0)
            threads.emplace_back([&wrong, &copy = *copies[i]] { wrong += !Use(copy); });
    }
    if (run.Random(2) && *copies[0])
        wrong += !Use(*copies[0]);
    for (std::thread& thread : threads)
        thread.join();
    copies[run.Random(2)].reset();
    if (copies[0] && *copies[0])
        wrong += !Use(*copies[0]);
    run.Require(wrong == 0, "a call of a copy gave a wrong result");
}

} // namespace

void RunLoading(clsRun& run) {
    const std::array<std::wstring, 2> files = {L".\\first.dll", L".\\second.dll"};
    for (const std::wstring& file : files)
        clsCopy::MakeFile(file);
    clsViewer viewer;
    constexpr int warmUp = 50;
    scHeld before{};
    int cycles = 0;
    for (; run.GoesOn() || cycles <= warmUp; ++cycles) {
        viewer.WantLines(run.Random(2) != 0);
        Cycle(run, files);
        if (cycles == warmUp)
            before = Held();
    }
    const scHeld after = Held();
    run.Count("cycles", cycles);
    run.Require(after.tlsIndexes == before.tlsIndexes, "indexes of thread-local storage are lost");
    run.Require(after.blocks < before.blocks + 200, "blocks of the process heap are left");
    run.Require(after.handle < before.handle + 400, "handles are left");
}

} // namespace soak
