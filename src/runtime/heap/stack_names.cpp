// A frame's module is found by the address alone: the memory manager knows the file that is mapped there.
// Only the function's name needs the debug-help service, which serves one thread at a time and asks the
// loader; so it is made ready before locks are taken, and a thread that finds it busy does without the
// name. Copies of the library in one process share the service, and take turns by a mutex that they find by
// its name. Names are kept for a second, because the objects of a report share most of their frames.
#include "runtime/heap/stack_names.h"

#include "platform/critical_section.h"
#include "platform/guarded.h"
#include "platform/owned.h"
#include "platform/wide.h"

#include <windows.h>

#include <dbghelp.h>
#include <psapi.h>

#include <array>
#include <atomic>
#include <cwchar>
#include <mutex>

namespace tvut {

namespace {

using SetOptions = DWORD(WINAPI*)(DWORD);
using Initialize = BOOL(WINAPI*)(HANDLE, PCWSTR, BOOL);
using RefreshModules = BOOL(WINAPI*)(HANDLE);
using FromAddress = BOOL(WINAPI*)(HANDLE, DWORD64, DWORD64*, SYMBOL_INFOW*);

constexpr std::size_t longestFunction = 256; // characters

constexpr DWORD refreshInterval = 1000; // milliseconds; to look for new modules takes some of them

std::atomic<bool> wanted{false};

// The service serves one thread at a time. Nobody waits for another: the one that makes it ready may wait for
// the loader, and one within the loader for those who ask it under the global lock.
clsCriticalSection serviceLock;
bool prepared = false;
DWORD refreshedAt = 0; // milliseconds
RefreshModules refreshModules = nullptr;
FromAddress fromAddress = nullptr;

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

// What frames were called of late. The objects of a report share most of their frames, and each takes the
// service a tenth of a millisecond.
class clsFrameTexts {
  public:
    // Appends what is known to the line; false when nothing is.
    bool Find(const void* address, clsDiagnosticLine& line) const noexcept {
        const scRow& row = rows_[IndexOf(address)];
        if (row.address != address || row.generation != generation_.load(std::memory_order_relaxed) ||
            GetTickCount() - row.madeAt >= refreshInterval)
            return false;
        line.Put({row.text.data(), row.length});
        return true;
    }

    void Keep(const void* address, std::u16string_view text) noexcept {
        scRow& row = rows_[IndexOf(address)];
        row.address = text.size() <= row.text.size() ? address : nullptr;
        row.length = text.copy(row.text.data(), row.text.size());
        row.generation = generation_.load(std::memory_order_relaxed);
        row.madeAt = GetTickCount();
    }

    // From any thread; all else is done under the global lock.
    void ForgetAll() noexcept { generation_.fetch_add(1, std::memory_order_relaxed); }

  private:
    struct scRow {
        const void* address = nullptr;
        std::size_t length = 0;
        DWORD madeAt = 0; // milliseconds
        unsigned generation = 0;
        std::array<char16_t, 120> text{};
    };
    static constexpr std::size_t rowCount = 512; // a power of two

    static std::size_t IndexOf(const void* address) noexcept {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return (number ^ number / rowCount) % rowCount;
    }

    std::atomic<unsigned> generation_{0};
    std::array<scRow, rowCount> rows_{};
};

constinit clsFrameTexts recentFrames;

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
    setOptions(SYMOPT_DEFERRED_LOADS | SYMOPT_UNDNAME | SYMOPT_FAIL_CRITICAL_ERRORS);
    initialize(GetCurrentProcess(), nullptr, TRUE);
    fromAddress = Find<FromAddress>(service, "SymFromAddrW");
}

// The file that is mapped at an address, without the loader's help, which would ask for its lock.
void PutModule(clsDiagnosticLine& line, const void* address) noexcept {
    MEMORY_BASIC_INFORMATION memory{};
    wchar_t name[MAX_PATH];
    DWORD length = 0;
    if (VirtualQuery(address, &memory, sizeof memory) != 0 && memory.Type == MEM_IMAGE)
        length = K32GetMappedFileNameW(GetCurrentProcess(), memory.AllocationBase, name, MAX_PATH);
    if (length == 0) {
        line.PutPointer(address);
        return;
    }
    const std::u16string_view path(FromWide(name), length);
    const auto offset = static_cast<const char*>(address) - static_cast<const char*>(memory.AllocationBase);
    line.Put(path.substr(path.find_last_of(u"\\/") + 1))
        .Put(u"+0x")
        .PutHex(static_cast<std::uint32_t>(offset), 1);
}

void PutFunction(clsDiagnosticLine& line, const void* address) noexcept {
    alignas(SYMBOL_INFOW) char room[sizeof(SYMBOL_INFOW) + longestFunction * sizeof(wchar_t)] = {};
    auto* const symbol = reinterpret_cast<SYMBOL_INFOW*>(room);
    symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
    symbol->MaxNameLen = longestFunction;
    DWORD64 offset = 0;
    BOOL found = FALSE;
    auto ask = [&] {
        found = fromAddress(GetCurrentProcess(), reinterpret_cast<UINT_PTR>(address), &offset, symbol);
    };
    const clsServiceTurn turn;
    if (!turn || !fromAddress || PlatformGuarded(ask) != 0 || !found)
        return;
    line.Put(u" ")
        .Put(FromWide(std::wstring_view(symbol->Name)))
        .Put(u"+0x")
        .PutHex(static_cast<std::uint32_t>(offset), 1);
}

} // namespace

void UtilpWantStackNames() noexcept {
    wanted.store(true, std::memory_order_relaxed);
}

void UtilpPrepareStackNames() noexcept {
    if (!wanted.load(std::memory_order_relaxed) || !UtilpDiagnosticsOn())
        return;
    const clsServiceTurn turn;
    if (!turn)
        return;
    const DWORD now = GetTickCount();
    if (!prepared)
        LoadService();
    else if (now - refreshedAt < refreshInterval)
        return;
    else if (refreshModules)
        refreshModules(GetCurrentProcess());
    prepared = true;
    refreshedAt = now;
    recentFrames.ForgetAll();
}

clsDiagnosticLine UtilpFrameLine(const void* address) noexcept {
    clsDiagnosticLine line;
    if (recentFrames.Find(address, line))
        return line;
    line.Put(u"  ");
    PutModule(line, address);
    PutFunction(line, address);
    recentFrames.Keep(address, line.View());
    return line;
}

} // namespace tvut
