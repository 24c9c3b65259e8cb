// Bytes of streams and files in a profile, and files out of it: identical, in order, and only where they
// belong.
#include "support/fake_clock.h"
#include "support/log.h"
#include "support/piece_stream.h"

#include <random>
#include <vector>

namespace testing_prof {
namespace {

template <class F>
using Files = InBothForms<F>;
TYPED_TEST_SUITE(Files, BothForms, FormNames);

Bytes random(size_t size) {
    std::mt19937 generator(static_cast<unsigned>(size));
    Bytes bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(generator());
    return bytes;
}

std::string narrow(const std::wstring& line) {
    return toBytes(line, CP_ACP);
}

/// The bytes of an item, or "<result>".
template <class F>
Bytes bytesOf(ProfJob job, const wchar_t* path, std::wstring_view key, Bytes before = {}) {
    PieceStream stream(std::move(before));
    const INT result =
        F::getStream(job, 0, in<typename F::Char>(path).c_str(), in<typename F::Char>(key).c_str(), &stream);
    return result == PROF_OK ? stream.data : "<" + std::to_string(result) + ">";
}

TYPED_TEST(Files, StreamsComeBackAsTheyWere) {
    using Char = typename TypeParam::Char;
    const auto name = in<Char>(L"L/b");
    for (const size_t size : {0u, 1u, 7u, 8u, 1000u, 300001u})
        for (const Bytes& bytes : {random(size), Bytes(size, 'z')})
            for (const wchar_t* key : {L"", L"k", L"a longer key \x00FC"}) {
                const Job job;
                PieceStream stream(bytes, size / 3 + 1), more("more");
                stream.position = size / 2; // it is read from its start all the same
                const auto keyText = in<Char>(key);
                TypeParam::appendStream(job, 0, name.c_str(), keyText.c_str(), &stream);
                TypeParam::appendStream(job, 0, name.c_str(), nullptr, &more);
                EXPECT_EQ(stream.references, 1);
                EXPECT_EQ(bytesOf<TypeParam>(job, L"/L/b", key, "what was there"), bytes) << size << key;
                EXPECT_EQ(textOf(job, L"L/b").substr(0, 3), size ? L"@2@" : L"");
                if (size && *key) {
                    EXPECT_EQ(bytesOf<TypeParam>(job, L"L/b", L""), "<-4>") << size;
                    EXPECT_EQ(bytesOf<TypeParam>(job, L"L/b", L"K"), "<-4>") << size;
                }
            }
}

TYPED_TEST(Files, ResultsComeInOrder) {
    using Char = typename TypeParam::Char;
    const TempFolder folder;
    const Job job(L"plain=YWJj;bad=@2@YWJj;text=*;");
    EXPECT_EQ(bytesOf<TypeParam>(job, L"plain", L"key"), "abc") << "under 8 bytes no key matters";
    EXPECT_EQ(bytesOf<TypeParam>(job, L"bad", L""), "<-4>");
    EXPECT_EQ(bytesOf<TypeParam>(job, L"text", L""), "<-4>");
    EXPECT_EQ(bytesOf<TypeParam>(job, L"none", L""), "<-6>");
    EXPECT_EQ(bytesOf<TypeParam>(0, L"plain", L""), "");
    const auto plain = in<Char>(L"plain"), none = in<Char>(L"none"), file = in<Char>(folder / L"no/file");
    EXPECT_EQ(TypeParam::getStream(job, 0, none.c_str(), nullptr, nullptr), PROF_NOT_FOUND);
    EXPECT_EQ(TypeParam::getStream(job, 0, plain.c_str(), nullptr, nullptr), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, none.c_str(), nullptr, file.c_str()), PROF_NOT_FOUND);
    EXPECT_EQ(TypeParam::getFile(job, 0, plain.c_str(), nullptr, file.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, plain.c_str(), nullptr, nullptr), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(0, 0, plain.c_str(), nullptr, nullptr), 0);
    EXPECT_EQ(TypeParam::appendFiles(0, 0, file.c_str(), nullptr), 0);
    EXPECT_EQ(TypeParam::extractFiles(0, 0, file.c_str(), nullptr), 0);
    for (size_t failAt = 0; failAt < 3; ++failAt) {
        PieceStream stream("abc", 1);
        stream.failAt = failAt;
        TypeParam::appendStream(job, 0, none.c_str(), nullptr, &stream);
        EXPECT_EQ(TypeParam::getStream(job, 0, plain.c_str(), nullptr, &stream), PROF_DECODE_FAILED);
    }
    TypeParam::appendStream(job, 0, none.c_str(), nullptr, nullptr);
    TypeParam::appendFile(job, 0, none.c_str(), nullptr, nullptr);
    TypeParam::appendFile(job, 0, none.c_str(), nullptr, file.c_str());
    EXPECT_EQ(textOf(job, L"none"), L"<none>");
}

TEST(Streams, MayClaimAnySize) {
    const std::wstring value(300000, L'v');
    for (const uint64_t claimed : {uint64_t{0}, uint64_t{1}, uint64_t{1} << 31, ~uint64_t{0}}) {
        PieceStream stream(random(1000), 100), text("[/]\na=" + Bytes(300000, 'v'), 50000);
        stream.claimedSize = text.claimedSize = claimed;
        const Job job;
        ProfAppendStreamW(job, 0, L"b", nullptr, &stream);
        EXPECT_EQ(bytesOf<Form<wchar_t>>(job, L"b", L""), stream.data) << claimed;
        EXPECT_EQ(textOf(Job(ProfJobOpenStream(&text)), L"a"), value) << claimed;
    }
}

TEST(Streams, MayChangeTheProfileWhileTheyAreUsed) {
    const Job job(L"L{}b=YWJj;");
    const ProfList list = ProfGetListW(job, 0, L"L");
    PieceStream deletes("abc"), closes("abc"), closesLate;
    deletes.onRead = [&] { ProfDeleteListW(job, 0, L"L"); };
    ProfAppendStreamW(job, list, L"b", nullptr, &deletes);
    EXPECT_EQ(describe(job), L"b=YWJj;");
    Job closed(L"b=1;");
    closes.onRead = [&] { closed.close(); };
    ProfAppendStreamW(closed, 0, L"c", nullptr, &closes);
    closed = Job(L"b=YWJj;");
    const ProfJob handle = closesLate.closedByWrite = closed.release();
    EXPECT_EQ(ProfGetStreamW(handle, 0, L"b", nullptr, &closesLate), PROF_OK);
    EXPECT_EQ(closesLate.data, "abc");
}

TYPED_TEST(Files, AreReplacedWholeOrNotAtAll) {
    using Char = typename TypeParam::Char;
    const TempFolder folder;
    const Bytes bytes = random(100000);
    writeFile(folder / L"source", bytes);
    writeFile(folder / L"target", "old");
    const auto name = in<Char>(L"b"), key = in<Char>(L"key"), source = in<Char>(folder / L"source"),
               target = in<Char>(folder / L"target"), fresh = in<Char>(folder / L"new");
    const Job job;
    TypeParam::appendFile(job, 0, name.c_str(), key.c_str(), source.c_str());
    std::wstring text = textOf(job, L"b");
    const Log log;
    const auto noFolder = in<Char>(folder / L"no\\file");
    EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), nullptr, target.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), noFolder.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(log.lines(), (std::vector<std::string>{
                               "ERR: compressed bytes of a text are damaged, cut off or of another key",
                               "'" + narrow(folder / L"no\\file") + "' could not be created"}));
    for (const size_t damagedAt : {size_t{3}, text.size() / 2, text.size() - 8}) {
        std::wstring damaged = text;
        damaged[damagedAt] = damaged[damagedAt] == L'A' ? L'B' : L'A';
        ProfSetStringW(job, 0, L"b", damaged.c_str());
        for (const auto* file : {&target, &fresh})
            EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), file->c_str()),
                      PROF_DECODE_FAILED);
    }
    EXPECT_EQ(readFile(folder / L"target"), "old");
    EXPECT_EQ(folder.count(), 2) << "something was left behind";
    ProfSetStringW(job, 0, L"b", text.c_str());
    for (const auto* file : {&target, &fresh})
        EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), file->c_str()), PROF_OK);
    EXPECT_EQ(readFile(folder / L"target"), bytes);
    EXPECT_EQ(readFile(folder / L"new"), bytes);
    EXPECT_EQ(folder.count(), 3);
}

