// Lists and items: paths, order, creation, deletion, and handles that outlive their list.
#include "support/cases.h"
#include "support/log.h"
#include "support/piece_stream.h"

#include <cstring>
#include <map>

namespace testing_prof {
namespace {

using tvut::CaseRows, tvut::scCaseRow, tvut::WideCase;

template <class F>
using Tree = InBothForms<F>;
TYPED_TEST_SUITE(Tree, BothForms, scFormNames);

template <class F>
void Edit(const std::wstring& operation, ProfJob job, ProfList list, const typename F::Char* path) {
    static constexpr typename F::Char nine[] = {'9', 0};
    static const std::map<std::wstring, void (*)(ProfJob, ProfList, const typename F::Char*)> operations{
        {L"Create", [](auto j, auto l, auto p) { F::createList(j, l, p); }},
        {L"AppendList", [](auto j, auto l, auto p) { F::appendList(j, l, p); }},
        {L"DeleteList", [](auto j, auto l, auto p) { F::deleteList(j, l, p); }},
        {L"DeleteItem", [](auto j, auto l, auto p) { F::deleteItem(j, l, p); }},
        {L"Set", [](auto j, auto l, auto p) { F::setString(j, l, p, nine); }},
        {L"Append", [](auto j, auto l, auto p) { F::appendString(j, l, p, nine); }}};
    operations.at(operation)(job, list, path);
}

// A path of a case: the text, and its pointer, which is null for "-".
template <class Char>
struct scCasePath {
    explicit scCasePath(const std::u16string& column)
        : isNull(column == u"-"), text(In<Char>(WideCase(column))) {}
    operator const Char*() const { return isNull ? nullptr : text.c_str(); }
    bool isNull;
    std::basic_string<Char> text;
};

ProfList ListAt(ProfJob job, const std::u16string& column) {
    const scCasePath<wchar_t> path(column);
    return path.isNull ? nullptr : ProfGetListW(job, 0, path);
}

TYPED_TEST(Tree, EditsGiveTheExpectedTree) {
    for (const scCaseRow& row : CaseRows("tree/edits", 5)) {
        const clsJob job(WideCase(row[0]));
        const scCasePath<typename TypeParam::Char> path(row[3]);
        Edit<TypeParam>(WideCase(row[1]), job, ListAt(job, row[2]), path);
        EXPECT_EQ(Describe(job), WideCase(row[4])) << row.where;
    }
}

TYPED_TEST(Tree, LookupsTakeTheFirstListOfEachSegment) {
    const wchar_t* whole = L"A=item;A{n=1;S{n=2;}}A{n=3;B{n=4;}}a{n=5;}{n=6;}..{n=7;}";
    const clsJob job(whole);
    for (const scCaseRow& row : CaseRows("tree/lookups", 3)) {
        const scCasePath<typename TypeParam::Char> path(row[1]);
        const ProfList list = TypeParam::getList(job, ListAt(job, row[0]), path);
        const std::wstring expected = row[2] == u"whole" ? whole : WideCase(row[2]);
        EXPECT_EQ(list ? Describe(job, list) : L"-", expected) << row.where;
    }
    for (const auto& [path, text] : {std::pair{L"A", L"item"}, {L"A/S/n", L"2"}, {L"A/B/n", L"<none>"}})
        EXPECT_EQ(TextOf(job, path), text);
}

TYPED_TEST(Tree, SegmentsBeforeTheLastCountWith255Characters) {
    const clsCodePage utf8(CP_UTF8);
    for (const wchar_t letter : {L'n', L'\x20AC'}) {
        const auto segment = [letter](size_t length) { return std::wstring(length, letter); };
        const auto own = [](const std::wstring& path) { return In<typename TypeParam::Char>(path); };
        const clsJob job;
        TypeParam::setString(job, 0, own(segment(300) + L"/x").c_str(), own(L"1").c_str());
        EXPECT_EQ(Describe(job), segment(255) + L"{x=1;}");
        for (const auto& [length, found] : {std::pair{255u, 1}, {256u, 1}, {254u, PROF_NOT_FOUND}})
            EXPECT_EQ(TypeParam::getStringLength(job, 0, own(segment(length) + L"/x").c_str()), found);
        EXPECT_EQ(ProfGetListW(job, 0, segment(256).c_str()), nullptr) << "the last segment is used whole";
        TypeParam::deleteItem(job, 0, own(segment(400) + L"/x").c_str());
        TypeParam::setString(job, 0, own(L"y" + segment(300)).c_str(), nullptr);
        EXPECT_EQ(Describe(job), segment(255) + L"{}y" + segment(300) + L"=;");
    }
}

TEST(Lists, CreatedAndEmptiedListsKeepTheirHandles) {
    const clsJob job(L"A{x=1;}");
    const ProfList list = ProfGetListW(job, 0, L"A");
    EXPECT_EQ(ProfCreateListW(job, 0, L"A"), list);
    ProfEmptyList(job, list);
    EXPECT_EQ(ProfGetListW(job, 0, L"A"), list);
    const ProfList below = ProfAppendListW(job, list, L"B/C");
    EXPECT_EQ(ProfGetListW(job, 0, L"A/B/C"), below);
    ProfEmptyList(job, 0);
    EXPECT_EQ(Describe(job), L"");
    EXPECT_EQ(ProfGetListW(job, list, nullptr), nullptr) << "emptying the root deleted the list";
}

void Fill(ProfJob job, ProfList list, int count) {
    for (int i = 0; i < count; ++i)
        ProfAppendStringW(job, list, L"n", L"");
    ProfDeleteItemW(job, list, L"n");
}

// What an enumeration does to the profile at the entry named "2" of 1, 2, 3, 4; other edits during walks are
// held against a model in fuzz/lists.cpp.
struct scWalk {
    const char* what;
    void (*edit)(ProfJob job, ProfList list);
    const wchar_t* visited;
    const wchar_t* after; // null: not looked at
};

const scWalk walkCases[] = {
    {"the current entry", [](auto j, auto l) { ProfDeleteListW(j, l, L"2"); }, L"1234", L"1=;3=;4=;"},
    {"the next entry", [](auto j, auto l) { ProfDeleteItemW(j, l, L"3"); }, L"124", L"1=;2{}4=;"},
    {"many new entries", [](auto j, auto l) { Fill(j, l, 5000); }, L"1234", L"1=;2{}3=;4=;"},
    {"the list itself", [](auto j, auto l) { ProfDeleteListW(j, l, nullptr); }, L"12", nullptr},
    {"a list above", [](auto j, auto) { ProfEmptyList(j, 0); }, L"12", nullptr},
    {"the job", [](auto j, auto) { ProfJobClose(j); }, L"12", nullptr}, // its last reference
};

struct scWalked {
    const scWalk& walk;
    ProfList list;
    std::wstring visited;
};

template <class Char>
BOOL TVUT22_CALL WalkOn(ProfJob job, const Char* name, const Char* value, ProfList subList, UINT_PTR user) {
    auto& walked = *reinterpret_cast<scWalked*>(user);
    const std::wstring seen = Wide(name) + Wide(value);
    walked.visited += seen;
    EXPECT_EQ(subList != 0, seen == L"2");
    if (seen == L"2")
        walked.walk.edit(job, walked.list);
    return TRUE;
}

TYPED_TEST(Tree, EnumerationsSurviveEditsByTheirCallback) {
    for (const scWalk& walk : walkCases) {
        SCOPED_TRACE(walk.what);
        const ProfJob job = clsJob(L"outer{L{1=;2{}3=;4=;}}").Release();
        const ProfList list = ProfGetListW(job, 0, L"outer/L");
        scWalked walked{walk, list, {}};
        const BOOL result = TypeParam::enumerate(job, list, WalkOn<typename TypeParam::Char>,
                                                 reinterpret_cast<UINT_PTR>(&walked));
        EXPECT_EQ(walked.visited.substr(0, wcslen(walk.visited)), walk.visited);
        if (walk.after) {
            EXPECT_EQ(walked.visited, walk.visited);
            EXPECT_TRUE(result);
            EXPECT_EQ(Describe(job, list), walk.after);
        }
        if (std::string_view(walk.what) != "the job")
            ProfJobClose(job);
    }
}

template <class Char>
BOOL TVUT22_CALL CountDown(ProfJob, const Char*, const Char*, ProfList, UINT_PTR user) {
    return --*reinterpret_cast<int*>(user) > 0;
}

TYPED_TEST(Tree, EnumerationsStopWhenTold) {
    const clsJob job(L"a=1;b=2;c=3;E{}");
    const auto callback = CountDown<typename TypeParam::Char>;
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

TEST(Lists, AreCopiedWithinAJobAndToAnother) {
    const clsJob from(L"a=1;L{b=2;M{}}"), to(L"L{}");
    EXPECT_EQ(ProfCopyList(to, ProfGetListW(to, 0, L"L"), from, 0), PROF_OK);
    EXPECT_EQ(Describe(to), L"L{a=1;L{b=2;M{}}}");
    EXPECT_EQ(ProfCopyList(from, ProfGetListW(from, 0, L"L/M"), from, 0), PROF_OK);
    EXPECT_EQ(Describe(from), L"a=1;L{b=2;M{a=1;L{b=2;M{}}}}");
    EXPECT_EQ(ProfCopyList(to, 0, 0, 0), PROF_INVALID_JOB);
    EXPECT_LT(ProfCopyList(0, 0, from, 0), 0);
}

// Handles that are no list of a job: deleted ones, another job's, an address within a list, a copy of a list
// elsewhere, addresses of nothing.
class clsNoLists {
  public:
    clsNoLists(ProfJob job, ProfJob other) {
        const ProfList above = ProfAppendListW(job, 0, L"above"),
                       below = ProfAppendListW(job, above, L"below"), live = ProfGetListW(job, 0, L"live");
        std::memcpy(copy_, live, sizeof copy_);
        ProfDeleteListW(job, above, nullptr);
        handles = {above, below, ProfGetListW(other, 0, L"L"), ProfGetListW(other, 0, nullptr)};
        const auto add = [&](const void* address) {
            handles.push_back(reinterpret_cast<ProfList>(const_cast<void*>(address)));
        };
        add(copy_);
        add(reserved_);
        add(reinterpret_cast<const char*>(live) + 4);
        for (const UINT_PTR address : {0x1u, 0x7FFFFFFFu, 0xFFFFFFF0u})
            add(reinterpret_cast<const void*>(address));
    }
    clsNoLists(const clsNoLists&) = delete;
    clsNoLists& operator=(const clsNoLists&) = delete;
    ~clsNoLists() { VirtualFree(reserved_, 0, MEM_RELEASE); }

    std::vector<ProfList> handles;

  private:
    void* reserved_ = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
    UINT_PTR copy_[8];
};

TYPED_TEST(Tree, HandlesThatAreNoListOfTheJobAreRefused) {
    const clsJob job(L"k=1;live{}"), other(L"L{x=1;}");
    const clsNoLists none(job, other);
    const auto x = In<typename TypeParam::Char>(L"x");
    for (const ProfList list : none.handles) {
        SCOPED_TRACE(list);
        EXPECT_EQ(TypeParam::getList(job, list, nullptr), nullptr);
        EXPECT_EQ(TypeParam::getStringLength(job, list, x.c_str()), PROF_NOT_FOUND);
        EXPECT_EQ(TypeParam::createList(job, list, x.c_str()), nullptr);
        EXPECT_EQ(TypeParam::appendList(job, list, x.c_str()), nullptr);
        TypeParam::setString(job, list, x.c_str(), x.c_str());
        TypeParam::appendInt(job, list, x.c_str(), 1);
        TypeParam::deleteItem(job, list, x.c_str());
        TypeParam::deleteList(job, list, nullptr);
        ProfEmptyList(job, list);
        EXPECT_FALSE(TypeParam::enumerate(job, list, CountDown<typename TypeParam::Char>, 0));
        EXPECT_EQ(ProfCopyList(job, 0, job, list), PROF_COPY_FAILED);
        EXPECT_EQ(ProfCopyList(job, list, job, 0), PROF_COPY_FAILED);
        ProfDebugList(job, list);
        EXPECT_EQ(Describe(job), L"k=1;live{}");
    }
    EXPECT_EQ(Describe(other), L"L{x=1;}");
}

TYPED_TEST(Tree, PathsFromTheRootLeaveTheHandleAlone) {
    using Char = typename TypeParam::Char;
    const clsJob job(L"k=1;live{}"), other(L"L{x=1;}");
    const clsNoLists none(job, other);
    const auto k = In<Char>(L"/k"), created = In<Char>(L"/c"), appended = In<Char>(L"/c/d"),
               two = In<Char>(L"2"), base64 = In<Char>(L"Mg==");
    for (const ProfList list : none.handles) {
        SCOPED_TRACE(list);
        INT number = 0;
        VARIANT variant;
        clsPieceStream bytes("abc"), read;
        TypeParam::setString(job, list, k.c_str(), two.c_str());
        EXPECT_EQ(TypeParam::getInt(job, list, k.c_str(), &number, 0), PROF_OK);
        EXPECT_EQ(number, 2);
        TypeParam::setInt(job, list, k.c_str(), 3);
        EXPECT_EQ(TypeParam::getStringLength(job, list, k.c_str()), 1);
        ProfSetVariant(job, list, L"/v", &(V_VT(&variant) = VT_EMPTY, variant));
        EXPECT_EQ(ProfGetVariant(job, list, L"/v", &variant), PROF_OK);
        const ProfList root = TypeParam::createList(job, list, created.c_str());
        TypeParam::appendString(job, list, appended.c_str(), base64.c_str());
        TypeParam::appendStream(job, list, appended.c_str(), nullptr, &bytes);
        EXPECT_EQ(TypeParam::getStream(job, list, appended.c_str(), nullptr, &read), PROF_OK);
        EXPECT_EQ(TypeParam::getList(job, list, created.c_str()), root);
        EXPECT_EQ(read.data, "2") << "the first of that name, as Base64";
        TypeParam::deleteItem(job, list, In<Char>(L"/v").c_str());
        TypeParam::deleteList(job, list, created.c_str());
        EXPECT_NE(TypeParam::appendList(job, list, created.c_str()), nullptr);
        TypeParam::deleteList(job, list, created.c_str());
        EXPECT_EQ(Describe(job), L"k=3;live{}");
    }
}

TEST(Lists, ListingsGoToTheDiagnosticOutput) {
    using Lines = std::vector<std::string>;
    const clsJob job(L"a=1;L{b=2;M{c=;}}d=4;");
    const clsLog whole;
    EXPECT_EQ(ProfDebugList(job, 0), PROF_OK);
    EXPECT_EQ(whole.Lines(), (Lines{"a=1\n", "[L]\n", " b=2\n", " [M]\n", "  c=\n", "d=4\n"}));
    const clsLog part;
    EXPECT_EQ(ProfDebugList(job, ProfGetListW(job, 0, L"L")), PROF_OK);
    EXPECT_EQ(part.Lines(), (Lines{"b=2\n", "[M]\n", " c=\n"}));
    EXPECT_EQ(ProfDebugList(0, 0), PROF_INVALID_JOB);
    ProfSetDebug(TRUE);
}

} // namespace
} // namespace testing_prof
