// Jobs and modules through the exports: handles, traces, version, language.
#include "support/log.h"

#include <gtest/gtest.h>
#include <tvut22/util.h>

#include <thread>

namespace testing_prof {
namespace {

using Lines = std::vector<std::string>;

// A grouped line, as it stands in the log: the host's name, the depth, the text and a line end of its own.
std::string Grouped(int depth, const std::string& text) {
    return "modules_test:" + std::string(static_cast<std::size_t>(depth), ' ') + text + "\n";
}

std::string Pointer(const void* at) {
    char text[20];
    std::snprintf(text, sizeof text, "0X%08X", static_cast<unsigned>(reinterpret_cast<UINT_PTR>(at)));
    return text;
}

TEST(Jobs, AreTracedOnRequest) {
    const clsLog log;
    const UtilJob silent = UtilJobOpen(L"silent", UTIL_JOB_DEBUG_HEAPS);
    UtilJobClose(silent);
    const UtilJob job = UtilJobOpen(L"traced", UTIL_JOB_TRACE | 5);
    UtilJobOpen(nullptr, UTIL_JOB_TRACE);
    UtilJobClose(job);
    UtilJobClose(job);
    const Lines expected = {Grouped(0, "UtilJobOpen('traced',0x80000005)"),
                            Grouped(1, "->" + Pointer(job)),
                            Grouped(0, "UtilJobOpen('(NULL)',0x80000000)"),
                            Grouped(1, "->"),
                            Grouped(0, "UtilJobClose(" + Pointer(job) + ") ['traced']"),
                            Grouped(1, "->0"),
                            Grouped(0, "Error: clsModuleList::Delete(" + Pointer(job) + "): Invalid handle"),
                            Grouped(1, "Error: invalid module handle")};
    const Lines lines = log.Lines();
    ASSERT_EQ(lines.size(), expected.size());
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_EQ(lines[i].substr(0, expected[i].find("->\n")),
                  expected[i].substr(0, expected[i].find("->\n")));
}

TEST(Jobs, AreOpenedAndClosedByManyThreads) {
    const UtilJob job = UtilJobOpen(L"shared", 0);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([=] {
                for (int i = 0; i < 2000; ++i) {
                    EXPECT_EQ(UtilJobOpen(L"shared", 0), job);
                    const UtilJob own = UtilJobOpen(std::to_wstring(t).c_str(), 0);
                    EXPECT_EQ(UtilJobClose(own), UTIL_OK);
                    EXPECT_EQ(UtilJobClose(job), UTIL_OK);
                }
            });
    }
    EXPECT_EQ(UtilJobClose(job), UTIL_OK);
    EXPECT_EQ(UtilJobClose(job), UTIL_BAD_JOB);
    EXPECT_EQ(UtilJobClose(nullptr), UTIL_OK);
    EXPECT_EQ(UtilJobClose(UtilJobOpen(nullptr, 0)), UTIL_OK);
}

TEST(Modules, AnnounceThemselves) {
    wchar_t host[MAX_PATH], dll[MAX_PATH];
    GetModuleFileNameW(nullptr, host, MAX_PATH);
    GetModuleFileNameW(GetModuleHandleW(L"tvUT22.dll"), dll, MAX_PATH);
    const auto narrow = [](const wchar_t* text) { return std::filesystem::path(text).string(); };
    const clsLog log;
    UtilModuleOnAttach(L"tvUT22.dll");
    UtilModuleOnAttach(L"not loaded");
    UtilModuleOnDetach(L"not loaded");
    UtilModuleOnAttach(nullptr);
    UtilModuleOnDetach(nullptr);
    UtilModuleOnDetach(L"tvUT22.dll");
    UtilModuleOnDetach(L"once too often");
    const std::string inHost = " [" + narrow(host) + "]";
    EXPECT_EQ(log.Lines(), (Lines{"++tvUT22.dll" + inHost + " [" + narrow(dll) + "]", "++not loaded" + inHost,
                                  "--not loaded" + inHost, "++(NULL)" + inHost, "--(NULL)" + inHost,
                                  "--tvUT22.dll" + inHost, "--once too often" + inHost}));
}

TEST(Library, KnowsItsVersion) {
    const UINT versions[] = {0x0016000A, 22, 10, 0, ~0u};
    for (UINT part = 0; part < std::size(versions); ++part)
        EXPECT_EQ(UtilGetVersion(part), versions[part]) << part;
    EXPECT_TRUE(UtilGetFlags());
}

TEST(Language, IsKeptForTheHostProgram) {
    constexpr const wchar_t* key = L"Software\\Velmor\\Appearance\\modules_test";
    RegDeleteKeyW(HKEY_CURRENT_USER, key);
    EXPECT_EQ(UtilLanguageGet(), static_cast<UINT>(PRIMARYLANGID(GetUserDefaultUILanguage())));
    for (const UINT language : {49u, 0u, 0xFFFFFFFFu}) {
        EXPECT_EQ(UtilLanguageSet(language), 0);
        DWORD kept = 1, size = sizeof kept;
        EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, key, L"Language", RRF_RT_REG_DWORD, nullptr, &kept, &size),
                  0);
        EXPECT_EQ(kept, language);
        EXPECT_EQ(UtilLanguageGet(), language);
    }
    RegDeleteKeyW(HKEY_CURRENT_USER, key);
}

} // namespace
} // namespace testing_prof
