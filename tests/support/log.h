// The library's log file, for tests that look at diagnostic lines.
//
// The library reads where to log once, so a program that includes this logs from its first line on.
#pragma once

#include "files.h"

#include <algorithm>

namespace testing_prof {

// Names the log file of this process and of those that it starts; made before main runs.
class clsLog {
  public:
    static const std::filesystem::path& Path() {
        static const std::filesystem::path name = Choose();
        return name;
    }

    clsLog() : start_(ReadBytes(Path()).size()) {}

    // What was written since the object was made: each line's text after its stamp.
    std::vector<std::string> Lines() const {
        std::vector<std::string> texts = LinesOf(ReadBytes(Path()).substr(start_));
        std::ranges::transform(texts, texts.begin(), WithoutStamp);
        return texts;
    }

    // The text of a line, "12:34:56.789 00000abc/01 7  text" with one blank more a level.
    static std::string WithoutStamp(const std::string& line) {
        const std::size_t slash = line.find('/');
        return slash == std::string::npos ? line : line.substr(slash + 7);
    }

  private:
    static std::filesystem::path Choose() {
        const wchar_t* const chosen = _wgetenv(L"TVUT22_LOG"); // by the process that started this one
        if (chosen && std::wstring_view(chosen).find(L"log-test-") != std::wstring_view::npos)
            return chosen;
        const auto name = std::filesystem::temp_directory_path() /
                          (L"log-test-" + std::to_wstring(GetCurrentProcessId()) + L".log");
        std::error_code ignored;
        std::filesystem::remove(name, ignored);
        SetEnvironmentVariableW(L"TVUT22_LOG", name.c_str());
        return name;
    }

    std::size_t start_;
};

inline const std::filesystem::path& g_logChosen = clsLog::Path();

} // namespace testing_prof
