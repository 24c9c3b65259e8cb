// Bytes of streams and files in a profile, and files out of it: identical, in order, and only where they
// belong.
#include "support/fake_clock.h"
#include "support/log.h"
#include "support/piece_stream.h"

#include <vector>

namespace testing_prof {
namespace {

template <class F>
using Files = InBothForms<F>;
TYPED_TEST_SUITE(Files, BothForms, scFormNames);

std::string Narrow(const std::wstring& line) {
    return ToBytes(line, CP_ACP);
}

// The bytes of an item, or "<result>".
template <class F>
Bytes BytesOf(ProfJob job, const wchar_t* path, std::wstring_view key, Bytes before = {}) {
    clsPieceStream stream(std::move(before));
    const INT result =
        F::getStream(job, 0, In<typename F::Char>(path).c_str(), In<typename F::Char>(key).c_str(), &stream);
    return result == PROF_OK ? stream.data : "<" + std::to_string(result) + ">";
}

TYPED_TEST(Files, StreamsComeBackAsTheyWere) {
    using Char = typename TypeParam::Char;
    const auto name = In<Char>(L"L/b");
    for (const size_t size : {0u, 1u, 7u, 8u, 1000u, 300001u})
        for (const Bytes& bytes : {Noise(size), Bytes(size, 'z')})
            for (const wchar_t* key : {L"", L"k", L"a longer key \x00FC"}) {
                const clsJob job;
                clsPieceStream stream(bytes, size / 3 + 1), more("more");
                stream.position = size / 2; // it is read from its start all the same
                const auto keyText = In<Char>(key);
                TypeParam::appendStream(job, 0, name.c_str(), keyText.c_str(), &stream);
                TypeParam::appendStream(job, 0, name.c_str(), nullptr, &more);
                EXPECT_EQ(stream.references, 1);
                EXPECT_EQ(BytesOf<TypeParam>(job, L"/L/b", key, "what was there"), bytes) << size << key;
                EXPECT_EQ(TextOf(job, L"L/b").substr(0, 3), size ? L"@2@" : L"");
                if (size && *key) {
                    EXPECT_EQ(BytesOf<TypeParam>(job, L"L/b", L""), "<-4>") << size;
                    EXPECT_EQ(BytesOf<TypeParam>(job, L"L/b", L"K"), "<-4>") << size;
                }
            }
}

TYPED_TEST(Files, ResultsComeInOrder) {
    using Char = typename TypeParam::Char;
    const clsTempFolder folder;
    const clsJob job(L"plain=YWJj;bad=@2@YWJj;text=*;");
    EXPECT_EQ(BytesOf<TypeParam>(job, L"plain", L"key"), "abc") << "under 8 bytes no key matters";
    EXPECT_EQ(BytesOf<TypeParam>(job, L"bad", L""), "<-4>");
    EXPECT_EQ(BytesOf<TypeParam>(job, L"text", L""), "<-4>");
    EXPECT_EQ(BytesOf<TypeParam>(job, L"none", L""), "<-6>");
    EXPECT_EQ(BytesOf<TypeParam>(0, L"plain", L""), "");
    const auto plain = In<Char>(L"plain"), none = In<Char>(L"none"), file = In<Char>(folder / L"no/file");
    EXPECT_EQ(TypeParam::getStream(job, 0, none.c_str(), nullptr, nullptr), PROF_NOT_FOUND);
    EXPECT_EQ(TypeParam::getStream(job, 0, plain.c_str(), nullptr, nullptr), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, none.c_str(), nullptr, file.c_str()), PROF_NOT_FOUND);
    EXPECT_EQ(TypeParam::getFile(job, 0, plain.c_str(), nullptr, file.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, plain.c_str(), nullptr, nullptr), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(0, 0, plain.c_str(), nullptr, nullptr), 0);
    EXPECT_EQ(TypeParam::appendFiles(0, 0, file.c_str(), nullptr), 0);
    EXPECT_EQ(TypeParam::extractFiles(0, 0, file.c_str(), nullptr), 0);
    for (size_t failAt = 0; failAt < 3; ++failAt) {
        clsPieceStream stream("abc", 1);
        stream.failAt = failAt;
        TypeParam::appendStream(job, 0, none.c_str(), nullptr, &stream);
        EXPECT_EQ(TypeParam::getStream(job, 0, plain.c_str(), nullptr, &stream), PROF_DECODE_FAILED);
    }
    TypeParam::appendStream(job, 0, none.c_str(), nullptr, nullptr);
    TypeParam::appendFile(job, 0, none.c_str(), nullptr, nullptr);
    TypeParam::appendFile(job, 0, none.c_str(), nullptr, file.c_str());
    EXPECT_EQ(TextOf(job, L"none"), L"<none>");
}

TEST(Streams, MayClaimAnySize) {
    const std::wstring value(300000, L'v');
    for (const uint64_t claimed : {uint64_t{0}, uint64_t{1}, uint64_t{1} << 31, ~uint64_t{0}}) {
        clsPieceStream stream(Noise(1000), 100), text("[/]\na=" + Bytes(300000, 'v'), 50000);
        stream.claimedSize = text.claimedSize = claimed;
        const clsJob job;
        ProfAppendStreamW(job, 0, L"b", nullptr, &stream);
        EXPECT_EQ(BytesOf<scForm<wchar_t>>(job, L"b", L""), stream.data) << claimed;
        EXPECT_EQ(TextOf(clsJob(ProfJobOpenStream(&text)), L"a"), value) << claimed;
    }
}

TEST(Streams, MayChangeTheProfileWhileTheyAreUsed) {
    const clsJob job(L"L{}b=YWJj;");
    const ProfList list = ProfGetListW(job, 0, L"L");
    clsPieceStream deletes("abc"), closes("abc"), closesLate;
    deletes.onRead = [&] { ProfDeleteListW(job, 0, L"L"); };
    ProfAppendStreamW(job, list, L"b", nullptr, &deletes);
    EXPECT_EQ(Describe(job), L"b=YWJj;");
    clsJob closed(L"b=1;");
    closes.onRead = [&] { closed.Close(); };
    ProfAppendStreamW(closed, 0, L"c", nullptr, &closes);
    closed = clsJob(L"b=YWJj;");
    const ProfJob handle = closesLate.closedByWrite = closed.Release();
    EXPECT_EQ(ProfGetStreamW(handle, 0, L"b", nullptr, &closesLate), PROF_OK);
    EXPECT_EQ(closesLate.data, "abc");
}

TYPED_TEST(Files, AreReplacedWholeOrNotAtAll) {
    using Char = typename TypeParam::Char;
    const clsTempFolder folder;
    const Bytes bytes = Noise(100000);
    WriteBytes(folder / L"source", bytes);
    WriteBytes(folder / L"target", "old");
    const auto name = In<Char>(L"b"), key = In<Char>(L"key"), source = In<Char>(folder / L"source"),
               target = In<Char>(folder / L"target"), fresh = In<Char>(folder / L"new");
    const clsJob job;
    TypeParam::appendFile(job, 0, name.c_str(), key.c_str(), source.c_str());
    std::wstring text = TextOf(job, L"b");
    const clsLog log;
    const auto noFolder = In<Char>(folder / L"no\\file");
    EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), nullptr, target.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), noFolder.c_str()), PROF_DECODE_FAILED);
    EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                               "ERR: compressed bytes of a text are damaged, cut off or of another key",
                               "'" + Narrow(folder / L"no\\file") + "' could not be created"}));
    for (const size_t damagedAt : {size_t{3}, text.size() / 2, text.size() - 8}) {
        std::wstring damaged = text;
        damaged[damagedAt] = damaged[damagedAt] == L'A' ? L'B' : L'A';
        ProfSetStringW(job, 0, L"b", damaged.c_str());
        for (const auto* file : {&target, &fresh})
            EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), file->c_str()),
                      PROF_DECODE_FAILED);
    }
    EXPECT_EQ(ReadBytes(folder / L"target"), "old");
    EXPECT_EQ(folder.Count(), 2) << "something was left behind";
    ProfSetStringW(job, 0, L"b", text.c_str());
    for (const auto* file : {&target, &fresh})
        EXPECT_EQ(TypeParam::getFile(job, 0, name.c_str(), key.c_str(), file->c_str()), PROF_OK);
    EXPECT_EQ(ReadBytes(folder / L"target"), bytes);
    EXPECT_EQ(ReadBytes(folder / L"new"), bytes);
    EXPECT_EQ(folder.Count(), 3);
}

