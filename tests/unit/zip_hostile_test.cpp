// Archives that nobody vouches for: each is refused with its reason, before a byte is written where that can
// be known, and nothing wrong is ever taken for right.
#include "support/cases.h"
#include "unit/zip_support.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace tvut;

namespace {

using Result = UtilResult;

scForgedEntry File(std::string name, std::string data = "x") {
    return {std::move(name), std::move(data)};
}

// Extracts into a target that must stay untouched.
Result Refused(const std::string& archive, std::u16string_view password = {}, std::uint64_t limit = 1 << 30) {
    clsMemoryTarget target;
    const Result result = Extract(archive, &target, nullptr, password, limit);
    EXPECT_FALSE(target.isMade);
    EXPECT_TRUE(target.files.empty() && target.folders.empty());
    EXPECT_EQ(Extract(archive, nullptr, nullptr, password, limit), result) << "a test refuses the same";
    return result;
}

bool HasLastLine(const std::string& words) {
    const std::u16string& line = DiagnosticLines().back();
    return std::string(line.begin(), line.end()).find(words) != std::string::npos;
}

UtilResult ResultCalled(const std::u16string& name) {
    static const std::map<std::u16string, Result> results{{u"damaged", Result::damaged},
                                                          {u"notSupported", Result::notSupported},
                                                          {u"badPassword", Result::badPassword}};
    return results.at(name);
}

void SetField(auto& record, const char* names, const std::string& name, std::uint32_t number) {
    std::istringstream rest(names);
    std::string each;
    record.EachField([&]<class Number>(Number& field) {
        rest >> each;
        if (each == name)
            field = static_cast<Number>(number);
    });
}

// Changes as rows have them, such as "both.flags=1 end.disk=1 localName=bax".
void Change(std::u16string_view changes, scForgedEntry& entry, scEndRecord& end) {
    constexpr auto centralFields = "madeBy neededVersion flags method time crc packed bytes nameBytes "
                                   "extraBytes commentBytes disk internalAttributes attributes position",
                   localFields = "neededVersion flags method time crc packed bytes nameBytes extraBytes",
                   endFields = "disk directoryDisk entriesHere entries directoryBytes directoryAt";
    std::istringstream words(NarrowCase(changes));
    for (std::string word; words >> word;) {
        const std::size_t dot = word.find('.'), equals = word.find('=');
        const std::string record = word.substr(0, std::min(dot, equals)), value = word.substr(equals + 1);
        if (dot == word.npos) {
            (record == "name" ? entry.name : record == "data" ? entry.data : entry.localName) = value;
            continue;
        }
        const std::string field = word.substr(dot + 1, equals - dot - 1);
        const auto number = static_cast<std::uint32_t>(std::stoul(value, nullptr, 0));
        if (record == "central" || record == "both")
            SetField(entry.central, centralFields, field, number);
        if (record == "local" || record == "both")
            SetField(entry.local, localFields, field, number);
        if (record == "end")
            SetField(end, endFields, field, number);
    }
}

TEST(ZipHostile, NamesThatLeadOutRefuseTheArchive) {
    for (const scCaseRow& row : CaseRows("zip/outside", 1)) {
        EXPECT_EQ(Refused(Forged({File("good"), File(NarrowCase(row[0]))})), Result::unsafe) << row.where;
        EXPECT_TRUE(HasLastLine("ERR: UtilExtractZip('a.zip'): name leads out of the folder: '"));
    }
}

TEST(ZipHostile, DirectoriesThatDoNotAgreeRefuseTheArchive) {
    for (const scCaseRow& row : CaseRows("zip/bad_directories", 3)) {
        std::vector<scForgedEntry> entries{File("one"), File("two")};
        scEndRecord none{};
        Change(row[0], entries[1], none);
        const std::string archive = Forged(std::move(entries), {}, [&](scEndRecord& end) {
            scForgedEntry unused;
            Change(row[0], unused, end);
        });
        EXPECT_EQ(Refused(archive), ResultCalled(row[1])) << row.where;
        EXPECT_TRUE(HasLastLine(NarrowCase(row[2]))) << row.where;
    }
    std::string unsigned_ = Forged({File("one"), File("two")});
    unsigned_[unsigned_.find("PK\1\2") + 3] = '\3';
    EXPECT_EQ(Refused(unsigned_), Result::damaged);
}

// A second entry whose header stands in the data of the first.
TEST(ZipHostile, QuotedOverlapsAreRefused) {
    scForgedEntry inner = File("y", "data");
    inner.central.position = 31;
    EXPECT_EQ(Refused(Forged({File("x", BytesOf(scLocalHeader{}) + "ydata"), inner})), Result::damaged);
}

TEST(ZipHostile, LimitsHoldOnWhatTheDirectorySays) {
    const std::string archive =
        Archive({{u"a", std::string(1000000, 'a')}, {u"b", std::string(1000000, 'b')}});
    EXPECT_LT(archive.size(), 5000u);
    EXPECT_EQ(Refused(archive, {}, 1999999), Result::tooLarge);
    EXPECT_TRUE(HasLastLine("more than 1999999 bytes"));
    clsMemoryTarget target;
    clsCaller onlyA;
    onlyA.answer = [](auto& entry) { return *entry.name == u'a' ? ZipAnswer::go : ZipAnswer::skip; };
    EXPECT_EQ(Extract(archive, nullptr, &onlyA, {}, 1000000), Result::ok) << "what is skipped does not count";
    target.freeBytes = 1999999;
    EXPECT_EQ(Extract(archive, &target), Result::tooLarge);
    EXPECT_FALSE(target.isMade);
    // Sizes that together pass 2^64.
    scForgedEntry huge = File("huge");
    huge.central.bytes = elsewhere32;
    huge.centralExtra = std::string("\1\0\x08\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 12);
    EXPECT_EQ(Refused(Forged({huge, File("b")}), {}, UINT64_MAX - 1), Result::tooLarge);
    EXPECT_TRUE(HasLastLine("more than 18446744073709551614 bytes"));
}

// ---- One bad entry ------------------------------------------------------------------------------

// The bad one stands between two good ones, which are there afterwards.
TEST(ZipHostile, ABadEntryCostsNoOther) {
    for (const scCaseRow& row : CaseRows("zip/bad_entries", 3)) {
        scForgedEntry bad = File("bad");
        scEndRecord none{};
        Change(row[0], bad, none);
        clsMemoryTarget target;
        EXPECT_EQ(Extract(Forged({File("good", "1"), std::move(bad), File("fine", "2")}), &target),
                  ResultCalled(row[1]))
            << row.where;
        EXPECT_EQ(target.files.size(), 2u) << row.where;
        EXPECT_EQ(target.files[u"fine"].bytes, "2");
        EXPECT_EQ(target.unfinished, 0);
        EXPECT_TRUE(HasLastLine("ERR: UtilExtractZip('a.zip')['bad']: " + NarrowCase(row[2]))) << row.where;
    }
}

TEST(ZipHostile, NoByteIsWrittenBeyondWhatTheDirectorySays) {
    std::string archive = Archive({{u"a", std::string(65536, 'a')}});
    UtilpWriteNumber(&archive[archive.find("PK\1\2") + 24], std::uint32_t{100});
    clsMemoryTarget target;
    EXPECT_EQ(Extract(archive, &target), Result::damaged);
    EXPECT_LE(target.written, 100u);
}

TEST(ZipHostile, AFullDiskEndsIt) {
    clsMemoryTarget target;
    target.room = 2;
    EXPECT_EQ(Extract(Archive({{u"a", "1"}, {u"b", "2"}, {u"c", "3"}, {u"d", ""}}), &target), Result::failed);
    EXPECT_EQ(target.files.size(), 2u);
    EXPECT_TRUE(HasLastLine("['c']: cannot be written (112)"));
}

// ---- What is not hostile, but odd ---------------------------------------------------------------

TEST(ZipOdd, BytesBeforeAndAfterTheArchive) {
    const std::vector<scForgedEntry> entries{File("one", "1"), File("two", "2")};
    const std::string plain = Forged(entries), before(70000, 'S');
    const std::string bare = plain.substr(0, plain.size() - 2);
    const std::size_t at = plain.find("PK\1\2");
    const std::string directory = plain.substr(at, plain.size() - 22 - at);
    const scEndRecord twice{
        0, 0, 4, 4, static_cast<std::uint32_t>(directory.size() * 2), static_cast<std::uint32_t>(at), 0};
    const std::pair<const char*, std::string> rows[] = {
        {"before it, positions not moved", before + plain},
        {"before it, positions moved", Forged(entries, before)},
        {"a comment", bare + std::string("\5\0hello", 7)},
        {"a comment like an end record", bare + std::string("\x16\0PK\5\6", 6) + std::string(18, '\xFF')},
        {"appended bytes", plain + std::string(60000, 'm')},
        {"a record twice", plain.substr(0, at) + directory + directory + BytesOf(twice)},
    };
    for (const auto& [what, archive] : rows) {
        clsMemoryTarget target;
        EXPECT_EQ(Extract(archive, &target), Result::ok) << what;
        EXPECT_EQ(target.files.size(), 2u) << what;
        EXPECT_EQ(target.files[u"two"].bytes, "2") << what;
    }
    EXPECT_EQ(Refused(plain + std::string(70000, 'm')), Result::damaged) << "too far from the end";
}

TEST(ZipOdd, EntriesInAnotherOrderThanTheirData) {
    // Each has 32 bytes; the directory lists them as c, a, b.
    std::string archive, directory;
    for (const std::string name : {"a", "b", "c"})
        archive += BytesOf(scLocalHeader{20, 0, 0, 0, CrcOf(name), 1, 1, 1, 0}) + name + name;
    for (const std::uint32_t number : {2u, 0u, 1u}) {
        const std::string name(1, "abc"[number]);
        directory +=
            BytesOf(scCentralHeader{20, 20, 0, 0, 0, CrcOf(name), 1, 1, 1, 0, 0, 0, 0, 0, number * 32}) +
            name;
    }
    const std::string end = BytesOf(scEndRecord{0, 0, 3, 3, 3 * 47, 3 * 32, 0});
    clsCaller caller;
    clsMemoryTarget target;
    EXPECT_EQ(Extract(archive + directory + end, &target, &caller), Result::ok);
    EXPECT_EQ(target.files.size(), 3u);
    EXPECT_EQ(caller.seen.front().name, u"c") << "as the archive lists them";
    // Two at one position overlap in whatever order they stand.
    directory.replace(42, 4, directory.substr(46 + 1 + 42, 4));
    EXPECT_EQ(Refused(archive + directory + end), Result::damaged);
}

TEST(ZipOdd, NamesThatWindowsCannotHaveAreChangedAndTold) {
    for (const scCaseRow& row : CaseRows("zip/changed", 2)) {
        clsMemoryTarget target;
        DiagnosticLines().clear();
        clsCaller caller;
        EXPECT_EQ(Extract(Forged({File(NarrowCase(row[0]))}), &target, &caller), Result::ok) << row.where;
        ASSERT_EQ(target.files.size(), 1u) << row.where;
        EXPECT_EQ(target.files.begin()->first, row[1]) << row.where;
        EXPECT_EQ(caller.seen[0].target, u"C:\\out\\" + row[1]);
        EXPECT_EQ(caller.seen[0].entry.isRenamed, !DiagnosticLines().empty()) << row.where;
    }
    clsMemoryTarget target;
    Extract(Forged({File("d/aux.c")}), &target);
    EXPECT_TRUE(HasLastLine("WRN: UtilExtractZip('a.zip')['d/aux.c']: written as 'd\\aux_.c'"));
}

std::vector<std::u16string> Several(std::u16string_view column) {
    std::vector<std::u16string> parts;
    for (std::size_t at = 0, end = 0; end != column.npos; at = end + 3) {
        end = column.find(u" | ", at);
        parts.emplace_back(column.substr(at, end == column.npos ? end : end - at));
    }
    return parts;
}

TEST(ZipOdd, NamesThatAreOneOnWindowsAreNumbered) {
    for (const scCaseRow& row : CaseRows("zip/numbered", 2)) {
        std::vector<scForgedEntry> entries;
        for (const std::u16string& name : Several(row[0]))
            entries.push_back(File(NarrowCase(name), name.ends_with(u'/') ? "" : "x"));
        clsMemoryTarget target;
        EXPECT_EQ(Extract(Forged(std::move(entries)), &target), Result::ok);
        EXPECT_EQ(target.files.size(), Several(row[1]).size()) << row.where;
        for (const std::u16string& path : Several(row[1]))
            EXPECT_TRUE(target.files.contains(path)) << row.where << testing::PrintToString(path);
    }
}

TEST(ZipOdd, NamesInAllTheirForms) {
    for (const scCaseRow& row : CaseRows("zip/shown", 5)) {
        scForgedEntry entry = File(NarrowCase(row[0]), row[4].ends_with(u'/') ? "" : "x");
        entry.central.flags = entry.local.flags =
            static_cast<std::uint16_t>(std::stoul(NarrowCase(row[1]), nullptr, 0));
        if (!row[2].empty()) {
            entry.centralExtra = std::string("up\0\0\1\0\0\0\0", 9) + NarrowCase(row[3]);
            UtilpWriteNumber(entry.centralExtra.data() + 2, static_cast<std::uint16_t>(5 + row[3].size()));
            UtilpWriteNumber(entry.centralExtra.data() + 5, CrcOf(NarrowCase(row[2])));
        }
        clsCaller caller;
        EXPECT_EQ(Extract(Forged({entry}), nullptr, &caller), Result::ok) << row.where;
        ASSERT_FALSE(caller.seen.empty());
        EXPECT_EQ(caller.seen[0].name, row[4]) << row.where;
        EXPECT_EQ(caller.seen[0].entry.isFolder, row[4].ends_with(u'/'));
    }
}

TEST(ZipOdd, PathsThatAreTooLongRefuseTheArchive) {
    std::string name;
    while (name.size() < 32700)
        name += std::string(99, 'p') + "/";
    EXPECT_EQ(Refused(Forged({File("a"), File(name + "x")})), Result::tooLarge);
    clsMemoryTarget target;
    EXPECT_EQ(Extract(Forged({File(name.substr(0, 32690))}), &target), Result::ok);
}

// ---- Callers ------------------------------------------------------------------------------------

TEST(ZipCaller, IsAskedForAllBeforeAnythingIsWrittenAndThenTold) {
    const std::string large(2 * progressBytes + 5, 'l');
    const std::string archive = Archive({{u"d/", ""}, {u"d/a", "1"}, {u"b", large}});
    clsCaller caller;
    clsMemoryTarget target;
    caller.answer = [&](const scShownZipEntry& entry) {
        if (entry.isQuestion)
            EXPECT_FALSE(target.isMade);
        return std::u16string_view(entry.name) == u"d/a" ? ZipAnswer::skip : ZipAnswer::go;
    };
    EXPECT_EQ(Extract(archive, &target, &caller), Result::ok);
    std::string calls;
    for (const auto& seen : caller.seen)
        calls += (seen.entry.isQuestion ? "?" : "") + NarrowCase(seen.name) + " " +
                 std::to_string(seen.entry.done) + ", ";
    EXPECT_EQ(calls, "?d/ 0, ?d/a 0, ?b 0, d/ 0, b 1048576, b 2097152, b 2097157, ");
    EXPECT_EQ(target.files.size(), 1u);
}

// ---- Sweeps -------------------------------------------------------------------------------------

// Enciphered, where a code vouches for all bytes, and plain.
std::vector<std::string> SmallArchives() {
    const std::vector<scContents> entries{
        {u"d/", ""}, {u"d/text", std::string(300, 't')}, {u"noise", "n\1o\2i\3s\4e"}, {u"e", ""}};
    return {Archive(entries, "key"), Archive(entries)};
}

void ExpectNothingWrong(const std::string& archive, const clsMemoryTarget& right, const std::string& what) {
    clsMemoryTarget target;
    const Result result = Extract(archive, &target, nullptr, u"key");
    for (const auto& made : target.files) {
        const auto isSame = [&](const auto& other) { return other.second.bytes == made.second.bytes; };
        EXPECT_TRUE(std::ranges::any_of(right.files, isSame)) << what;
    }
    EXPECT_TRUE(result != Result::ok || target.files.size() == right.files.size()) << what;
    EXPECT_EQ(target.unfinished, 0) << what;
}

TEST(ZipSweep, AnArchiveCutAnywhereIsRefused) {
    for (const std::string& archive : SmallArchives())
        for (std::size_t size = 0; size < archive.size(); ++size)
            EXPECT_EQ(Refused(archive.substr(0, size), u"key"), Result::damaged) << size;
}

TEST(ZipSweep, AByteChangedAnywhereGivesNoWrongFile) {
    for (const std::string& archive : SmallArchives()) {
        clsMemoryTarget right;
        ASSERT_EQ(Extract(archive, &right, nullptr, u"key"), Result::ok);
        for (std::size_t at = 0; at < archive.size(); ++at) {
            for (const unsigned change : {1u, 0x80u, 0xFFu}) {
                std::string changed = archive;
                changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ change);
                ExpectNothingWrong(changed, right, "byte " + std::to_string(at));
            }
        }
    }
}

} // namespace
