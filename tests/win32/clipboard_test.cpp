// Profiles on the clipboard, from one process to another. This program is its own second process.
#include "support/child.h"
#include "support/import_hook.h"
#include "support/piece_stream.h"

namespace testing_prof {
namespace {

constexpr wchar_t treeText[] = L"a=1;L{b=\x00FC;M{}}";
constexpr DWORD foundCode = 77;

// A window that opens the clipboard; a second one is kept out.
class clsOwner {
  public:
    ~clsOwner() { DestroyWindow(window_); }
    operator HWND() const { return window_; }

  private:
    HWND window_ =
        CreateWindowExW(0, L"Message", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
};

class clsOpenedClipboard {
  public:
    explicit clsOpenedClipboard(HWND owner) : opened(OpenClipboard(owner)) {}
    ~clsOpenedClipboard() {
        if (opened)
            CloseClipboard();
    }
    const bool opened;
};

void Empty() {
    const clsOwner owner;
    const clsOpenedClipboard clipboard(owner);
    EXPECT_TRUE(clipboard.opened && EmptyClipboard());
}

Bytes ClipboardBytes(UINT format) {
    const clsOpenedClipboard clipboard(nullptr);
    const HGLOBAL block = GetClipboardData(format);
    if (!block)
        return "<none>";
    const Bytes bytes(static_cast<const char*>(GlobalLock(block)), GlobalSize(block));
    GlobalUnlock(block);
    return bytes;
}

void PutOnClipboard(const Bytes& bytes) {
    const clsOwner owner;
    const clsOpenedClipboard clipboard(owner);
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
    std::memcpy(GlobalLock(block), bytes.data(), bytes.size());
    GlobalUnlock(block);
    EXPECT_TRUE(SetClipboardData(RegisterClipboardFormatW(L"QmzProfCBFormat"), block));
}

DWORD SecondProcess(std::wstring_view how) {
    if (how == L"paste")
        return ProfIsClipboardDataAvailable() && Describe(clsJob(ProfJobOpenClipboard(nullptr))) == treeText
                   ? foundCode
                   : 1;
    return ProfSaveToClipboard(clsJob(treeText), nullptr, PROF_FORM_TEXT) == PROF_OK ? foundCode : 1;
}

TEST(Clipboard, CarriesAProfileToAnotherProcess) {
    Empty();
    const clsJob job(treeText);
    EXPECT_FALSE(ProfIsClipboardDataAvailable());
    EXPECT_EQ(ProfSaveToClipboard(job, nullptr, PROF_SAVE_COMPRESSED), PROF_OK);
    EXPECT_EQ(clsChild(L"paste").ExitCode(), foundCode);
    const Bytes text = Saved(job);
    EXPECT_EQ(ClipboardBytes(RegisterClipboardFormatW(L"qmzprofcbformat")).substr(0, text.size() + 1),
              text + '\0');
    EXPECT_EQ(ClipboardBytes(CF_TEXT), Utf16(std::wstring_view(L"PROF data available", 20)));
    Empty();
    EXPECT_EQ(clsChild(L"copy").ExitCode(), foundCode);
    const clsJob pasted(ProfJobOpenClipboard(nullptr));
    EXPECT_EQ(Describe(pasted), treeText);
    EXPECT_EQ(pasted.Error(), PROF_OK);
}

TEST(Clipboard, WithoutAProfileGivesAnEmptyJob) {
    Empty();
    const clsJob none(ProfJobOpenClipboard(nullptr));
    EXPECT_EQ(none.Error(), PROF_OPEN_FAILED);
    EXPECT_EQ(Describe(none), L"");
    EXPECT_EQ(ProfSaveToClipboard(nullptr, nullptr, 0), 0);
    EXPECT_FALSE(ProfIsClipboardDataAvailable());
}

TEST(Clipboard, CarriesEveryFormWhateverTheBlockIsFilledUpWith) {
    const clsJob job(L"a=1;L{b=&<\x00FC;}");
    for (const UINT form : {PROF_FORM_TEXT, PROF_FORM_XML, PROF_FORM_XFDF, PROF_SAVE_COMPRESSED}) {
        const Bytes bytes = Saved(job, form);
        const std::wstring tree = Describe(Opened(bytes));
        Empty();
        EXPECT_EQ(ProfSaveToClipboard(job, nullptr, form), PROF_OK);
        EXPECT_EQ(Describe(clsJob(ProfJobOpenClipboard(nullptr))), tree) << form;
        for (const size_t more : {0, 1, 2, 9, 16, 4095, 4096}) {
            PutOnClipboard(bytes + Bytes(more, '\0'));
            const clsJob pasted(ProfJobOpenClipboard(nullptr));
            EXPECT_EQ(pasted.Error(), PROF_OK) << form << " " << more;
            EXPECT_EQ(Describe(pasted), tree) << form << " " << more;
        }
    }
    PutOnClipboard("ZZmQ damaged");
    const clsJob damaged(ProfJobOpenClipboard(nullptr));
    EXPECT_EQ(damaged.Error(), PROF_LOAD_FAILED);
    EXPECT_EQ(Describe(damaged), L"");
}

HGLOBAL WINAPI NoBlock(UINT, SIZE_T) {
    return nullptr;
}
UINT WINAPI NoName(LPCWSTR, LPCWSTR, UINT, LPWSTR) {
    return 0;
}
BOOL WINAPI NoWrite(HANDLE, LPCVOID, DWORD, LPDWORD, LPOVERLAPPED) {
    return FALSE;
}

TEST(Clipboard, FailuresAreToldApart) {
    const clsJob job(treeText);
    const struct {
        const char* call;
        void* replacement;
        INT saving, opening;
    } rows[] = {
        {"GetTempFileNameW", reinterpret_cast<void*>(NoName), PROF_CLIPBOARD_FAILED, PROF_OPEN_FAILED},
        {"WriteFile", reinterpret_cast<void*>(NoWrite), PROF_SAVE_FAILED, PROF_OPEN_FAILED},
        {"GlobalAlloc", reinterpret_cast<void*>(NoBlock), PROF_NO_GLOBAL_MEMORY, PROF_OK}};
    ASSERT_EQ(ProfSaveToClipboard(job, nullptr, 0), PROF_OK);
    for (const auto& row : rows) {
        const clsImportHook hook(row.call, row.replacement);
        ASSERT_TRUE(hook);
        EXPECT_EQ(ProfSaveToClipboard(job, nullptr, 0), row.saving) << row.call;
        EXPECT_EQ(clsJob(ProfJobOpenClipboard(nullptr)).Error(), row.opening) << row.call;
    }
    const clsOwner first, second;
    const clsOpenedClipboard held(first);
    EXPECT_EQ(ProfSaveToClipboard(job, second, 0), PROF_CLIPBOARD_FAILED);
    EXPECT_EQ(clsJob(ProfJobOpenClipboard(second)).Error(), PROF_OPEN_FAILED);
}

} // namespace
} // namespace testing_prof

int main(int argc, char** argv) {
    if (argc == 2 && argv[1][0] != '-')
        return static_cast<int>(testing_prof::SecondProcess(argv[1][0] == 'p' ? L"paste" : L"copy"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
