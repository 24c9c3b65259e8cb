// Call stacks: walking the caller's, and naming its frames, against what the system has for it. The code that
// reports use is linked in here.
#include "runtime/call_stack.h"
#include "runtime/stack_names.h"
#include "sections.h"

#include <windows.h>

#include <dbghelp.h>

#include <array>

namespace tvut {

bool UtilpDiagnosticsOn() noexcept {
    return true;
}

} // namespace tvut

namespace bench {

namespace {

constexpr std::size_t framesOfStack = 20; // of a usual report, whose files are opened once

template <class Work>
__attribute__((noinline)) double Deep(int frames, const Work& work) {
    const double result = frames == 0 ? work() : Deep(frames - 1, work);
    Consume(static_cast<std::size_t>(frames));
    return result;
}

void MeasureFrames(int frames, int rounds, clsReport& report) {
    constexpr std::size_t calls = 2000;
    const Round contenders[] = {[&] {
                                    return Deep(frames, [] {
                                        return PerCall(calls, [](std::size_t) {
                                            tvut::UtilpReleaseCallStack(tvut::UtilpCaptureCallStack(0));
                                        });
                                    });
                                },
                                [&] {
                                    return Deep(frames, [&] {
                                        return PerCall(calls, [&](std::size_t) {
                                            std::array<void*, tvut::scCallStack::mostFrames> found;
                                            Consume(CaptureStackBackTrace(0, static_cast<DWORD>(found.size()),
                                                                          found.data(), nullptr));
                                        });
                                    });
                                }};
    const auto ns = Race(contenders, rounds);
    report.Against(std::to_string(frames) + " frames of the caller without names", ns[0],
                   "CaptureStackBackTrace", ns[1], AtMost(1.5));
}

// Addresses of this program's own code, no two of them asked for twice.
class clsAddresses {
  public:
    std::array<const char*, framesOfStack> Next() {
        std::array<const char*, framesOfStack> addresses;
        for (const char*& address : addresses) {
            address = first_ + next_ % span;
            next_ += 4099; // from one function to another
        }
        return addresses;
    }

  private:
    static constexpr std::size_t span = 300'000; // bytes
    const char* first_ = reinterpret_cast<const char*>(GetModuleHandleW(nullptr)) + 0x2000;
    std::size_t next_ = 0;
};

double NameOurs(const std::array<const char*, framesOfStack>& addresses) {
    return Timed([&] {
               tvut::clsStackNames names;
               for (const char* address : addresses)
                   Consume(names.Name(address, tvut::FrameAddress::afterCall).text.size());
           }) /
           framesOfStack;
}

// It names fewer of them than are asked for: none of functions without debug information.
double NameTheirs(const std::array<const char*, framesOfStack>& addresses, bool withLine = false) {
    alignas(SYMBOL_INFOW) char room[sizeof(SYMBOL_INFOW) + 800]{};
    auto* const symbol = reinterpret_cast<SYMBOL_INFOW*>(room);
    symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
    symbol->MaxNameLen = 400;
    IMAGEHLP_LINEW64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD offset = 0;
    return Timed([&] {
               for (const char* address : addresses) {
                   Consume(static_cast<std::size_t>(SymFromAddrW(
                       GetCurrentProcess(), reinterpret_cast<UINT_PTR>(address), nullptr, symbol)));
                   if (withLine)
                       Consume(static_cast<std::size_t>(SymGetLineFromAddrW64(
                           GetCurrentProcess(), reinterpret_cast<UINT_PTR>(address), &offset, &line)));
               }
           }) /
           framesOfStack;
}

void MeasureNames(int rounds, clsReport& report) {
    clsAddresses ours, theirs, lines;
    const Round first[] = {[&] { return NameOurs(ours.Next()); }, [&] { return NameTheirs(theirs.Next()); },
                           [&] { return NameTheirs(lines.Next(), true); }};
    const auto ns = Race(first, rounds);
    const auto again = theirs.Next();
    const Round next[] = {[&] { return NameOurs(again), NameOurs(again); },
                          [&] { return NameTheirs(again); }};
    const auto nsAgain = Race(next, rounds);
    report.Against("a frame's line with function and line, first time", ns[0], "SymFromAddrW, no line", ns[1],
                   AtMost(1.0));
    report.Against("the same", ns[0], "SymFromAddrW and SymGetLineFromAddrW64", ns[2]);
    report.Against("the same again within a second", nsAgain[0], "SymFromAddrW again", nsAgain[1],
                   AtMost(0.05));
}

} // namespace

void MeasureStack(const scSettings& settings, clsReport& report) {
    for (const int frames : {16, 40})
        MeasureFrames(frames, settings.rounds, report);
    Require(SymInitializeW(GetCurrentProcess(), nullptr, TRUE), "no debug-help service");
    MeasureNames(settings.rounds, report);
    SymCleanup(GetCurrentProcess());
}

} // namespace bench
