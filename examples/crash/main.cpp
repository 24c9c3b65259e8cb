// A program that crashes in a job of its pool, and what is left of that: a report that says where, a dump,
// and one archive that a customer can send.
#include <tvut22/tvut22.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

struct scPage {
    int height;
};

void RenderPage(scPage* page) {
    page->height = 297; // the page was never made
}

tvut22::protection Protect() {
    UtilProtection options{};
    options.size = sizeof options;
    options.flags = UTIL_PROTECT_END;
    options.folder = L"reports";
    options.product = L"Invoice Designer";
    options.version = L"4.2.1";
    return tvut22::protection(options);
}

// What the customer does: the process does not come back from it.
void Work() {
    const tvut22::protection protection = Protect();
    UtilExHandlerSetNote(L"Document", L"march.rpt");
    const tvut22::thread_pool pool(L"Render");
    scPage* volatile page = nullptr;
    pool.add([&page] { RenderPage(page); });
    pool.finalize();
}

DWORD RunAsChild() {
    wchar_t program[MAX_PATH];
    wchar_t line[] = L"designer work";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program, line, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        return 0;
    DWORD exitCode = 0;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return exitCode;
}

// Without what differs from run to run: the module, and the place in it.
void ShowReport(const std::filesystem::path& path) {
    std::ifstream report(path);
    for (std::string line; std::getline(report, line);) {
        if (line.rfind("Product", 0) == 0 || line.rfind("Reason", 0) == 0 || line.rfind("Note", 0) == 0)
            std::printf("%s\n", line.c_str());
        if (line == "Stack:" && std::getline(report, line)) {
            std::printf("Where: %s\n", line.substr(line.find(' ', 2) + 1).c_str());
        }
    }
}

} // namespace

int main(int count, char**) {
    if (count > 1) {
        Work();
        return 1; // it never comes here
    }
    std::printf("the designer ended with 0x%08lX\n", RunAsChild());
    {
        const tvut22::protection protection = Protect();
        std::printf("reports that wait: %d\n", protection.result());
        for (const auto& entry : std::filesystem::directory_iterator("reports"))
            if (entry.path().extension() == ".txt")
                ShowReport(entry.path());
        std::printf("packed: %d\n",
                    UtilDebugHelpWriteSupportArchive(L"support.zip", nullptr, 0, UTIL_SUPPORT_TAKE));
    }
    std::printf("reports that wait now: %d\n", Protect().result());
}
