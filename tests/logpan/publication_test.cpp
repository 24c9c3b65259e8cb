// What a viewer publishes, and what happens when there was one before.
#include "viewer.h"

#include "support/shared_view.h"

namespace logpan_test {

namespace {

HWND WindowOf(UINT32 handle) {
    return reinterpret_cast<HWND>(static_cast<UINT_PTR>(handle));
}

} // namespace

TEST(Publication, TakesOverWhatADeadViewerLeft) {
    const testing_prof::clsSharedView<LogpanSharedInfo> info{LOGPAN_SHARED_INFO_LOCAL};
    const testing_prof::clsSharedView<UINT32> window{LOGPAN_GLOBAL_DATA};
    *info = {32, 1, ~0ull, 77, 0x1234};
    *window = 0x1234;
    clsViewer viewer{"--console --max-lines 1"};
    const UINT32 port = viewer.Port();
    ASSERT_NE(port, 0u);
    EXPECT_EQ(info->size, 32u) << "never shrinks: senders may have mapped it whole";
    EXPECT_EQ(info->port, port);
    EXPECT_NE(info->mask, 0u);
    EXPECT_EQ(info->largestDatagram, 65507u);
    wchar_t className[32] = {};
    GetClassNameW(WindowOf(info->window), className, static_cast<int>(std::size(className)));
    EXPECT_STREQ(className, LOGPAN_WINDOW_CLASS);
    EXPECT_EQ(*window, info->window);
    EXPECT_EQ(FindWindowW(LOGPAN_WINDOW_CLASS, nullptr), WindowOf(*window));

    clsSender{port}.Line(L"the only one", '0');
    viewer.Expect("received 1, shown 1, lost 0, refused 0, skipped 0");
    EXPECT_EQ(info->mask, 0u);
    EXPECT_EQ(info->port, 0u);
    EXPECT_EQ(info->window, 0u);
    EXPECT_EQ(*window, 0u);
}

TEST(Publication, LeavesRoomForOneViewer) {
    clsViewer first{"--json"};
    ASSERT_NE(first.Port(), 0u);
    for (const char* program : {LOGPAN_CONSOLE, LOGPAN_WINDOW}) {
        const scOutcome second = clsViewer{"--console", program}.Finish();
        EXPECT_EQ(second.code, 3u);
        EXPECT_EQ(second.err, "logpan: another logpan is running; there can be one in a session\n");
    }
    first.Kill();
    first.Finish();
    for (const char* program : {LOGPAN_CONSOLE, LOGPAN_WINDOW}) {
        clsViewer next{"--console --exit-after 0.1", program};
        EXPECT_NE(next.Port(), 0u) << "a dead one stands in nobody's way";
        next.Expect("received 0, shown 0, lost 0, refused 0, skipped 0");
    }
}

} // namespace logpan_test
