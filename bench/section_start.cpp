// What a program pays for linking the library: time to load it, its size, and memory.
#include "files.h"
#include "processes.h"
#include "sections.h"

#include <span>

namespace bench {

namespace {

// Asks tvut22_bench_start, which stands beside this program.
double Probe(const std::wstring& arguments) {
    const std::wstring own = PathOfModule(nullptr);
    const std::wstring program = own.substr(0, own.rfind(L'\\') + 1) + L"tvut22_bench_start.exe";
    return static_cast<double>(ExitCodeOf(Quoted(program) + L" " + arguments));
}

std::wstring WriteSmallProfile(const std::wstring& folder) {
    const std::wstring path = folder + L"small.prf";
    const std::wstring text =
        L"\xFEFF[/]\r\n{\r\n Name=Report\r\n [Page]\r\n {\r\n  Width=210\r\n }\r\n}\r\n";
    WriteWholeFile(path, std::as_bytes(std::span(text)));
    return path;
}

} // namespace

void MeasureModuleStart(const scSettings& settings, clsReport& report) {
    const std::wstring library = PathOfModule(L"tvUT22.dll");
    const std::wstring profile = WriteSmallProfile(settings.folder);
    const Round contenders[] = {
        [&] { return Probe(L"load " + Quoted(library) + L" advapi32.dll"); },
        [&] { return Probe(L"load ole32.dll advapi32.dll user32.dll rpcrt4.dll"); },
    };
    const auto ns = Race(contenders, std::min(settings.rounds, 5));
    report.Section("Module start");
    report.Milliseconds("LoadLibrary, what it needs is there", ns[0], "ole32 in the same way", ns[1],
                        AtMost(0.7));
    report.Bytes("memory, with a small profile open",
                 Probe(L"memory " + Quoted(library) + L" " + Quoted(profile)), "zlib1.dll, loaded",
                 Probe(L"memory " + Quoted(TVUT22_BENCH_ZLIB)));
    report.Bytes("size of the DLL", static_cast<double>(ReadWholeFile(library).size()), "the limit", 1.5e6,
                 AtMost(1.5e6));
    report.Remark("Each in a fresh process. Memory is pages of the process's own that it has touched.");
    RemoveFile(profile);
}

} // namespace bench
