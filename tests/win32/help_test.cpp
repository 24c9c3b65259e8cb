// Help through a viewer that writes down each call.
#include "support/beside_test.h"
#include "support/child.h"

#include <gtest/gtest.h>
#include <tvut22/tvut22.hpp>

#include <htmlhelp.h>
#include <thread>

namespace testing_prof {
namespace {

// The classes that the library finds in the registry are this process's own.
class clsOwnClasses {
  public:
    explicit clsOwnClasses(const std::wstring& viewer) {
        RegCreateKeyExW(HKEY_CURRENT_USER, Name().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key_,
                        nullptr);
        if (!viewer.empty())
            RegSetKeyValueW(key_, L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32", nullptr,
                            REG_SZ, viewer.c_str(),
                            static_cast<DWORD>((viewer.size() + 1) * sizeof(wchar_t)));
        RegOverridePredefKey(HKEY_CLASSES_ROOT, key_);
    }
    ~clsOwnClasses() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(key_);
        RegDeleteTreeW(HKEY_CURRENT_USER, Name().c_str());
    }
    clsOwnClasses(const clsOwnClasses&) = delete;
    clsOwnClasses& operator=(const clsOwnClasses&) = delete;

  private:
    static std::wstring Name() {
        return L"Software\\tvUT22 help test " + std::to_wstring(GetCurrentProcessId());
    }
    HKEY key_ = nullptr;
};

std::wstring Viewer() {
    return BesideTest(L"help_viewer.dll").wstring();
}

class Help : public testing::Test {
  protected:
    Help() {
        SetEnvironmentVariableW(L"TVUT22_HELP_RECORD", record.c_str());
        SetEnvironmentVariableW(L"TMP", temp.c_str());
        std::filesystem::create_directory(temp);
        WriteBytes(file, "help");
    }
    ~Help() override { SetEnvironmentVariableW(L"TMP", nullptr); }

    // What the viewer was asked for since the last time; the temporary folder's copies as COPY\name.
    std::vector<std::wstring> Calls() const {
        const Bytes bytes = ReadBytes(record);
        DeleteFileW(record.c_str());
        const std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()),
                                bytes.size() / sizeof(wchar_t));
        std::vector<std::wstring> lines;
        for (size_t at = 0, end; (end = text.find(L'\n', at)) != std::wstring::npos; at = end + 1)
            lines.push_back(Shortened(text.substr(at, end - at)));
        return lines;
    }

    std::filesystem::path Copies() const { return temp + L"\\tvUT22.help"; }

    const clsTempFolder folder;
    const std::wstring file = folder / L"product.chm";
    const std::wstring record = folder / L"record";
    const std::wstring temp = folder / L"temp";
    const clsOwnClasses classes{Viewer()};

  private:
    std::wstring Shortened(std::wstring line) const {
        if (const size_t at = line.find(Copies().wstring()); at != std::wstring::npos)
            line.replace(at, Copies().wstring().size() + 17, L"COPY");
        if (const size_t at = line.find(folder.Path().wstring()); at != std::wstring::npos)
            line.replace(at, folder.Path().wstring().size(), L"HERE");
        return line;
    }
};

using Lines = std::vector<std::wstring>;

TEST_F(Help, AsksTheViewer) {
    tvut22::help help(UtilHelpOpen(GetDesktopWindow(), file.c_str()));
    ASSERT_TRUE(help);
    EXPECT_EQ(Calls(), Lines{}) << "nothing is loaded";
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    EXPECT_EQ(UtilHelpShowTopic(help.get(), L"a/b.htm#c"), UTIL_OK);
    EXPECT_EQ(UtilHelpShowContext(help.get(), 4711), UTIL_OK);
    EXPECT_EQ(UtilHelpShowKeyword(help.get(), L"fonts"), UTIL_OK);
    EXPECT_EQ(UtilHelpShowKeyword(help.get(), L""), UTIL_OK);
    EXPECT_EQ(UtilHelpShowTopic(help.get(), L"/nowhere.htm"), UTIL_NOT_FOUND);
    EXPECT_EQ(Calls(),
              (Lines{L"0 owner HERE\\product.chm", L"0 owner HERE\\product.chm::/a/b.htm#c",
                     L"15 owner HERE\\product.chm 4711",
                     L"13 owner HERE\\product.chm " + std::to_wstring(sizeof(HH_AKLINK)) + L" 'fonts' 1",
                     L"2 owner HERE\\product.chm", L"0 owner HERE\\product.chm::/nowhere.htm"}));
    tvut22::help second(UtilHelpOpen(nullptr, file.c_str()));
    EXPECT_EQ(second.reset(), UTIL_OK);
    EXPECT_EQ(Calls(), Lines{}) << "another is open";
    const UtilHelp closed = help.get();
    EXPECT_EQ(help.reset(), UTIL_OK);
    EXPECT_EQ(Calls(), Lines{L"18 none -"});
    EXPECT_EQ(UtilHelpShowTopic(closed, nullptr), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilHelpClose(closed), UTIL_BAD_ARGUMENT);
    EXPECT_EQ(UtilHelpClose(nullptr), UTIL_OK);
}

