// Consoles since Windows 10 know the escape sequences where a program asks them to. The console is the
// shell's, too, so at the end it is as it was.
#include "paint.h"

#include <windows.h>

#include <array>

namespace tool {

namespace {

class clsConsoleMode {
  public:
    clsConsoleMode() {
        if (GetEnvironmentVariableW(L"NO_COLOR", nullptr, 0) > 1 || !GetConsoleMode(console_, &before_))
            return;
        knowsSequences_ = SetConsoleMode(console_, before_ | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != FALSE;
    }
    ~clsConsoleMode() {
        if (knowsSequences_)
            SetConsoleMode(console_, before_);
    }
    clsConsoleMode(const clsConsoleMode&) = delete;
    clsConsoleMode& operator=(const clsConsoleMode&) = delete;

    bool KnowsSequences() const { return knowsSequences_; }

  private:
    HANDLE console_ = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD before_ = 0;
    bool knowsSequences_ = false;
};

std::string_view OnConsole(std::string_view sequence) {
    static const clsConsoleMode mode;
    return mode.KnowsSequences() ? sequence : std::string_view{};
}

} // namespace

std::string_view BeginPaint(Paint paint) {
    static constexpr std::array<std::string_view, 4> sequences = {"\x1b[1;36m", "\x1b[36m", "\x1b[31m",
                                                                  "\x1b[32m"};
    return OnConsole(sequences[static_cast<std::size_t>(paint)]);
}

std::string_view EndPaint() {
    return OnConsole("\x1b[m");
}

} // namespace tool
