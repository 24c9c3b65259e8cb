// Checked heaps: layouts, codes, reports, and damage of every kind.
#include "support/copy.h"
#include "support/import_hook.h"
#include "support/log.h"

#include <gtest/gtest.h>
#include <tvut22/crash.h>
#include <tvut22/heaps.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <thread>

namespace testing_prof {
namespace {

using namespace std::string_view_literals;

UINT32 Word(const void* payload, int offset) {
    UINT32 value;
    std::memcpy(&value, static_cast<const char*>(payload) + offset, sizeof value);
    return value;
}
void SetWord(void* payload, int offset, UINT32 value) {
    std::memcpy(static_cast<char*>(payload) + offset, &value, sizeof value);
}

std::string Pointer(const void* at) {
    char text[20];
    std::snprintf(text, sizeof text, "0X%08X", static_cast<unsigned>(reinterpret_cast<UINT_PTR>(at)));
    return text;
}

// The lines of the log without those that differ from build to build: call stacks.
std::vector<std::string> Reports(const clsLog& log) {
    std::vector<std::string> texts;
    for (const std::string& line : log.Lines()) {
        const std::string text = line.substr(line.find(':') + 1, line.size() - line.find(':') - 2);
        if (text.find(".dll+0x") == std::string::npos && text.find(".exe+0x") == std::string::npos)
            texts.push_back(text);
    }
    return texts;
}

// The frames below a title.
std::vector<std::string> FramesBelow(const clsLog& log, std::string_view title) {
    std::vector<std::string> frames;
    bool isBelow = false;
    for (const std::string& line : log.Lines()) {
        if (isBelow && line.find("+0x") == std::string::npos)
            break;
        if (isBelow)
            frames.push_back(line.substr(line.rfind(' ', line.find("+0x")) + 1));
        isBelow = isBelow || line.find(title) != std::string::npos;
    }
    return frames;
}

class Heaps : public testing::Test {
  protected:
    ~Heaps() override { UtilJobClose(job); }
    UtilJob job = UtilJobOpen(L"M", 0);
    using Lines = std::vector<std::string>;
};

__attribute__((noinline)) void* AllocateHere(UtilHeap heap, int bytes) {
    void* const object = UtilHeapObjectAlloc(heap, bytes, 0);
    return object ? object : heap; // something is left to do
}

DWORD WINAPI AllocateInThread(void* heap) {
    return AllocateHere(static_cast<UtilHeap>(heap), 8) ? 0 : 1;
}

// From the caller of the library down to where its thread began, functions readable and with lines.
TEST_F(Heaps, SayWhoAllocatedWhatIsLeft) {
    clsLog log;
    const UtilHeap heap = UtilHeapCreate(job, L"H", UTIL_HEAP_DEBUG);
    const Handle thread(CreateThread(nullptr, 0, AllocateInThread, heap, 0, nullptr));
    WaitForSingleObject(thread.get(), INFINITE);
    UtilHeapDelete(heap);
    const auto frames = FramesBelow(log, "Memory object allocation");
    ASSERT_EQ(frames.size(), 2u) << testing::PrintToString(frames);
    EXPECT_EQ(frames.front().find("heaps_test.exe+0x"), 0u) << frames.front();
    EXPECT_NE(frames.front().find("AllocateHere(UtilHeapObject*, int)"), std::string::npos) << frames.front();
    EXPECT_NE(frames.front().find(" (heaps_test.cpp:"), std::string::npos) << frames.front();
    EXPECT_NE(frames.back().find("AllocateInThread(void*)"), std::string::npos) << frames.back();
}

TEST(StackTrace, IsWrittenForWhoListens) {
    const clsLog log;
    const INT all = UtilStackTrace(L"all", 0, 0), two = UtilStackTrace(L"two", 0, 2);
    const auto frames = FramesBelow(log, "all"), fewer = FramesBelow(log, "two");
    EXPECT_EQ(frames.size(), static_cast<std::size_t>(all));
    EXPECT_NE(frames.at(0).find("IsWrittenForWhoListens"), std::string::npos) << frames[0];
    EXPECT_EQ(two, 2);
    EXPECT_EQ(fewer.size(), 2u);
    EXPECT_EQ(UtilStackTrace(L"none", 1000, 0), 0);
    EXPECT_NE(log.Lines().back().find("none"), std::string::npos);
}

TEST_F(Heaps, LayObjectsOutAsTheyAreRead) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", 0);
    const DWORD before = GetTickCount();
    void* const plain = UtilHeapObjectAlloc(heap, 10, 0);
    void* const debug = UtilHeapObjectAllocExt(heap, 10, UTIL_HEAP_DEBUG, 77, 0);
    EXPECT_EQ(Word(plain, -4), 0xFAAFFAAFu);
    EXPECT_EQ(Word(debug, -4), 0xAFFEAFFEu);
    EXPECT_EQ(Word(debug, -8), 10u);
    EXPECT_EQ(Word(debug, -12), 77u);
    EXPECT_NE(Word(debug, -16), 0u) << "the call stack";
    EXPECT_LE(Word(debug, -20) - before, GetTickCount() - before);
    EXPECT_TRUE(HeapValidate(reinterpret_cast<HANDLE>(Word(debug, -24)), 0, static_cast<char*>(debug) - 28));
    EXPECT_EQ(Word(debug, -28), 0xC0FFEEEEu);
    EXPECT_EQ(Word(debug, 10), 0xE5E55E5Eu);
    EXPECT_EQ(UtilHeapObjectSize(heap, plain), 10);
    EXPECT_EQ(UtilHeapObjectSize(heap, debug), 10);
    EXPECT_EQ(UtilHeapObjectFree(heap, plain), UTIL_OK);
    EXPECT_EQ(UtilHeapObjectFree(heap, debug), UTIL_OK);
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

TEST_F(Heaps, AreDebugByTheRightFlags) {
    const UtilJob debugJob = UtilJobOpen(L"D", UTIL_JOB_DEBUG_HEAPS);
    const struct {
        UtilJob job;
        UINT heapFlags, flags;
        bool debug;
    } cases[] = {
        {job, 0, 0, false},
        {job, UTIL_HEAP_DEBUG, 0, true},
        {job, UTIL_HEAP_DEBUG, UTIL_HEAP_NEVER_DEBUG, false},
        {job, UTIL_HEAP_DEBUG | UTIL_HEAP_NEVER_DEBUG, 0, false},
        {job, 0, UTIL_HEAP_DEBUG, true},
        {job, 0, UTIL_HEAP_DEBUG | UTIL_HEAP_NEVER_DEBUG, false},
        {debugJob, 0, 0, true},
        {debugJob, UTIL_HEAP_NEVER_DEBUG, 0, false},
        {debugJob, UTIL_HEAP_NEVER_DEBUG, UTIL_HEAP_DEBUG, true},
    };
    for (const auto& c : cases) {
        const UtilHeap heap = UtilHeapCreate(c.job, L"H", c.heapFlags);
        void* const object = UtilHeapObjectAlloc(heap, 8, c.flags | UTIL_HEAP_NO_STACK);
        EXPECT_EQ(Word(object, -4), c.debug ? 0xAFFEAFFEu : 0xFAAFFAAFu) << &c - cases;
        EXPECT_EQ(UtilHeapObjectFree(heap, object), UTIL_OK);
        UtilHeapDelete(heap);
    }
    EXPECT_EQ(UtilHeapCreate(job, L"H", 0x80), nullptr);
    EXPECT_EQ(UtilHeapCreate(nullptr, L"H", 0), nullptr);
    EXPECT_EQ(UtilHeapCreate(reinterpret_cast<UtilJob>(UINT_PTR{0x1000}), L"H", 0), nullptr);
    UtilJobClose(debugJob);
}

TEST_F(Heaps, FillAsAsked) {
    const UtilHeap own = UtilHeapCreate(job, L"H", 0);
    for (const UtilHeap heap : {own, UtilHeap{nullptr}})
        for (const UINT debug : {0u, UTIL_HEAP_DEBUG}) {
            for (int round = 0; round < 6; ++round) { // memory that was used before, too
                const UINT fill = UTIL_HEAP_FILL | (round % 2 ? UTIL_HEAP_ZERO : 0);
                auto* const object = static_cast<char*>(UtilHeapObjectAlloc(heap, 7, debug | fill));
                EXPECT_EQ(std::string(object, 7), std::string(7, round % 2 ? '\0' : '\xF5'));
                EXPECT_EQ(UtilHeapObjectSize(heap, object), 7);
                EXPECT_EQ(UtilHeapObjectFree(heap, object), UTIL_OK);
            }
        }
    EXPECT_EQ(UtilHeapDelete(own), UTIL_OK);
}

TEST_F(Heaps, RefuseSizesThatWouldWrap) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", 0);
    const clsLog log;
    for (const INT size : {-1, -4, -5, -32, -33, INT_MIN, INT_MIN + 1, INT_MAX, INT_MAX - 31}) {
        EXPECT_EQ(UtilHeapObjectAlloc(heap, size, 0), nullptr) << size;
        EXPECT_EQ(UtilHeapObjectAlloc(heap, size, UTIL_HEAP_DEBUG), nullptr) << size;
        EXPECT_EQ(UtilHeapObjectAlloc(nullptr, size, 0), nullptr) << size;
    }
    const Lines lines = Reports(log);
    EXPECT_EQ(lines.at(0), "Error: clsHeapNode['M'/'H']::AllocObjectND(-1): Out of memory");
    EXPECT_EQ(lines.at(1), "Error: clsHeapNode['M'/'H']::AllocObjectD(-1)");
    EXPECT_EQ(lines.at(3), "Error: clsHeapNode['M'/'H']::AllocObjectD(-1): Out of memory");
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

// Each kind of damage: what the free says, and whether the object is still there for another one.
TEST_F(Heaps, ReportDamageAndSurviveIt) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", UTIL_HEAP_DEBUG), other = UtilHeapCreate(job, nullptr, 0);
    const auto make = [&] { return static_cast<char*>(UtilHeapObjectAlloc(heap, 12, UTIL_HEAP_FILL)); };
    const auto freeing = [&](void* object) {
        const clsLog log;
        EXPECT_EQ(UtilHeapObjectFree(heap, object), UTIL_HEAP_BAD_OBJECT);
        Lines lines = Reports(log);
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("   "); }); // bytes
        return lines;
    };
    const std::string begin = "Error: clsHeapNode['M'/'H']::FreeObject";
    const auto dump = [](char* object) {
        char size[60];
        std::snprintf(size, sizeof size, "%d(=0x%08x) Bytes", static_cast<INT>(Word(object, -8)),
                      Word(object, -8));
        return " -Object at " + Pointer(object) + ", " + size;
    };
    // The check of the object says so first, and who made it; then the call that wanted to free it.
    const auto damaged = [&](char* object) {
        return Lines{"Error: Memory overrun, fence value has been changed",
                     dump(object),
                     " Memory object allocation",
                     begin + "D(" + Pointer(object) + ")",
                     " Memory overrun, fence value has been changed (object not freed)",
                     dump(object)};
    };
    char* const overrun = make();
    overrun[12] = 1;
    EXPECT_EQ(freeing(overrun), damaged(overrun));
    Lines again = damaged(overrun);
    again.erase(again.begin() + 2);
    EXPECT_EQ(freeing(overrun), again) << "it is still there, but for the record of its call stack";

    for (const UINT32 size : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 0x10000000u, 13u}) {
        char* const resized = make();
        SetWord(resized, -8, size);
        EXPECT_EQ(freeing(resized), damaged(resized)) << size;
    }
    char* const underrun = make();
    SetWord(underrun, -28, 0x12345678);
    EXPECT_EQ(freeing(underrun), (Lines{begin + "D(" + Pointer(underrun) + ")",
                                        " Not allocated with UTIL or memory underrun (object not freed)"}));
    char* const marked = make();
    SetWord(marked, -4, 0x12345678);
    EXPECT_EQ(freeing(marked), (Lines{begin + "(" + Pointer(marked) + ")",
                                      " bad pointer, or memory underrun (magic=0x12345678)"}));
    char* const twice = make();
    EXPECT_EQ(UtilHeapObjectFree(heap, twice), UTIL_OK);
    EXPECT_EQ(freeing(twice).at(0), begin + "(" + Pointer(twice) + ")");

    void* const foreign = UtilHeapObjectAlloc(other, 12, UTIL_HEAP_DEBUG);
    EXPECT_EQ(freeing(foreign).at(1), " error freeing object");
    void* const foreignPlain = UtilHeapObjectAlloc(other, 12, 0);
    EXPECT_EQ(freeing(foreignPlain).at(0), begin + "ND(" + Pointer(foreignPlain) + ")");
    EXPECT_EQ(UtilHeapObjectFree(other, foreign), UTIL_OK) << "untouched by the attempt";
    EXPECT_EQ(UtilHeapObjectFree(other, foreignPlain), UTIL_OK);

    char* const wild = make(); // a record's pointer that leads nowhere must not be followed or released
    SetWord(wild, -16, 0x1000);
    EXPECT_EQ(UtilHeapObjectFree(heap, wild), UTIL_OK);
    for (void* const nowhere : {static_cast<void*>(nullptr), reinterpret_cast<void*>(UINT_PTR{0x1000}),
                                static_cast<void*>(GetModuleHandleW(nullptr)), static_cast<void*>(&job)}) {
        freeing(nowhere);
        EXPECT_EQ(UtilHeapObjectSize(heap, nowhere), UTIL_HEAP_BAD_OBJECT);
    }
    EXPECT_EQ(UtilHeapObjectFree(reinterpret_cast<UtilHeap>(UINT_PTR{0x1000}), overrun),
              UTIL_HEAP_BAD_OBJECT);
    std::jthread([&] { EXPECT_TRUE(UtilHeapObjectAlloc(heap, 1, 0)) << "no lock is left"; }).join();
    EXPECT_EQ(UtilHeapDelete(other), UTIL_OK);
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

