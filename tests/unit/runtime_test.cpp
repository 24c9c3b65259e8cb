// The parts of the runtime that need no Windows: building lines, groups of lines, the registry of jobs.
#include "runtime/diagnostic_group.h"
#include "runtime/line_stamp.h"
#include "runtime/module_list.h"
#include "unit/native_platform.h"

#include <gtest/gtest.h>

namespace tvut {
namespace {

using Lines = std::vector<std::u16string>;

TEST(DiagnosticLine, PrintsNumbersAsTheRuntimeLibraryDoes) {
    clsDiagnosticLine line;
    line.Put(0).Put(u" ").Put(-1).Put(u" ").Put(INT32_MIN).Put(u" ").Put(INT32_MAX);
    EXPECT_EQ(line.View(), u"0 -1 -2147483648 2147483647");
    line.Clear();
    line.PutDecimal(7, 3).Put(u" ").PutDecimal(4294967295u, 2).Put(u" ").PutHex(0xBEEF, 8);
    EXPECT_EQ(line.View(), u"007 4294967295 0000beef");
    line.Clear();
    line.PutPointer(reinterpret_cast<void*>(std::uintptr_t{0x12AB})).Put(u" ").PutPointer(nullptr);
    EXPECT_EQ(line.View(), u"0X000012AB 00000000");
    line.Clear();
    line.PutPadded(u"ab", 4).Put(u"|").PutPadded(u"abcde", 4).Put(u"|");
    EXPECT_EQ(line.View(), u"ab  |abcde|");
}

TEST(DiagnosticLine, IsCutAtItsEnd) {
    clsDiagnosticLine line;
    const std::u16string most(1024, u'x');
    line.Put(most).Put(u"yz").PutBlanks(5).Put(12).PutPadded(u"", 9);
    EXPECT_EQ(line.View(), most + u"y");
}

TEST(LineStamp, HasItsForms) {
    scLineStamp stamp;
    stamp.hour = 3, stamp.minute = 4, stamp.second = 5, stamp.millisecond = 6;
    stamp.thread = 0xABC, stamp.processor = 0x11, stamp.lineNumber = 4294967295u;
    const auto text = [&](std::u16string_view tag) {
        clsDiagnosticLine line;
        UtilpPutStamp(line, tag, stamp);
        return std::u16string(line.View());
    };
    EXPECT_EQ(text(u""), u"03:04:05.006 00000abc/11 5  ");
    EXPECT_EQ(text(u"MOD"), u"MOD     : 03:04:05.006 00000abc/11 5  ");
    EXPECT_EQ(text(u"LONGERTAG"), u"LONGERTAG: 03:04:05.006 00000abc/11 5  ");
    stamp.sinceStart = true, stamp.level = 2, stamp.lineNumber = 0;
    EXPECT_EQ(text(u""), u"04:05.006 00000abc/11 0    ");

    EXPECT_EQ(UtilpShownLevel(INT32_MIN), 0u);
    EXPECT_EQ(UtilpShownLevel(50), 50u);
    EXPECT_EQ(UtilpShownLevel(INT32_MAX), 50u);
}

TEST(DiagnosticGroup, IndentsWhatItHolds) {
    DiagnosticLines().clear();
    {
        const clsDiagnosticGroup outer(true, clsDiagnosticLine().Put(u"outer"));
        const clsDiagnosticGroup unwanted(false, clsDiagnosticLine().Put(u"unwanted"));
        {
            const clsDiagnosticGroup inner(true, clsDiagnosticLine().Put(u"inner"));
            inner.Line(clsDiagnosticLine().Put(u"detail"));
        }
        unwanted.Line(clsDiagnosticLine().Put(u"unwanted"));
        outer.Line(clsDiagnosticLine().Put(u"->0"));
    }
    UtilpReport(clsDiagnosticLine().Put(u"after"));
    EXPECT_EQ(DiagnosticLines(), (Lines{u"host    :outer\n", u"host    : inner\n", u"host    :  detail\n",
                                        u"host    : ->0\n", u"host    :after\n"}));
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
            EXPECT_EQ(jobs.Close(all[i]), i != first ? JobResult::success : JobResult::badHandle);
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