TEST_F(Help, IsNotMissedBeforeItIsShown) {
    const std::wstring missing = folder / L"missing.chm";
    EXPECT_EQ(UtilHelpClose(UtilHelpOpen(nullptr, missing.c_str())), UTIL_OK);
    const tvut22::help help(UtilHelpOpen(nullptr, missing.c_str()));
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilHelpShowKeyword(help.get(), nullptr), UTIL_NOT_FOUND);
    WriteBytes(missing, "help");
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    EXPECT_EQ(Calls(), Lines{L"0 none HERE\\missing.chm"});
}

// A folder of the prefix is a server's, as far as this system is concerned.
std::filesystem::path ShareFolder() {
    const wchar_t* const prefix = _wgetenv(L"WINEPREFIX");
    return std::wstring(L"Z:") + (prefix ? prefix : L"") + L"\\dosdevices\\unc\\tvut22\\" +
           std::to_wstring(GetCurrentProcessId());
}

TEST_F(Help, IsCopiedFromShares) {
    const std::filesystem::path share = ShareFolder();
    std::error_code ignored;
    ASSERT_TRUE(create_directories(share, ignored)) << share;
    WriteBytes(share / L"far.chm", "far");
    const std::wstring path = L"\\\\tvut22\\" + share.filename().wstring() + L"\\far.chm";
    const tvut22::help help(UtilHelpOpen(nullptr, path.c_str()));
    for (const char* const contents : {"far", "new contents"}) {
        WriteBytes(share / L"far.chm", contents);
        EXPECT_EQ(UtilHelpShowTopic(help.get(), L"x"), UTIL_OK);
        EXPECT_EQ(UtilHelpShowContext(help.get(), 1), UTIL_OK);
        EXPECT_EQ(Calls(), (Lines{L"0 none COPY\\far.chm::/x", L"15 none COPY\\far.chm 1"}));
        const auto copies = std::filesystem::recursive_directory_iterator(Copies());
        for (const auto& entry : copies)
            if (entry.is_regular_file()) {
                EXPECT_EQ(ReadBytes(entry.path()), contents);
            }
    }
    remove_all(share.parent_path(), ignored);
}