TEST_F(Heaps, ReportWhatIsLeft) {
    const std::wstring longName(40, L'n');
    const UtilHeap heap = UtilHeapCreate(job, longName.c_str(), UTIL_HEAP_DEBUG);
    void* const freed = UtilHeapObjectAlloc(heap, 1, 0);
    char* const left = static_cast<char*>(UtilHeapObjectAlloc(heap, 70, UTIL_HEAP_ZERO));
    std::copy_n("text\x7f\x80 \n", 8, left);
    UtilHeapObjectAlloc(heap, 5, UTIL_HEAP_NEVER_DEBUG);
    UtilHeapObjectFree(heap, freed);
    const clsLog log;
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
    const std::string name = "Heap['M'/'" + std::string(32, 'n') + "']: ";
    const std::string zeroes = "   00 00 00 00 00 00 00 00  ........";
    EXPECT_EQ(Reports(log),
              (Lines{name + "max 3, total 3 allocations",
                     "Warning: deleting heap, but objects are left:", " " + name + "2 objects",
                     " Heap allocation", " -Object at " + Pointer(left) + ", 70(=0x00000046) Bytes",
                     "   74 65 78 74 7f 80 20 0a  text.. .", zeroes, zeroes, zeroes, zeroes, zeroes, zeroes,
                     zeroes, " Memory object allocation"}));
}

