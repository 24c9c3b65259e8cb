// Lists and items: paths, order, creation, deletion, and handles that outlive their list.
#include "support/cases.h"
#include "support/log.h"
#include "support/piece_stream.h"

#include <cstring>
#include <map>

namespace testing_prof {
namespace {

using tvut::CaseRows, tvut::scCaseRow, tvut::wideCase;

template <class F>
using Tree = InBothForms<F>;
TYPED_TEST_SUITE(Tree, BothForms, FormNames);

template <class F>
void edit(const std::wstring& operation, ProfJob job, ProfList list, const typename F::Char* path) {
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

/// A path of a case: the text, and its pointer, which is null for "-".
template <class Char>
struct CasePath {
    explicit CasePath(const std::u16string& column)
        : isNull(column == u"-"), text(in<Char>(wideCase(column))) {}
    operator const Char*() const { return isNull ? nullptr : text.c_str(); }
    bool isNull;
    std::basic_string<Char> text;
};

ProfList listAt(ProfJob job, const std::u16string& column) {
    const CasePath<wchar_t> path(column);
    return path.isNull ? nullptr : ProfGetListW(job, 0, path);
}

TYPED_TEST(Tree, EditsGiveTheExpectedTree) {
    for (const scCaseRow& row : CaseRows("tree/edits", 5)) {
        const Job job(wideCase(row[0]));
        const CasePath<typename TypeParam::Char> path(row[3]);
        edit<TypeParam>(wideCase(row[1]), job, listAt(job, row[2]), path);
        EXPECT_EQ(describe(job), wideCase(row[4])) << row.where;
    }
}

TYPED_TEST(Tree, LookupsTakeTheFirstListOfEachSegment) {
    const wchar_t* whole = L"A=item;A{n=1;S{n=2;}}A{n=3;B{n=4;}}a{n=5;}{n=6;}..{n=7;}";
    const Job job(whole);
    for (const scCaseRow& row : CaseRows("tree/lookups", 3)) {
        const CasePath<typename TypeParam::Char> path(row[1]);
        const ProfList list = TypeParam::getList(job, listAt(job, row[0]), path);
        const std::wstring expected = row[2] == u"whole" ? whole : wideCase(row[2]);
        EXPECT_EQ(list ? describe(job, list) : L"-", expected) << row.where;
    }
    for (const auto& [path, text] : {std::pair{L"A", L"item"}, {L"A/S/n", L"2"}, {L"A/B/n", L"<none>"}})
        EXPECT_EQ(textOf(job, path), text);
}

TYPED_TEST(Tree, SegmentsBeforeTheLastCountWith255Characters) {
    const CodePage utf8(CP_UTF8);
    for (const wchar_t letter : {L'n', L'\x20AC'}) {
        const auto segment = [letter](size_t length) { return std::wstring(length, letter); };
        const auto own = [](const std::wstring& path) { return in<typename TypeParam::Char>(path); };
        const Job job;
        TypeParam::setString(job, 0, own(segment(300) + L"/x").c_str(), own(L"1").c_str());
        EXPECT_EQ(describe(job), segment(255) + L"{x=1;}");
        for (const auto& [length, found] : {std::pair{255u, 1}, {256u, 1}, {254u, PROF_NOT_FOUND}})
            EXPECT_EQ(TypeParam::getStringLength(job, 0, own(segment(length) + L"/x").c_str()), found);
        EXPECT_EQ(ProfGetListW(job, 0, segment(256).c_str()), nullptr) << "the last segment is used whole";
        TypeParam::deleteItem(job, 0, own(segment(400) + L"/x").c_str());
        TypeParam::setString(job, 0, own(L"y" + segment(300)).c_str(), nullptr);
        EXPECT_EQ(describe(job), segment(255) + L"{}y" + segment(300) + L"=;");
    }
}

TEST(Lists, CreatedAndEmptiedListsKeepTheirHandles) {
    const Job job(L"A{x=1;}");
    const ProfList list = ProfGetListW(job, 0, L"A");
    EXPECT_EQ(ProfCreateListW(job, 0, L"A"), list);
    ProfEmptyList(job, list);
    EXPECT_EQ(ProfGetListW(job, 0, L"A"), list);
    const ProfList below = ProfAppendListW(job, list, L"B/C");
    EXPECT_EQ(ProfGetListW(job, 0, L"A/B/C"), below);
    ProfEmptyList(job, 0);
    EXPECT_EQ(describe(job), L"");
    EXPECT_EQ(ProfGetListW(job, list, nullptr), nullptr) << "emptying the root deleted the list";
}

void fill(ProfJob job, ProfList list, int count) {
    for (int i = 0; i < count; ++i)
        ProfAppendStringW(job, list, L"n", L"");
    ProfDeleteItemW(job, list, L"n");
}

// What an enumeration does to the profile at the entry named "2" of 1, 2, 3, 4.
struct Walk {
    const char* what;
    void (*edit)(ProfJob job, ProfList list);
    const wchar_t* visited;
    const wchar_t* after; // null: not looked at
};

// clang-format off
const Walk kWalks[] = {
    {"the current entry", [](ProfJob j, ProfList l) { ProfDeleteListW(j, l, L"2"); }, L"1234", L"1=;3=;4=;"},
    {"the next entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"3"); }, L"124", L"1=;2{}4=;"},
    {"an earlier entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"1"); }, L"1234", L"2{}3=;4=;"},
    {"the last entry", [](ProfJob j, ProfList l) { ProfDeleteItemW(j, l, L"4"); }, L"123", L"1=;2{}3=;"},
    {"a new entry", [](ProfJob j, ProfList l) { ProfSetStringW(j, l, L"5", L"x"); }, L"1234", L"1=;2{}3=;4=;5=x;"},
    {"all entries", [](ProfJob j, ProfList l) { ProfEmptyList(j, l); }, L"12", L""},
    {"all, then new ones", [](ProfJob j, ProfList l) { ProfEmptyList(j, l); fill(j, l, 100); }, L"12", L""},
    {"many new entries", [](ProfJob j, ProfList l) { fill(j, l, 5000); }, L"1234", L"1=;2{}3=;4=;"},
    {"the list itself", [](ProfJob j, ProfList l) { ProfDeleteListW(j, l, nullptr); }, L"12", nullptr},
    {"a list above", [](ProfJob j, ProfList) { ProfEmptyList(j, 0); }, L"12", nullptr},
    {"the job", [](ProfJob j, ProfList) { ProfJobClose(j); }, L"12", nullptr}, // its last reference
};
// clang-format on

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
        const ProfJob job = Job(L"outer{L{1=;2{}3=;4=;}}").release();
        const ProfList list = ProfGetListW(job, 0, L"outer/L");
        Walked walked{walk, list, {}};
        const BOOL result = TypeParam::enumerate(job, list, walkOn<typename TypeParam::Char>,
                                                 reinterpret_cast<UINT_PTR>(&walked));
        EXPECT_EQ(walked.visited.substr(0, wcslen(walk.visited)), walk.visited);
        if (walk.after) {
            EXPECT_EQ(walked.visited, walk.visited);
            EXPECT_TRUE(result);
            EXPECT_EQ(describe(job, list), walk.after);
        }
        if (std::string_view(walk.what) != "the job")
            ProfJobClose(job);
    }
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

TEST(Lists, CopiesHoldWhatWasThereWhenTheyBegan) {
    const struct {
        const wchar_t *before, *destination, *source, *after;
    } copies[] = {{L"a=1;L{b=2;}", L"", L"", L"a=1;L{b=2;}a=1;L{b=2;}"},
                  {L"a=1;L{b=2;M{}}", L"L/M", L"", L"a=1;L{b=2;M{a=1;L{b=2;M{}}}}"},
                  {L"a=1;L{b=2;M{c=3;}}", L"", L"L", L"a=1;L{b=2;M{c=3;}}b=2;M{c=3;}"},
                  {L"L{b=2;M{c=3;}}", L"L", L"L", L"L{b=2;M{c=3;}b=2;M{c=3;}}"},
                  {L"L{}", L"L", L"L", L"L{}"}};
    for (const auto& [before, destination, source, after] : copies) {
        const Job job(before);
        const auto list = [&](const wchar_t* path) { return *path ? ProfGetListW(job, 0, path) : 0; };
        EXPECT_EQ(ProfCopyList(job, list(destination), job, list(source)), PROF_OK);
        EXPECT_EQ(describe(job), after);
    }
    const Job from(L"a=1;L{b=2;M{}}"), to(L"L{}");
    EXPECT_EQ(ProfCopyList(to, ProfGetListW(to, 0, L"L"), from, 0), PROF_OK);
    EXPECT_EQ(describe(to), L"L{a=1;L{b=2;M{}}}");
    EXPECT_EQ(describe(from), L"a=1;L{b=2;M{}}");
    EXPECT_EQ(ProfCopyList(to, 0, 0, 0), PROF_INVALID_JOB);
    EXPECT_LT(ProfCopyList(0, 0, from, 0), 0);
}

BOOL TVUT22_CALL takeName(ProfJob, const wchar_t* name, const wchar_t*, ProfList, UINT_PTR user) {
    *reinterpret_cast<const wchar_t**>(user) = name;
    return FALSE;
}

/// Handles that are no list of a job: deleted ones, another job's, addresses within lists and texts of its
/// own, copies of a list elsewhere, addresses of nothing.
class NoLists {
  public:
    NoLists(ProfJob job, ProfJob other) {
        const ProfList above = ProfAppendListW(job, 0, L"above"),
                       below = ProfAppendListW(job, above, L"below"), live = ProfGetListW(job, 0, L"live");
        const wchar_t* text = nullptr;
        ProfEnumW(job, 0, takeName, reinterpret_cast<UINT_PTR>(&text));
        std::memcpy(copy_, live, sizeof copy_);
        ProfDeleteListW(job, above, nullptr);
        handles = {above,
                   below,
                   ProfGetListW(other, 0, L"L"),
                   ProfGetListW(other, 0, nullptr),
                   reinterpret_cast<ProfList>(copy_),
                   reinterpret_cast<ProfList>(const_cast<wchar_t*>(text)),
                   reinterpret_cast<ProfList>(reserved_)};
        for (const INT_PTR distance : {1, 4, 8, 16, -4, 0x10000})
            handles.push_back(reinterpret_cast<ProfList>(reinterpret_cast<INT_PTR>(live) + distance));
        for (const UINT_PTR address : {0x1u, 0x10u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFF0u, 0xFFFFFFFFu})
            handles.push_back(reinterpret_cast<ProfList>(address));
    }
    NoLists(const NoLists&) = delete;
    NoLists& operator=(const NoLists&) = delete;
    ~NoLists() { VirtualFree(reserved_, 0, MEM_RELEASE); }

    std::vector<ProfList> handles;

  private:
    void* reserved_ = VirtualAlloc(nullptr, 4096, MEM_RESERVE, PAGE_NOACCESS);
    UINT_PTR copy_[8];
};

TYPED_TEST(Tree, HandlesThatAreNoListOfTheJobAreRefused) {
    const Job job(L"k=1;live{}"), other(L"L{x=1;}");
    const NoLists none(job, other);
    const auto x = in<typename TypeParam::Char>(L"x");
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
        EXPECT_FALSE(TypeParam::enumerate(job, list, countDown<typename TypeParam::Char>, 0));
        EXPECT_EQ(ProfCopyList(job, 0, job, list), PROF_COPY_FAILED);
        EXPECT_EQ(ProfCopyList(job, list, job, 0), PROF_COPY_FAILED);
        ProfDebugList(job, list);
        EXPECT_EQ(describe(job), L"k=1;live{}");
    }
    EXPECT_EQ(describe(other), L"L{x=1;}");
}

TYPED_TEST(Tree, PathsFromTheRootLeaveTheHandleAlone) {
    using Char = typename TypeParam::Char;
    const Job job(L"k=1;live{}"), other(L"L{x=1;}");
    const NoLists none(job, other);
    const auto k = in<Char>(L"/k"), created = in<Char>(L"/c"), appended = in<Char>(L"/c/d"),
               two = in<Char>(L"2"), base64 = in<Char>(L"Mg==");
    for (const ProfList list : none.handles) {
        SCOPED_TRACE(list);
        INT number = 0;
        VARIANT variant;
        PieceStream bytes("abc"), read;
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
        TypeParam::deleteItem(job, list, in<Char>(L"/v").c_str());
        TypeParam::deleteList(job, list, created.c_str());
        EXPECT_NE(TypeParam::appendList(job, list, created.c_str()), nullptr);
        TypeParam::deleteList(job, list, created.c_str());
        EXPECT_EQ(describe(job), L"k=3;live{}");
    }
}

TEST(Lists, ListingsGoToTheDiagnosticOutput) {
    using Lines = std::vector<std::string>;
    const Job job(L"a=1;L{b=2;M{c=;}}d=4;");
    const Log whole;
    EXPECT_EQ(ProfDebugList(job, 0), PROF_OK);
    EXPECT_EQ(whole.lines(), (Lines{"a=1\n", "[L]\n", " b=2\n", " [M]\n", "  c=\n", "d=4\n"}));
    const Log part;
    EXPECT_EQ(ProfDebugList(job, ProfGetListW(job, 0, L"L")), PROF_OK);
    EXPECT_EQ(part.lines(), (Lines{"b=2\n", "[M]\n", " c=\n"}));
    EXPECT_EQ(ProfDebugList(0, 0), PROF_INVALID_JOB);
    ProfSetDebug(TRUE);
}

} // namespace
} // namespace testing_prof
