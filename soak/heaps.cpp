// Heap calls by the million from many threads, some of them wrong, with exact counts.
//
// Threads share one heap and have one each. Now and then an object is overrun, freed twice, or freed on the
// wrong heap; each time the call must say so. At the end of a round every heap's own counts must be those
// kept here, the log must hold one report for each damage, and no round may leave more of the library's
// memory used than the first one did.
#include "workloads.h"

#include <tvut22/util.h>

#include <atomic>
#include <cstring>
#include <fstream>
#include <thread>
#include <vector>

namespace soak {

namespace {

constexpr int threadCount = 8;
constexpr int callsOfRound = 200'000;
constexpr const wchar_t* logName = L"heaps.log";

struct scObject {
    void* payload;
    INT size;
    bool shared;
};

struct scCounts {
    int calls = 0, damages = 0, wrong = 0, sharedAllocations = 0, ownAllocations = 0;
};

constexpr std::size_t mostObjects = 200; // of a thread at once

class clsThread {
  public:
    clsThread(UtilJob job, UtilHeap shared, unsigned seed)
        : shared_(shared), own_(UtilHeapCreate(job, L"own", UTIL_HEAP_DEBUG)), random_(seed) {}

    scCounts Run(int calls) {
        while (counts_.calls < calls)
            objects_.size() < 40 || (random_() % 2 && objects_.size() < mostObjects) ? Allocate() : Use();
        while (!objects_.empty())
            Free(Take());
        Expect(UtilHeapDelete(own_), UTIL_OK);
        return counts_;
    }

  private:
    UtilHeap HeapOf(const scObject& object) const { return object.shared ? shared_ : own_; }

    void Expect(INT result, INT expected) {
        ++counts_.calls;
        counts_.wrong += result != expected;
    }

    void Allocate() {
        const bool shared = random_() % 2 != 0;
        const auto size = static_cast<INT>(random_() % 500);
        const UINT flags = random_() % 4 == 0 ? UTIL_HEAP_NO_STACK : 0;
        void* const payload = UtilHeapObjectAlloc(shared ? shared_ : own_, size, flags);
        ++counts_.calls;
        ++(shared ? counts_.sharedAllocations : counts_.ownAllocations);
        counts_.wrong += payload == nullptr;
        if (payload)
            objects_.push_back({payload, size, shared});
    }

    scObject Take() {
        std::swap(objects_[random_() % objects_.size()], objects_.back());
        const scObject object = objects_.back();
        objects_.pop_back();
        return object;
    }

    void Free(const scObject& object) { Expect(UtilHeapObjectFree(HeapOf(object), object.payload), UTIL_OK); }

    void Damage(INT result) {
        Expect(result, UTIL_HEAP_BAD_OBJECT);
        ++counts_.damages;
    }

    void Use() {
        const scObject object = Take();
        char* const fence = static_cast<char*>(object.payload) + object.size;
        switch (random_() % 4000) {
        case 0: // overrun, and mended so that it can be freed
            fence[0] = static_cast<char>(fence[0] ^ 1);
            Damage(UtilHeapObjectFree(HeapOf(object), object.payload));
            fence[0] = static_cast<char>(fence[0] ^ 1);
            break;
        case 1: // on the wrong heap
            Damage(UtilHeapObjectFree(object.shared ? own_ : shared_, object.payload));
            break;
        case 2: // twice; only where nobody can have got the block meanwhile
            Free(object);
            if (!object.shared)
                Damage(UtilHeapObjectFree(own_, object.payload));
            return;
        default:
            if (random_() % 8 == 0)
                Expect(UtilHeapObjectSize(HeapOf(object), object.payload), object.size);
        }
        Free(object);
    }