TEST_F(Heaps, AreDestroyedWithTheirJobOrSilently) {
    const UtilJob owner = UtilJobOpen(L"O", 0);
    UtilHeapObjectAlloc(UtilHeapCreate(owner, L"1", UTIL_HEAP_SILENT_DELETE), 3, 0);
    const UtilHeap second = UtilHeapCreate(owner, L"2", 0);
    const clsLog log;
    EXPECT_EQ(UtilJobClose(owner), UTIL_HEAPS_LEFT);
    EXPECT_EQ(Reports(log), (Lines{"Error: deleting module 'O', but the following heaps are left:",
                                   " Heap['O'/'1']: 1 objects", " Heap['O'/'1']: max 1, total 1 allocations",
                                   " Heap['O'/'2']: 0 objects"}));
    const clsLog gone;
    EXPECT_EQ(UtilHeapDelete(second), UTIL_HEAP_FAILED);
    EXPECT_EQ(Reports(gone),
              (Lines{"Error: clsModuleNode['(NULL)']::DeleteHeap(" + Pointer(second) + "): Invalid handle"}));
}

TEST_F(Heaps, AreValidatedAndMeasured) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", UTIL_HEAP_DEBUG), plain = UtilHeapCreate(job, L"P", 0);
    char* const object = static_cast<char*>(UtilHeapObjectAlloc(heap, 100, 0));
    EXPECT_EQ(UtilHeapValidate(heap, nullptr, 0), UTIL_OK);
    EXPECT_EQ(UtilHeapValidate(heap, object, 0), UTIL_OK);
    EXPECT_EQ(UtilHeapSize(heap), 132);
    EXPECT_EQ(UtilHeapSizeObjects(heap), 132);
    EXPECT_EQ(UtilHeapSize(plain), UTIL_HEAP_NOT_SUPPORTED);
    EXPECT_EQ(UtilHeapSizeObjects(plain), 0);
    UtilHeapObjectAlloc(heap, 100, 0);
    char* const plainObject = static_cast<char*>(UtilHeapObjectAlloc(plain, 100, 0));
    UtilHeapObjectAlloc(plain, 200, 0);
    EXPECT_EQ(UtilHeapSizeObjects(plain), 204);
    object[100] = 1;
    EXPECT_EQ(UtilHeapValidate(heap, nullptr, 0), UTIL_HEAP_BAD_OBJECT) << "a damaged object in a sound heap";
    EXPECT_EQ(UtilHeapValidate(heap, &job, 0), UTIL_HEAP_BAD_OBJECT);
    std::memset(object + 100, 1, 64); // now the system's own words, too
    const clsLog log;
    EXPECT_EQ(UtilHeapValidate(heap, nullptr, 0), UTIL_HEAP_CORRUPTED);
    EXPECT_EQ(Reports(log).at(0), " Error: Heap corrupted");
    std::memset(plainObject + 100, 1, 64);
    for (const auto& [damaged, call] :
         {std::pair(heap, &UtilHeapSize), {heap, &UtilHeapSizeObjects}, {plain, &UtilHeapSizeObjects}}) {
        const clsLog walk;
        EXPECT_EQ(call(damaged), UTIL_HEAP_CORRUPTED) << "the walk does not meet every object";
        EXPECT_EQ(Reports(walk).at(0), " Error: Heap corrupted");
    }
    UtilHeapObjectAlloc(heap, 100, 0); // whatever the system does now
    UtilHeapObjectFree(heap, object);
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
    EXPECT_EQ(UtilHeapDelete(plain), UTIL_OK);
    for (const auto call : {UtilHeapDelete, UtilHeapSize, UtilHeapSizeObjects})
        EXPECT_EQ(call(nullptr), UTIL_OK);
}

