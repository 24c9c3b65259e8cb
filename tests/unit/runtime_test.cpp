// The registry of jobs, a line's stamp, which frames are a caller's. What lines hold otherwise:
// fuzz/diagnostic_lines.cpp.
#include "runtime/diagnostic_group.h"
#include "runtime/frame_kinds.h"
#include "runtime/line_stamp.h"
#include "runtime/module_list.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

namespace tvut {
namespace {

using Lines = std::vector<std::u16string>;

TEST(LineStamp, HasItsForms) {
    scLineStamp stamp;
    stamp.hour = 3, stamp.minute = 4, stamp.second = 5, stamp.millisecond = 6;
    stamp.thread = 0xABC, stamp.processor = 0x11, stamp.lineNumber = 4294967295u;
    clsDiagnosticLine line;
    UtilpPutStamp(line, u"MOD", stamp);
    EXPECT_EQ(line.View(), u"MOD     : 03:04:05.006 00000abc/11 5  ");
    EXPECT_EQ(UtilpShownLevel(INT32_MIN), 0u);
    EXPECT_EQ(UtilpShownLevel(INT32_MAX), 50u);
}

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
              (Lines{u"host    :Error: deleting module 'job', but the following heaps are left:\n",
                     u"host    : heaps of job\n"}));
}

} // namespace
} // namespace tvut
