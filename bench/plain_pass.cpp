#include "plain_pass.h"

#include <windows.h>

#include <cstring>
#include <memory>

namespace bench {

std::string MegabytesOf(std::size_t length) {
    return std::to_string((length + megabyte / 2) / megabyte) + " MB";
}

// Called in the runtime of the system, as the library is called in its DLL: the compiler's own code for it
// would be another on each machine.
Round PlainPass(std::size_t length) {
    using Length = std::size_t(const wchar_t*);
    const auto address = GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "wcslen");
    Require(address != nullptr, "the runtime has no wcslen");
    const auto pass = reinterpret_cast<Length*>(reinterpret_cast<void*>(address));
    const auto text = std::make_shared<std::wstring>(length, L'x');
    return [=] {
        std::size_t found = 0;
        const double ns = Timed([&] { found = pass(text->c_str()); });
        Require(found == length, "the plain pass did not read the text");
        return ns;
    };
}

void AgainstPlainPass(const std::string& work, const Round& round, std::size_t length,
                      std::optional<scGoal> goal, int rounds, clsReport& report) {
    const Round contenders[] = {round, PlainPass(length)};
    const auto ns = Race(contenders, rounds);
    report.Against(work, ns[0], "plain pass, " + MegabytesOf(length), ns[1], goal);
}

void ShowCopy(std::size_t length, int rounds, clsReport& report) {
    const std::wstring from(length, L'x');
    std::wstring to(length, L'y');
    const Round copy = [&] {
        void* (*volatile function)(void*, const void*, std::size_t) = std::memcpy;
        return Timed([&] { function(to.data(), from.data(), length * sizeof(wchar_t)); });
    };
    AgainstPlainPass("memcpy, " + MegabytesOf(length), copy, length, {}, rounds, report);
}

} // namespace bench