// The services that are looked up by name, in a library that asks for them by names that do not exist.
TEST_F(Heaps, SayWhatTheSystemLacks) {
    const clsTempFolder folder;
    clsCopy::MakeFile(folder / L"copy.dll", {{"\0HeapWalk"sv, "\0HeapWalX"sv},
                                             {"\0HeapValidate"sv, "\0HeapValidatX"sv},
                                             {"\0HeapCompact"sv, "\0HeapCompacX"sv}});
    const clsCopy copy(folder / L"copy.dll");
    const UtilJob own = copy.Find(UtilJobOpen, "UtilJobOpen")(L"M", 0);
    const UtilHeap heap = copy.Find(UtilHeapCreate, "UtilHeapCreate")(own, L"H", UTIL_HEAP_DEBUG);
    const auto allocate = copy.Find(UtilHeapObjectAlloc, "UtilHeapObjectAlloc");
    allocate(heap, 100, 0);
    copy.Find(UtilHeapObjectFree, "UtilHeapObjectFree")(heap, allocate(heap, 7, 0));
    const clsLog log;
    EXPECT_EQ(copy.Find(UtilHeapValidate, "UtilHeapValidate")(heap, nullptr, 0), UTIL_HEAP_NOT_SUPPORTED);
    EXPECT_EQ(copy.Find(UtilHeapShrink, "UtilHeapShrink")(heap, 0), UTIL_HEAP_NOT_SUPPORTED);
    EXPECT_EQ(copy.Find(UtilHeapSizeObjects, "UtilHeapSizeObjects")(heap), UTIL_HEAP_NOT_SUPPORTED);
    EXPECT_EQ(copy.Find(UtilHeapSize, "UtilHeapSize")(heap), 100) << "the counter of payload bytes";
    EXPECT_EQ(Reports(log), (Lines{"Error: UtilHeapValidate(...) does only run under NT",
                                   "Error: UtilHeapShrink(...) does only run under NT",
                                   "Error: UtilHeapSizeObjects(...) does only run under NT"}));
}