BOOL TVUT22_CALL AddName(ProfJob job, const wchar_t* name, const wchar_t*, ProfList entry, UINT_PTR user) {
    const std::wstring tree = Describe(job, entry);
    const size_t end = tree.find(L";Contents=@2@");
    const bool whole = std::wstring_view(name) == L"File.Entry" && tree.starts_with(L"Name=");
    auto& all = *reinterpret_cast<std::wstring*>(user);
    all += (whole && end != std::wstring::npos ? tree.substr(5, end - 5) : L"<" + tree + L">") + L" ";
    return TRUE;
}

// The names of the root list's file entries, in order.
std::wstring Names(ProfJob job) {
    std::wstring all;
    ProfEnumW(job, 0, AddName, reinterpret_cast<UINT_PTR>(&all));
    return all;
}

HANDLE WINAPI DenyB(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
                    DWORD flags, HANDLE model) {
    if (!std::wstring_view(name).ends_with(L"b.log"))
        return CreateFileW(name, access, share, security, how, flags, model);
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_HANDLE_VALUE;
}

TEST(ManyFiles, AreFoundByNamesAndPatternsInOrder) {
    const clsTempFolder folder;
    for (const wchar_t* name : {L"b.log", L"A.log", L"c.logx", L"_d", L"e.txt", L"\x00FC.txt"})
        WriteBytes(folder / name, "x");
    std::filesystem::create_directory(folder / L"folder.log");
    WriteBytes(folder / L"folder.log\\inner.log", "x");
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
        const clsJob job;
        EXPECT_EQ(ProfAppendFilesW(job, 0, text.c_str(), nullptr), PROF_OK) << text;
        EXPECT_EQ(Names(job), expected) << text;
    }
    const clsJob job;
    const clsImportHook hook("CreateFileW", reinterpret_cast<void*>(DenyB));
    const clsLog log;
    const std::wstring patterns = (folder / L"none;") + (folder / L"*.log");
    EXPECT_EQ(ProfAppendFilesW(job, 0, patterns.c_str(), nullptr), PROF_CONVERT_FAILED);
    EXPECT_EQ(Names(job), L"A.log ") << "those before the one that cannot be read";
    EXPECT_EQ(log.Lines(),
              (std::vector{"WRN: ProfAppendFiles: '" + Narrow(folder / L"none") + "' not found",
                           "WRN: ProfAppendFiles: '" + Narrow(folder / L"b.log") + "' could not be read"}));
}

