// Archives that nobody vouches for: each is refused with its reason, before a byte is written where that can be
// known, and nothing wrong is ever taken for right.
#include "unit/zip_support.h"
#include "zip/zip_extra.h"

#include <gtest/gtest.h>

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

std::string LastLine() {
    const std::u16string& line = DiagnosticLines().back();
    return {line.begin(), line.end()};
}

TEST(ZipHostile, NamesThatLeadOutRefuseTheArchive) {
    for (const char* name : {"../x", "..\\x", "/x", "\\x", "C:x", "c:\\x", "\\\\h\\s\\x", "//h/s/x", "a/../../x",
                             "a/..", "..", "a\\..\\x", "./../x", "./C:x", "/", "C:"}) {
        EXPECT_EQ(Refused(Forged({File("good"), File(name)})), Result::unsafe) << name;
        EXPECT_NE(LastLine().find("ERR: UtilExtractZip('a.zip'): name leads out of the folder: '"), std::string::npos);
    }
}

TEST(ZipHostile, DirectoriesThatDoNotAgreeRefuseTheArchive) {
    const auto with = [](const std::function<void(scForgedEntry&)>& change) {
        std::vector<scForgedEntry> entries{File("one"), File("two")};
        change(entries[1]);
        return Forged(std::move(entries));
    };
    const auto end = [](const std::function<void(scEndRecord&)>& change) {
        return Forged({File("one"), File("two")}, {}, change);
    };
    const std::string whole = Forged({File("one"), File("two")});
    const struct {
        const char* what;
        std::string archive;
        Result result;
        const char* words;
    } rows[] = {
        {"nothing", "", Result::damaged, "no ZIP archive"},
        {"a text", "no archive at all", Result::damaged, "no ZIP archive"},
        {"one entry less", end([](auto& e) { e.entries = e.entriesHere = 1; }), Result::damaged, "damaged directory"},
        {"one entry more", end([](auto& e) { e.entries = e.entriesHere = 3; }), Result::damaged, "damaged directory"},
        {"a longer directory", end([](auto& e) { ++e.directoryBytes; }), Result::damaged, "damaged directory"},
        {"a later directory", end([](auto& e) { ++e.directoryAt; }), Result::damaged, "damaged directory"},
        {"large numbers nowhere", end([](auto& e) { e.directoryAt = elsewhere32; }), Result::damaged, "damaged directory"},
        {"several disks", end([](auto& e) { e.disk = 1; }), Result::notSupported, "several disks"},
        {"entries elsewhere", end([](auto& e) { e.entriesHere = 1; }), Result::notSupported, "several disks"},
        {"a signature", whole.substr(0, whole.find("PK\1\2") + 3) + '\3' + whole.substr(whole.find("PK\1\2") + 4), Result::damaged, "damaged directory"},
        {"no name", with([](auto& e) { e.name = ""; e.localName = ""; }), Result::damaged, "damaged directory"},
        {"a large size nowhere", with([](auto& e) { e.central.bytes = elsewhere32; }), Result::damaged, "damaged directory"},
        {"an entry of another disk", with([](auto& e) { e.central.disk = 1; }), Result::notSupported, "several disks"},
        {"overlapping entries", with([](auto& e) { e.central.position = 1; }), Result::damaged, "entries overlap"},
        {"an entry far away", with([](auto& e) { e.central.position = 0x7FFFFFFF; }), Result::damaged, "damaged directory"},
        {"data in the directory", with([](auto& e) { e.central.packed = 50; }), Result::damaged, "entries overlap"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Refused(row.archive), row.result) << row.what;
        EXPECT_NE(LastLine().find(row.words), std::string::npos) << row.what << ": " << LastLine();
    }
}

// A second entry whose header stands in the data of the first.
TEST(ZipHostile, QuotedOverlapsAreRefused) {
    EXPECT_EQ(Refused(Forged({File("x", BytesOf(scLocalHeader{}) + "y" + "data"), [] {
                                  scForgedEntry entry = File("y", "data");
                                  entry.central.position = 31;
                                  return entry;
                              }()})),
              Result::damaged);
}

