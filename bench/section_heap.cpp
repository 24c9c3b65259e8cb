// Allocating and freeing objects of checked heaps, against the system's heap; deleting what is left.
#include "sections.h"

#include <tvut22/heaps.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace bench {

namespace {

constexpr int objectBytes = 64;
constexpr int calls = 20'000;

// What is allocated and freed in turn, a few at a time, so that neither heap sees one block for ever.
template <class Allocate, class Free>
double EachPair(Allocate allocate, Free free) {
    constexpr int held = 16;
    void* objects[held];
    return Timed([&] {
               for (int round = 0; round < calls / held; ++round) {
                   for (void*& object : objects)
                       object = allocate();
                   for (void* object : objects)
                       free(object);
               }
           }) /
           calls;
}

// Both begin when the other is there. (std::barrier of GCC 12 misses wake-ups on Windows.)
template <class Work>
double OnTwoThreads(Work work) {
    std::atomic<int> there{0};
    const auto together = [&] {
        ++there;
        while (there != 2)
            YieldProcessor();
        return work();
    };
    double first = 0, second = 0;
    std::jthread other([&] { second = together(); });
    first = together();
    other.join();
    return (first + second) / 2;
}

class clsHeaps {
  public:
    clsHeaps() {
        plain = UtilHeapCreate(job_, L"plain", 0);
        debug = UtilHeapCreate(job_, L"debug", UTIL_HEAP_DEBUG);
        system = HeapCreate(0, 32768, 0);
        Require(plain && debug && system, "no heaps");
    }
    ~clsHeaps() {
        HeapDestroy(system);
        UtilHeapDelete(debug);
        UtilHeapDelete(plain);
        UtilJobClose(job_);
    }
    clsHeaps(const clsHeaps&) = delete;
    clsHeaps& operator=(const clsHeaps&) = delete;

    double Ours(UtilHeap heap, UINT flags) const {
        return EachPair([=] { return UtilHeapObjectAlloc(heap, objectBytes, flags); },
                        [=](void* object) { UtilHeapObjectFree(heap, object); });
    }
    double Systems() const {
        return EachPair([this] { return HeapAlloc(system, 0, objectBytes); },
                        [this](void* object) { HeapFree(system, 0, object); });
    }

    UtilHeap plain, debug;
    HANDLE system;

  private:
    UtilJob job_ = UtilJobOpen(L"bench", 0);
};

// Ten frames deep, as real callers are; the walk over the stack takes its time by their number.
template <class Work>
__attribute__((noinline)) double Deep(int frames, const Work& work) {
    const double result = frames == 0 ? work() : Deep(frames - 1, work);
    Consume(static_cast<std::size_t>(frames));
    return result;
}

void MeasurePairs(const clsHeaps& heaps, int rounds, clsReport& report) {
    const Round one[] = {
        [&] { return heaps.Ours(heaps.plain, 0); },
        [&] { return heaps.Ours(heaps.debug, UTIL_HEAP_NO_STACK); },
        [&] { return Deep(40, [&] { return heaps.Ours(heaps.debug, 0); }); },
        [&] { return heaps.Systems(); },
    };
    const auto ns = Race(one, rounds);
    const std::string peer = "HeapAlloc, HeapFree";
    report.Against("plain object, allocated and freed", ns[0], peer, ns[3], AtMost(1.4));
    report.Against("DEBUG object without call stack", ns[1], peer, ns[3], AtMost(1.9));
    report.Against("DEBUG object with 40 frames", ns[2], peer, ns[3], AtMost(2));
}

double WalkNs(HANDLE heap, int expected) {
    int busy = 0;
    const double ns = Timed([&] {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heap);
        while (HeapWalk(heap, &entry))
            busy += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0;
        HeapUnlock(heap);
    });
    Require(busy == expected, "the walk did not meet every object");
    return ns;
}

void MeasureDelete(int rounds, clsReport& report) {
    constexpr int left = 100'000;
    const UtilJob job = UtilJobOpen(L"bench delete", 0);
    const Round contenders[] = {[&] {
                                    const UtilHeap heap = UtilHeapCreate(job, L"left", UTIL_HEAP_DEBUG);
                                    for (int i = 0; i < left; ++i)
                                        UtilHeapObjectAlloc(heap, objectBytes, UTIL_HEAP_NO_STACK);
                                    return Timed([&] { UtilHeapDelete(heap); });
                                },
                                [&] {
                                    const HANDLE heap = HeapCreate(0, 32768, 0);
                                    for (int i = 0; i < left; ++i)
                                        static_cast<void>(HeapAlloc(heap, 0, objectBytes + 32));
                                    const double ns = WalkNs(heap, left);
                                    HeapDestroy(heap);
                                    return ns;
                                }};
    const auto ns = Race(contenders, rounds);
    report.Against("UtilHeapDelete, 100,000 DEBUG objects left", ns[0], "HeapWalk over as many", ns[1],
                   AtMost(2));
    UtilJobClose(job);
}

} // namespace

void MeasureCrowdAtHeap(const scSettings& settings, clsReport& report) {
    const clsHeaps heaps;
    const Round contenders[] = {
        [&] { return OnTwoThreads([&] { return heaps.Ours(heaps.plain, 0); }); },
        [&] { return OnTwoThreads([&] { return heaps.Systems(); }); },
    };
    const auto ns = Race(contenders, settings.rounds);
    report.Against("plain object, two threads", ns[0], "HeapAlloc, HeapFree", ns[1], AtMost(2));
}

void MeasureHeap(const scSettings& settings, clsReport& report) {
    const clsHeaps heaps;
    report.Section("Checked heaps: objects of 64 bytes");
    MeasurePairs(heaps, settings.rounds, report);
    MeasureDelete(std::min(settings.rounds, 7), report);
}

} // namespace bench
