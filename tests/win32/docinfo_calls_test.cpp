// The calls of document information: streams, results, handles, no memory. What is read of which format is
// shown natively.
#include "support/counted_allocations.h"
#include "support/files.h"
#include "support/ole_text.h"
#include "support/piece_stream.h"
#include "support/test_data.h"

#include <tvut22/tvut22.hpp>

#include <gtest/gtest.h>

namespace testing_prof {

namespace {

constexpr char page[] = "<title>A title</title><meta name=author content=Ana><meta name=x content=y>";

Bytes Page() {
    return Bytes(page, page + sizeof page - 1);
}

// Text, or the result in brackets.
std::wstring Get(UtilDocInfo info, const wchar_t* name) {
    clsOleText text(L"before");
    const INT result = UtilDocInfoGet(info, name, text.Out());
    EXPECT_TRUE(result == UTIL_OK || text.Text() == L"before");
    return result == UTIL_OK ? text.Text() : L"(" + std::to_wstring(result) + L")";
}

tvut22::document_info OpenPage() {
    clsPieceStream stream(Page(), 7);
    return tvut22::document_info(UtilDocInfoOpenStream(&stream));
}

TEST(DocInfoCalls, GiveWhatAStreamHolds) {
    clsPieceStream stream(Page(), 7);
    stream.position = 11;
    const tvut22::document_info info(UtilDocInfoOpenStream(&stream));
    EXPECT_EQ(stream.position, 11u);
    EXPECT_EQ(stream.references, 1);
    EXPECT_EQ(Get(info.get(), nullptr), L"Format\nTitle\nAuthor\nCustom.x");
    EXPECT_EQ(Get(info.get(), L""), Get(info.get(), nullptr));
    EXPECT_EQ(Get(info.get(), L"AUTHOR"), L"Ana");
    EXPECT_EQ(Get(info.get(), L"custom.X"), L"y");
    EXPECT_EQ(Get(info.get(), L"Pages"), L"(-6)");
    EXPECT_EQ(UtilDocInfoGet(info.get(), L"Title", nullptr), UTIL_OK);
    EXPECT_EQ(UtilDocInfoGet(info.get(), L"Pages", nullptr), UTIL_NOT_FOUND);
}

TEST(DocInfoCalls, SayWhyThereIsNone) {
    const auto reason = [](auto open) {
        SetLastError(0);
        EXPECT_EQ(open(), nullptr);
        return GetLastError();
    };
    EXPECT_EQ(reason([] { return UtilDocInfoOpen(nullptr); }), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(reason([] { return UtilDocInfoOpen(L""); }), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(reason([] { return UtilDocInfoOpen(L"no such file"); }), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(reason([] { return UtilDocInfoOpenStream(nullptr); }), ERROR_INVALID_PARAMETER);
    clsPieceStream empty, unseekable(Page());
    unseekable.refuseSeek = true;
    EXPECT_EQ(reason([&] { return UtilDocInfoOpenStream(&empty); }), ERROR_BAD_FORMAT);
    EXPECT_NE(reason([&] { return UtilDocInfoOpenStream(&unseekable); }), 0u);
}

TEST(DocInfoCalls, RefuseWhatIsNoHandle) {
    const UtilDocInfo info = OpenPage().release();
    EXPECT_EQ(UtilDocInfoClose(nullptr), UTIL_OK);
    EXPECT_EQ(UtilDocInfoClose(info), UTIL_OK);
    EXPECT_EQ(UtilDocInfoClose(info), UTIL_BAD_ARGUMENT);
    int foreign = 0;
    for (const UtilDocInfo none : {info, UtilDocInfo(nullptr), reinterpret_cast<UtilDocInfo>(&foreign)})
        EXPECT_EQ(Get(none, L"Title"), L"(-2)");
}

TEST(DocInfoCalls, FailWithoutMemory) {
    for (const char* name : {"html-all", "mail-words", "docx-strict", "odt-odfpy", "doc-cyrillic", "msg-wide",
                             "pdf-packed", "rtf-all", "tiff-big-endian"}) {
        clsPieceStream stream(ReadBytes(tvut::TestData() + "/docinfo/" + name + ".in"));
        bool isRead = false;
        FailEachAllocation([&] { isRead = bool(tvut22::document_info(UtilDocInfoOpenStream(&stream))); },
                           [&](bool failed) { EXPECT_TRUE(failed || isRead) << name; });
    }
    const tvut22::document_info info = OpenPage();
    INT result = UTIL_OK;
    FailEachAllocation([&] { result = UtilDocInfoGet(info.get(), nullptr, clsOleText().Out()); },
                       [&](bool failed) { EXPECT_EQ(result, failed ? UTIL_FAILED : UTIL_OK); });
}

} // namespace

} // namespace testing_prof
