// Encodings, interrupted inputs, the compressed wrapper, and streams that fail.
#include "support/piece_stream.h"

#include <zlib.h>

#include <memory>
#include <vector>

namespace testing_prof {
namespace {

struct Encoding {
    const char* name;
    UINT codePage; // of PROF_OPTION_CODE_PAGE while reading
    Bytes (*encode)(const std::wstring& text);
};

Bytes utf8(const std::wstring& text) {
    return toBytes(text, CP_UTF8);
}

const Encoding kEncodings[] = {
    {"UTF-16LE, mark", 1252, [](const std::wstring& text) { return utf16(L"\xFEFF" + text); }},
    {"UTF-16BE, mark", 1252, [](const std::wstring& text) { return utf16Swapped(L"\xFEFF" + text); }},
    {"UTF-8, mark", 1252, [](const std::wstring& text) { return "\xEF\xBB\xBF" + utf8(text); }},
    {"UTF-16LE", 1252, [](const std::wstring& text) { return utf16(text); }},
    {"UTF-8", 932, utf8},
    {"932", 932, [](const std::wstring& text) { return toBytes(text, 932); }},
};

TEST(Encodings, OfEveryKindGiveTheSameTree) {
    const std::wstring tree = L"\x65E5\x672C=\xFF71\x8868;\x30EA\x30B9\x30C8{a=\x30BD\\;}";
    const std::wstring text =
        L"[/]\r\n{\r\n\x65E5\x672C=\xFF71\x8868\r\n[\x30EA\x30B9\x30C8]\n{\na=\x30BD\\\n}\r\n}\r\n";
    for (const Encoding& encoding : kEncodings)
        for (const size_t piece : {1u, 2u, 5u, 1024u}) {
            const CodePage codePage(encoding.codePage);
            const Job job = opened(encoding.encode(text), 0, piece);
            EXPECT_EQ(job.error(), PROF_OK);
            EXPECT_EQ(describe(job), tree) << encoding.name << " in pieces of " << piece;
            EXPECT_EQ(saved(job), saved(Job(tree)));
        }
}

TEST(Encodings, WithoutAMarkAreToldApart) {
    const CodePage western(1252);
    const std::pair<Bytes, const wchar_t*> files[] = {
        {"[S]\na=\xE9\x80\n", L"a=\xE9\x20AC;"},              // not UTF-8: the process code page
        {"[S]\na=\xC3\xA9\n", L"a=\xE9;"},                    // valid UTF-8
        {"[S]\na=\xC3\xA9\nb=\xE9\n", L"a=\xC3\xA9;b=\xE9;"}, // one invalid byte decides for the whole
        {"[S]\na=\xED\xA0\x80\n", L"a=\xED\xA0\x20AC;"},      // a surrogate is not valid UTF-8
        {"[S]\na=\xC0\xAF\n", L"a=\xC0\xAF;"},                // nor is an overlong form
        {"[S]\na=\xF0\x9F\x98\x80\n", L"a=\xD83D\xDE00;"},
        {"[S]\na=plain\n", L"a=plain;"},
        {"\xEF\xBB\xBF", L""},
        {"\xFF\xFE", L""},
        {"\xFE\xFF", L""},
    };
    for (const auto& [bytes, tree] : files) {
        EXPECT_EQ(describe(opened(bytes)), tree) << bytes;
        const Job flat = opened(bytes, PROF_READ_PLAIN_INI);
        EXPECT_EQ(describe(flat), *tree ? L"S{" + std::wstring(tree) + L"}" : L"") << bytes;
    }
}

TEST(Inputs, CutAtEveryByteGiveTheBeginningOfTheTree) {
    const std::wstring text = L"[/]\r\n{\r\n alpha=one\r\n [List]\r\n {\r\n  \x65E5=2\r\n  [In]\r\n  {\r\n  "
                              L"}\r\n }\r\n z=9\r\n}\r\n";
    const std::wstring whole = describe(opened(utf16(L"\xFEFF" + text)));
    for (const Encoding& encoding : kEncodings) {
        const CodePage codePage(encoding.codePage);
        const Bytes bytes = encoding.encode(text);
        for (size_t length = 0; length <= bytes.size(); ++length)
            EXPECT_EQ(opened(bytes.substr(0, length)).error(), PROF_OK) << encoding.name << " " << length;
    }
    // Lines that are whole are read whole; the last one may be any beginning of itself.
    for (size_t length = 6; length <= text.size(); ++length) {
        const size_t lastLine = text.find_last_of(L"\r\n", length - 1) + 1;
        if (text.find(L'[', lastLine) < length)
            continue;
        std::wstring tree = describe(opened(utf16(L"\xFEFF" + text.substr(0, length))));
        tree.erase(tree.find_last_not_of(L"=;}") + 1);
        EXPECT_EQ(tree, whole.substr(0, tree.size())) << length;
        const size_t complete = describe(opened(utf16(L"\xFEFF" + text.substr(0, lastLine)))).size();
        EXPECT_GE(tree.size() + 4, complete) << length;
    }
}

TEST(Streams, AreReadFromTheirStartAndLeftAlone) {
    for (const bool canSeek : {true, false}) {
        PieceStream stream(utf16(L"\xFEFF[/]\na=1\n"), 5);
        stream.refuseSeek = !canSeek;
        stream.position = canSeek ? 9 : 0;
        const Job job(ProfJobOpenStream(&stream));
        EXPECT_EQ(describe(job), L"a=1;");
        EXPECT_EQ(stream.references, 1);
    }
    const Job none(ProfJobOpenStream(nullptr));
    EXPECT_EQ(none.error(), PROF_OK);
    EXPECT_EQ(describe(none), L"");
}

TEST(Streams, ThatFailToReadGiveAnErrorAtEveryByte) {
    for (const UINT flags : {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED}) {
        const Bytes bytes = saved(Job(L"a=1;L{b=2;}"), flags);
        for (const size_t piece : {1u, 5u, 1024u})
            for (size_t failAt = 0; failAt <= bytes.size(); ++failAt) {
                PieceStream stream(bytes, piece);
                stream.failAt = failAt;
                const Job job(ProfJobOpenStream(&stream));
                ASSERT_EQ(job.error(), PROF_LOCKED) << failAt;
                EXPECT_EQ(stream.references, 1);
            }
    }
}

TEST(Streams, ThatFailToWriteFailTheSaveAtEveryByte) {
    const Job job(L"a=1;L{b=2;}");
    for (const UINT flags : {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED}) {
        const size_t size = saved(job, flags).size();
        for (const bool canGrow : {true, false})
            for (size_t failAt = 0; failAt < size; ++failAt) {
                PieceStream stream({}, 5);
                stream.failAt = failAt;
                stream.refuseSetSize = !canGrow;
                ASSERT_EQ(ProfSaveToStream(job, &stream, flags), PROF_SAVE_FAILED) << failAt;
                EXPECT_EQ(stream.references, 1);
            }
    }
    EXPECT_EQ(ProfSaveToStream(job, nullptr, 0), PROF_SAVE_FAILED);
    PieceStream untouched("before");
    EXPECT_EQ(ProfSaveToStream(0, &untouched, 0), 0);
    EXPECT_EQ(untouched.data, "before");
}

TEST(Streams, AreWrittenFromTheirStartAndCut) {
    const Job job(L"a=1;L{b=2;}");
    for (const UINT flags : {PROF_FORM_TEXT, PROF_SAVE_COMPRESSED}) {
        const Bytes expected = saved(job, flags);
        PieceStream longer(Bytes(5000, '#'), 5);
        longer.position = 100;
        EXPECT_EQ(ProfSaveToStream(job, &longer, flags), PROF_OK);
        EXPECT_EQ(longer.data, expected);
        PieceStream fixed(Bytes(5000, '#'));
        fixed.refuseSetSize = true;
        EXPECT_EQ(ProfSaveToStream(job, &fixed, flags), PROF_OK);
        EXPECT_EQ(fixed.data, expected + Bytes(5000 - expected.size(), '#'));
        PieceStream pipe("head");
        pipe.refuseSeek = pipe.refuseSetSize = true;
        pipe.position = 4;
        EXPECT_EQ(ProfSaveToStream(job, &pipe, flags), PROF_OK);
        EXPECT_EQ(pipe.data, "head" + expected);
    }
}

TEST(Compressed, FlagsChooseTheWrapper) {
    const Job plain(L"a=1;L{b=2;}");
    const Bytes text = saved(plain), wrapped = saved(plain, PROF_SAVE_COMPRESSED);
    EXPECT_EQ(wrapped.substr(0, 4), "ZZmQ");
    const Job fromWrapped = opened(wrapped), fromText = opened(text);
    EXPECT_EQ(describe(fromWrapped), describe(plain));
    EXPECT_EQ(saved(fromWrapped), text) << "without a flag the wrapper is not kept";
    EXPECT_EQ(saved(fromWrapped, PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    EXPECT_EQ(saved(fromText, PROF_SAVE_COMPRESSED_AS_READ), text);
    EXPECT_EQ(saved(fromText, PROF_SAVE_COMPRESSED | PROF_SAVE_COMPRESSED_AS_READ), wrapped);
    EXPECT_EQ(saved(plain, PROF_SAVE_COMPRESSED_AS_READ), text);
}

TEST(Compressed, DamageAndCutsAtEveryPositionAreFound) {
    const wchar_t* tree = L"alpha=1;L{beta=2;}gamma=alpha;";
    const Bytes wrapped = saved(Job(tree), PROF_SAVE_COMPRESSED);
    size_t refused = 0;
    for (size_t at = 4; at < wrapped.size(); ++at)
        for (const char flip : {'\x01', '\x80', '\xFF'}) {
            Bytes damaged = wrapped;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            const Job job = opened(damaged);
            // Bits that deflate never reads, behind the last block, may differ.
            if (job.error() == PROF_OK)
                EXPECT_EQ(describe(job), tree) << "byte " << at << " of " << wrapped.size();
            else
                EXPECT_TRUE(job.error() == PROF_LOAD_FAILED && describe(job).empty()) << at << job.error();
            refused += job.error() != PROF_OK;
        }
    EXPECT_GE(refused, 3 * (wrapped.size() - 5));
    for (size_t length = 4; length < wrapped.size(); ++length)
        EXPECT_EQ(opened(wrapped.substr(0, length)).error(), PROF_LOAD_FAILED) << "cut to " << length;
    for (size_t at = 0; at < 4; ++at) {
        Bytes damaged = wrapped;
        damaged[at] ^= 1;
        EXPECT_EQ(opened(damaged).error(), PROF_OK) << "any other bytes are text";
    }
}

Bytes wrap(const Bytes& contents) {
    uLongf size = compressBound(static_cast<uLong>(contents.size()));
    Bytes packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(contents.data()),
             static_cast<uLong>(contents.size()));
    packed.resize(size);
    return "ZZmQ" + packed;
}

TEST(Compressed, WrappersInsideWrappersAreOpened) {
    Bytes bytes = saved(Job(L"a=1;"));
    for (int depth = 1; depth <= 3; ++depth) {
        bytes = wrap(bytes);
        const Job job = opened(bytes);
        EXPECT_EQ(job.error(), PROF_OK) << depth;
        EXPECT_EQ(describe(job), L"a=1;") << depth;
    }
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

TEST(Compressed, BombsOfGigabytesFailAndLeaveTheProcessWorking) {
    constexpr UINT kGigabyte = 1024;
    for (const UINT flags : {0u, PROF_READ_PLAIN_INI}) {
        const Job job = opened(bomb(4 * kGigabyte), flags);
        EXPECT_TRUE(job.error() == PROF_LOCKED || job.error() == PROF_LOAD_FAILED) << job.error();
        EXPECT_EQ(describe(job), L"");
        ProfSetStringW(job, 0, L"a", L"1");
        EXPECT_EQ(describe(job), L"a=1;");
    }
}

} // namespace
} // namespace testing_prof