    UtilHeap shared_, own_;
    std::mt19937 random_;
    std::vector<scObject> objects_;
    scCounts counts_;
};

scCounts RunAll(unsigned seed) {
    const UtilJob job = UtilJobOpen(L"SOAK", 0);
    const UtilHeap shared = UtilHeapCreate(job, L"shared", UTIL_HEAP_DEBUG);
    std::vector<scCounts> counts(threadCount);
    {
        std::vector<std::jthread> threads;
        for (unsigned t = 0; t < threadCount; ++t)
            threads.emplace_back(
                [&, t] { counts[t] = clsThread(job, shared, seed + t).Run(callsOfRound / threadCount); });
    }
    scCounts all;
    for (const scCounts& one : counts) {
        all.calls += one.calls;
        all.damages += one.damages;
        all.wrong += one.wrong;
        all.sharedAllocations += one.sharedAllocations;
        all.ownAllocations += one.ownAllocations;
    }
    all.wrong += UtilHeapValidate(shared, nullptr, 0) != UTIL_OK;
    all.wrong += UtilHeapDelete(shared) != UTIL_OK;
    all.wrong += UtilJobClose(job) != UTIL_OK;
    return all;
}

// What the log says of a run.
struct scLogged {
    int damages = 0, left = 0, sharedAllocations = 0, ownAllocations = 0;
};

scLogged ReadLog() {
    std::ifstream file(std::filesystem::path(logName), std::ios::binary);
    scLogged logged;
    for (std::string line; std::getline(file, line);) {
        logged.damages += line.find("Error: clsHeapNode") != std::string::npos;
        logged.left += line.find("objects are left") != std::string::npos;
        const std::size_t total = line.find(", total ");
        if (total == std::string::npos)
            continue;
        const int count = std::atoi(line.c_str() + total + 8);
        (line.find("'shared'") != std::string::npos ? logged.sharedAllocations : logged.ownAllocations) +=
            count;
    }
    return logged;
}

// Has the library make all the call-stack records that a run can need at once: it keeps them, and how many of
// them a run does need depends on how its threads fall together.
void MakeRecords() {
    const UtilJob job = UtilJobOpen(L"SOAK", 0);
    const UtilHeap heap = UtilHeapCreate(job, L"records", UTIL_HEAP_DEBUG);
    std::vector<void*> objects(threadCount * (mostObjects + 2));
    for (void*& object : objects)
        object = UtilHeapObjectAlloc(heap, 0, 0);
    for (void* const object : objects)
        UtilHeapObjectFree(heap, object);
    UtilHeapDelete(heap);
    UtilJobClose(job);
}

int BusyBlocks() {
    int busy = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(GetProcessHeap());
    while (HeapWalk(GetProcessHeap(), &entry))
        busy += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
    HeapUnlock(GetProcessHeap());
    return busy;
}

void CheckRound(clsRun& run) {
    std::error_code none;
    std::filesystem::resize_file(logName, 0, none); // it is open for appending
    const scCounts counts = RunAll(run.Random(1u << 30));
    const scLogged logged = ReadLog();
    run.Count("calls", counts.calls);
    run.Count("damages", counts.damages);
    run.Require(counts.wrong == 0, std::to_string(counts.wrong) + " wrong results");
    run.Require(counts.damages == logged.damages, std::to_string(logged.damages) + " reports of " +
                                                      std::to_string(counts.damages) + " damages");
    run.Require(logged.left == 0, std::to_string(logged.left) + " heaps left objects");
    run.Require(counts.sharedAllocations == logged.sharedAllocations &&
                    counts.ownAllocations == logged.ownAllocations,
                "the heaps' own counts of allocations are wrong");
}

} // namespace

void RunHeaps(clsRun& run) {
    SetEnvironmentVariableW(L"TVUT22_LOG", logName);
    MakeRecords();
    CheckRound(run);
    const int blocks = BusyBlocks();
    while (run.GoesOn())
        CheckRound(run);
    run.Require(BusyBlocks() < blocks + 20,
                "the process heap has grown by " + std::to_string(BusyBlocks() - blocks) + " blocks");
}

} // namespace soak
