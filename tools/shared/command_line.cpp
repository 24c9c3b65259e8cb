// Splits the wide command line: the C runtime's own arguments lose what the code page does not know.
#include "command_line.h"

#include "text_io.h"

#include <windows.h>

#include <shellapi.h>

#include <memory>
#include <new>

namespace tool {

std::vector<std::string> CommandLine() {
    struct scFreeLocal {
        void operator()(wchar_t** memory) const { LocalFree(memory); }
    };
    int count = 0;
    const std::unique_ptr<wchar_t*, scFreeLocal> words{CommandLineToArgvW(GetCommandLineW(), &count)};
    if (!words)
        throw std::bad_alloc{};
    std::vector<std::string> result;
    for (int at = 1; at < count; ++at)
        result.push_back(ToUtf8(words.get()[at]));
    return result;
}

} // namespace tool
