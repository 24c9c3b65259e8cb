// Filters form a chain, as each keeps the one that it found. When another part of the program sets its own
// after ours and we take the filter again, that one calls ours a second time for the same exception: threads
// that are inside are remembered, and the second call goes on to whatever was there before both.
#include "platform/crash_handlers.h"

#include "platform/bare_system.h"
#include "platform/loaded_modules.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <string_view>
#include <utility>

namespace tvut {

namespace {

using Filter = LPTOP_LEVEL_EXCEPTION_FILTER;
using SignalHandler = void(__cdecl*)(int);
using PureCallHandler = void(__cdecl*)();
using InvalidParameterHandler = void(__cdecl*)(const wchar_t*, const wchar_t*, const wchar_t*, unsigned,
                                               std::uintptr_t);

constexpr int abortSignal = 22;
const auto noHandler = reinterpret_cast<SignalHandler>(std::intptr_t{-1}); // what a failed call gives
const auto ignored = reinterpret_cast<SignalHandler>(std::intptr_t{1});

// After an invalid parameter the system's own runtime goes on, so a handler there would end programs that
// work.
constexpr std::array<std::string_view, 18> runtimeNames{
    "msvcrt.dll",   "msvcrtd.dll",   "ucrtbase.dll", "ucrtbased.dll", "msvcr70.dll",  "msvcr70d.dll",
    "msvcr71.dll",  "msvcr71d.dll",  "msvcr80.dll",  "msvcr80d.dll",  "msvcr90.dll",  "msvcr90d.dll",
    "msvcr100.dll", "msvcr100d.dll", "msvcr110.dll", "msvcr110d.dll", "msvcr120.dll", "msvcr120d.dll",
};
constexpr std::size_t systemRuntime = 0;
static_assert(runtimeNames.size() <= clsLoadedRuntimes::most);

struct scHooked {
    std::atomic<HMODULE> module{nullptr}; // null: nothing was set there
    SignalHandler abortBefore = nullptr;
    bool pureCall = false;
    bool invalidParameter = false;
};
constinit std::array<scHooked, runtimeNames.size()> hooked;

// Read by crashing threads.
constinit std::atomic<CrashTaker> taker{nullptr};
constinit std::atomic<Filter> firstFilter{nullptr}; // what was there before ours
constinit std::atomic<Filter> laterFilter{nullptr}; // who was found in our place later

// Threads that are inside a handler. Of more than there is room for, the others are taken twice.
class clsThreadsInside {
  public:
    bool Enter(std::uint32_t thread) noexcept {
        for (const auto& inside : threads_)
            if (inside.load() == thread)
                return false;
        for (auto& inside : threads_) {
            std::uint32_t nobody = 0;
            if (inside.compare_exchange_strong(nobody, thread))
                break;
        }
        return true;
    }
    void Leave(std::uint32_t thread) noexcept {
        for (auto& inside : threads_) {
            std::uint32_t expected = thread;
            inside.compare_exchange_strong(expected, 0);
        }
    }

