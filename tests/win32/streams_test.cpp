// Streams that fail, the code page, and the compressed wrapper.
#include "support/log.h"
#include "support/piece_stream.h"

#include <zlib.h>

namespace testing_prof {
namespace {

constexpr UINT formFlags[] = {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED, PROF_FORM_XML, PROF_FORM_XFDF};

TEST(Encodings, OfTheCodePageAreReadWhereTheBytesAreNotUtf8) {
    const std::wstring text =
        L"[/]\n{\n\x65E5\x672C=\xFF71\x8868\n[\x30EA\x30B9\x30C8]\n{\na=\x30BD\\\n}\n}\n";
    const std::wstring tree = L"\x65E5\x672C=\xFF71\x8868;\x30EA\x30B9\x30C8{a=\x30BD\\;}";
    const clsCodePage japanese(932);
    for (const UINT encoding : {932u, static_cast<UINT>(CP_UTF8)})
        EXPECT_EQ(Describe(Opened(ToBytes(text, encoding))), tree) << encoding;
    const clsCodePage western(1252);
    EXPECT_EQ(Describe(Opened("[S]\na=\xE9\x80\n")), L"a=\xE9\x20AC;");
}

TEST(Streams, AreReadFromTheirStartAndLeftAlone) {
    for (const bool canSeek : {true, false}) {
        clsPieceStream stream(Utf16(L"\xFEFF[/]\na=1\n"), 5);
        stream.refuseSeek = !canSeek;
        stream.position = canSeek ? 9 : 0;
        EXPECT_EQ(Describe(clsJob(ProfJobOpenStream(&stream))), L"a=1;");
        EXPECT_EQ(stream.references, 1);
    }
    const clsJob none(ProfJobOpenStream(nullptr));
    EXPECT_EQ(none.Error(), PROF_OK);
    EXPECT_EQ(Describe(none), L"");
}

TEST(Streams, WithoutANameAreCalledStream) {
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"", L"its name"}) {
        const clsLog log;
        clsPieceStream stream("<html>");
        EXPECT_EQ(clsJob(ProfJobOpenStreamObjectW(&stream, name, 0)).Error(), PROF_OK);
        const std::string shown = name && *name ? "its name" : "(Stream)";
        EXPECT_EQ(log.Lines(), std::vector{"WRN: '" + shown + "': markup that is no profile of ours"});
    }
}

TEST(Streams, ThatFailAtAnyByteFailTheLoadOrTheSave) {
    const clsJob job(L"a=1;L{b=2;}");
    for (const UINT flags : formFlags) {
        const Bytes bytes = Saved(job, flags);
        for (size_t failAt = 0; failAt <= bytes.size(); ++failAt)
            for (const size_t piece : {1u, 5u, 1024u}) {
                clsPieceStream input(bytes, piece), output({}, piece);
                input.failAt = output.failAt = failAt;
                output.refuseSetSize = piece == 5;
                ASSERT_EQ(clsJob(ProfJobOpenStream(&input)).Error(), PROF_LOCKED) << failAt;
                ASSERT_EQ(ProfSaveToStream(job, &output, flags),
                          failAt < bytes.size() ? PROF_SAVE_FAILED : PROF_OK)
                    << failAt;
                EXPECT_EQ(input.references + output.references, 2);
            }
    }
    EXPECT_EQ(ProfSaveToStream(job, nullptr, 0), PROF_SAVE_FAILED);
    clsPieceStream untouched("before");
    EXPECT_EQ(ProfSaveToStream(0, &untouched, 0), 0);
    EXPECT_EQ(untouched.data, "before");
}

TEST(Streams, AreWrittenFromTheirStartAndCut) {
    const clsJob job(L"a=1;L{b=2;}");
    for (const UINT flags : formFlags) {
        const Bytes expected = Saved(job, flags);
        clsPieceStream longer(Bytes(5000, '#'), 5), fixed(Bytes(5000, '#')), pipe("head");
        longer.position = 100;
        fixed.refuseSetSize = pipe.refuseSeek = pipe.refuseSetSize = true;
        pipe.position = 4;
        for (clsPieceStream* stream : {&longer, &fixed, &pipe})
            EXPECT_EQ(ProfSaveToStream(job, stream, flags), PROF_OK);
        EXPECT_EQ(longer.data, expected);
        EXPECT_EQ(fixed.data, expected + Bytes(5000 - expected.size(), '#'));
        EXPECT_EQ(pipe.data, "head" + expected);
    }
}

TEST(Streams, MayCloseTheJobThatIsWrittenToThem) {
    const ProfJob job = ProfJobOpenW(nullptr);
    ProfSetStringW(job, nullptr, L"a", L"1");
    clsPieceStream stream({}, 5);
    stream.closedByWrite = job;
    EXPECT_EQ(ProfSaveToStream(job, &stream, PROF_FORM_TEXT), PROF_OK);
    EXPECT_EQ(Describe(Opened(stream.data)), L"a=1;");
}

TEST(Compressed, FlagsChooseTheWrapper) {
    const clsJob plain(L"a=1;L{b=2;}");
    const Bytes text = Saved(plain), wrapped = Saved(plain, PROF_SAVE_COMPRESSED);
    EXPECT_EQ(wrapped.substr(0, 4), "ZZmQ");
    const clsJob fromWrapped = Opened(wrapped), fromText = Opened(text);
    EXPECT_EQ(Describe(fromWrapped), Describe(plain));
    EXPECT_EQ(Saved(fromWrapped), text) << "without a flag the wrapper is not kept";
    EXPECT_EQ(Saved(fromWrapped, PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    EXPECT_EQ(Saved(fromText, PROF_SAVE_COMPRESSED | PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    for (const clsJob* job : {&fromText, &plain})
        EXPECT_EQ(Saved(*job, PROF_SAVE_COMPRESSED_AS_READ), text);
}

// A stream of blanks that inflates to any number of mebibytes: one flushed block, repeated.
Bytes Bomb(unsigned mebibytes) {
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
    const clsJob job = Opened(Bomb(4 * 1024));
    EXPECT_TRUE(job.Error() == PROF_LOCKED || job.Error() == PROF_LOAD_FAILED) << job.Error();
    ProfSetStringW(job, 0, L"a", L"1");
    EXPECT_EQ(Describe(job), L"a=1;");
}

} // namespace
} // namespace testing_prof
