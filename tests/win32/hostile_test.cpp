// Inputs and arguments that nobody writes by accident: very long, very many. A million lists in each other
// are a unit test of the tree.
#include "support/files.h"
#include "support/text_calls.h"

#include <csetjmp>

namespace testing_prof {
namespace {

template <class F>
using Hostile = InBothForms<F>;
TYPED_TEST_SUITE(Hostile, BothForms, scFormNames);

BOOL TVUT22_CALL CountEntries(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR user) {
    ++*reinterpret_cast<int*>(user);
    return TRUE;
}

int EntriesOf(ProfJob job) {
    int entries = 0;
    EXPECT_TRUE(ProfEnumW(job, 0, CountEntries, reinterpret_cast<UINT_PTR>(&entries)));
    return entries;
}

// Each way of deleting takes a moment, unless one deletion costs more the longer the list is.
TEST(Long, ADeletionCostsTheSameInAnyList) {
    constexpr int nameCount = 100000;
    const auto nameOf = [](int i) { return L"n" + std::to_wstring(i % nameCount); };
    const clsJob items, lists, first, afterLists;
    std::vector<ProfList> handles;
    for (int i = 0; i < 2 * nameCount; ++i) {
        ProfAppendStringW(items, 0, nameOf(i).c_str(), L"");
        handles.push_back(ProfAppendListW(lists, 0, nameOf(i).c_str()));
        ProfAppendStringW(first, 0, nameOf(i).c_str(), L"");
        ProfAppendListW(afterLists, 0, L"empty");
    }
    EXPECT_EQ(ProfGetListW(lists, 0, L"n1"), handles[1]); // an index, if there is one, is filled
    for (int i = 0; i < 2 * nameCount; ++i) {
        ProfDeleteItemW(items, 0, nameOf(i).c_str());
        ProfDeleteListW(lists, handles[static_cast<size_t>(i)], nullptr);
        ProfDeleteListW(first, 0, nullptr);
        ProfAppendStringW(afterLists, 0, L"n", L"");
        ProfDeleteListW(afterLists, 0, nullptr);
    }
    for (const clsJob* job : {&items, &lists, &first})
        EXPECT_EQ(Describe(*job), L"");
    EXPECT_EQ(EntriesOf(afterLists), 2 * nameCount);
}

std::jmp_buf afterTheWalk;

BOOL TVUT22_CALL Leave(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR) {
    std::longjmp(afterTheWalk, 1);
}

[[gnu::noinline]] void BeginAWalk(ProfJob job, ProfList list) {
    if (!setjmp(afterTheWalk))
        ProfEnumW(job, list, Leave, 0);
}

// Puts what a walk would hold where the frames of the abandoned one stood.
[[gnu::noinline]] bool DeleteOverDeadFrames(ProfJob job, ProfList list) {
    volatile ProfList frames[4096];
    for (auto& word : frames)
        word = list;
    ProfDeleteListW(job, list, nullptr);
    return std::all_of(std::begin(frames), std::end(frames), [=](ProfList word) { return word == list; });
}

TEST(Callbacks, ThatNeverReturnLeaveNothingInTheirFrames) {
    const clsJob job(L"L{a=1;}k=1;");
    const ProfList list = ProfGetListW(job, 0, L"L");
    BeginAWalk(job, list);
    BeginAWalk(job, 0);
    EXPECT_TRUE(DeleteOverDeadFrames(job, list));
    EXPECT_EQ(Describe(job), L"k=1;");
}

TYPED_TEST(Hostile, EveryTextArgumentTakesEveryText) {
    using Char = typename TypeParam::Char;
    // Raw character sequences: for the A form also bytes that are no text in its code page.
    std::basic_string<Char> texts[] = {
        {},
        In<Char>(L"\x65E5\x672C \x0416\x0436 \x0130\x0131 \xDF"),
        std::basic_string<Char>(100000, Char{'x'}),
        std::basic_string<Char>(100000, Char{'/'}),
        In<Char>(std::wstring(300, L'a') + L"/" + std::wstring(300, L'b') + L"/c"),
        {Char(0xD800), Char('a'), Char(0xDC00), Char(0xD83D), Char(0xDE00), Char(0xFFFF)},
        {Char(0x81), Char('/'), Char(0xE0), Char(0xFF), Char(0xF0), Char(0x9F)},
        {Char('('), Char('1'), Char(','), Char(0xDFFF)},
        std::basic_string<Char>(100000, Char(0xD83D))};
    for (const UINT codePage : {1252u, 932u, static_cast<UINT>(CP_UTF8)}) {
        const clsCodePage set(codePage);
        const clsJob job(L"first=goes with DeleteList of null;keep=1;");
        const clsJob next(L"other=1;");
        for (const scTextCall<TypeParam>& call : TextCalls<TypeParam>()) {
            call.run(job, nullptr);
            call.run(0, texts[1].c_str());
            for (const auto& text : texts)
                call.run(job, text.c_str());
            EXPECT_EQ(TextOf(job, L"keep"), L"1") << call.name;
        }
        EXPECT_EQ(Describe(next), L"other=1;");
        EXPECT_EQ(Opened(Saved(job)).Error(), PROF_OK);
    }
    EXPECT_EQ(TypeParam::save(clsJob(), texts[2].c_str(), 0), PROF_SAVE_FAILED);
    EXPECT_EQ(clsJob(TypeParam::openExclusive(texts[3].c_str())).Error(), PROF_OPEN_FAILED);
}

TYPED_TEST(Hostile, StoredTextsComeBackWhole) {
    using Char = typename TypeParam::Char;
    const clsCodePage set(CP_UTF8);
    const std::wstring whole = std::wstring(100000, L'\x20AC') + L"\xD83D\xDE00";
    const clsJob job;
    TypeParam::setString(job, 0, In<Char>(whole).c_str(), In<Char>(whole).c_str());
    EXPECT_EQ(Describe(job), whole + L"=" + whole + L";");
    EXPECT_EQ(TypeParam::getStringLength(job, 0, In<Char>(whole).c_str()), static_cast<INT>(whole.size()));
    EXPECT_EQ(Describe(Opened(Saved(job))), Describe(job));
}

} // namespace
} // namespace testing_prof
