// Memory: reading needs none; when there is none, every call fails cleanly and changes nothing.
#include "support/child.h"
#include "support/counted_allocations.h"
#include "support/text_calls.h"

namespace testing_prof {
namespace {

template <class F>
using Memory = InBothForms<F>;
TYPED_TEST_SUITE(Memory, BothForms, scFormNames);

TYPED_TEST(Memory, NoGetAllocates) {
    using F = TypeParam;
    using Char = typename F::Char;
    const clsJob job(L"L{b=TRUE;i=12;h=x0C;d=1.5;p=(1,2);r=(1,2,3,4);s=text;}");
    for (int i = 0; i < 2000; ++i) // long enough for whatever makes long lists fast
        ProfAppendIntW(job, 0, (L"long/i" + std::to_wstring(i)).c_str(), i);
    const std::basic_string<Char> large(100000, Char{'v'});
    const auto at = [](const wchar_t* path) { return In<Char>(path); };
    const auto b = at(L"L/b"), i = at(L"/L/i"), h = at(L"L/h"), d = at(L"L/d"), p = at(L"L/p"),
               r = at(L"L/r"), s = at(L"L/s"), distant = at(L"long/i1999"), none = at(L"long/none");
    Char buffer[20];
    int counted = 0, results = 0;
    const auto read = [&](auto get, const auto& path, auto out, auto fallback) {
        results |= get(job, 0, path.c_str(), &out, fallback);
    };
    {
        const clsCountedAllocations counter;
        read(F::getBool, b, BOOL{}, 0);
        for (const auto* path : {&i, &h, &distant})
            read(F::getInt, *path, INT{}, 0);
        read(F::getInt64, i, INT64{}, 0);
        read(F::getDouble, d, double{}, 0);
        read(F::getPoint, p, POINT{}, nullptr);
        read(F::getRect, r, RECT{}, nullptr);
        read(F::getRectLTWH, r, RECT{}, nullptr);
        read(F::getColorref, r, COLORREF{}, 0);
        results |= F::getString(job, 0, s.c_str(), buffer, 20, none.c_str()) ^ 4;
        results |= F::getString(job, 0, none.c_str(), buffer, 20, s.c_str()) ^ PROF_NOT_FOUND;
        results |= F::getStringLength(job, 0, s.c_str()) ^ 4;
        results |= F::getList(job, 0, s.c_str()) != nullptr;
        counted = clsCountedAllocations::count;
        F::appendString(job, 0, none.c_str(), large.c_str());
        EXPECT_GT(clsCountedAllocations::count, counted)
            << "the count does not see the library's allocations";
    }
    EXPECT_EQ(results, 0);
    EXPECT_EQ(counted, 0);
}

// The work may do without an allocation, but then its result must be right.
template <class Work, class Check>
void FailEveryAllocation(Work work, Check check) {
    int failures = 0;
    bool succeeded = false;
    FailEachAllocation([&] { succeeded = work(); },
                       [&](bool failed) {
                           EXPECT_TRUE(succeeded || failed) << "failed without need";
                           failures += !succeeded;
                           if (succeeded)
                               check();
                       });
    EXPECT_GT(failures, 0);
}

// Edits a tree, made anew each time, and hands each job to the check.
template <class Edit, class Check>
void FailEveryEdit(std::wstring_view tree, Edit edit, Check check) {
    clsJob job(tree);
    FailEachAllocation([&] { edit(job); },
                       [&](bool failed) {
                           check(job, failed);
                           job = clsJob(tree);
                       });
}

TYPED_TEST(Memory, FailingForBytesAndFilesLeavesNothingHalf) {
    using F = TypeParam;
    using Char = typename F::Char;
    const clsTempFolder folder;
    const Bytes bytes(200000, 'b');
    WriteBytes(folder / L"one", bytes);
    WriteBytes(folder / L"two", "2");
    const auto name = In<Char>(L"b"), key = In<Char>(L"key"), one = In<Char>(folder / L"one"),
               all = In<Char>(folder / L"*"), out = In<Char>(folder / L"out"),
               made = In<Char>(folder / L"out\\made");
    // What is there after a failure is the beginning of what would have been there, in whole entries.
    const auto appends = [&](auto append) {
        clsJob whole(L"a=1;");
        append(whole);
        const std::wstring expected = Describe(whole);
        FailEveryEdit(L"a=1;", append, [&](ProfJob job, bool failed) {
            EXPECT_TRUE(failed ? expected.starts_with(Describe(job)) : expected == Describe(job))
                << Describe(job);
        });
        return whole;
    };
    clsPieceStream stream(bytes);
    const clsJob streams =
        appends([&](ProfJob job) { F::appendStream(job, 0, name.c_str(), key.c_str(), &stream); });
    appends([&](ProfJob job) { F::appendFile(job, 0, name.c_str(), key.c_str(), one.c_str()); });
    const clsJob files = appends([&](ProfJob job) { F::appendFiles(job, 0, all.c_str(), key.c_str()); });
    std::filesystem::create_directory(folder / L"out");
    clsPieceStream target;
    FailEveryAllocation(
        [&] { return F::getStream(streams, 0, name.c_str(), key.c_str(), &target) == PROF_OK; },
        [&] { EXPECT_TRUE(target.data == bytes); });
    const auto writes = [&](auto write) {
        FailEveryAllocation(
            [&] {
                const bool done = write() == PROF_OK;
                for (const auto& entry : std::filesystem::directory_iterator(folder / L"out"))
                    EXPECT_TRUE(entry.file_size() == bytes.size() || entry.file_size() == 1) << entry.path();
                return done;
            },
            [] {});
    };
    writes([&] { return F::getFile(streams, 0, name.c_str(), key.c_str(), made.c_str()); });
    writes([&] { return F::extractFiles(files, 0, out.c_str(), key.c_str()); });
    EXPECT_TRUE(ReadBytes(folder / L"out\\one") == bytes && ReadBytes(folder / L"out\\made") == bytes);
}

TEST(FailingAllocation, LeavesNoPartOfAVariantOrOfTheClipboard) {
    VARIANT text, value, out;
    V_VT(&text) = VT_BSTR;
    V_BSTR(&text) = SysAllocStringByteLen(Bytes(300, 't').c_str(), 300);
    SAFEARRAYBOUND bounds{2, 0};
    V_VT(&value) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&value) = SafeArrayCreate(VT_VARIANT, 1, &bounds);
    for (LONG i = 0; i < 2; ++i)
        SafeArrayPutElement(V_ARRAY(&value), &i, &text);
    clsJob job;
    FailEveryEdit(
        L"v=old;", [&](ProfJob edited) { ProfSetVariant(edited, 0, L"v", &value); },
        [&](ProfJob edited, bool failed) { EXPECT_EQ(TextOf(edited, L"v") == L"old", failed); });
    ProfSetVariant(job, 0, L"v", &value);
    FailEveryAllocation(
        [&] {
            const INT result = ProfGetVariant(job, 0, L"v", &out);
            EXPECT_EQ(V_VT(&out), result == PROF_OK ? VT_ARRAY | VT_VARIANT : VT_EMPTY);
            return result == PROF_OK;
        },
        [&] {
            ProfAppendVariant(job, 0, L"again", &out);
            EXPECT_EQ(TextOf(job, L"again"), TextOf(job, L"v"));
        });
    for (VARIANT* variant : {&text, &value, &out})
        VariantClear(variant);
    FailEveryAllocation([&] { return ProfSaveToClipboard(job, nullptr, 0) == PROF_OK; }, [] {});
    clsJob pasted;
    FailEveryAllocation(
        [&] {
            pasted = clsJob(ProfJobOpenClipboard(nullptr));
            return pasted && ProfGetError(pasted) == PROF_OK;
        },
        [&] { EXPECT_EQ(Describe(pasted), Describe(job)); });
}

TYPED_TEST(Memory, AFailedEditChangesNothing) {
    using Char = typename TypeParam::Char;
    const std::wstring tree = L"a=1;L{b=2;M{c=3;}}d=;";
    const auto name = In<Char>(L"new"), path = In<Char>(L"L/M");
    const std::basic_string<Char> large(100000, Char{'v'});
    const auto fails = [&](const char* what, auto edit) {
        FailEveryEdit(tree, edit, [&](ProfJob job, bool failed) {
            if (failed) {
                EXPECT_EQ(Describe(job), tree) << what;
            }
        });
    };
    fails("append", [&](ProfJob job) { TypeParam::appendString(job, 0, name.c_str(), large.c_str()); });
    fails("set", [&](ProfJob job) { TypeParam::setString(job, 0, name.c_str(), large.c_str()); });
    fails("create", [&](ProfJob job) { TypeParam::createList(job, 0, large.c_str()); });
    fails("append a list", [&](ProfJob job) { TypeParam::appendList(job, 0, path.c_str()); });
}

TYPED_TEST(Memory, EveryCallFailsCleanlyAndTheJobWorksOn) {
    using Char = typename TypeParam::Char;
    const clsJob job(L"number=42;text=abc;L{x=1;}");
    const std::wstring before = Describe(job);
    const auto path = In<Char>(L"New/deep/path/with/a/name"), number = In<Char>(L"number");
    const std::basic_string<Char> large(100000, Char{'v'});
    clsPieceStream source(Utf16(L"\xFEFF[/]\na=1\n")), target(Bytes(1 << 16, '#'));
    INT value = 0, found = 1, stringLength = 0, savedAs = 0;
    ProfJob opens[2] = {};
    ProfList list = 0, empty = 0;
    {
        const clsCountedAllocations none(1);
        found = TypeParam::getInt(job, 0, number.c_str(), &value, 7);
        stringLength = TypeParam::getStringLength(job, 0, number.c_str());
        opens[0] = TypeParam::open(path.c_str());
        opens[1] = ProfJobOpenStream(&source);
        for (const scTextCall<TypeParam>& call : TextCalls<TypeParam>())
            call.run(job, path.c_str());
        list = TypeParam::appendList(job, 0, large.c_str());
        empty = TypeParam::createList(job, 0, large.c_str());
        savedAs = ProfSaveToStream(job, &target, PROF_SAVE_COMPRESSED);
        ProfDebugList(job, 0);
    }
    EXPECT_EQ(found, PROF_OK) << "reading needs no memory";
    EXPECT_EQ(value, 42);
    EXPECT_EQ(stringLength, 2);
    EXPECT_FALSE(list || empty);
    EXPECT_EQ(savedAs, PROF_SAVE_FAILED) << "deflating needs 256 KiB";
    for (const ProfJob& open : opens) {
        EXPECT_NE(open ? ProfGetError(open) : 1, PROF_OK);
        ProfJobClose(open);
    }
    EXPECT_EQ(Describe(job).substr(0, before.size()), before);
    ProfSetStringW(job, 0, L"number", L"43");
    TypeParam::appendString(job, 0, path.c_str(), number.c_str());
    EXPECT_EQ(TextOf(job, L"number"), L"43");
    EXPECT_NE(TextOf(job, L"New/deep/path/with/a/name"), L"<none>");
    EXPECT_EQ(Describe(Opened(Saved(job))), Describe(job));
}

// In a process that has not thrown anything before.
TEST(FailingAllocation, LeavesTheFirstExceptionToBeThrown) {
    const clsChild alone(L"--gtest_filter=*EveryCallFailsCleanly*");
    EXPECT_EQ(alone.ExitCodeUnlessItHangs(), 0u);
}

} // namespace
} // namespace testing_prof
