// Copies of the library in one process share the service, and take turns by a mutex that they find by its
// name.
#include "runtime/symbol_service.h"

#include "platform/critical_section.h"
#include "platform/guarded.h"
#include "platform/owned.h"

#include <windows.h>

#include <dbghelp.h>

#include <cwchar>
#include <mutex>
#include <string_view>

namespace tvut {

namespace {

using SetOptions = DWORD(WINAPI*)(DWORD);
using Initialize = BOOL(WINAPI*)(HANDLE, PCWSTR, BOOL);
using RefreshModules = BOOL(WINAPI*)(HANDLE);
using FromAddress = BOOL(WINAPI*)(HANDLE, DWORD64, DWORD64*, SYMBOL_INFOW*);
using LineFromAddress = BOOL(WINAPI*)(HANDLE, DWORD64, DWORD*, IMAGEHLP_LINEW64*);

constexpr DWORD refreshInterval = 1000; // milliseconds; to look for new modules takes some of them
constexpr ULONG fromExports = 0x200;    // SYMFLAG_EXPORT

clsCriticalSection serviceLock;
bool prepared = false;
DWORD refreshedAt = 0; // milliseconds
RefreshModules refreshModules = nullptr;
FromAddress fromAddress = nullptr;
LineFromAddress lineFromAddress = nullptr;

// A turn at the service: this copy's, and then this process's. Lost where another has it.
class clsServiceTurn {
  public:
    clsServiceTurn() noexcept : lock_(serviceLock, std::try_to_lock) {
        if (!lock_)
            return;
        if (!processMutex_)
            processMutex_ = clsHandle(CreateMutexW(nullptr, FALSE, scName().text));
        const DWORD waited = WaitForSingleObject(processMutex_.Get(), 0);
        has_ = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
    }
    ~clsServiceTurn() {
        if (has_)
            ReleaseMutex(processMutex_.Get());
    }
    clsServiceTurn(const clsServiceTurn&) = delete;
    clsServiceTurn& operator=(const clsServiceTurn&) = delete;

    explicit operator bool() const noexcept { return has_; }

  private:
    struct scName {
        scName() noexcept {
            _snwprintf(text, std::size(text) - 1, L"tvUT22DebugHelp_%u", GetCurrentProcessId());
        }
        wchar_t text[40] = {};
    };

    static inline clsHandle processMutex_; // guarded by the lock

    std::unique_lock<clsCriticalSection> lock_;
    bool has_ = false;
};

template <class Function>
Function Find(HMODULE module, const char* name) noexcept {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Another part of the program may use the service for this process, too: it fails to begin twice, and works.
void LoadService() noexcept {
    const HMODULE service = LoadLibraryW(L"dbghelp.dll"); // stays loaded
    if (!service)
        return;
    const auto setOptions = Find<SetOptions>(service, "SymSetOptions");
    const auto initialize = Find<Initialize>(service, "SymInitializeW");
    refreshModules = Find<RefreshModules>(service, "SymRefreshModuleList");
    if (!setOptions || !initialize)
        return;
    setOptions(SYMOPT_DEFERRED_LOADS | SYMOPT_UNDNAME | SYMOPT_FAIL_CRITICAL_ERRORS | SYMOPT_LOAD_LINES);
    initialize(GetCurrentProcess(), nullptr, TRUE);
    fromAddress = Find<FromAddress>(service, "SymFromAddrW");
    lineFromAddress = Find<LineFromAddress>(service, "SymGetLineFromAddrW64");
}

template <std::size_t size>
void Copy(std::wstring_view from, std::array<wchar_t, size>& to) noexcept {
    to[from.copy(to.data(), size - 1)] = 0;
}

void FindFunction(UINT_PTR address, scServiceFunction& found) noexcept {
    alignas(SYMBOL_INFOW) char room[sizeof(SYMBOL_INFOW) + sizeof found.function] = {};
    auto* const symbol = reinterpret_cast<SYMBOL_INFOW*>(room);
    symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
    symbol->MaxNameLen = static_cast<ULONG>(found.function.size());
    DWORD64 offset = 0;
    if (!fromAddress(GetCurrentProcess(), address, &offset, symbol) || (symbol->Flags & fromExports) != 0)
        return;
    Copy(symbol->Name, found.function);
    found.functionOffset = static_cast<std::uint32_t>(offset);
}

void FindLine(UINT_PTR address, scServiceFunction& found) noexcept {
    IMAGEHLP_LINEW64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD offset = 0;
    if (!lineFromAddress || !lineFromAddress(GetCurrentProcess(), address, &offset, &line) || !line.FileName)
        return;
    const std::wstring_view path(line.FileName);
    Copy(path.substr(path.find_last_of(L"\\/") + 1), found.file);
    found.line = line.LineNumber;
}

} // namespace

bool UtilpPrepareSymbolService() noexcept {
    const clsServiceTurn turn;
    if (!turn)
        return false;
    const DWORD now = GetTickCount();
    if (!prepared)
        LoadService();
    else if (now - refreshedAt < refreshInterval)
        return false;
    else if (refreshModules)
        refreshModules(GetCurrentProcess());
    prepared = true;
    refreshedAt = now;
    return true;
}

void UtilpAskSymbolService(const void* address, scServiceFunction& found) noexcept {
    found.function[0] = found.file[0] = 0;
    const clsServiceTurn turn;
    if (!turn || !fromAddress)
        return;
    const auto number = reinterpret_cast<UINT_PTR>(address);
    auto ask = [&] {
        FindFunction(number, found);
        if (found.function[0] != 0)
            FindLine(number, found);
    };
    if (PlatformGuarded(ask) != 0)
        found.function[0] = found.file[0] = 0;
}

} // namespace tvut
