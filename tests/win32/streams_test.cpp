// Encodings, interrupted inputs, the compressed wrapper, and streams that fail.
#include "support/log.h"
#include "support/piece_stream.h"

#include <zlib.h>

namespace testing_prof {
namespace {

constexpr UINT kForms[] = {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED};

Bytes utf8(const std::wstring& text) {
    return toBytes(text, CP_UTF8);
}

TEST(Encodings, OfEveryKindGiveTheSameTree) {
    const struct {
        const char* name;
        UINT codePage; // of PROF_OPTION_CODE_PAGE while reading
        Bytes (*encode)(const std::wstring& text);
    } encodings[] = {
        {"UTF-16LE, mark", 1252, [](const std::wstring& text) { return utf16(L"\xFEFF" + text); }},
        {"UTF-16BE, mark", 1252, [](const std::wstring& text) { return utf16Swapped(L"\xFEFF" + text); }},
        {"UTF-8, mark", 1252, [](const std::wstring& text) { return "\xEF\xBB\xBF" + utf8(text); }},
        {"UTF-16LE", 1252, [](const std::wstring& text) { return utf16(text); }},
        {"UTF-8", 932, utf8},
        {"932", 932, [](const std::wstring& text) { return toBytes(text, 932); }},
    };
    const std::wstring tree = L"\x65E5\x672C=\xFF71\x8868;\x30EA\x30B9\x30C8{a=\x30BD\\;}";
    const std::wstring text =
        L"[/]\r\n{\r\n\x65E5\x672C=\xFF71\x8868\r\n[\x30EA\x30B9\x30C8]\n{\na=\x30BD\\\n}\r\n}\r\n";
    for (const auto& encoding : encodings) {
        const CodePage codePage(encoding.codePage);
        const Bytes bytes = encoding.encode(text);
        for (const size_t piece : {1u, 2u, 5u, 1024u})
            EXPECT_EQ(describe(opened(bytes, 0, piece)), tree) << encoding.name << " in pieces of " << piece;
        for (size_t length = 0; length <= bytes.size(); ++length)
            EXPECT_EQ(opened(bytes.substr(0, length)).error(), PROF_OK) << encoding.name << " " << length;
    }
}

TEST(Encodings, WithoutAMarkAreToldApart) {
    const CodePage western(1252);
    const std::pair<Bytes, const wchar_t*> files[] = {
        {"[S]\na=\xE9\x80\n", L"a=\xE9\x20AC;"},              // not UTF-8: the process code page
        {"[S]\na=\xC3\xA9\n", L"a=\xE9;"},                    // valid UTF-8
        {"[S]\na=\xC3\xA9\nb=\xE9\n", L"a=\xC3\xA9;b=\xE9;"}, // one invalid byte decides for the whole
        {"[S]\na=\xED\xA0\x80\n", L"a=\xED\xA0\x20AC;"},      // a surrogate is not valid UTF-8
        {"[S]\na=\xF0\x9F\x98\x80\n", L"a=\xD83D\xDE00;"},
        {"\xEF\xBB\xBF", L""},
    };
    for (const auto& [bytes, tree] : files)
        EXPECT_EQ(describe(opened(bytes)), tree) << bytes;
}

TEST(Streams, AreReadFromTheirStartAndLeftAlone) {
    for (const bool canSeek : {true, false}) {
        PieceStream stream(utf16(L"\xFEFF[/]\na=1\n"), 5);
        stream.refuseSeek = !canSeek;
        stream.position = canSeek ? 9 : 0;
        EXPECT_EQ(describe(Job(ProfJobOpenStream(&stream))), L"a=1;");
        EXPECT_EQ(stream.references, 1);
    }
    const Job none(ProfJobOpenStream(nullptr));
    EXPECT_EQ(none.error(), PROF_OK);
    EXPECT_EQ(describe(none), L"");
}

TEST(Streams, WithoutANameAreCalledStream) {
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L"its name"}) {
        const Log log;
        PieceStream stream("<html>");
        Job(ProfJobOpenStreamObjectW(&stream, name, 0));
        const std::string shown = name && *name ? "its name" : "(Stream)";
        EXPECT_EQ(log.lines(), std::vector{"WRN: '" + shown + "': markup that is no profile of ours"});
    }
}

TEST(Streams, ThatFailAtAnyByteFailTheLoadOrTheSave) {
    const Job job(L"a=1;L{b=2;}");
    for (const UINT flags : kForms) {
        const Bytes bytes = saved(job, flags);
        for (size_t failAt = 0; failAt <= bytes.size(); ++failAt)
            for (const size_t piece : {1u, 5u, 1024u}) {
                PieceStream input(bytes, piece), output({}, piece);
                input.failAt = output.failAt = failAt;
                output.refuseSetSize = piece == 5;
                ASSERT_EQ(Job(ProfJobOpenStream(&input)).error(), PROF_LOCKED) << failAt;
                ASSERT_EQ(ProfSaveToStream(job, &output, flags),
                          failAt < bytes.size() ? PROF_SAVE_FAILED : PROF_OK)
                    << failAt;
                EXPECT_EQ(input.references + output.references, 2);
            }
    }
    EXPECT_EQ(ProfSaveToStream(job, nullptr, 0), PROF_SAVE_FAILED);
    PieceStream untouched("before");
    EXPECT_EQ(ProfSaveToStream(0, &untouched, 0), 0);
    EXPECT_EQ(untouched.data, "before");
}