TEST_F(Heaps, AreTracedWithTheirJob) {
    const UtilJob traced = UtilJobOpen(L"T", UTIL_JOB_TRACE);
    const clsLog log;
    const UtilHeap heap = UtilHeapCreate(traced, L"H", UTIL_HEAP_DEBUG);
    UtilHeapObjectFree(heap, UtilHeapObjectAlloc(heap, 1, 0));
    UtilHeapValidate(heap, nullptr, 0);
    UtilHeapSizeObjects(heap);
    UtilHeapDelete(heap);
    const std::string names = "(" + Pointer(heap) + ") ['T','H']";
    EXPECT_EQ(Reports(log),
              (Lines{"UtilHeapCreate(" + Pointer(traced) + ",'H',0x40000000)",
                     " T: UtilHeapCreate(..,'H',..) called with DEBUG bit", " ->" + Pointer(heap),
                     "UtilHeapValidate" + names, " ->0", "UtilHeapSizeObjects" + names, " ->0",
                     "UtilHeapDelete" + names, " Heap['T'/'H']: max 1, total 1 allocations", " ->0"}));
    UtilJobClose(traced);
}

constexpr UINT32 constantMark[] = {0, 0, 0xFAAFFAAF, 1}; // in a page that cannot be written

// A page of its own, with unreadable ones around.
struct scPage {
    ~scPage() { VirtualFree(reserved, 0, MEM_RELEASE); }
    char* reserved = static_cast<char*>(VirtualAlloc(nullptr, 0x30000, MEM_RESERVE, PAGE_READWRITE));
    char* start = static_cast<char*>(VirtualAlloc(reserved + 0x10000, 0x1000, MEM_COMMIT, PAGE_READWRITE));
};

