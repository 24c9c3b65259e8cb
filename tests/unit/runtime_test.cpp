// The registry of jobs, the frames of a stack, and which of them are a caller's.
#include "runtime/diagnostic_group.h"
#include "runtime/frame_chain.h"
#include "runtime/frame_kinds.h"
#include "runtime/module_list.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

#include <random>

namespace tvut {
namespace {

// A letter a frame, the top first: Caller, Main, Library, System. Brackets hold the callers'.
TEST(Frames, OfCallersAreFound) {
    for (const std::string expected : {"", "[LLS]", "[S]", "L[C]", "LL[CLCM]CSS", "L[CSCC]SS", "[C]LSS",
                                       "L[SC]L", "[CM]CSS", "L[CMCM]LC"}) {
        std::vector<FrameKind> kinds;
        for (const char letter : expected)
            if (const auto kind = std::string_view("CMLS").find(letter); kind != std::string_view::npos)
                kinds.push_back(static_cast<FrameKind>(kind));
        const scFrameRange callers = UtilpFramesOfCallers(kinds);
        EXPECT_EQ(callers.first, std::min(expected.find('['), kinds.size())) << expected;
        EXPECT_EQ(callers.end + 1, std::min(expected.find(']'), kinds.size() + 1)) << expected;
    }
}

std::vector<const void*> WalkPlainly(const scFrameLink* frame, const scFrameLink* stackEnd) {
    std::vector<const void*> addresses;
    for (const scFrameLink* below = nullptr;
         addresses.size() != clsFrameChain::most && frame > below && frame < stackEnd; frame = below->next) {
        addresses.push_back(frame->returnsTo);
        below = frame;
    }
    return addresses;
}

// Calls and returns at random, of which some leave other addresses or a damaged chain, on two stacks of which
// some have shrunk.
TEST(Frames, AreWalkedAsIfForTheFirstTime) {
    std::mt19937 random(1);
    std::array<scFrameLink, 200> memory{};
    clsFrameChain chain;
    for (int round = 0; round < 20'000; ++round) {
        const std::size_t stackBegin = round % 16 == 0 ? 100 : 0;
        const std::size_t stackEnd = stackBegin + 100 - random() % 10;
        const std::size_t first = stackBegin + random() % 90;
        const auto change = [&](std::size_t at) {
            const std::size_t next = random() % 20 == 0 ? random() % memory.size() : at + 1 + random() % 3;
            memory[at] = {next < stackEnd ? &memory[next] : nullptr, &memory[random() % 50]};
        };
        for (std::size_t at = first; at < std::min(first + random() % 8, stackEnd); ++at)
            change(at);
        if (random() % 8 == 0)
            change(first + random() % (stackEnd - first));
        std::vector<const void*> addresses;
        for (const scFrameLink& link : chain.Walk(&memory[first], memory.data() + stackEnd))
            addresses.push_back(link.returnsTo);
        ASSERT_EQ(addresses, WalkPlainly(&memory[first], memory.data() + stackEnd));
    }
}

class ModuleList : public testing::Test {
  protected:
    static void destroyHeaps(clsModuleNode& job) {
        UtilpReport(clsDiagnosticLine().Put(u"heaps of ").Put(job.Name()));
        job.firstHeap = job.lastHeap = nullptr;
    }
    clsModuleList jobs{destroyHeaps};
};

TEST_F(ModuleList, FindsJobsByTheirWholeName) {
    const std::u16string longest(clsModuleNode::longestName, u'n');
    clsModuleNode* const a = jobs.Open(u"Abc", clsModuleNode::traceFlag);
    clsModuleNode* const lower = jobs.Open(u"abc", 0);
    clsModuleNode* const cut = jobs.Open(longest + u"X", 0);
    clsModuleNode* const cutToo = jobs.Open(longest + u"X", 0);
    EXPECT_NE(a, lower);
    EXPECT_NE(cut, cutToo);
    EXPECT_EQ(cut->Name(), longest);
    EXPECT_EQ(jobs.Open(longest, 0), cut);
    EXPECT_EQ(jobs.Open(u"Abc", 0), a);
    EXPECT_TRUE(a->Traced()) << "the first open's flags hold";
    EXPECT_TRUE(a->creation);
    EXPECT_FALSE(lower->creation);

    for (clsModuleNode* const job : {a, a, cut, cut, cutToo, lower})
        EXPECT_EQ(jobs.Close(job), JobResult::success);
    DiagnosticLines().clear();
    EXPECT_EQ(jobs.Close(a), JobResult::badHandle) << "its memory is not touched";
    EXPECT_EQ(DiagnosticLines().size(), 2u);
}

// Whatever is taken out, the rest can still be found.
TEST_F(ModuleList, StaysLinked) {
    for (int first = 0; first < 3; ++first) {
        clsModuleNode* const all[] = {jobs.Open(u"0", 0), jobs.Open(u"1", 0), jobs.Open(u"2", 0)};
        jobs.Close(all[first]);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(jobs.Holds(all[i]), i != first);
        clsModuleNode* const added = jobs.Open(u"3", 0);
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(i == first || jobs.Close(all[i]) == JobResult::success);
        EXPECT_EQ(jobs.Close(added), JobResult::success);
    }
}

TEST_F(ModuleList, HandsLeftHeapsOver) {
    clsModuleNode* const job = jobs.Open(u"job", 0);
    jobs.Open(u"job", 0);
    job->firstHeap = job->lastHeap = reinterpret_cast<clsHeapNode*>(job); // any but null
    DiagnosticLines().clear();
    EXPECT_EQ(jobs.Close(job), JobResult::success) << "a reference is left";
    EXPECT_EQ(jobs.Close(job), JobResult::heapsLeft);
    EXPECT_EQ(DiagnosticLines(),
              (std::vector<std::u16string>{
                  u"host    :Error: deleting module 'job', but the following heaps are left:\n",
                  u"host    : heaps of job\n"}));
}

} // namespace
} // namespace tvut
