// What was built together with the test that runs.
#pragma once

#include <windows.h>

#include <filesystem>

namespace testing_prof {

inline std::filesystem::path BesideTest(const std::filesystem::path& file) {
    wchar_t test[MAX_PATH];
    GetModuleFileNameW(nullptr, test, MAX_PATH);
    return std::filesystem::path(test).replace_filename(file);
}

} // namespace testing_prof