// What looks like an object and is none does no harm, nor do sizes and call stacks that lead elsewhere.
TEST_F(Heaps, PassPretenders) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", UTIL_HEAP_DEBUG);
    char* const object = static_cast<char*>(UtilHeapObjectAlloc(heap, 8, 0));
    DWORD before;
    const scPage copied, marked, guarded;
    std::memcpy(copied.start + 8, object - 28, 40);
    VirtualProtect(copied.start, 0x1000, PAGE_READONLY, &before);
    SetWord(marked.start, 0, 0xFAAFFAAF);
    VirtualProtect(guarded.start, 0x1000, PAGE_READWRITE | PAGE_GUARD, &before);
    for (const void* pretender :
         {static_cast<const void*>(constantMark + 3), static_cast<const void*>(copied.start + 36),
          static_cast<const void*>(marked.start + 4), static_cast<const void*>(guarded.start + 64)}) {
        void* const payload = const_cast<void*>(pretender);
        EXPECT_EQ(UtilHeapObjectFree(heap, payload), UTIL_HEAP_BAD_OBJECT);
        EXPECT_LE(UtilHeapObjectSize(heap, payload), 0);
        EXPECT_NE(UtilHeapValidate(heap, payload, 0), UTIL_OK);
    }
    EXPECT_EQ(UtilHeapObjectSize(nullptr, marked.start), UTIL_HEAP_BAD_OBJECT);
    MEMORY_BASIC_INFORMATION page;
    VirtualQuery(guarded.start, &page, sizeof page);
    EXPECT_EQ(page.Protect, DWORD{PAGE_READWRITE | PAGE_GUARD})
        << "it may be what lets a thread's stack grow";
    char* const resized = static_cast<char*>(UtilHeapObjectAlloc(heap, 8, 0));
    const scPage fence; // far beyond it, with nothing between
    SetWord(fence.start, 0, 0xE5E55E5E);
    SetWord(resized, -8, static_cast<UINT32>(fence.start - resized));
    EXPECT_EQ(UtilHeapObjectFree(heap, resized), UTIL_OK) << "the system knows how large it is";
    const UINT32 innocent[] = {1, 2};
    SetWord(object, -16, static_cast<UINT32>(reinterpret_cast<UINT_PTR>(innocent)));
    EXPECT_EQ(UtilHeapObjectFree(heap, object), UTIL_OK);
    EXPECT_EQ(Word(innocent, 4), 2u) << "no call stack, and not to be written to";
    EXPECT_NE(UtilHeapObjectAlloc(heap, 1, 0), nullptr) << "the heap is none the worse";
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

