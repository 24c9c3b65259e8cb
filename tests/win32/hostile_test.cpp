// Inputs and arguments that nobody writes by accident: very deep, very long, very many.
#include "support/files.h"
#include "support/text_calls.h"

namespace testing_prof {
namespace {

template <class F>
class Hostile : public ::testing::Test {};
TYPED_TEST_SUITE(Hostile, BothForms, FormNames);

Bytes nested(size_t depth) {
    Bytes text = "[/]\n{\n";
    for (size_t i = 0; i < depth; ++i)
        text += "[n]\n{\n";
    text += "bottom=1\n";
    for (size_t i = 0; i < depth; ++i)
        text += "}\n";
    return text + "}\n";
}

/// Follows the first list of each list down; what an iterative reader of the tree does.
BOOL TVUT22_CALL takeFirstList(ProfJob, const wchar_t*, const wchar_t*, ProfList subList, UINT_PTR user) {
    *reinterpret_cast<ProfList*>(user) = subList;
    return FALSE;
}

ProfList bottomOf(ProfJob job, size_t& depth) {
    ProfList list = 0, next = 0;
    for (depth = 0; ProfEnumW(job, list, takeFirstList, reinterpret_cast<UINT_PTR>(&next)), next; ++depth)
        list = std::exchange(next, nullptr);
    return list;
}

TEST(Deep, AMillionNestedListsAreLoadedCopiedWalkedAndDeleted) {
    constexpr size_t kDepth = 1000000;
    Job job = opened(nested(kDepth));
    ASSERT_EQ(job.error(), PROF_OK);
    size_t depth = 0;
    const ProfList bottom = bottomOf(job, depth);
    EXPECT_EQ(depth, kDepth);
    EXPECT_EQ(textOf(job, L"bottom", bottom), L"1");
    EXPECT_EQ(ProfGetListW(job, bottom, nullptr), bottom);
    EXPECT_TRUE(ProfGetListW(job, bottom, L".."));
    {
        Job copy;
        EXPECT_EQ(ProfCopyList(copy, 0, job, 0), PROF_OK);
        bottomOf(copy, depth);
        EXPECT_EQ(depth, kDepth);
        ProfDeleteListW(copy, bottomOf(copy, depth), nullptr);
        bottomOf(copy, depth);
        EXPECT_EQ(depth, kDepth - 1);
        ProfDeleteListW(copy, 0, L"n");
        EXPECT_EQ(describe(copy), L"");
    }
    const TempFolder folder;
    EXPECT_EQ(ProfSaveW(job, (folder / L"deep.prf").c_str(), PROF_FORM_TEXT), PROF_SAVE_FAILED);
    EXPECT_EQ(ProfSaveW(job, (folder / L"deep.prf").c_str(), PROF_SAVE_COMPRESSED), PROF_SAVE_FAILED);
    EXPECT_EQ(folder.count(), 0);
    PieceStream stream("before");
    EXPECT_EQ(ProfSaveToStream(job, &stream, PROF_FORM_TEXT), PROF_SAVE_FAILED);
    EXPECT_EQ(stream.data, "before");
    ProfEmptyList(job, 0);
    EXPECT_EQ(describe(job), L"");
    const Job closed = opened(nested(kDepth), PROF_FORM_TEXT, 1 << 16); // freed by closing alone
    EXPECT_EQ(closed.error(), PROF_OK);
}

TEST(Deep, AMillionSectionsNestToo) {
    Bytes text;
    for (int i = 0; i < 1000000; ++i)
        text += "[s]\n";
    size_t depth = 0;
    const Job job = opened(text);
    bottomOf(job, depth);
    EXPECT_EQ(depth, 999999u) << "the first header is skipped";
    const Job flat = opened(text, PROF_READ_PLAIN_INI);
    bottomOf(flat, depth);
    EXPECT_EQ(depth, 1u);
}

TEST(Deep, FiveThousandNestedListsAreSavedAndReloaded) {
    const Job job = opened(nested(5000));
    const Bytes bytes = saved(job);
    ASSERT_FALSE(bytes.empty());
    for (const UINT flags : {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED}) {
        size_t depth = 0;
        const Job again = opened(saved(job, flags));
        EXPECT_EQ(textOf(again, L"bottom", bottomOf(again, depth)), L"1");
        EXPECT_EQ(depth, 5000u);
        EXPECT_EQ(saved(again), bytes);
    }
}

BOOL TVUT22_CALL countEntries(ProfJob, const wchar_t*, const wchar_t*, ProfList, UINT_PTR user) {
    ++*reinterpret_cast<size_t*>(user);
    return TRUE;
}

size_t entriesOf(ProfJob job) {
    size_t entries = 0;
    EXPECT_TRUE(ProfEnumW(job, 0, countEntries, reinterpret_cast<UINT_PTR>(&entries)));
    return entries;
}

TEST(Long, ThreeMillionItemsInOneList) {
    constexpr int kItems = 3000000;
    const TempFolder folder;
    const std::wstring path = folder / L"long.prf";
    {
        Bytes text = "[/]\n{\n";
        for (int i = 0; i < kItems; ++i)
            text.append("i").append(std::to_string(i)).append("=v\n");
        writeFile(path, text);
    }
    const auto nameOf = [](int i) { return L"i" + std::to_wstring(i); };
    {
        const Job job(ProfJobOpenW(path.c_str()));
        EXPECT_EQ(entriesOf(job), static_cast<size_t>(kItems));
        for (const int i : {0, 1, kItems / 2, kItems - 1})
            EXPECT_EQ(textOf(job, nameOf(i).c_str()), L"v");
        EXPECT_EQ(textOf(job, nameOf(kItems).c_str()), L"<none>");
        ProfSetStringW(job, 0, nameOf(kItems - 1).c_str(), L"last");
        ProfSetStringW(job, 0, nameOf(kItems).c_str(), L"new");
        ProfDeleteItemW(job, 0, nameOf(0).c_str());
        EXPECT_EQ(ProfSaveW(job, nullptr, PROF_FORM_TEXT), PROF_OK);
    }
    const Job again(ProfJobOpenW(path.c_str()));
    EXPECT_EQ(entriesOf(again), static_cast<size_t>(kItems));
    EXPECT_EQ(textOf(again, nameOf(kItems - 1).c_str()), L"last");
    EXPECT_EQ(textOf(again, nameOf(kItems).c_str()), L"new");
    Job copy;
    EXPECT_EQ(ProfCopyList(copy, 0, again, 0), PROF_OK);
    EXPECT_EQ(entriesOf(copy), static_cast<size_t>(kItems));
    ProfEmptyList(copy, 0);
    EXPECT_EQ(entriesOf(copy), 0u);
}

TYPED_TEST(Hostile, EveryTextArgumentTakesEveryText) {
    using Char = typename TypeParam::Char;
    // Raw character sequences: for the A form also bytes that are no text in its code page.
    std::basic_string<Char> texts[] = {
        {},
        in<Char>(L"\x65E5\x672C \x0416\x0436 \x0130\x0131 \xDF"),
        std::basic_string<Char>(100000, Char{'x'}),
        std::basic_string<Char>(100000, Char{'/'}),
        in<Char>(std::wstring(300, L'a') + L"/" + std::wstring(300, L'b') + L"/c"),
        {Char(0xD800), Char('a'), Char(0xDC00), Char(0xD83D), Char(0xDE00), Char(0xFFFF)},
        {Char(0x81), Char('/'), Char(0xE0), Char(0xFF), Char(0xF0), Char(0x9F)},
        {Char('('), Char('1'), Char(','), Char(0xDFFF)},
        std::basic_string<Char>(100000, Char(0xD83D)),
    };
    for (const UINT codePage : {1252u, 932u, static_cast<UINT>(CP_UTF8)}) {
        const CodePage set(codePage);
        const Job job(L"first=goes with DeleteList of null;keep=1;");
        const Job next(L"other=1;");
        for (const TextCall<TypeParam>& call : textCalls<TypeParam>()) {
            call.run(job, nullptr);
            call.run(0, texts[1].c_str());
            for (const auto& text : texts)
                call.run(job, text.c_str());
            EXPECT_EQ(textOf(job, L"keep"), L"1") << call.name;
        }
        EXPECT_EQ(describe(next), L"other=1;");
        EXPECT_EQ(opened(saved(job)).error(), PROF_OK);
    }
    EXPECT_EQ(TypeParam::save(Job(), texts[2].c_str(), 0), PROF_SAVE_FAILED);
    EXPECT_EQ(Job(TypeParam::openExclusive(texts[3].c_str())).error(), PROF_OPEN_FAILED);
}

TYPED_TEST(Hostile, StoredTextsComeBackWhole) {
    using Char = typename TypeParam::Char;
    const CodePage set(CP_UTF8);
    const std::wstring whole = std::wstring(100000, L'\x20AC') + L"\xD83D\xDE00";
    const Job job;
    TypeParam::setString(job, 0, in<Char>(whole).c_str(), in<Char>(whole).c_str());
    EXPECT_EQ(describe(job), whole + L"=" + whole + L";");
    EXPECT_EQ(TypeParam::getStringLength(job, 0, in<Char>(whole).c_str()), static_cast<INT>(whole.size()));
    EXPECT_EQ(describe(opened(saved(job))), describe(job));
}

} // namespace
} // namespace testing_prof
