// The web server of the tests, tests/download/server.py, which runs this program.
#pragma once

#include "files.h"

namespace testing_prof {

// The address of a path, http unless it is asked for otherwise.
inline std::wstring AddressOf(std::wstring_view path, const wchar_t* server = L"TVUT22_HTTP") {
    const wchar_t* const root = _wgetenv(server);
    return (root ? root : L"http://tests-download-server-py-runs-this.invalid") + std::wstring(path);
}

// N bytes as the server sends them.
inline Bytes ServedBytes(std::size_t size) {
    Bytes bytes(size, '\0');
    for (std::size_t at = 0; at < size; ++at)
        bytes[at] = static_cast<char>(at * 7 % 251);
    return bytes;
}

// The requests for this object's addresses, a line each; others may ask the server meanwhile.
class clsRequests {
  public:
    clsRequests() : mark_("?mark-" + std::to_string(++made_) + "-") {}

    std::wstring Address(std::wstring_view path, const wchar_t* server = L"TVUT22_HTTP") const {
        return AddressOf(path, server) + std::wstring(mark_.begin(), mark_.end());
    }
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        const Bytes all = Read();
        for (std::size_t at = 0, end; (end = all.find('\n', at)) != all.npos; at = end + 1)
            if (const std::string line = all.substr(at, end - at); line.find(mark_) != line.npos)
                lines.push_back(line);
        return lines;
    }

  private:
    static Bytes Read() {
        const wchar_t* const log = _wgetenv(L"TVUT22_HTTP_LOG");
        return log ? ReadBytes(L"Z:" + std::wstring(log)) : Bytes();
    }

    static inline int made_ = 0;
    std::string mark_;
};

} // namespace testing_prof