// Files that are locked until some time of the clock.
HANDLE WINAPI Locked(LPCWSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how,
                     DWORD flags, HANDLE model) {
    const std::wstring_view path(name);
    if (clsFakeClock::now >= (path.ends_with(L"\\a") ? 6000 : path.ends_with(L"\\b") ? 12000 : 0))
        return CreateFileW(name, access, share, security, how, flags, model);
    SetLastError(ERROR_SHARING_VIOLATION);
    return INVALID_HANDLE_VALUE;
}

TEST(ManyFiles, ThatAreLockedAreWaitedForTenSecondsInAll) {
    const clsTempFolder folder;
    for (const wchar_t* name : {L"a", L"b"})
        WriteBytes(folder / name, "x");
    const clsImportHook hook("CreateFileW", reinterpret_cast<void*>(Locked));
    const clsFakeClock clock;
    const clsJob job;
    EXPECT_EQ(ProfAppendFilesW(job, 0, (folder / L"*").c_str(), nullptr), PROF_CONVERT_FAILED);
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    EXPECT_EQ(Names(job), L"a ");
    EXPECT_EQ(clsFakeClock::now, 10000u);
}

void AddEntry(ProfJob job, const wchar_t* name, const wchar_t* contents) {
    const ProfList entry = ProfAppendListW(job, 0, L"File.Entry");
    if (name)
        ProfAppendStringW(job, entry, L"Name", name);
    if (contents)
        ProfAppendStringW(job, entry, L"Contents", contents);
}