  private:
    std::array<std::atomic<std::uint32_t>, 8> threads_{};
};
constinit clsThreadsInside threadsInside;

LONG Call(Filter filter, EXCEPTION_POINTERS* exception) noexcept {
    return filter ? filter(exception) : EXCEPTION_CONTINUE_SEARCH;
}

LONG WINAPI OurFilter(EXCEPTION_POINTERS* exception) {
    const std::uint32_t thread = PlatformBareThreadId();
    const CrashTaker take = taker.load();
    if (!take || !threadsInside.Enter(thread))
        return Call(firstFilter.load(), exception);
    take(CrashKind::exception, exception);
    const Filter later = laterFilter.load();
    const LONG answer = Call(later ? later : firstFilter.load(), exception);
    threadsInside.Leave(thread);
    return answer;
}

// The context is that of the handler's caller, as if the handler had returned.
void TakeFromRuntime(CrashKind kind, CONTEXT& context) noexcept {
    EXCEPTION_RECORD record{};
    record.ExceptionCode = runtimeAbortCode;
    record.ExceptionFlags = EXCEPTION_NONCONTINUABLE;
    record.ExceptionAddress = reinterpret_cast<void*>(static_cast<std::uintptr_t>(context.Eip));
    EXCEPTION_POINTERS exception{&record, &context};
    const CrashTaker take = taker.load();
    if (take && threadsInside.Enter(PlatformBareThreadId()))
        take(kind, &exception);
}

// What was set in a runtime before, by an address in it.
SignalHandler AbortBefore(std::uintptr_t address) noexcept {
    MEMORY_BASIC_INFORMATION region{};
    if (!PlatformBareRegion(GetCurrentProcess(), reinterpret_cast<const void*>(address), region))
        return nullptr;
    for (const scHooked& hook : hooked)
        if (const HMODULE module = hook.module.load(); module && module == region.AllocationBase)
            return hook.abortBefore;
    return nullptr;
}

// A thread that comes here stays inside: the runtime ends the process next, by way of an abort as well.
void __cdecl OnAbort(int signal) {
    CONTEXT context;
    RtlCaptureContext(&context);
    TakeFromRuntime(CrashKind::abort, context);
    const SignalHandler before = AbortBefore(context.Eip);
    if (before && before != noHandler && before != ignored)
        before(signal);
}

void __cdecl OnPureCall() {
    CONTEXT context;
    RtlCaptureContext(&context);
    TakeFromRuntime(CrashKind::pureCall, context);
}

// Who returns from this handler lets the program go on, which without it would have ended.
void __cdecl OnInvalidParameter(const wchar_t*, const wchar_t*, const wchar_t*, unsigned, std::uintptr_t) {
    constexpr std::uint32_t invalidParameterCode = 0xC0000417;
    CONTEXT context;
    RtlCaptureContext(&context);
    TakeFromRuntime(CrashKind::invalidParameter, context);
    PlatformBareEndProcess(invalidParameterCode);
}

template <class Result, class... Arguments>
Result CallAs(FARPROC function, Arguments... arguments) noexcept {
    return reinterpret_cast<Result(__cdecl*)(Arguments...)>(reinterpret_cast<void*>(function))(arguments...);
}

void Hook(scHooked& hook, const clsLoadedRuntimes::scRuntime& runtime) noexcept {
    if (!runtime.library || hook.module.load() == runtime.library.Get())
        return;
    hook.abortBefore = nullptr;
    hook.pureCall = hook.invalidParameter = false;
    hook.module = runtime.library.Get();
    if (runtime.signal)
        hook.abortBefore = CallAs<SignalHandler, int, SignalHandler>(runtime.signal, abortSignal, OnAbort);
    if (runtime.setPureCall) {
        const auto before = CallAs<PureCallHandler, PureCallHandler>(runtime.setPureCall, OnPureCall);
        hook.pureCall = !before;
        if (before)
            CallAs<PureCallHandler, PureCallHandler>(runtime.setPureCall, before);
    }
    if (runtime.setInvalidParameter && !CallAs<InvalidParameterHandler>(runtime.getInvalidParameter)) {
        CallAs<InvalidParameterHandler, InvalidParameterHandler>(runtime.setInvalidParameter,
                                                                 OnInvalidParameter);
        hook.invalidParameter = true;
    }
}

// Whoever has set another handler meanwhile keeps it.
void Unhook(scHooked& hook, const clsLoadedRuntimes::scRuntime& runtime) noexcept {
    if (!runtime.library || hook.module.load() != runtime.library.Get())
        return;
    if (runtime.signal && hook.abortBefore != noHandler) {
        const auto now =
            CallAs<SignalHandler, int, SignalHandler>(runtime.signal, abortSignal, hook.abortBefore);
        if (now != OnAbort)
            CallAs<SignalHandler, int, SignalHandler>(runtime.signal, abortSignal, now);
    }
    if (hook.pureCall) {
        const auto now = CallAs<PureCallHandler, PureCallHandler>(runtime.setPureCall, nullptr);
        if (now != OnPureCall)
            CallAs<PureCallHandler, PureCallHandler>(runtime.setPureCall, now);
    }
    if (hook.invalidParameter &&
        CallAs<InvalidParameterHandler>(runtime.getInvalidParameter) == OnInvalidParameter)
        CallAs<InvalidParameterHandler, InvalidParameterHandler>(runtime.setInvalidParameter, nullptr);
}

// The number of a runtime by the name it was linked with; that of all of them for any other library.
std::size_t NumberOf(std::string_view name) noexcept {
    const auto isSame = [name](std::string_view runtime) {
        return runtime.size() == name.size() && _strnicmp(runtime.data(), name.data(), name.size()) == 0;
    };
    return static_cast<std::size_t>(std::ranges::find_if(runtimeNames, isSame) - runtimeNames.begin());
}

void TakeFilter() noexcept {
    const Filter found = SetUnhandledExceptionFilter(OurFilter);
    if (found != OurFilter)
        laterFilter = found;
}

} // namespace

clsLoadedRuntimes::clsLoadedRuntimes(RuntimesAsked asked) noexcept {
    if (asked == RuntimesAsked::withHandlers) {
        for (const scHooked& hook : hooked)
            if (const HMODULE module = hook.module.load())
                TakeFrom(module);
        return;
    }
    clsImagesInMemory images;
    while (const void* const base = images.Next())
        TakeFrom(base);
}

// Of two that have the same name the one with our handlers stays, or else the first.
void clsLoadedRuntimes::TakeFrom(const void* base) noexcept {
    clsLibrary library = PlatformLibraryAt(base);
    const std::size_t number = library ? NumberOf(PlatformLinkedName(library)) : runtimeNames.size();
    if (number == runtimeNames.size())
        return;
    scRuntime& runtime = runtimes_[number];
    if (runtime.library && hooked[number].module.load() != base)
        return;
    runtime = {.library = std::move(library)};
    const auto function = [&](const char* name) { return GetProcAddress(runtime.library.Get(), name); };
    runtime.signal = function("signal");
    runtime.setPureCall = function("_set_purecall_handler");
    if (number == systemRuntime)
        return;
    runtime.getInvalidParameter = function("_get_invalid_parameter_handler");
    if (runtime.getInvalidParameter)
        runtime.setInvalidParameter = function("_set_invalid_parameter_handler");
}

void PlatformInstallCrashHandlers(const clsLoadedRuntimes& runtimes, CrashTaker take) noexcept {
    if (!taker.load()) {
        firstFilter = SetUnhandledExceptionFilter(nullptr);
        laterFilter = nullptr;
        taker = take;
    }
    TakeFilter();
    for (std::size_t i = 0; i < hooked.size(); ++i)
        Hook(hooked[i], runtimes[i]);
}

void PlatformRemoveCrashHandlers(const clsLoadedRuntimes& runtimes) noexcept {
    const Filter later = laterFilter.load();
    const Filter now = SetUnhandledExceptionFilter(later ? later : firstFilter.load());
    if (now != OurFilter)
        SetUnhandledExceptionFilter(now);
    for (std::size_t i = 0; i < hooked.size(); ++i)
        Unhook(hooked[i], runtimes[i]);
    for (scHooked& hook : hooked) // a runtime that was unloaded has taken ours with it
        hook.module = nullptr;
    taker = nullptr;
}

} // namespace tvut
