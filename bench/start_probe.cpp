// tvut22_bench_start: what loading a library costs a process that has not loaded it yet.
//
// A program of its own, linked with nothing of the library's: in one that is, the library's base address is
// taken, and its pages would have to be relocated. The exit code is the answer, or negative.
//
//   tvut22_bench_start load LIBRARY...
//       nanoseconds of a LoadLibrary of the first, median of 21, while the others, which it needs, are there
//   tvut22_bench_start memory LIBRARY [PROFILE]
//       bytes that the process has touched for it, with that profile open
#include "harness.h"
#include "machine.h"

#include <tvut22/prof.h>

#include <cstdio>
#include <windows.h>

namespace {

using namespace bench;

HMODULE Load(const wchar_t* path) {
    const HMODULE module = LoadLibraryW(path);
    Require(module != nullptr, "a library could not be loaded");
    return module;
}

double MedianOfLoading(const wchar_t* path) {
    std::vector<double> samples;
    for (int round = 0; round <= 21; ++round) {
        HMODULE module = nullptr;
        const double ns = Timed([&] { module = Load(path); });
        FreeLibrary(module);
        if (round > 0)
            samples.push_back(ns);
    }
    return Median(samples);
}

void OpenProfile(HMODULE library, const wchar_t* profile) {
    const auto address = GetProcAddress(library, "ProfJobOpenW");
    Require(address != nullptr, "the library opens no profiles");
    const auto open = reinterpret_cast<decltype(&ProfJobOpenW)>(reinterpret_cast<void*>(address));
    Require(open(profile) != nullptr, "the profile could not be opened");
}

// The library stays loaded and the profile open until the process ends.
std::size_t AddedBy(const wchar_t* library, const wchar_t* profile) {
    ResidentPrivateBytes(); // what asking takes is there from now on
    const std::size_t before = ResidentPrivateBytes();
    const HMODULE module = Load(library);
    if (profile)
        OpenProfile(module, profile);
    return ResidentPrivateBytes() - before;
}

int Answer(int count, wchar_t** arguments) {
    const std::wstring_view what = arguments[1];
    if (what == L"memory")
        return static_cast<int>(AddedBy(arguments[2], count > 3 ? arguments[3] : nullptr));
    Require(what == L"load", "load or memory");
    std::vector<HMODULE> needed; // stay loaded
    for (int at = 3; at < count; ++at)
        needed.push_back(Load(arguments[at]));
    return static_cast<int>(MedianOfLoading(arguments[2]));
}

} // namespace

int wmain(int count, wchar_t** arguments) { // NOLINT(readability-identifier-naming): the system calls it so
    try {
        Require(count > 2, "load or memory, and a library");
        return Answer(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tvut22_bench_start: %s\n", error.what());
        return -1;
    }
}