// A system's heap that fails within a call, and one that raises its exception.
DWORD raised; // by the next call
void* WINAPI Raise(HANDLE heap, DWORD flags, SIZE_T bytes) {
    if (const DWORD code = std::exchange(raised, 0))
        RaiseException(code, 0, 0, nullptr);
    return HeapAlloc(heap, flags, bytes);
}

TEST_F(Heaps, LetTheSystemFail) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", 0);
    {
        raised = STATUS_ACCESS_VIOLATION;
        const clsImportHook hook("HeapAlloc", Raise);
        EXPECT_EQ(UtilHeapObjectAlloc(heap, 1, 0), nullptr);
    }
    EXPECT_EQ(UtilHeapObjectAlloc(heap, 1, 0), nullptr) << "it is not entered again";
    std::jthread([] { EXPECT_EQ(UtilJobClose(UtilJobOpen(L"free", 0)), UTIL_OK); }).join();
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

// The first one is raised within the call and the library's to catch; the second one is the caller's.
int exceptions = 0;
LONG CALLBACK TakeSecond(EXCEPTION_POINTERS* pointers) {
    if (pointers->ExceptionRecord->ExceptionCode != static_cast<DWORD>(STATUS_NO_MEMORY) || ++exceptions == 1)
        return EXCEPTION_CONTINUE_SEARCH;
    std::thread([] { EXPECT_EQ(UtilJobClose(UtilJobOpen(L"free", 0)), UTIL_OK); }).join();
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST_F(Heaps, PassTheSystemsExceptionOnWithTheLockReleased) {
    const UtilHeap heap = UtilHeapCreate(job, L"H", UTIL_HEAP_EXCEPTIONS);
    void* const handler = AddVectoredExceptionHandler(1, TakeSecond);
    {
        raised = static_cast<DWORD>(STATUS_NO_MEMORY);
        const clsImportHook hook("HeapAlloc", Raise);
        EXPECT_EQ(UtilHeapObjectAlloc(heap, 1, 0), nullptr);
    }
    EXPECT_EQ(exceptions, 2);
    EXPECT_EQ(UtilHeapObjectAlloc(heap, -1, 0), nullptr);
    EXPECT_EQ(exceptions, 3) << "a size that the system does not see";
    RemoveVectoredExceptionHandler(handler);
    EXPECT_NE(UtilHeapObjectAlloc(heap, 1, 0), nullptr) << "the heap is none the worse";
    EXPECT_EQ(UtilHeapDelete(heap), UTIL_OK);
}

// Everything at once, in an order that is the same every time; the counts come out even.
TEST_F(Heaps, SurviveManyThreads) {
    const UtilHeap shared = UtilHeapCreate(job, L"shared", UTIL_HEAP_DEBUG);
    const auto work = [&](unsigned seed) {
        std::mt19937 random(seed);
        std::vector<void*> objects;
        for (int i = 0; i < 4000; ++i)
            if (random() % 2 || objects.empty())
                objects.push_back(UtilHeapObjectAlloc(shared, static_cast<INT>(random() % 300),
                                                      random() % 2 ? UTIL_HEAP_NEVER_DEBUG : UTIL_HEAP_ZERO));
            else {
                std::swap(objects[random() % objects.size()], objects.back());
                EXPECT_EQ(UtilHeapObjectFree(shared, objects.back()), UTIL_OK);
                objects.pop_back();
            }
        for (void* const object : objects)
            EXPECT_EQ(UtilHeapObjectFree(shared, object), UTIL_OK);
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned t = 0; t < 4; ++t)
            threads.emplace_back(work, t);
    }
    EXPECT_EQ(UtilHeapValidate(shared, nullptr, 0), UTIL_OK);
    EXPECT_EQ(UtilHeapSizeObjects(shared), 0);
    const clsLog log;
    EXPECT_EQ(UtilHeapDelete(shared), UTIL_OK);
    EXPECT_EQ(Reports(log).size(), 1u) << "nothing is left";
}

} // namespace
} // namespace testing_prof