TYPED_TEST(Files, ComeOutAsTheyWentIn) {
    using Char = typename TypeParam::Char;
    const clsTempFolder folder;
    std::filesystem::create_directory(folder / L"in");
    std::vector<Bytes> contents;
    for (int i = 0; i < 20; ++i) {
        contents.push_back(Noise(static_cast<size_t>(i) * 1111));
        WriteBytes(folder / (L"in\\" + std::to_wstring(i)), contents.back());
    }
    const auto key = In<Char>(L"secret"), all = In<Char>(folder / L"in\\*"), to = In<Char>(folder / L"out");
    const clsJob job;
    EXPECT_EQ(TypeParam::appendFiles(job, 0, all.c_str(), key.c_str()), PROF_OK);
    const clsJob again = Opened(Saved(job));
    AddEntry(again, L"twice", L"YQ==");
    AddEntry(again, L"twice", L"Yg==");
    for (int round = 0; round < 2; ++round) // the second one finds the folder and the files
        EXPECT_EQ(TypeParam::extractFiles(again, 0, to.c_str(), key.c_str()), PROF_OK);
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(ReadBytes(folder / (L"out\\" + std::to_wstring(i))), contents[static_cast<size_t>(i)]) << i;
    EXPECT_EQ(ReadBytes(folder / L"out\\twice"), "b");
}

TEST(ManyFiles, NeverLeaveTheirFolder) {
    const clsTempFolder folder;
    WriteBytes(folder / L"kept", "kept");
    const std::wstring out = folder / L"out", drive = out.substr(0, 2);
    std::vector<std::wstring> refused = {drive + L"a", folder / L"kept", L"\\\\?\\" + (folder / L"a")};
    for (const wchar_t* name :
         {L"..\\a", L"../kept", L"..", L"\\a", L"a:b", L"con.txt", L"b\\c", L"a ", L"\x0001"})
        refused.emplace_back(name);
    const clsJob job;
    AddEntry(job, L"first", L"YQ==");
    for (const std::wstring& name : refused)
        AddEntry(job, name.c_str(), L"YmFk");
    AddEntry(job, L"damaged", L"@2@YmFk");
    AddEntry(job, L"nothing", nullptr);
    AddEntry(job, nullptr, L"YmFk");
    AddEntry(job, L"", L"YmFk");
    job.Build(0, L"File.Entry=not a list;Other{Name=other;Contents=YQ==;}");
    AddEntry(job, L"last", L"Yg==");
    const clsLog log;
    EXPECT_EQ(ProfExtractFilesW(job, 0, out.c_str(), nullptr), PROF_SAVE_FAILED);
    EXPECT_EQ(ReadBytes(folder / L"out\\first") + ReadBytes(folder / L"out\\last"), "ab");
    EXPECT_EQ(ReadBytes(folder / L"kept"), "kept");
    EXPECT_EQ(folder.Count(), 2);
    using Entries = std::filesystem::directory_iterator;
    EXPECT_EQ(std::distance(Entries(out), Entries()), 2);
    refused.insert(refused.end(), {L"damaged", L"nothing"});
    std::vector<std::string> expected;
    for (const std::wstring& name : refused)
        expected.push_back(Narrow(L"'" + out + L"\\" + name + L"' could not be created"));
    expected.insert(expected.end() - 2,
                    "ERR: compressed bytes of a text are damaged, cut off or of another key");
    expected.insert(expected.end(), 2, "ProfExtractFiles:\"Filename=\" not found");
    EXPECT_EQ(log.Lines(), expected);
    for (const std::wstring& bad : {std::wstring(), folder / L"kept", folder / L"no\\folder"}) {
        const clsLog again;
        EXPECT_EQ(ProfExtractFilesW(job, 0, bad.c_str(), nullptr), PROF_SAVE_FAILED);
        EXPECT_EQ(again.Lines(), std::vector{Narrow(L"problem creating directory '" + bad + L"'")});
    }
}

} // namespace
} // namespace testing_prof