BOOL TVUT22_CALL addName(ProfJob job, const wchar_t* name, const wchar_t*, ProfList entry, UINT_PTR user) {
    const std::wstring tree = describe(job, entry);
    const size_t end = tree.find(L";Contents=@2@");
    const bool whole = std::wstring_view(name) == L"File.Entry" && tree.starts_with(L"Name=");
    auto& all = *reinterpret_cast<std::wstring*>(user);
    all += (whole && end != std::wstring::npos ? tree.substr(5, end - 5) : L"<" + tree + L">") + L" ";
    return TRUE;
}

/// The names of the root list's file entries, in order.
std::wstring names(ProfJob job) {
    std::wstring all;
    ProfEnumW(job, 0, addName, reinterpret_cast<UINT_PTR>(&all));
    return all;
}

HANDLE WINAPI denyB(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
                    DWORD flags, HANDLE model) {
    if (!std::wstring_view(name).ends_with(L"b.log"))
        return CreateFileW(name, access, share, security, how, flags, model);
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
}

TYPED_TEST(Files, AreFoundByNamesAndPatternsInOrder) {
    using Char = typename TypeParam::Char;
    const TempFolder folder;
    for (const wchar_t* name : {L"b.log", L"A.log", L"c.logx", L"_d", L"e.txt", L"\x00FC.txt"})
        writeFile(folder / name, "x");
    std::filesystem::create_directory(folder / L"folder.log");
    writeFile(folder / L"folder.log\\inner.log", "x");
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        // @ stands for the folder
        {L"", L""},
        {L"@*.log", L"A.log b.log "}, // no folders, no short names
        {L"@*", L"A.log b.log c.logx e.txt _d \x00FC.txt "},
        {L"@*.*", L"A.log b.log c.logx e.txt _d \x00FC.txt "},
        {L" @e.txt ;; @b.log;@b.log ", L"e.txt b.log b.log "},
        {L"@?.txt;@*.l?g", L"e.txt \x00FC.txt A.log b.log "},
        {L"@A.LOG", L"A.log "},
        {L"@none;@*.none;@none\\*;@folder.log;@;@.;@..;NUL;@NUL;?:\\*", L""},
        {L"@folder.log\\*", L"inner.log "}};
    for (const auto& [patterns, expected] : rows) {
        std::wstring text;
        for (const wchar_t* at = patterns; *at; ++at)
            text += *at == L'@' ? folder / L"" : std::wstring(1, *at);
        const Job job;
        EXPECT_EQ(TypeParam::appendFiles(job, 0, in<Char>(text).c_str(), nullptr), PROF_OK) << text;
        EXPECT_EQ(names(job), expected) << text;
    }
    const Job job;
    const ImportHook hook("CreateFileW", reinterpret_cast<void*>(denyB));
    const Log log;
    const std::wstring patterns = (folder / L"none;") + (folder / L"*.log");
    EXPECT_EQ(TypeParam::appendFiles(job, 0, in<Char>(patterns).c_str(), nullptr), PROF_CONVERT_FAILED);
    EXPECT_EQ(names(job), L"A.log ") << "those before the one that cannot be read";
    EXPECT_EQ(log.lines(),
              (std::vector{"WRN: ProfAppendFiles: '" + narrow(folder / L"none") + "' not found",
                           "WRN: ProfAppendFiles: '" + narrow(folder / L"b.log") + "' could not be read"}));
}