TEST(ZipHostile, LimitsHoldOnWhatTheDirectorySays) {
    const std::string archive = Archive({{u"a", std::string(1000000, 'a')}, {u"b", std::string(1000000, 'b')}});
    EXPECT_LT(archive.size(), 5000u);
    EXPECT_EQ(Refused(archive, {}, 1999999), Result::tooLarge);
    EXPECT_NE(LastLine().find("more than 1999999 bytes"), std::string::npos);
    clsMemoryTarget target;
    target.freeBytes = 1999999;
    EXPECT_EQ(Extract(archive, &target), Result::tooLarge);
    EXPECT_FALSE(target.isMade);
    // Sizes that together pass 2^64.
    scForgedEntry huge = File("huge");
    huge.central.bytes = elsewhere32;
    huge.centralExtra = std::string("\1\0\x08\0\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 12);
    EXPECT_EQ(Refused(Forged({huge, File("b")}), {}, UINT64_MAX - 1), Result::tooLarge);
    EXPECT_NE(LastLine().find("more than 18446744073709551614 bytes"), std::string::npos) << LastLine();
}

// ---- One bad entry ------------------------------------------------------------------------------

// The bad one stands between two good ones, which are there afterwards.
void ExpectOnlyThisFails(scForgedEntry bad, Result result, const char* words) {
    clsMemoryTarget target;
    EXPECT_EQ(Extract(Forged({File("good", "1"), std::move(bad), File("fine", "2")}), &target), result) << words;
    EXPECT_EQ(target.files.size(), 2u) << words;
    EXPECT_EQ(target.files[u"fine"].bytes, "2");
    EXPECT_EQ(target.unfinished, 0);
    EXPECT_NE(LastLine().find(std::string("ERR: UtilExtractZip('a.zip')['bad']: ") + words), std::string::npos)
        << LastLine();
}

TEST(ZipHostile, ABadEntryCostsNoOther) {
    const struct {
        void (*change)(scForgedEntry&);
        Result result;
        const char* words;
    } rows[] = {
        {[](auto& e) { e.central.crc = 1; }, Result::damaged, "damaged"},
        {[](auto& e) { e.central.bytes = 2; }, Result::damaged, "damaged"},
        {[](auto& e) { e.data = "xy"; e.central.bytes = 1; e.central.crc = CrcOf("x"); }, Result::damaged, "damaged"},
        {[](auto& e) { e.localName = "bax"; }, Result::damaged, "damaged"},
        {[](auto& e) { e.localName = "bad1"; }, Result::damaged, "damaged"},
        {[](auto& e) { e.local.method = 8; }, Result::damaged, "damaged"},
        {[](auto& e) { e.local.flags = zipflag::encrypted; }, Result::damaged, "damaged"},
        {[](auto& e) { e.local.extraBytes = 2; }, Result::damaged, "damaged"},
        {[](auto& e) { e.central.method = e.local.method = 8; }, Result::damaged, "damaged"},
        {[](auto& e) { e.central.method = e.local.method = 9; }, Result::notSupported, "method 9"},
        {[](auto& e) { e.central.method = e.local.method = 14; }, Result::notSupported, "method 14"},
        {[](auto& e) { e.central.method = e.local.method = 99; e.central.flags = e.local.flags = 1; }, Result::notSupported, "method 99"},
        {[](auto& e) { e.central.flags = e.local.flags = 0x41; }, Result::notSupported, "method 0"},
        {[](auto& e) { e.central.flags = e.local.flags = 1; }, Result::badPassword, "wrong password"},
        {[](auto& e) { e.central.madeBy = 3 << 8; e.central.attributes = 0xA1FF0000; }, Result::notSupported, "symbolic link"},
        {[](auto& e) { e.central.madeBy = 19 << 8; e.central.attributes = 0xA1FF0000; }, Result::notSupported, "symbolic link"},
    };
    for (const auto& row : rows) {
        scForgedEntry bad = File("bad");
        row.change(bad);
        ExpectOnlyThisFails(std::move(bad), row.result, row.words);
    }
}

// A link, and then a file through it; the same where the link is there before.
TEST(ZipHostile, NothingIsWrittenThroughALink) {
    scForgedEntry link = File("out", "..");
    link.central.madeBy = 3 << 8;
    link.central.attributes = 0xA1FF0000;
    const std::string archive = Forged({link, File("out/evil"), File("good")});
    clsMemoryTarget target;
    EXPECT_EQ(Extract(archive, &target), Result::notSupported);
    EXPECT_EQ(target.files.size(), 2u) << "the folder is made, for there is no link";
    clsMemoryTarget linked;
    linked.links.insert(u"out");
    EXPECT_EQ(Extract(Forged({File("out/evil"), File("good"), File("out/deep/evil"), File("out/", "")}), &linked),
              Result::unsafe);
    EXPECT_NE(LastLine().find("['out/']: folder is a link"), std::string::npos) << LastLine();
    EXPECT_EQ(linked.files.size(), 1u);
}

TEST(ZipHostile, WhatCannotBeWrittenIsToldAndTheRestGoesOn) {
    const std::string archive = Archive({{u"a", "1"}, {u"b", "2"}, {u"c", "3"}});
    clsMemoryTarget target;
    target.refused = u"b";
    EXPECT_EQ(Extract(archive, &target), Result::noAccess);
    EXPECT_EQ(target.files.size(), 2u);
    EXPECT_NE(LastLine().find("['b']: cannot be written (5)"), std::string::npos);
    clsMemoryTarget full;
    full.room = 2;
    EXPECT_EQ(Extract(archive, &full), Result::failed) << "a full disk ends it";
    EXPECT_EQ(full.files.size(), 2u);
    EXPECT_NE(LastLine().find("['c']: cannot be written (112)"), std::string::npos);
}

// ---- What is not hostile, but odd ---------------------------------------------------------------

TEST(ZipOdd, BytesBeforeAndAfterTheArchive) {
    const std::vector<scForgedEntry> entries{File("one", "1"), File("two", "2")};
    const std::string plain = Forged(entries), before(70000, 'S');
    const std::string comment = plain.substr(0, plain.size() - 2) + std::string("\5\0hello", 7);
    const struct {
        const char* what;
        std::string archive;
    } rows[] = {
        {"plain", plain},
        {"before it, positions not moved", before + plain},
        {"before it, positions moved", Forged(entries, before)},
        {"a comment", comment},
        {"a comment that looks like an end record",
         plain.substr(0, plain.size() - 2) + std::string("\x16\0", 2) + std::string("PK\5\6") + std::string(18, '\xFF')},
        {"appended bytes", plain + "more"},
        {"many appended bytes", plain + std::string(60000, 'm')},
        {"a record twice", [&] {
             std::vector<scForgedEntry> twice = entries;
             const std::string once = Forged(entries);
             const std::size_t at = once.find("PK\1\2");
             const std::string directory = once.substr(at, once.size() - 22 - at);
             const auto bytes = static_cast<std::uint32_t>(directory.size() * 2);
             return once.substr(0, at) + directory + directory +
                    BytesOf(scEndRecord{0, 0, 4, 4, bytes, static_cast<std::uint32_t>(at), 0});
         }()},
    };
    for (const auto& row : rows) {
        clsMemoryTarget target;
        EXPECT_EQ(Extract(row.archive, &target), Result::ok) << row.what << LastLine();
        EXPECT_EQ(target.files.size(), 2u) << row.what;
        EXPECT_EQ(target.files[u"two"].bytes, "2") << row.what;
    }
    EXPECT_EQ(Refused(plain + std::string(70000, 'm')), Result::damaged) << "too far from the end";
}

TEST(ZipOdd, EntriesInAnotherOrderThanTheirData) {
    std::string archive, directory;
    std::vector<std::size_t> positions;
    for (const std::string name : {"a", "b", "c"}) {
        positions.push_back(archive.size());
        archive += BytesOf(scLocalHeader{20, 0, 0, 0, CrcOf(name), 1, 1, 1, 0}) + name + name;
    }
    for (const int number : {2, 0, 1}) {
        const std::string name(1, static_cast<char>('a' + number));
        directory += BytesOf(scCentralHeader{20, 20, 0, 0, 0, CrcOf(name), 1, 1, 1, 0, 0, 0, 0, 0,
                                             static_cast<std::uint32_t>(positions[static_cast<std::size_t>(number)])}) + name;
    }
    const auto at = static_cast<std::uint32_t>(archive.size());
    const std::string end = BytesOf(scEndRecord{0, 0, 3, 3, static_cast<std::uint32_t>(directory.size()), at, 0});
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
    const struct {
        const char* name;
        const char16_t* path;
    } rows[] = {
        {"ab:c", u"ab_c"},           {"q?.txt", u"q_.txt"},        {"aux.c", u"aux_.c"},   {"x/NUL/con", u"x\\NUL_\\con_"},
        {"end.", u"end_"},         {"end. .", u"end___"},        {"...", u"___"},        {"a\\b/c", u"a\\b\\c"},
        {"./a//b/./c", u"a\\b\\c"}, {"tab\there", u"tab_here"},   {"com1", u"com1_"},     {"lpt\xC2\xB2.x", u"lpt\u00B2_.x"},
        {"\xE6\x97\xA5", u"\u65E5"}, {"\x81", u"\u0081"},
    };
    for (const auto& row : rows) {
        clsMemoryTarget target;
        DiagnosticLines().clear();
        clsCaller caller;
        EXPECT_EQ(Extract(Forged({File(row.name)}), &target, &caller), Result::ok) << row.name;
        ASSERT_EQ(target.files.size(), 1u);
        EXPECT_EQ(target.files.begin()->first, row.path) << row.name;
        EXPECT_EQ(caller.seen[0].target, u"C:\\out\\" + std::u16string(row.path));
        EXPECT_EQ(caller.seen[0].entry.isRenamed, !DiagnosticLines().empty()) << row.name;
    }
    EXPECT_EQ(Extract(Forged({File("aux.c")}), nullptr), Result::ok) << "without a target there is nothing to change";
    clsMemoryTarget target;
    Extract(Forged({File("d/aux.c")}), &target);
    EXPECT_EQ(LastLine(), "WRN: UtilExtractZip('a.zip')['d/aux.c']: written as 'd\\aux_.c'");
}

TEST(ZipOdd, NamesThatAreOneOnWindowsAreNumbered) {
    const struct {
        std::vector<const char*> names;
        std::vector<std::u16string> paths;
    } rows[] = {
        {{"a.txt", "A.TXT", "a.txt"}, {u"a.txt", u"A (2).TXT", u"a (3).txt"}},
        {{"a.txt", "a (2).txt", "A.txt"}, {u"a.txt", u"a (2).txt", u"A (3).txt"}},
        {{"x", "x/y"}, {u"x (2)", u"x\\y"}},
        {{"d/", "D/", "d"}, {u"d (2)"}},
        {{"d?/x", "d*/x"}, {u"d_\\x", u"d_\\x (2)"}},
        {{"p/.rc", "P/.RC"}, {u"p\\.rc", u"P\\.RC (2)"}},
        {{"a?", "a*", "a_ (2)"}, {u"a_", u"a_ (2)", u"a_ (2) (2)"}},
    };
    for (const auto& row : rows) {
        std::vector<scForgedEntry> entries;
        for (const char* const name : row.names)
            entries.push_back(File(name, std::string_view(name).ends_with('/') ? "" : name));
        clsMemoryTarget target;
        EXPECT_EQ(Extract(Forged(std::move(entries)), &target), Result::ok);
        ASSERT_EQ(target.files.size(), row.paths.size()) << row.names[0];
        for (const std::u16string& path : row.paths)
            EXPECT_TRUE(target.files.contains(path)) << testing::PrintToString(path);
    }
}

TEST(ZipOdd, NamesInAllTheirForms) {
    std::string second("up\0\0\1\0\0\0\0", 9);
    const auto unicode = [&](std::string_view headerName, std::string_view name) {
        std::string field = second;
        UtilpWriteNumber(field.data() + 2, static_cast<std::uint16_t>(5 + name.size()));
        UtilpWriteNumber(field.data() + 5, CrcOf(headerName));
        return field + std::string(name);
    };
    const struct {
        const char* name;
        std::uint16_t flags;
        std::string extra;
        const char16_t* shown;
    } rows[] = {
        {"\xC3\xBC", zipflag::utf8, {}, u"\u00FC"},
        {"\xC3\xBC", 0, {}, u"\u00FC"},
        {"\xFC", 0, {}, u"\u00FC"}, // in the code page
        {"\xFC", zipflag::utf8, {}, u"\uFFFD"},
        {"u", 0, unicode("u", "\xC3\xBC"), u"\u00FC"},
        {"u", 0, unicode("v", "\xC3\xBC"), u"u"}, // of another name
        {"u", zipflag::utf8, unicode("u", "\xC3\xBC"), u"u"},
        {"u", 0, unicode("u", "f/"), u"f/"},
        {"f\\", 0, {}, u"f/"},
        {"./", 0, {}, u"/"},
    };
    for (const auto& row : rows) {
        scForgedEntry entry = File(row.name, std::u16string_view(row.shown).ends_with(u'/') ? "" : "x");
        entry.central.flags = entry.local.flags = row.flags;
        entry.centralExtra = row.extra;
        clsCaller caller;
        EXPECT_EQ(Extract(Forged({entry}), nullptr, &caller), Result::ok) << testing::PrintToString(row.shown);
        ASSERT_FALSE(caller.seen.empty());
        EXPECT_EQ(caller.seen[0].name, row.shown);
        EXPECT_EQ(caller.seen[0].entry.isFolder, caller.seen[0].name.ends_with(u'/'));
    }
}

TEST(ZipOdd, PathsThatAreTooLongRefuseTheArchive) {
    const std::string part = std::string(99, 'p') + "/";
    std::string name;
    for (int i = 0; i < 327; ++i)
        name += part;
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
    std::vector<std::pair<std::u16string, std::uint64_t>> calls;
    for (const auto& seen : caller.seen)
        calls.emplace_back((seen.entry.isQuestion ? u"?" : u"") + seen.name, seen.entry.done);
    const std::vector<std::pair<std::u16string, std::uint64_t>> wanted{
        {u"?d/", 0}, {u"?d/a", 0}, {u"?b", 0}, {u"d/", 0}, {u"b", progressBytes}, {u"b", 2 * progressBytes}, {u"b", large.size()}};
    EXPECT_EQ(calls, wanted);
    EXPECT_EQ(target.files.size(), 1u);
}

TEST(ZipCaller, MayCancelAtAnyCall) {
    const std::string archive = Archive({{u"d/", ""}, {u"d/a", "1"}, {u"b", std::string(2 * progressBytes, 'l')}});
    clsCaller all;
    clsMemoryTarget complete;
    EXPECT_EQ(Extract(archive, &complete, &all), Result::ok);
    for (std::size_t at = 1; at <= all.seen.size(); ++at) {
        clsMemoryTarget target;
        clsCaller caller;
        caller.answer = [&](const scShownZipEntry&) { return caller.seen.size() == at ? ZipAnswer::cancel : ZipAnswer::go; };
        EXPECT_EQ(Extract(archive, &target, &caller), Result::cancelled) << at;
        EXPECT_EQ(caller.seen.size(), at) << "nobody is asked after that";
        EXPECT_EQ(target.unfinished, 0);
        for (const auto& [path, file] : target.files)
            EXPECT_TRUE(file.bytes == complete.files[path].bytes);
        EXPECT_EQ(target.isMade, at > 3);
    }
}

TEST(ZipCaller, KeepsWhatIsThere) {
    const std::string archive = Archive({{u"a", "new"}, {u"b", "new"}});
    clsMemoryTarget target;
    target.files[u"a"].bytes = "old";
    EXPECT_EQ(Extract(archive, &target, nullptr, {}, 100, true), Result::ok);
    EXPECT_EQ(target.files[u"a"].bytes, "old");
    EXPECT_EQ(target.files[u"b"].bytes, "new");
    EXPECT_EQ(Extract(archive, &target), Result::ok);
    EXPECT_EQ(target.files[u"a"].bytes, "new");
}

// ---- Sweeps -------------------------------------------------------------------------------------

std::string SmallArchive() {
    return Archive({{u"d/", ""}, {u"d/text", std::string(300, 't')}, {u"noise", "n\1o\2i\3s\4e"}, {u"e", ""}}, "key");
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
    const std::string archive = SmallArchive();
    for (std::size_t size = 0; size < archive.size(); ++size)
        EXPECT_EQ(Refused(archive.substr(0, size), u"key"), Result::damaged) << size;
}

TEST(ZipSweep, AByteChangedAnywhereGivesNoWrongFile) {
    const std::string archive = SmallArchive();
    clsMemoryTarget right;
    ASSERT_EQ(Extract(archive, &right, nullptr, u"key"), Result::ok);
    for (std::size_t at = 0; at < archive.size(); ++at) {
        for (const unsigned change : {1u, 0x80u, 0xFFu}) {
            std::string changed = archive;
            changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ change);
            ExpectNothingWrong(changed, right, "byte " + std::to_string(at) + " ^ " + std::to_string(change));
        }
    }
}

} // namespace
