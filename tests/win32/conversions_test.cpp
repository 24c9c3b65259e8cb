// The conversions between bytes and text: sizes, all six doors, what is refused.
#include "support/log.h"
#include "support/page_end.h"
#include "support/piece_stream.h"

#include <tvut22/text.h>

#include <gtest/gtest.h>

#include <numeric>

namespace testing_prof {
namespace {

std::wstring TextOf(const Bytes& bytes, BOOL compress = FALSE) {
    wchar_t text[5000];
    EXPECT_EQ(UtilConvertBLOBToString(bytes.data(), static_cast<UINT>(bytes.size()), text, 5000, compress),
              0);
    return text;
}

HGLOBAL BlockOf(const Bytes& bytes) {
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    bytes.copy(static_cast<char*>(GlobalLock(block)), bytes.size());
    GlobalUnlock(block);
    return block;
}

Bytes BytesOf(HGLOBAL block) {
    const auto* const first = static_cast<const char*>(GlobalLock(block));
    const Bytes bytes(first, first + GlobalSize(block));
    GlobalUnlock(block);
    GlobalFree(block);
    return bytes;
}

// Text and bytes through each door, at buffers that fit exactly.
void ExpectAllDoors(const Bytes& bytes, const std::wstring& text, BOOL compress) {
    clsPageEnd page;
    const auto size = static_cast<UINT>(text.size() + 1);
    clsPieceStream source(bytes, 5);
    source.position = bytes.size() / 2;
    HGLOBAL block = BlockOf(bytes);
    const auto expectText = [&](auto convert) {
        EXPECT_EQ(convert(nullptr, 100), static_cast<INT>(size));
        wchar_t* const to = page.LastUnits(size);
        EXPECT_EQ(convert(to, 0), static_cast<INT>(size));
        EXPECT_EQ(convert(to, size - 1), size == 1 ? 1 : UTIL_CONVERT_TOO_SMALL);
        EXPECT_EQ(*to, L'\xCCCC');
        EXPECT_EQ(convert(to, size), 0);
        EXPECT_EQ(to, text);
    };
    const auto count = static_cast<UINT>(bytes.size());
    expectText(
        [&](wchar_t* to, UINT n) { return UtilConvertBLOBToString(bytes.data(), count, to, n, compress); });
    expectText([&](wchar_t* to, UINT n) { return UtilConvertStreamToString(&source, to, n, compress); });
    expectText([&](wchar_t* to, UINT n) { return UtilConvertHGLOBALToString(block, to, n, compress); });
    GlobalFree(block);

    EXPECT_EQ(UtilConvertStringToBLOB(text.c_str(), nullptr, 0), static_cast<INT>(count));
    char* const to = page.Last(count);
    EXPECT_EQ(UtilConvertStringToBLOB(text.c_str(), to, count), static_cast<INT>(count));
    EXPECT_EQ(Bytes(to, count), bytes);
    if (count != 0) {
        EXPECT_EQ(UtilConvertStringToBLOB(text.c_str(), page.Last(count - 1), count - 1),
                  UTIL_CONVERT_TOO_LARGE);
    }
    clsPieceStream target("before, behind", 3);
    target.position = 7;
    EXPECT_EQ(UtilConvertStringToStream(text.c_str(), &target), 0);
    EXPECT_EQ(target.data.substr(0, 7 + count), "before," + bytes);
    EXPECT_EQ(target.position, 7 + count);
    EXPECT_EQ(UtilConvertStringToHGLOBAL(text.c_str(), &block), 0);
    EXPECT_EQ(BytesOf(block), bytes);
}

TEST(Conversions, ThroughAllDoors) {
    Bytes all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    for (const Bytes& bytes : {Bytes(), Bytes("a"), Bytes("foobar"), all, Bytes(3000, 'x')})
        for (const BOOL compress : {FALSE, TRUE}) {
            const std::wstring text = TextOf(bytes, compress);
            EXPECT_EQ(text.substr(0, 3) == L"@2@", compress && !bytes.empty());
            ExpectAllDoors(bytes, text, compress);
        }
    EXPECT_EQ(TextOf("foobar"), L"Zm9vYmFy");
    EXPECT_EQ(TextOf(Bytes("\xFB\xFF\xFE", 3)), L"+//+");
}

TEST(Conversions, WhatIsRefusedStandsForNoBytes) {
    char room[8];
    for (const wchar_t* const text : {L"QUJDQ", L"QUJ*", L"@3@QUJD", L"@2@QUJDRA=="}) {
        const clsLog log;
        clsPieceStream stream("stays");
        HGLOBAL block = nullptr;
        EXPECT_EQ(UtilConvertStringToBLOB(text, room, sizeof room), 0) << text;
        ASSERT_EQ(log.Lines().size(), 1u) << text;
        EXPECT_EQ(log.Lines()[0] == "ERR: Base64 string has bad format!", text[1] != L'2') << text;
        EXPECT_EQ(UtilConvertStringToStream(text, &stream), 0);
        EXPECT_EQ(stream.data, "stays");
        EXPECT_EQ(UtilConvertStringToHGLOBAL(text, &block), 0);
        EXPECT_EQ(BytesOf(block), "");
    }
}

TEST(Conversions, MoreBytesThanCanBeReadAgainAreRefused) {
    constexpr UINT tooMany = 256u * 1024 * 1024 + 1;
    const auto refused = [](auto convert) {
        const clsLog log;
        for (const BOOL compress : {TRUE, FALSE})
            EXPECT_EQ(convert(compress), UTIL_CONVERT_FAILED);
        EXPECT_EQ(log.Lines(),
                  std::vector<std::string>(2, "WRN: more than 256 MiB cannot be kept as a text"));
    };
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, tooMany);
    refused([&](BOOL compress) { return UtilConvertHGLOBALToString(block, nullptr, 0, compress); });
    GlobalFree(block);
    const char none = 0; // memory that is not looked at
    refused([&](BOOL compress) { return UtilConvertBLOBToString(&none, tooMany, nullptr, 0, compress); });
    clsPieceStream endless(Bytes(1 << 20, 'x'));
    const std::function<void()> rewind = [&] {
        endless.position = 0;
        endless.onRead = rewind;
    };
    endless.onRead = rewind;
    refused([&](BOOL compress) { return UtilConvertStreamToString(&endless, nullptr, 0, compress); });
    const clsJob job;
    ProfAppendStreamW(job, 0, L"a", nullptr, &endless);
    EXPECT_EQ(GetLastError(), ERROR_FILE_TOO_LARGE);
    EXPECT_EQ(Describe(job), L"");
}

TEST(Conversions, MissingArgumentsAndFailingStreams) {
    clsPieceStream stream("abc");
    HGLOBAL block;
    EXPECT_EQ(UtilConvertBLOBToString(nullptr, 1, nullptr, 0, FALSE), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertBLOBToString(nullptr, 0, nullptr, 0, TRUE), 1);
    EXPECT_EQ(UtilConvertStreamToString(nullptr, nullptr, 0, FALSE), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertHGLOBALToString(nullptr, nullptr, 0, FALSE), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertStringToBLOB(nullptr, nullptr, 0), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertStringToStream(nullptr, &stream), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertStringToStream(L"QUJD", nullptr), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertStringToHGLOBAL(L"QUJD", nullptr), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(UtilConvertStringToHGLOBAL(nullptr, &block), UTIL_CONVERT_NO_ARGUMENT);
    EXPECT_EQ(block, nullptr);
    stream.failAt = 1;
    EXPECT_EQ(UtilConvertStreamToString(&stream, nullptr, 0, TRUE), UTIL_CONVERT_FAILED);
    EXPECT_EQ(UtilConvertStringToStream(L"QUJD", &stream), UTIL_CONVERT_FAILED);
    EXPECT_EQ(stream.references, 1);
}

} // namespace
} // namespace testing_prof