// Files that are locked until some time of the clock.
HANDLE WINAPI locked(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
                     DWORD flags, HANDLE model) {
    const std::wstring_view path(name);
    if (FakeClock::now >= (path.ends_with(L"\\a") ? 6000 : path.ends_with(L"\\b") ? 12000 : 0))
        return CreateFileW(name, access, share, security, how, flags, model);
    SetLastError(ERROR_SHARING_VIOLATION);
    return INVALID_HANDLE_VALUE;
}

TYPED_TEST(Files, ThatAreLockedAreWaitedForTenSecondsInAll) {
    const TempFolder folder;
    for (const wchar_t* name : {L"a", L"b"})
        writeFile(folder / name, "x");
    const ImportHook hook("CreateFileW", reinterpret_cast<void*>(locked));
    const FakeClock clock;
    const Job job;
    EXPECT_EQ(TypeParam::appendFiles(job, 0, in<typename TypeParam::Char>(folder / L"*").c_str(), nullptr),
              PROF_CONVERT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(names(job), L"a ");
    EXPECT_EQ(FakeClock::now, 10000u);
}

void addEntry(ProfJob job, const wchar_t* name, const wchar_t* contents) {
    const ProfList entry = ProfAppendListW(job, 0, L"File.Entry");
    if (name)
        ProfAppendStringW(job, entry, L"Name", name);
    if (contents)
        ProfAppendStringW(job, entry, L"Contents", contents);
}

TYPED_TEST(Files, ComeOutAsTheyWentIn) {
    using Char = typename TypeParam::Char;
    const TempFolder folder;
    std::filesystem::create_directory(folder / L"in");
    std::vector<Bytes> contents;
    for (int i = 0; i < 20; ++i) {
        contents.push_back(i % 2 ? random(static_cast<size_t>(i) * 1111)
                                 : Bytes(static_cast<size_t>(i) * 999, 'x'));
        writeFile(folder / (L"in\\" + std::to_wstring(i)), contents.back());
    }
    const auto key = in<Char>(L"secret"), all = in<Char>(folder / L"in\\*"), to = in<Char>(folder / L"out");
    const Job job;
    EXPECT_EQ(TypeParam::appendFiles(job, 0, all.c_str(), key.c_str()), PROF_OK);
    const Job again = opened(saved(job));
    addEntry(again, L"twice", L"YQ==");
    addEntry(again, L"twice", L"Yg==");
    for (int round = 0; round < 2; ++round) // the second one finds the folder and the files
        EXPECT_EQ(TypeParam::extractFiles(again, 0, to.c_str(), key.c_str()), PROF_OK);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(readFile(folder / (L"out\\" + std::to_wstring(i))), contents[static_cast<size_t>(i)]) << i;
    EXPECT_EQ(readFile(folder / L"out\\twice"), "b");
}

TYPED_TEST(Files, NeverLeaveTheirFolder) {
    using Char = typename TypeParam::Char;
    const TempFolder folder;
    writeFile(folder / L"kept", "kept");
    const std::wstring out = folder / L"out", drive = out.substr(0, 2);
    const std::vector<std::wstring> refused = {L"..\\a",
                                               L"../kept",
                                               L"..",
                                               L".",
                                               L"\\a",
                                               L"/a",
                                               drive + L"a",
                                               folder / L"kept",
                                               L"a:b",
                                               L"NUL",
                                               L"con.txt",
                                               L"b\\c",
                                               L"a ",
                                               L"a.",
                                               L"a*",
                                               L"\x0001",
                                               L"\\\\?\\" + (folder / L"a"),
                                               L"COM\x00B9"};
    const Job job;
    addEntry(job, L"first", L"YQ==");
    for (const std::wstring& name : refused)
        addEntry(job, name.c_str(), L"YmFk");
    addEntry(job, L"damaged", L"@2@YmFk");
    addEntry(job, L"nothing", nullptr);
    addEntry(job, nullptr, L"YmFk");
    addEntry(job, L"", L"YmFk");
    job.build(0, L"File.Entry=not a list;Other{Name=other;Contents=YQ==;}");
    addEntry(job, L"last", L"Yg==");
    const Log log;
    EXPECT_EQ(TypeParam::extractFiles(job, 0, in<Char>(out).c_str(), nullptr), PROF_SAVE_FAILED);
    EXPECT_EQ(readFile(folder / L"out\\first") + readFile(folder / L"out\\last"), "ab");
    EXPECT_EQ(readFile(folder / L"kept"), "kept");
    EXPECT_EQ(folder.count(), 2);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(out), std::filesystem::directory_iterator()),
              2);
    std::vector<std::string> expected;
    for (const std::wstring& name : refused)
        expected.push_back(narrow(L"'" + out + L"\\" + name + L"' could not be created"));
    expected.push_back("ERR: compressed bytes of a text are damaged, cut off or of another key");
    expected.push_back(narrow(L"'" + out + L"\\damaged' could not be created"));
    expected.push_back(narrow(L"'" + out + L"\\nothing' could not be created"));
    expected.insert(expected.end(), 2, "ProfExtractFiles:\"Filename=\" not found");
    EXPECT_EQ(log.lines(), expected);
    for (const std::wstring& bad : {std::wstring(), folder / L"kept", folder / L"no\\folder"}) {
        const Log again;
        EXPECT_EQ(TypeParam::extractFiles(job, 0, in<Char>(bad).c_str(), nullptr), PROF_SAVE_FAILED);
        EXPECT_EQ(again.lines(), std::vector{narrow(L"problem creating directory '" + bad + L"'")});
    }
}

} // namespace
} // namespace testing_prof