TEST(Streams, AreWrittenFromTheirStartAndCut) {
    const Job job(L"a=1;L{b=2;}");
    for (const UINT flags : kForms) {
        const Bytes expected = saved(job, flags);
        PieceStream longer(Bytes(5000, '#'), 5), fixed(Bytes(5000, '#')), pipe("head");
        longer.position = 100;
        fixed.refuseSetSize = pipe.refuseSeek = pipe.refuseSetSize = true;
        pipe.position = 4;
        for (PieceStream* stream : {&longer, &fixed, &pipe})
            EXPECT_EQ(ProfSaveToStream(job, stream, flags), PROF_OK);
        EXPECT_EQ(longer.data, expected);
        EXPECT_EQ(fixed.data, expected + Bytes(5000 - expected.size(), '#'));
        EXPECT_EQ(pipe.data, "head" + expected);
    }
}

TEST(Streams, MayCloseTheJobThatIsWrittenToThem) {
    const ProfJob job = ProfJobOpenW(nullptr);
    ProfSetStringW(job, nullptr, L"a", L"1");
    PieceStream stream({}, 5);
    stream.closedByWrite = job;
    EXPECT_EQ(ProfSaveToStream(job, &stream, PROF_FORM_TEXT), PROF_OK);
    EXPECT_EQ(describe(opened(stream.data)), L"a=1;");
}

TEST(Compressed, FlagsChooseTheWrapper) {
    const Job plain(L"a=1;L{b=2;}");
    const Bytes text = saved(plain), wrapped = saved(plain, PROF_SAVE_COMPRESSED);
    EXPECT_EQ(wrapped.substr(0, 4), "ZZmQ");
    const Job fromWrapped = opened(wrapped), fromText = opened(text);
    EXPECT_EQ(describe(fromWrapped), describe(plain));
    EXPECT_EQ(saved(fromWrapped), text) << "without a flag the wrapper is not kept";
    EXPECT_EQ(saved(fromWrapped, PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    EXPECT_EQ(saved(fromText, PROF_SAVE_COMPRESSED | PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    for (const Job* job : {&fromText, &plain})
        EXPECT_EQ(saved(*job, PROF_SAVE_COMPRESSED_AS_READ), text);
}

TEST(Compressed, DamageAtEveryPositionIsFound) {
    const wchar_t* tree = L"alpha=1;L{beta=2;}gamma=alpha;";
    const Bytes wrapped = saved(Job(tree), PROF_SAVE_COMPRESSED);
    size_t refused = 0;
    for (size_t at = 0; at < wrapped.size(); ++at)
        for (const char flip : {'\x01', '\x80', '\xFF'}) {
            Bytes damaged = wrapped;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            const Job job = opened(damaged);
            // Without its mark it is text, and bits that deflate never reads may differ.
            const bool unseen = job.error() == PROF_OK && (at < 4 || describe(job) == tree);
            const bool found = job.error() == PROF_LOAD_FAILED && describe(job).empty();
            EXPECT_TRUE(unseen || found) << "byte " << at << " of " << wrapped.size() << job.error();
            refused += found;
        }
    EXPECT_GE(refused, 3 * (wrapped.size() - 5));
}

Bytes wrap(const Bytes& contents) {
    uLongf size = compressBound(static_cast<uLong>(contents.size()));
    Bytes packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(contents.data()),
             static_cast<uLong>(contents.size()));
    packed.resize(size);
    return "ZZmQ" + packed;
}

TEST(Compressed, ThousandsOfWrappersInsideWrappersAreHarmless) {
    Bytes bytes = saved(Job(L"a=1;"));
    for (int depth = 0; depth < 3000; ++depth) // may be refused, must not run out of stack
        bytes = wrap(bytes);
    const INT error = opened(bytes).error();
    EXPECT_TRUE(error == PROF_OK || error == PROF_LOAD_FAILED || error == PROF_LOCKED) << error;
}

// A stream of blanks that inflates to any number of mebibytes: one flushed block, repeated.
Bytes bomb(unsigned mebibytes) {
    z_stream state{};
    deflateInit(&state, Z_BEST_COMPRESSION);
    Bytes block(1 << 20, ' '), packed(1 << 16, '\0');
    const auto next = [&] {
        state.next_in = reinterpret_cast<Bytef*>(block.data());
        state.avail_in = static_cast<uInt>(block.size());
        state.next_out = reinterpret_cast<Bytef*>(packed.data());
        state.avail_out = static_cast<uInt>(packed.size());
        deflate(&state, Z_FULL_FLUSH);
        return packed.substr(0, packed.size() - state.avail_out);
    };
    Bytes bytes = "ZZmQ" + next();
    const Bytes repeated = next();
    deflateEnd(&state);
    while (--mebibytes)
        bytes += repeated;
    return bytes;
}

TEST(Compressed, ABombOfGigabytesFailsAndLeavesTheProcessWorking) {
    const Job job = opened(bomb(4 * 1024));
    EXPECT_TRUE(job.error() == PROF_LOCKED || job.error() == PROF_LOAD_FAILED) << job.error();
    ProfSetStringW(job, 0, L"a", L"1");
    EXPECT_EQ(describe(job), L"a=1;");
}

} // namespace
} // namespace testing_prof
