// The import libraries of cmake/delay.cmake put the address of a piece of their own into each entry of a
// library's table of functions. The piece calls the function below with the table and the entry, and goes on
// to what it returns. Where there is no such function, the process ends by an exception: a program that lacks
// an import would not even begin.
//
// All functions of a library are bound by the first call of any: from then on a call asks the loader for
// nothing and may be made under a lock. Two threads may bind at once, both find the same. The full path keeps
// a library of the same name beside the host program from being loaded in its place; and the library stays,
// for its functions may run at any time.
//
// Published source: Microsoft's "PE Format", section "Delay-Load Import Tables".
#include "platform/delay_load.h"

#include "platform/loader.h"
#include "platform/owned.h"
#include "platform/system_function.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>

// The linker's name, as is the other one below.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace {

// Addresses are offsets from the module's.
struct scDelayedLibrary {
    DWORD attributes;
    DWORD name;
    DWORD module;
    DWORD functions;
    DWORD names; // the last one is 0
    DWORD boundFunctions;
    DWORD unboundFunctions;
    DWORD timestamp;
};

constexpr DWORD functionMissing = 0xC06D007F; // what debuggers know for it

template <class Type>
Type* At(DWORD offset) noexcept {
    return reinterpret_cast<Type*>(reinterpret_cast<std::uintptr_t>(&__ImageBase) + offset);
}

HMODULE Load(const char* name) noexcept {
    std::array<wchar_t, 32> wide{};
    for (std::size_t i = 0; name[i] && i + 1 < wide.size(); ++i)
        wide[i] = static_cast<unsigned char>(name[i]);
    return tvut::PlatformLoadSystemLibrary(wide.data());
}

// An entry that is not bound leads to the piece of code. One that somebody has put a function of his own
// into, as hooks of calls do, leads elsewhere and stays.
bool IsUnbound(FARPROC entry) noexcept {
    const auto begin = reinterpret_cast<std::uintptr_t>(&__ImageBase);
    const auto* const headers = At<const IMAGE_NT_HEADERS>(static_cast<DWORD>(__ImageBase.e_lfanew));
    return reinterpret_cast<std::uintptr_t>(entry) - begin < headers->OptionalHeader.SizeOfImage;
}

// Returns the function asked for, null when it is missing. It is the library's whatever the entry holds: a
// hook that passes a call on comes here again, and would be led to itself.
FARPROC Bind(const scDelayedLibrary& library, const FARPROC* asked) noexcept {
    const HMODULE loaded = Load(At<const char>(library.name));
    FARPROC answer = nullptr;
    FARPROC* entry = At<FARPROC>(library.functions);
    for (const DWORD* name = At<const DWORD>(library.names); loaded && *name; ++name, ++entry) {
        const std::atomic_ref slot(*entry);
        FARPROC there = slot.load(std::memory_order_acquire);
        if (entry != asked && !IsUnbound(there))
            continue;
        const FARPROC found = GetProcAddress(loaded, At<const IMAGE_IMPORT_BY_NAME>(*name)->Name);
        if (entry == asked)
            answer = found;
        if (found && IsUnbound(there))
            slot.compare_exchange_strong(there, found); // or a hook has come meanwhile
    }
    return answer;
}

} // namespace

// Called by the pieces.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" FARPROC WINAPI __delayLoadHelper2(const scDelayedLibrary* library, FARPROC* entry) {
    const tvut::clsLastErrorKept lastError;
    const FARPROC found = Bind(*library, entry);
    if (!found)
        RaiseException(functionMissing, EXCEPTION_NONCONTINUABLE, 0, nullptr);
    return found;
}

namespace tvut {

bool PlatformMayBind(const wchar_t* library) noexcept {
    return !PlatformHoldsLoaderLock() || GetModuleHandleW(library);
}

} // namespace tvut
