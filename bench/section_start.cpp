// What a program pays for linking the library: time to load it, its size, and memory.
#include "files.h"
#include "sections.h"

#include <windows.h>

namespace bench {

namespace {

std::wstring PathOf(const wchar_t* module) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(GetModuleHandleW(module), path.data(), static_cast<DWORD>(path.size())));
    return path;
}

// Another file is another module: this program has loaded the library itself already.
double LoadAndUnload(const std::wstring& path) {
    HMODULE module = nullptr;
    const double loading = Timed([&] { module = LoadLibraryW(path.c_str()); });
    Require(module != nullptr, "the library could not be loaded");
    FreeLibrary(module);
    return loading;
}

} // namespace

void MeasureModuleStart(const scSettings& settings, clsReport& report) {
    const std::wstring copy = settings.folder + L"copy.dll";
    const std::vector<std::byte> image = ReadWholeFile(PathOf(L"tvUT22.dll"));
    WriteWholeFile(copy, image);
    std::vector<std::byte> buffer(image.size());
    const Round contenders[] = {
        [&] { return LoadAndUnload(copy); },
        [&] { return Timed([&] { BareRead(copy, buffer); }); },
    };
    const auto times = Race(contenders, settings.rounds);
    report.Section("Module start");
    report.Against("LoadLibrary, the system's libraries there", times[0],
                   "CreateFile, ReadFile of the DLL, CloseHandle", times[1]);
    report.Bytes("size of the DLL", static_cast<double>(image.size()), "the limit", 1.5e6, AtMost(1.5e6));
    report.Remark("The time that counts is the first column's: at most 0.70 ms.");
    RemoveFile(copy);
}

} // namespace bench
