// Keeps a word list up to date: fetches it, looks at its checksum, and goes on with the old one when anything
// is wrong.
//
//     words.exe https://example.com
//
// Without an argument the address is that of the tests' server, tests/download/server.py.
#include <tvut22/download.h>
#include <tvut22/results.h>

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

constexpr wchar_t listFile[] = L"words.txt";

const char* NameOf(INT result) {
    switch (result) {
    case UTIL_OK:
        return "fetched";
    case UTIL_CANCELLED:
        return "cancelled";
    case UTIL_MISMATCH:
        return "not what it should be";
    case UTIL_SERVER_REFUSED:
        return "the server has none";
    default:
        return "failed";
    }
}

// Called on the thread that called UtilDownloadFile: here a program would move a progress bar.
BOOL TVUT22_CALL Show(ULONGLONG done, ULONGLONG total, UINT_PTR user) {
    if (total != 0)
        *reinterpret_cast<unsigned*>(user) = static_cast<unsigned>(done * 100 / total);
    return TRUE; // FALSE gives up
}

void Fetch(const std::wstring& address, const wchar_t* sha256) {
    unsigned percent = 0;
    UtilDownloadOptions options = {};
    options.size = sizeof options;
    options.sha256 = sha256;
    options.callback = Show;
    options.user = reinterpret_cast<UINT_PTR>(&percent);
    options.patience = 10000;
    options.limit = 1000000;
    const INT result = UtilDownloadFile(address.c_str(), listFile, &options);
    std::string words;
    std::getline(std::ifstream("words.txt"), words);
    std::printf("status %u, %s", options.status, NameOf(result));
    if (result == UTIL_OK)
        std::printf(" to %u percent", percent);
    std::printf("; the list is: %s\n", words.c_str());
}

} // namespace

int main(int count, char** arguments) {
    const char* const server = count > 1 ? arguments[1] : std::getenv("TVUT22_HTTP");
    if (!server) {
        std::puts("usage: words https://SERVER");
        return 2;
    }
    const std::wstring root(server, server + std::string(server).size());
    constexpr wchar_t right[] = L"936a185caaa266bb9cbe981e9e05cb78cd732b0b3280eb944412bb6f8f8f07af";
    constexpr wchar_t wrong[] = L"0000000000000000000000000000000000000000000000000000000000000000";
    Fetch(root + L"/file/words.txt", right);
    Fetch(root + L"/file/words.txt", wrong);
    Fetch(root + L"/file/none.txt", nullptr);
    Fetch(root + L"/short/1000/400", nullptr);
}
