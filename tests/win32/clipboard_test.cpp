// Profiles on the clipboard, from one process to another. This program is its own second process.
#include "support/child.h"
#include "support/import_hook.h"
#include "support/piece_stream.h"

namespace testing_prof {
namespace {

constexpr wchar_t kTree[] = L"a=1;L{b=\x00FC;M{}}";
constexpr DWORD kFound = 77;

/// A window that opens the clipboard; a second one is kept out.
class Owner {
  public:
    ~Owner() { DestroyWindow(window_); }
    operator HWND() const { return window_; }

  private:
    HWND window_ =
        CreateWindowExW(0, L"Message", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

class OpenedClipboard {
  public:
    explicit OpenedClipboard(HWND owner) : opened(OpenClipboard(owner)) {}
    ~OpenedClipboard() {
        if (opened)
            CloseClipboard();
    }
    const bool opened;
};

void empty() {
    const Owner owner;
    const OpenedClipboard clipboard(owner);
    EXPECT_TRUE(clipboard.opened && EmptyClipboard());
}

Bytes clipboardBytes(UINT format) {
    const OpenedClipboard clipboard(nullptr);
    const HGLOBAL block = GetClipboardData(format);
    if (!block)
        return "<none>";
    const Bytes bytes(static_cast<const char*>(GlobalLock(block)), GlobalSize(block));
    GlobalUnlock(block);
    return bytes;
}

void putOnClipboard(const Bytes& bytes) {
    const Owner owner;
    const OpenedClipboard clipboard(owner);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(GlobalLock(block), bytes.data(), bytes.size());
    GlobalUnlock(block);
    EXPECT_TRUE(SetClipboardData(RegisterClipboardFormatW(L"QmzProfCBFormat"), block));
}

DWORD secondProcess(std::wstring_view how) {
    if (how == L"paste")
        return ProfIsClipboardDataAvailable() && describe(Job(ProfJobOpenClipboard(nullptr))) == kTree
                   ? kFound
                   : 1;
    return ProfSaveToClipboard(Job(kTree), nullptr, PROF_FORM_TEXT) == PROF_OK ? kFound : 1;
}

TEST(Clipboard, CarriesAProfileToAnotherProcess) {
    empty();
    const Job job(kTree);
    EXPECT_FALSE(ProfIsClipboardDataAvailable());
    EXPECT_EQ(ProfSaveToClipboard(job, nullptr, PROF_SAVE_COMPRESSED), PROF_OK);
    EXPECT_EQ(Child(L"paste").exitCode(), kFound);
    const Bytes text = saved(job);
    EXPECT_EQ(clipboardBytes(RegisterClipboardFormatW(L"qmzprofcbformat")).substr(0, text.size() + 1),
              text + '\0');
    EXPECT_EQ(clipboardBytes(CF_TEXT), utf16(std::wstring_view(L"PROF data available", 20)));
    empty();
    EXPECT_EQ(Child(L"copy").exitCode(), kFound);
    const Job pasted(ProfJobOpenClipboard(nullptr));
    EXPECT_EQ(describe(pasted), kTree);
    EXPECT_EQ(pasted.error(), PROF_OK);
}

TEST(Clipboard, WithoutAProfileGivesAnEmptyJob) {
    empty();
    const Job none(ProfJobOpenClipboard(nullptr));
    EXPECT_EQ(none.error(), PROF_OPEN_FAILED);
    EXPECT_EQ(describe(none), L"");
    EXPECT_EQ(ProfSaveToClipboard(nullptr, nullptr, 0), 0);
    EXPECT_FALSE(ProfIsClipboardDataAvailable());
}

TEST(Clipboard, IsReadWhateverItsSize) {
    const Bytes text = utf16(L"\xFEFF[/]\r\n{\r\na=1\r\n}\r\n");
    const std::pair<Bytes, INT> rows[] = {
        {text, PROF_OK},
        {text + '\0', PROF_OK},
        {text + Bytes(4096, '\0'), PROF_OK},
        {text + Bytes(4095, '\0'), PROF_OK},
        {saved(Job(L"a=1;"), PROF_SAVE_COMPRESSED) + Bytes(9, '\0'), PROF_OK},
        {"ZZmQ damaged", PROF_LOAD_FAILED}};
    for (const auto& [bytes, error] : rows) {
        putOnClipboard(bytes);
        const Job job(ProfJobOpenClipboard(nullptr));
        EXPECT_EQ(job.error(), error) << bytes.size();
        EXPECT_EQ(describe(job), error == PROF_OK ? L"a=1;" : L"") << bytes.size();
    }
}

TEST(Clipboard, CarriesEveryFormWhateverTheBlockIsFilledUpWith) {
    const Job job(L"a=1;L{b=&<\x00FC;}");
    for (const UINT form : {PROF_FORM_TEXT, PROF_FORM_XML, PROF_FORM_XFDF}) {
        const Bytes bytes = saved(job, form);
        const std::wstring tree = describe(opened(bytes));
        empty();
        EXPECT_EQ(ProfSaveToClipboard(job, nullptr, form), PROF_OK);
        EXPECT_EQ(describe(Job(ProfJobOpenClipboard(nullptr))), tree) << form;
        for (size_t more = 0; more <= 16; ++more) {
            putOnClipboard(bytes + Bytes(more, '\0'));
            const Job pasted(ProfJobOpenClipboard(nullptr));
            EXPECT_EQ(pasted.error(), PROF_OK) << form << " " << more;
            EXPECT_EQ(describe(pasted), tree) << form << " " << more;
        }
    }
}

HGLOBAL WINAPI noBlock(UINT, SIZE_T) {
    return nullptr;
}
UINT WINAPI noName(LPCWSTR, LPCWSTR, UINT, LPWSTR) {
    return 0;
}
BOOL WINAPI noWrite(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    return FALSE;
}

TEST(Clipboard, FailuresAreToldApart) {
    const Job job(kTree);
    const struct {
        const char* call;
        void* replacement;
        INT saving, opening;
    } rows[] = {
        {"GetTempFileNameW", reinterpret_cast<void*>(noName), PROF_CLIPBOARD_FAILED, PROF_OPEN_FAILED},
        {"WriteFile", reinterpret_cast<void*>(noWrite), PROF_SAVE_FAILED, PROF_OPEN_FAILED},
        {"GlobalAlloc", reinterpret_cast<void*>(noBlock), PROF_NO_GLOBAL_MEMORY, PROF_OK}};
    ASSERT_EQ(ProfSaveToClipboard(job, nullptr, 0), PROF_OK);
    for (const auto& row : rows) {
        const ImportHook hook(row.call, row.replacement);
        ASSERT_TRUE(hook);
        EXPECT_EQ(ProfSaveToClipboard(job, nullptr, 0), row.saving) << row.call;
        EXPECT_EQ(Job(ProfJobOpenClipboard(nullptr)).error(), row.opening) << row.call;
    }
    const Owner first, second;
    const OpenedClipboard held(first);
    EXPECT_EQ(ProfSaveToClipboard(job, second, 0), PROF_CLIPBOARD_FAILED);
    EXPECT_EQ(Job(ProfJobOpenClipboard(second)).error(), PROF_OPEN_FAILED);
}

} // namespace
} // namespace testing_prof

int main(int argc, char** argv) {
    if (argc == 2 && argv[1][0] != '-')
        return static_cast<int>(testing_prof::secondProcess(argv[1][0] == 'p' ? L"paste" : L"copy"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
