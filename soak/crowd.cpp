// Eight threads on everything at once: jobs, heaps, lines, profiles, modules; and a process that ends at any
// moment, by ExitProcess of any thread. It must end; what lines it has written must be whole, and its
// profiles, too.
#include "workloads.h"

#include "support/child.h"

#include <tvut22/tvut22.hpp>
#include <tvut22/util.h>

#include <oleauto.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <regex>
#include <thread>

namespace soak {

namespace {

constexpr UINT exitCode = 17;
constexpr unsigned threadCount = 8;
constexpr const wchar_t* logName = L"crowd.log";

std::wstring ProfileOf(unsigned thread) {
    return L"crowd-" + std::to_wstring(thread) + L".prf";
}

// ---- The process that ends -------------------------------------------------------------------------

class clsMember {
  public:
    clsMember(unsigned thread, unsigned seed, UtilHeap shared)
        : thread_(thread), random_(seed + thread), shared_(shared) {}

    [[noreturn]] void Run() {
        for (;;)
            (this->*deeds[random_() % std::size(deeds)])();
    }

  private:
    void OpenJobs() {
        const std::wstring name = L"job " + std::to_wstring(random_() % 5);
        const UtilJob job = UtilJobOpen(name.c_str(), random_() % 8 == 0 ? UTIL_JOB_TRACE : 0);
        const UtilHeap heap = UtilHeapCreate(job, L"own", random_() % 2 ? UTIL_HEAP_DEBUG : 0);
        UtilHeapObjectAlloc(heap, 10, 0);
        if (random_() % 2)
            UtilHeapDelete(heap);
        UtilJobClose(job);
    }
    void UseHeap() {
        std::array<char*, 20> objects;
        for (char*& object : objects)
            object = static_cast<char*>(UtilHeapObjectAlloc(shared_, 24, UTIL_HEAP_ZERO));
        objects[0][24] = 1; // overrun
        for (char* const object : objects)
            UtilHeapObjectFree(shared_, object);
    }
    void WriteLines() {
        for (int i = 0; i < 10; ++i) {
            const int length = static_cast<int>(random_() % 70);
            UtilDebugExt(L"CROWD", i % 2 ? -1 : 1, L"<%u %d %.*s %u>", thread_, length, length,
                         L"......................................................................", thread_);
        }
    }
    void ComeAndGo() {
        UtilModuleOnAttach(L"module");
        UtilModuleOnDetach(L"module");
        UtilLOGPAN4Detach();
    }
    void SaveProfile() {
        const tvut22::profile job(ProfJobOpenW(ProfileOf(thread_).c_str()));
        const INT value = static_cast<INT>(random_() % 1000000);
        ProfSetIntW(job.get(), 0, L"a/first", value);
        ProfSetIntW(job.get(), 0, L"b/second", value);
        ProfSaveW(job.get(), nullptr, thread_ % 2 ? PROF_FORM_TEXT : PROF_FORM_XML);
    }
    void Throw() {
        VARIANT variant;
        for (int i = 0; i < 20; ++i)
            ProfGetVariantFromContents(L"no variant", &variant);
    }

    static constexpr void (clsMember::*deeds[])() = {&clsMember::OpenJobs,    &clsMember::UseHeap,
                                                     &clsMember::WriteLines,  &clsMember::ComeAndGo,
                                                     &clsMember::SaveProfile, &clsMember::Throw};

    unsigned thread_;
    std::mt19937 random_;
    UtilHeap shared_;
};

// ---- What it leaves --------------------------------------------------------------------------------

// Every line begins with a stamp and ends; those of the threads are as long as they say. Frames of reports,
// which have an offset, may name templates.
void CheckLog(clsRun& run) {
    static const std::regex stamped(
        R"((?:CROWD   : )?\d\d:\d\d:\d\d\.\d{3} [0-9a-f]{8}/[0-9a-f]{2} \d  ( *)(<(\d) (\d+) (\.*) (\d)>)?[^]*)");
    const std::string all = testing_prof::ReadBytes(logName);
    std::size_t at = 0;
    for (std::size_t end; (end = all.find("\r\n", at)) != std::string::npos; at = end + 2) {
        const std::string line = all.substr(at, end - at);
        std::smatch match;
        const bool whole =
            std::regex_match(line, match, stamped) &&
            (line.find('<') == std::string::npos || line.find("+0x") != std::string::npos ||
             (match[2].matched && match[3] == match[6] && std::stol(match[4]) == match[5].length()));
        run.Require(whole, "torn line: " + line.substr(0, 120));
        run.Count("lines");
    }
    run.Require(at == all.size(), "the log does not end with a line");
}

void CheckProfiles(clsRun& run) {
    for (unsigned thread = 0; thread < threadCount; ++thread) {
        const std::wstring file = ProfileOf(thread);
        if (!std::filesystem::exists(file))
            continue;
        INT first = -1, second = -2;
        {
            const tvut22::profile job(ProfJobOpenW(file.c_str()));
            ProfGetIntW(job.get(), 0, L"a/first", &first, -1);
            ProfGetIntW(job.get(), 0, L"b/second", &second, -2);
        }
        if (first == second)
            continue;
        run.Found("a profile is not whole");
        run.Keep(file);
    }
}

} // namespace

// Works until it ends: play-crowd SEED.
int PlayCrowd(std::span<char*> words) {
    const auto seed = static_cast<unsigned>(std::strtoul(words[0], nullptr, 10));
    SetEnvironmentVariableW(L"TVUT22_LOG", logName);
    std::mt19937 random(seed);
    const DWORD life = 20 + random() % 1000; // milliseconds
    const bool ofThread = random() % 2 != 0;
    const UtilJob job = UtilJobOpen(L"crowd", 0);
    const UtilHeap shared = UtilHeapCreate(job, L"shared", UTIL_HEAP_DEBUG);
    static std::atomic<unsigned> begun{0}; // Wine may crash where a process ends while its threads begin
    for (unsigned thread = 0; thread < threadCount; ++thread)
        std::thread([=] {
            ++begun;
            clsMember(thread, seed, shared).Run();
        }).detach();
    while (begun < threadCount)
        SwitchToThread();
    const auto end = [=] {
        Sleep(life);
        ExitProcess(exitCode);
    };
    if (ofThread)
        std::thread(end).join();
    end();
    return 0;
}

void RunCrowd(clsRun& run) {
    while (run.GoesOn()) {
        const testing_prof::clsChild crowd(L"play-crowd " + std::to_wstring(run.Random(1u << 30)));
        const DWORD code = crowd.ExitCodeUnlessItHangs();
        run.Require(code == exitCode, code == 0xDEAD ? "a process does not end"
                                                     : "a process ended with " + std::to_string(code));
        run.Count("processes");
        CheckLog(run);
        CheckProfiles(run);
        std::error_code none;
        std::filesystem::remove(logName, none);
    }
}

} // namespace soak