TEST_F(Help, IsCopiedOnceWhenItCameFromOutside) {
    WriteBytes(file + L":Zone.Identifier", "[ZoneTransfer]\r\nZoneId=2\r\n");
    const tvut22::help help(UtilHelpOpen(nullptr, file.c_str()));
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    EXPECT_FALSE(exists(Copies())) << "a site that is trusted";
    WriteBytes(file + L":Zone.Identifier", "[ZoneTransfer]\r\nZoneId=3\r\n");
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    const auto subfolder = std::filesystem::directory_iterator(Copies())->path();
    EXPECT_EQ(ReadBytes(subfolder / L"product.chm"), "help");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(subfolder), {}), 1) << "without the mark";

    {
        const Handle copy =
            OpenExisting((subfolder / L"product.chm").wstring(), GENERIC_READ | GENERIC_WRITE, 0);
        FILETIME time;
        DWORD written = 0;
        GetFileTime(copy.get(), nullptr, nullptr, &time);
        WriteFile(copy.get(), "HELP", 4, &written, nullptr);
        SetFileTime(copy.get(), nullptr, nullptr, &time);
    }
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    EXPECT_EQ(ReadBytes(subfolder / L"product.chm"), "HELP") << "size and time say that it is right";
    SetAge(subfolder / L"product.chm", 5);
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    EXPECT_EQ(ReadBytes(subfolder / L"product.chm"), "help");

    WriteBytes(file, "longer");
    const Handle held(CreateFileW((subfolder / L"product.chm").c_str(), GENERIC_READ, FILE_SHARE_READ,
                                  nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    const std::wstring copied = L"0 none COPY\\product.chm", bare = L"0 none HERE\\product.chm";
    EXPECT_EQ(Calls(), (Lines{bare, copied, copied, copied, bare})) << "the last copy could not be renewed";
}

TEST_F(Help, OfOtherKindsIsRefused) {
    for (const wchar_t* const name : {L"old.hlp", L"none", L"a.chm.exe"}) {
        const tvut22::help help(UtilHelpOpen(nullptr, (folder / name).c_str()));
        ASSERT_TRUE(help);
        EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_NOT_SUPPORTED);
    }
    const tvut22::help page(UtilHelpOpen(nullptr, (folder / L"missing.htm").c_str()));
    EXPECT_EQ(UtilHelpShowKeyword(page.get(), L"x"), UTIL_NOT_SUPPORTED);
    EXPECT_EQ(UtilHelpShowTopic(page.get(), L"x"), UTIL_NOT_FOUND);
    EXPECT_EQ(UtilHelpOpen(nullptr, nullptr), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_PARAMETER));
    EXPECT_EQ(UtilHelpOpen(reinterpret_cast<HWND>(UINT_PTR{0x7FFFFFF0}), file.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(Calls(), Lines{});
}

TEST_F(Help, IsNotShownWithinTheLoader) {
    using Lock = LONG WINAPI(ULONG, ULONG*, ULONG_PTR*);
    using Unlock = LONG WINAPI(ULONG, ULONG_PTR);
    const HMODULE system = GetModuleHandleW(L"ntdll.dll");
    const auto lock =
        reinterpret_cast<Lock*>(reinterpret_cast<void*>(GetProcAddress(system, "LdrLockLoaderLock")));
    const auto unlock =
        reinterpret_cast<Unlock*>(reinterpret_cast<void*>(GetProcAddress(system, "LdrUnlockLoaderLock")));
    tvut22::help help(UtilHelpOpen(nullptr, file.c_str()));
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_OK);
    ULONG_PTR cookie = 0;
    lock(0, nullptr, &cookie);
    EXPECT_EQ(UtilHelpShowTopic(help.get(), nullptr), UTIL_IN_LOADER);
    EXPECT_EQ(help.reset(), UTIL_OK);
    unlock(0, cookie);
    EXPECT_EQ(Calls(), Lines{L"0 none HERE\\product.chm"});
    EXPECT_EQ(UtilHelpClose(UtilHelpOpen(nullptr, file.c_str())), UTIL_OK);
    EXPECT_EQ(Calls(), Lines{L"18 none -"}) << "what was left open then";
}

// A child, in which no viewer is loaded yet, and the system's own is not found.
TEST_F(Help, NeedsAViewer) {
    const wchar_t* const ofProgram = L"Software\\Wine\\AppDefaults\\help_test.exe";
    RegSetKeyValueW(HKEY_CURRENT_USER, (std::wstring(ofProgram) + L"\\DllOverrides").c_str(), L"hhctrl.ocx",
                    REG_SZ, L"", sizeof(wchar_t));
    EXPECT_EQ(clsChild(L"viewerless \"" + file + L"\"").ExitCode(), static_cast<DWORD>(-UTIL_NOT_SUPPORTED));
    RegDeleteTreeW(HKEY_CURRENT_USER, ofProgram);
}

TEST_F(Help, OfAProcessThatEndsIsLeftAlone) {
    EXPECT_EQ(clsChild(L"ends \"" + file + L"\"").ExitCode(), 0u);
    EXPECT_EQ(Calls(), Lines{L"0 none HERE\\product.chm"});
}

// A static object's end is a part of the process's.
tvut22::help leftOpen;

int Child(const std::wstring& what, const wchar_t* file) {
    const clsOwnClasses classes(what == L"viewerless" ? std::wstring(file) + L".dll" : Viewer());
    leftOpen.reset(UtilHelpOpen(nullptr, file));
    const INT shown = UtilHelpShowTopic(leftOpen.get(), nullptr);
    if (what == L"ends")
        (void)leftOpen.release();
    return -shown;
}

} // namespace
} // namespace testing_prof

int wmain(int count, wchar_t** arguments) {
    if (count == 3)
        return testing_prof::Child(arguments[1], arguments[2]);
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
