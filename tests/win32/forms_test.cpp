// Which form is read and written; what the forms hold is tested in unit/.
#include "support/piece_stream.h"

namespace testing_prof {
namespace {

TEST(Forms, AreReadByTheFlags) {
    const Bytes sections = Utf16(L"\xFEFF[A]\n[B]\n");
    EXPECT_EQ(Describe(Opened(sections)), L"B{}");
    EXPECT_EQ(Describe(Opened(sections, 0xFFFFFFF0u)), L"B{}") << "reserved bits are ignored";
    for (const UINT flags : {PROF_READ_PLAIN_INI, PROF_READ_PLAIN_INI | 0xFFFF0000u})
        EXPECT_EQ(Describe(Opened(sections, flags)), L"A{}B{}");
}

TEST(Forms, AreChosenByTheLowFourBits) {
    const clsJob job(L"a=1;l{b=<\">;}");
    const Bytes xml = Saved(job, PROF_FORM_XML);
    const Bytes xfdf = Saved(job, PROF_FORM_XFDF);
    EXPECT_TRUE(xml.starts_with(Utf16(L"\xFEFF<?xml version=\"1.0\" encoding=\"UTF-16\"")));
    EXPECT_TRUE(xfdf.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<xfdf xmlns="));
    for (const UINT flags : {3u, 0xFu, 0x11u, 0x81u, 0xFFFFFF0Fu})
        EXPECT_EQ(Saved(job, flags), flags & PROF_SAVE_COMPRESSED ? Saved(job, 0x41) : xml) << flags;
    for (const UINT flags : {0x12u, 0x82u})
        EXPECT_EQ(Saved(job, flags), xfdf) << flags;
    EXPECT_EQ(Saved(job, 0x10), Saved(job)) << "bits above the form do not choose it";
    for (const UINT flags : {0x00u, 0x01u, 0x41u})
        EXPECT_EQ(Describe(Opened(Saved(job, flags))), Describe(job)) << flags;
    EXPECT_EQ(Describe(Opened(xfdf)), L"=1;=<\">;");
    EXPECT_EQ(Describe(Opened(xfdf, PROF_READ_FOREIGN_XFDF)), Describe(job));
}

TEST(Forms, OtherXmlIsAnEmptyProfileUnlessItIsAskedFor) {
    const Bytes other = "<?xml version=\"1.0\"?><profile><item name=\"a\">1</item></profile>";
    EXPECT_EQ(Opened(other).Error(), PROF_OK);
    EXPECT_EQ(Describe(Opened(other)), L"");
    EXPECT_EQ(Opened(other, PROF_READ_FOREIGN_XFDF).Error(), PROF_LOAD_FAILED);
    EXPECT_EQ(Describe(Opened(other, PROF_READ_FOREIGN_XML)), L"a=1;");
    EXPECT_EQ(Opened(other.substr(0, 40), PROF_READ_FOREIGN_XML).Error(), PROF_LOAD_FAILED);
    EXPECT_EQ(
        Describe(Opened(
            "<?xml version='1.0' encoding='windows-1251'?><profile><item name='a'>\xC3\xA9</item></profile>",
            PROF_READ_FOREIGN_XML | PROF_READ_FOREIGN_XFDF)),
        L"a=\x0413\x00A9;");
}

} // namespace
} // namespace testing_prof
