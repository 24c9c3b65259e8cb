// Lists and items: paths, order, creation, deletion, and handles that outlive their list.
#include "support/debug_output.h"
#include "support/job.h"

namespace testing_prof {
namespace {

template <class F>
class Tree : public ::testing::Test {};
TYPED_TEST_SUITE(Tree, BothForms, FormNames);

enum class Op { Create, AppendList, DeleteList, DeleteItem, Set, Append };

template <class F>
void run(Op op, ProfJob job, ProfList list, const typename F::Char* path) {
    const auto nine = in<typename F::Char>(L"9");
    switch (op) {
    case Op::Create:
        F::createList(job, list, path);
        break;
    case Op::AppendList:
        F::appendList(job, list, path);
        break;
    case Op::DeleteList:
        F::deleteList(job, list, path);
        break;
    case Op::DeleteItem:
        F::deleteItem(job, list, path);
        break;
    case Op::Set:
        F::setString(job, list, path, nine.c_str());
        break;
    case Op::Append:
        F::appendString(job, list, path, nine.c_str());
        break;
    }
}

struct Edit {
    const wchar_t* before;
    Op op;
    const wchar_t* start; // path of the list that is passed; null passes 0
    const wchar_t* path;
    const wchar_t* after;
};

constexpr Edit kEdits[] = {
    {L"", Op::Create, nullptr, L"A/B", L"A{B{}}"},
    {L"A{x=1;B{y=2;C{}}z=3;}", Op::Create, nullptr, L"A/B", L"A{x=1;B{}z=3;}"},
    {L"A{}A{B{k=1;}}", Op::Create, nullptr, L"A/B", L"A{B{}}A{B{k=1;}}"},
    {L"A=1;", Op::Create, nullptr, L"A", L"A=1;A{}"},
    {L"L{}", Op::Create, L"L", L"A", L"L{A{}}"},
    {L"L{}", Op::Create, L"L", L"/A", L"L{}A{}"},
    {L"a{}", Op::Create, nullptr, L"A", L"a{}A{}"},
    {L"", Op::Create, nullptr, L"", L"{}"},
    {L"", Op::Create, nullptr, L"/", L"{}"},
    {L"", Op::Create, nullptr, L"..", L"..{}"},
    {L"a=1;", Op::Create, nullptr, nullptr, L"a=1;"},
    {L"A{x=1;}", Op::AppendList, nullptr, L"A/B", L"A{x=1;}A{B{}}"},
    {L"A{}", Op::AppendList, nullptr, L"A", L"A{}A{}"},
    {L"", Op::AppendList, nullptr, L"A//B", L"A{{B{}}}"},
    {L"", Op::AppendList, nullptr, L"A/", L"A{{}}"},
    {L"L{}", Op::AppendList, L"L", L"/A", L"L{}A{}"},
    {L"", Op::AppendList, nullptr, nullptr, L""},
    {L"K=1;K=2;", Op::Set, nullptr, L"K", L"K=9;K=2;"},
    {L"K{}k=1;", Op::Set, nullptr, L"K", L"K{}k=1;K=9;"},
    {L"A{}A{x=1;}", Op::Set, nullptr, L"A/x", L"A{x=9;}A{x=1;}"},
    {L"A=1;", Op::Set, nullptr, L"A/B/c", L"A=1;A{B{c=9;}}"},
    {L"L{x=1;}x=2;", Op::Set, L"L", L"/x", L"L{x=1;}x=9;"},
    {L"L{x=1;}x=2;", Op::Set, L"L", L"x", L"L{x=9;}x=2;"},
    {L"=1;", Op::Set, nullptr, L"", L"=9;"},
    {L"a=1;", Op::Set, nullptr, nullptr, L"a=1;"},
    {L"K=1;", Op::Append, nullptr, L"K", L"K=1;K=9;"},
    {L"A{x=1;}", Op::Append, nullptr, L"A/x", L"A{x=1;x=9;}"},
    {L"", Op::Append, nullptr, L"/../a", L"..{a=9;}"},
    {L"a=1;", Op::Append, nullptr, nullptr, L"a=1;"},
    {L"K=1;K{}k=2;K=3;", Op::DeleteItem, nullptr, L"K", L"K{}k=2;"},
    {L"A{B=1;}A{B=2;C=3;}a{B=4;}", Op::DeleteItem, nullptr, L"A/B", L"A{}A{C=3;}a{B=4;}"},
    {L"A{B{C=1;}B{C=2;}}A{B{C=3;}}", Op::DeleteItem, nullptr, L"A/B/C", L"A{B{}B{}}A{B{}}"},
    {L"L{a=1;}a=2;", Op::DeleteItem, L"L", L"/a", L"L{a=1;}"},
    {L"a=1;=2;", Op::DeleteItem, nullptr, L"", L"a=1;"},
    {L"a=1;", Op::DeleteItem, nullptr, nullptr, L"a=1;"},
    {L"A{x=1;}A=1;A{}", Op::DeleteList, nullptr, L"A", L"A=1;"},
    {L"A{B{}}A{B{}B=2;}", Op::DeleteList, nullptr, L"A/B", L"A{}A{B=2;}"},
    {L"L{M{}}", Op::DeleteList, L"L", L"..", L"L{M{}}"},
    {L"a=1;L{x=1;}L{y=2;}", Op::DeleteList, L"L", nullptr, L"a=1;L{y=2;}"},
    {L"A{B{C{}}D{}}", Op::DeleteList, L"A/B", nullptr, L"A{D{}}"},
    // List 0 names no entry: like the sub-list of an item, so the first item of the walk goes.
    {L"a=1;L{}", Op::DeleteList, nullptr, nullptr, L"L{}"},
    {L"L{x=1;y=2;}a=1;", Op::DeleteList, nullptr, nullptr, L"L{y=2;}a=1;"},
    {L"L{M{}}", Op::DeleteList, nullptr, nullptr, L"L{M{}}"},
};

TYPED_TEST(Tree, EditsGiveTheExpectedTree) {
    for (const Edit& edit : kEdits) {
        const Job job(edit.before);
        const auto path = in<typename TypeParam::Char>(edit.path ? edit.path : L"");
        const ProfList start = edit.start ? ProfGetListW(job, 0, edit.start) : 0;
        run<TypeParam>(edit.op, job, start, edit.path ? path.c_str() : nullptr);
        EXPECT_EQ(describe(job), edit.after) << edit.before << " op " << static_cast<int>(edit.op) << " "
                                             << (edit.path ? edit.path : L"(null)");
    }
}

struct Lookup {
    const wchar_t* start;
    const wchar_t* path;
    const wchar_t* holds; // the tree text of the list reached; null: none
};

TYPED_TEST(Tree, LookupsTakeTheFirstListOfEachSegment) {
    const Job job(L"A=item;A{n=1;S{n=2;}}A{n=3;B{n=4;}}a{n=5;}{n=6;}..{n=7;}");
    const wchar_t* whole = L"A=item;A{n=1;S{n=2;}}A{n=3;B{n=4;}}a{n=5;}{n=6;}..{n=7;}";
    const Lookup lookups[] = {
        {nullptr, nullptr, whole}, {nullptr, L"..", nullptr},       {nullptr, L"A", L"n=1;S{n=2;}"},
        {nullptr, L"a", L"n=5;"},  {nullptr, L"A/B", nullptr},      {nullptr, L"A/S", L"n=2;"},
        {L"a", L"/A/S", L"n=2;"},  {L"A", L"S", L"n=2;"},           {L"A/S", L"..", L"n=1;S{n=2;}"},
        {L"A", L"..", whole},      {L"A", nullptr, L"n=1;S{n=2;}"}, {nullptr, L"", L"n=6;"},
        {nullptr, L"/", L"n=6;"},  {L"A/S", L"../S", nullptr},      {nullptr, L"/..", L"n=7;"},
        {nullptr, L"S", nullptr},  {nullptr, L"A/", nullptr},       {nullptr, L"A/n", nullptr},
    };
    for (const Lookup& lookup : lookups) {
        const ProfList start = lookup.start ? ProfGetListW(job, 0, lookup.start) : 0;
        const auto path = in<typename TypeParam::Char>(lookup.path ? lookup.path : L"");
        const ProfList list = TypeParam::getList(job, start, lookup.path ? path.c_str() : nullptr);
        EXPECT_EQ(list ? describe(job, list) : L"(none)", lookup.holds ? lookup.holds : L"(none)")
            << (lookup.path ? lookup.path : L"(null)");
    }
    EXPECT_EQ(textOf(job, L"A"), L"item");
    EXPECT_EQ(textOf(job, L"A/S/n"), L"2");
    EXPECT_EQ(textOf(job, L"A/B/n"), L"<none>");
}

TYPED_TEST(Tree, SegmentsBeforeTheLastCountWith255Characters) {
    const CodePage utf8(CP_UTF8);
    for (const wchar_t letter : {L'n', L'\x20AC'}) {
        const auto segment = [letter](size_t length) { return std::wstring(length, letter); };
        const Job job;
        TypeParam::setString(job, 0, in<typename TypeParam::Char>(segment(300) + L"/x").c_str(),
                             in<typename TypeParam::Char>(L"1").c_str());
        EXPECT_EQ(describe(job), segment(255) + L"{x=1;}");
        const auto found = [&](const std::wstring& path) {
            return TypeParam::getStringLength(job, 0, in<typename TypeParam::Char>(path).c_str());
        };
        EXPECT_EQ(found(segment(255) + L"/x"), 1);
        EXPECT_EQ(found(segment(256) + L"/x"), 1);
        EXPECT_EQ(found(segment(254) + L"/x"), PROF_NOT_FOUND);
        EXPECT_EQ(ProfGetListW(job, 0, segment(256).c_str()), nullptr) << "the last segment is used whole";
        TypeParam::deleteItem(job, 0, in<typename TypeParam::Char>(segment(400) + L"/x").c_str());
        TypeParam::setString(job, 0, in<typename TypeParam::Char>(L"y" + segment(300)).c_str(), nullptr);
        EXPECT_EQ(describe(job), segment(255) + L"{}y" + segment(300) + L"=;");
    }
}

TEST(Lists, CreatedAndEmptiedListsKeepTheirHandles) {
    const Job job(L"A{x=1;}");
    const ProfList list = ProfGetListW(job, 0, L"A");
    EXPECT_EQ(ProfCreateListW(job, 0, L"A"), list);
    ProfSetStringW(job, list, L"y", L"2");
    ProfEmptyList(job, list);
    EXPECT_EQ(ProfGetListW(job, 0, L"A"), list);
    const ProfList below = ProfAppendListW(job, list, L"B/C");
    EXPECT_EQ(ProfGetListW(job, 0, L"A/B/C"), below);
    ProfEmptyList(job, 0);
    EXPECT_EQ(describe(job), L"");
    EXPECT_EQ(ProfGetListW(job, list, nullptr), nullptr) << "emptying the root deleted the list";
}

// What an enumeration does to the profile at the entry named "2" of 1, 2, 3, 4.
struct Walk {
    const char* what;
    void (*edit)(ProfJob job, ProfList list);
    const wchar_t* visited;
    const wchar_t* after; // null: not looked at
};

const Walk kWalks[] = {
    {"nothing", [](ProfJob, ProfList) {}, L"1234", L"1=;2{}3=;4=;"},
    {"the current entry", [](ProfJob j, ProfList l) { ProfDeleteListW(j, l, L"2"); }, L"1234", L"1=;3=;4=;"},
    {"the next entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"3"); }, L"124", L"1=;2{}4=;"},
    {"an earlier entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"1"); }, L"1234", L"2{}3=;4=;"},
    {"the last entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"4"); }, L"123", L"1=;2{}3=;"},
    {"current and next",
     [](ProfJob j, ProfList l) {
         ProfDeleteListW(j, l, L"2");
         ProfDeleteItemW(j, l, L"3");
     },
     L"124", L"1=;4=;"},
    {"a new entry", [](ProfJob j, ProfList l) { ProfSetStringW(j, l, L"5", L"x"); }, L"1234",
     L"1=;2{}3=;4=;5=x;"},
    {"all entries", [](ProfJob j, ProfList l) { ProfEmptyList(j, l); }, L"12", L""},
    {"all entries, then new ones",
     [](ProfJob j, ProfList l) {
         ProfEmptyList(j, l);
         for (int i = 0; i < 100; ++i)
             ProfAppendStringW(j, l, L"n", L"");
         ProfDeleteItemW(j, l, L"n");
         ProfAppendStringW(j, l, L"m", L"");
     },
     L"12", L"m=;"},
    {"many new entries",
     [](ProfJob j, ProfList l) {
         for (int i = 0; i < 5000; ++i)
             ProfAppendStringW(j, l, L"n", L"");
         ProfDeleteItemW(j, l, L"n");
     },
     L"1234", L"1=;2{}3=;4=;"},
    {"the list itself", [](ProfJob j, ProfList l) { ProfDeleteListW(j, l, nullptr); }, L"12", nullptr},
    {"a list above", [](ProfJob j, ProfList) { ProfEmptyList(j, 0); }, L"12", nullptr},
    {"the job", [](ProfJob j, ProfList) { ProfJobClose(j); }, L"12", nullptr},
};

struct Walked {
    const Walk& walk;
    ProfList list;
    std::wstring visited;
};

template <class Char>
BOOL TVUT22_CALL walkOn(ProfJob job, const Char* name, const Char* value, ProfList subList, UINT_PTR user) {
    auto& walked = *reinterpret_cast<Walked*>(user);
    const std::wstring seen = wide(name) + wide(value);
    walked.visited += seen;
    EXPECT_EQ(subList != 0, seen == L"2");
    if (seen == L"2")
        walked.walk.edit(job, walked.list);
    return TRUE;
}

TYPED_TEST(Tree, EnumerationsSurviveEditsByTheirCallback) {
    for (const Walk& walk : kWalks) {
        SCOPED_TRACE(walk.what);
        Job job(L"outer{L{1=;2{}3=;4=;}}");
        const ProfList list = ProfGetListW(job, 0, L"outer/L");
        Walked walked{walk, list, {}};
        ProfJobAddRef(job);
        const BOOL result = TypeParam::enumerate(job, list, walkOn<typename TypeParam::Char>,
                                                 reinterpret_cast<UINT_PTR>(&walked));
        EXPECT_EQ(walked.visited.substr(0, wcslen(walk.visited)), walk.visited);
        if (walk.after) {
            EXPECT_EQ(walked.visited, walk.visited);
            EXPECT_TRUE(result);
            EXPECT_EQ(describe(job, list), walk.after);
        }
        job.close();
    }
}

BOOL TVUT22_CALL closeTheJob(ProfJob job, const wchar_t*, const wchar_t*, ProfList, UINT_PTR visits) {
    if (++*reinterpret_cast<int*>(visits) == 1)
        ProfJobClose(job);
    return TRUE;
}

TEST(Lists, ClosingTheLastReferenceInsideAWalkIsHarmless) {
    const ProfJob job = ProfJobOpenW(nullptr);
    ProfSetStringW(job, 0, L"a", L"");
    ProfSetStringW(job, 0, L"b", L"");
    int visits = 0;
    ProfEnumW(job, 0, closeTheJob, reinterpret_cast<UINT_PTR>(&visits));
    EXPECT_GE(visits, 1);
}

template <class Char>
BOOL TVUT22_CALL countDown(ProfJob, const Char*, const Char*, ProfList, UINT_PTR user) {
    return --*reinterpret_cast<int*>(user) > 0;
}

TYPED_TEST(Tree, EnumerationsStopWhenTold) {
    const Job job(L"a=1;b=2;c=3;E{}");
    const auto callback = countDown<typename TypeParam::Char>;
    for (int stopAt = 1; stopAt <= 4; ++stopAt) {
        int left = stopAt;
        EXPECT_FALSE(TypeParam::enumerate(job, 0, callback, reinterpret_cast<UINT_PTR>(&left)));
        EXPECT_EQ(left, 0);
    }
    int untouched = 7;
    const auto user = reinterpret_cast<UINT_PTR>(&untouched);
    EXPECT_TRUE(TypeParam::enumerate(job, ProfGetListW(job, 0, L"E"), callback, user));
    EXPECT_FALSE(TypeParam::enumerate(0, 0, callback, user));
    EXPECT_EQ(untouched, 7);
    EXPECT_FALSE(TypeParam::enumerate(job, 0, nullptr, 0));
}

struct Copy {
    const wchar_t* before;
    const wchar_t* destination;
    const wchar_t* source;
    const wchar_t* after;
};

TEST(Lists, CopiesHoldWhatWasThereWhenTheyBegan) {
    const Copy copies[] = {
        {L"a=1;L{b=2;}", nullptr, nullptr, L"a=1;L{b=2;}a=1;L{b=2;}"},
        {L"a=1;L{b=2;}", L"L", nullptr, L"a=1;L{b=2;a=1;L{b=2;}}"},
        {L"a=1;L{b=2;M{}}", L"L/M", nullptr, L"a=1;L{b=2;M{a=1;L{b=2;M{}}}}"},
        {L"a=1;L{b=2;M{c=3;}}", nullptr, L"L", L"a=1;L{b=2;M{c=3;}}b=2;M{c=3;}"},
        {L"L{b=2;M{c=3;}}", L"L", L"L", L"L{b=2;M{c=3;}b=2;M{c=3;}}"},
        {L"L{b=2;M{c=3;}}", L"L/M", L"L", L"L{b=2;M{c=3;b=2;M{c=3;}}}"},
        {L"L{}", L"L", L"L", L"L{}"},
    };
    for (const Copy& copy : copies) {
        const Job job(copy.before);
        const auto list = [&](const wchar_t* path) { return path ? ProfGetListW(job, 0, path) : 0; };
        EXPECT_EQ(ProfCopyList(job, list(copy.destination), job, list(copy.source)), PROF_OK);
        EXPECT_EQ(describe(job), copy.after);
    }
    const Job from(L"a=1;L{b=2;M{}}"), to(L"L{}");
    EXPECT_EQ(ProfCopyList(to, ProfGetListW(to, 0, L"L"), from, 0), PROF_OK);
    EXPECT_EQ(describe(to), L"L{a=1;L{b=2;M{}}}");
    EXPECT_EQ(describe(from), L"a=1;L{b=2;M{}}");
    EXPECT_EQ(ProfCopyList(to, 0, 0, 0), PROF_INVALID_JOB);
    EXPECT_LT(ProfCopyList(0, 0, from, 0), 0);
}

TYPED_TEST(Tree, HandlesOfDeletedAndForeignListsAreRefused) {
    Job job(L"A{B{x=1;}}k=1;"), other(L"L{x=1;}");
    const ProfList above = ProfGetListW(job, 0, L"A"), below = ProfGetListW(job, 0, L"A/B");
    ProfDeleteListW(job, 0, L"A");
    const auto x = in<typename TypeParam::Char>(L"x");
    for (const ProfList list : {above, below, ProfGetListW(other, 0, L"L")}) {
        EXPECT_EQ(TypeParam::getList(job, list, nullptr), nullptr);
        EXPECT_EQ(TypeParam::getStringLength(job, list, x.c_str()), PROF_NOT_FOUND);
        EXPECT_EQ(TypeParam::createList(job, list, x.c_str()), nullptr);
        EXPECT_EQ(TypeParam::appendList(job, list, x.c_str()), nullptr);
        TypeParam::setString(job, list, x.c_str(), x.c_str());
        TypeParam::appendInt(job, list, x.c_str(), 1);
        TypeParam::deleteItem(job, list, x.c_str());
        TypeParam::deleteList(job, list, nullptr);
        ProfEmptyList(job, list);
        EXPECT_FALSE(TypeParam::enumerate(job, list, countDown<typename TypeParam::Char>, 0));
        EXPECT_EQ(ProfCopyList(job, 0, job, list), PROF_COPY_FAILED);
        EXPECT_EQ(ProfCopyList(job, list, job, 0), PROF_COPY_FAILED);
        ProfDebugList(job, list);
        EXPECT_EQ(describe(job), L"k=1;");
    }
    EXPECT_EQ(describe(other), L"L{x=1;}");
}

TEST(Lists, ListingsGoToTheDebuggerOutput) {
    const Job job(L"a=1;L{b=2;M{c=;}}d=4;");
    const DebugOutput output;
    EXPECT_EQ(ProfDebugList(job, 0), PROF_OK);
    EXPECT_EQ(output.text(), L"a=1\n[L]\n b=2\n [M]\n  c=\nd=4\n");
    output.text().clear();
    EXPECT_EQ(ProfDebugList(job, ProfGetListW(job, 0, L"L")), PROF_OK);
    EXPECT_EQ(output.text(), L"b=2\n[M]\n c=\n");
    EXPECT_EQ(ProfDebugList(0, 0), PROF_INVALID_JOB);
    ProfSetDebug(TRUE);
}

// Long lists may be looked up otherwise than by a walk; the answers must not differ. The reference is the
// walk itself: ProfEnum.
struct FirstMatch {
    std::wstring name;
    bool wantList;
    std::wstring value = L"<none>";
    ProfList list = 0;
};

BOOL TVUT22_CALL matchFirst(ProfJob, const wchar_t* name, const wchar_t* value, ProfList subList,
                            UINT_PTR user) {
    auto& match = *reinterpret_cast<FirstMatch*>(user);
    if (match.name != name || match.wantList != (subList != 0))
        return TRUE;
    match.value = value;
    match.list = subList;
    return FALSE;
}

TEST(Lists, LongListsAnswerAsAWalkWould) {
    uint32_t seed = 12345;
    const auto random = [&seed](uint32_t below) {
        seed = seed * 1664525 + 1013904223;
        return (seed >> 8) % below;
    };
    const Job job;
    for (int step = 0; step < 20000; ++step) {
        const std::wstring name = L"name" + std::to_wstring(random(1500));
        const std::wstring value = std::to_wstring(step);
        switch (const uint32_t op = random(100)) {
        case 0:
            ProfDeleteItemW(job, 0, name.c_str());
            break;
        case 1:
            ProfDeleteListW(job, 0, name.c_str());
            break;
        case 2:
            ProfDeleteListW(job, 0, nullptr);
            break;
        case 3:
            ProfCreateListW(job, 0, name.c_str());
            break;
        default:
            if (op < 10)
                ProfAppendListW(job, 0, name.c_str());
            else
                (op < 50 ? ProfAppendStringW : ProfSetStringW)(job, 0, name.c_str(), value.c_str());
        }
        if (step == 9000 || step == 15000)
            ProfCopyList(job, 0, job, 0);
        if (step % 5)
            continue;
        FirstMatch item{name, false}, list{name, true};
        ProfEnumW(job, 0, matchFirst, reinterpret_cast<UINT_PTR>(&item));
        ProfEnumW(job, 0, matchFirst, reinterpret_cast<UINT_PTR>(&list));
        ASSERT_EQ(textOf(job, name.c_str()), item.value) << "step " << step;
        ASSERT_EQ(ProfGetListW(job, 0, name.c_str()), list.list) << "step " << step;
    }
}

} // namespace
} // namespace testing_prof
