// Nothing here may come to call the heap, the loader, a lock or the compiler's runtime: the tests look at
// what this file's object refers to.
#include "platform/bare_system.h"

#include "platform/bare_calls.h"
#include "platform/guarded.h"

#include <cstring>

namespace tvut {

namespace {

constexpr ULONG regionKind = 0, mappedFileKind = 2;
constexpr ULONG processesKind = 5; // with their threads
constexpr ULONG fileStandardKind = 5, fileRenameKind = 10, fileDispositionKind = 13;
constexpr ULONG threadBasicKind = 0;

constexpr ULONG disposeOpen = 1, disposeCreate = 2;
constexpr ULONG synchronous = 0x20, noFolder = 0x40;
constexpr ULONG ignoreCase = 0x40;

const HANDLE self = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));

scNativeText TextOf(std::u16string_view text) noexcept {
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(char16_t));
    return {bytes, bytes, reinterpret_cast<wchar_t*>(const_cast<char16_t*>(text.data()))};
}

// What the system keeps of a process in its list: the fields before the threads that are looked at, and one
// of a thread.
struct scProcessEntry {
    ULONG next; // bytes to the next process; 0 for the last
    ULONG threads;
    std::byte times[48];
    scNativeText name;
    LONG priority;
    HANDLE process;
    std::byte others[112];
};
struct scThreadEntry {
    std::byte times[28];
    void* start;
    scNativeClient client;
    std::byte others[24];
};
static_assert(sizeof(scProcessEntry) == 184 && sizeof(scThreadEntry) == 64);

// The system puts entries at any address.
template <class Entry>
Entry EntryAt(const std::byte* at) noexcept {
    Entry entry;
    std::memcpy(&entry, at, sizeof entry);
    return entry;
}

} // namespace

// ---- Files ----------------------------------------------------------------------------------------

BareStatus clsBareFile::Open(std::u16string_view path, ULONG access, ULONG share,
                             ULONG disposition) noexcept {
    Close();
    const scNativeText name = TextOf(path);
    const scNativeObject object{sizeof object, nullptr, &name, ignoreCase, nullptr, nullptr};
    scNativeResult result{};
    HANDLE opened = nullptr;
    const BareStatus status =
        g_bareCalls.createFile(&opened, access | SYNCHRONIZE, &object, &result, nullptr,
                               FILE_ATTRIBUTE_NORMAL, share, disposition, synchronous | noFolder, nullptr, 0);
    if (status >= 0)
        file_ = opened;
    return status;
}

BareStatus clsBareFile::MakeNew(std::u16string_view path) noexcept {
    return Open(path, FILE_GENERIC_WRITE | DELETE, FILE_SHARE_READ, disposeCreate);
}

BareStatus clsBareFile::OpenToRead(std::u16string_view path) noexcept {
    return Open(path, FILE_GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, disposeOpen);
}

BareStatus clsBareFile::Write(std::span<const std::byte> bytes) noexcept {
    return PlatformBareWrite(file_, bytes);
}

BareStatus PlatformBareWrite(HANDLE file, std::span<const std::byte> bytes) noexcept {
    while (!bytes.empty()) {
        scNativeResult result{};
        const BareStatus status =
            g_bareCalls.writeFile(file, nullptr, nullptr, nullptr, &result, bytes.data(),
                                  static_cast<ULONG>(bytes.size()), nullptr, nullptr);
        if (status < 0)
            return status;
        if (result.information == 0 || result.information > bytes.size())
            return bareStatus::diskFull;
        bytes = bytes.subspan(result.information);
    }
    return 0;
}

BareStatus clsBareFile::Flush() noexcept {
    scNativeResult result{};
    return g_bareCalls.flushFile(file_, &result);
}

BareStatus clsBareFile::Rename(std::u16string_view path) noexcept {
    struct scRename {
        BOOLEAN replace;
        HANDLE folder;
        ULONG length; // bytes
        char16_t name[1000];
    };
    scRename rename; // not cleared: the name's length counts
    if (path.size() > std::size(rename.name))
        return bareStatus::nameTooLong;
    rename.replace = FALSE;
    rename.folder = nullptr;
    rename.length = static_cast<ULONG>(path.size() * sizeof(char16_t));
    std::memcpy(rename.name, path.data(), rename.length);
    scNativeResult result{};
    return g_bareCalls.setFile(file_, &result, &rename, offsetof(scRename, name) + rename.length,
                               fileRenameKind);
}

BareStatus clsBareFile::Remove() noexcept {
    BOOLEAN goes = TRUE;
    scNativeResult result{};
    return g_bareCalls.setFile(file_, &result, &goes, sizeof goes, fileDispositionKind);
}

void clsBareFile::Close() noexcept {
    if (file_)
        g_bareCalls.close(file_);
    file_ = nullptr;
}

BareStatus clsBareView::Map(std::u16string_view path) noexcept {
    Unmap();
    clsBareFile file;
    BareStatus status = file.OpenToRead(path);
    if (status < 0)
        return status;
    HANDLE section = nullptr;
    status = g_bareCalls.createSection(&section, SECTION_MAP_READ | SECTION_QUERY, nullptr, nullptr,
                                       PAGE_READONLY, SEC_COMMIT, file.Handle());
    if (status < 0)
        return status;
    struct {
        LARGE_INTEGER allocated, size;
        ULONG links;
        BOOLEAN goes, folder;
    } standard{};
    scNativeResult result{};
    SIZE_T size = 0;
    status = g_bareCalls.queryFile(file.Handle(), &result, &standard, sizeof standard, fileStandardKind);
    if (status >= 0)
        status = g_bareCalls.mapView(section, self, &view_, 0, 0, nullptr, &size, 2, 0, PAGE_READONLY);
    g_bareCalls.close(section);
    if (status < 0) {
        view_ = nullptr;
        return status;
    }
    const auto length = static_cast<std::uint64_t>(standard.size.QuadPart);
    size_ = length < size ? static_cast<std::size_t>(length) : size;
    return 0;
}

void clsBareView::Unmap() noexcept {
    if (view_)
        g_bareCalls.unmapView(self, view_);
    view_ = nullptr;
    size_ = 0;
}

// ---- Memory ---------------------------------------------------------------------------------------

bool PlatformBareRegion(HANDLE process, const void* address, MEMORY_BASIC_INFORMATION& region) noexcept {
    SIZE_T size = 0;
    return g_bareCalls.queryMemory(process, address, regionKind, &region, sizeof region, &size) >= 0;
}

std::u16string_view PlatformBareMappedFile(HANDLE process, const void* address,
                                           std::span<std::byte> buffer) noexcept {
    SIZE_T size = 0;
    if (g_bareCalls.queryMemory(process, address, mappedFileKind, buffer.data(), buffer.size(), &size) < 0)
        return {};
    const auto* const name = reinterpret_cast<const scNativeText*>(buffer.data());
    return {reinterpret_cast<const char16_t*>(name->text), name->length / sizeof(char16_t)};
}

// A page of the own process is read under a guard; the copy stops before the page that is not there.
std::size_t PlatformBareRead(HANDLE process, const void* address, std::span<std::byte> bytes) noexcept {
    if (process != self) {
        SIZE_T read = 0;
        const BareStatus status = g_bareCalls.readMemory(process, address, bytes.data(), bytes.size(), &read);
        return status >= 0 || read <= bytes.size() ? read : 0;
    }
    constexpr std::size_t page = 4096;
    const auto start = reinterpret_cast<std::uintptr_t>(address);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::size_t toPageEnd = page - (start + done) % page;
        const std::size_t count = toPageEnd < bytes.size() - done ? toPageEnd : bytes.size() - done;
        auto copy = [&] {
            std::memcpy(bytes.data() + done, reinterpret_cast<const void*>(start + done), count);
        };
        if (start + done < start || PlatformGuarded(copy) != 0)
            break;
        done += count;
    }
    return done;
}

// ---- The system, threads --------------------------------------------------------------------------

BareStatus PlatformBareSystemInformation(ULONG kind, std::span<std::byte> buffer) noexcept {
    return g_bareCalls.querySystem(kind, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr);
}

std::uint64_t PlatformBareTime() noexcept {
    LARGE_INTEGER time{};
    g_bareCalls.queryTime(&time);
    return static_cast<std::uint64_t>(time.QuadPart);
}

std::size_t PlatformBareThreads(DWORD process, std::span<std::uint32_t> threads,
                                std::span<std::byte> buffer) noexcept {
    if (PlatformBareSystemInformation(processesKind, buffer) < 0)
        return 0;
    const std::byte* at = buffer.data();
    auto entry = EntryAt<scProcessEntry>(at);
    while (reinterpret_cast<std::uintptr_t>(entry.process) != process && entry.next != 0) {
        at += entry.next;
        entry = EntryAt<scProcessEntry>(at);
    }
    if (reinterpret_cast<std::uintptr_t>(entry.process) != process)
        return 0;
    at += sizeof entry;
    const std::size_t count = entry.threads < threads.size() ? entry.threads : threads.size();
    for (std::size_t i = 0; i < count; ++i, at += sizeof(scThreadEntry)) {
        const auto thread = EntryAt<scThreadEntry>(at).client.thread;
        threads[i] = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(thread));
    }
    return count;
}

BareStatus clsBareThread::Open(DWORD process, DWORD thread) noexcept {
    Close();
    const scNativeObject object{sizeof object, nullptr, nullptr, 0, nullptr, nullptr};
    const scNativeClient client{reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(process)),
                                reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(thread))};
    HANDLE opened = nullptr;
    const BareStatus status = g_bareCalls.openThread(
        &opened, THREAD_GET_CONTEXT | THREAD_SUSPEND_RESUME | THREAD_QUERY_INFORMATION, &object, &client);
    if (status >= 0)
        thread_ = opened;
    return status;
}

bool clsBareThread::Suspend() noexcept {
    stands_ = thread_ && g_bareCalls.suspendThread(thread_, nullptr) >= 0;
    return stands_;
}

void clsBareThread::Resume() noexcept {
    if (stands_)
        g_bareCalls.resumeThread(thread_, nullptr);
    stands_ = false;
}

bool clsBareThread::Context(CONTEXT& context) const noexcept {
    context.ContextFlags = CONTEXT_FULL | CONTEXT_SEGMENTS;
    return g_bareCalls.getContext(thread_, &context) >= 0;
}

const void* clsBareThread::Block() const noexcept {
    struct {
        BareStatus exitStatus;
        const void* block;
        scNativeClient client;
        ULONG_PTR affinity;
        LONG priority, basePriority;
    } basic{};
    if (g_bareCalls.queryThread(thread_, threadBasicKind, &basic, sizeof basic, nullptr) < 0)
        return nullptr;
    return basic.block;
}

void clsBareThread::Close() noexcept {
    Resume();
    if (thread_)
        g_bareCalls.close(thread_);
    thread_ = nullptr;
}

// ---- Waiting, ending ------------------------------------------------------------------------------

void PlatformBareSet(HANDLE event) noexcept {
    g_bareCalls.setEvent(event, nullptr);
}

void PlatformBareReset(HANDLE event) noexcept {
    g_bareCalls.resetEvent(event, nullptr);
}

bool PlatformBareWait(HANDLE object, unsigned milliseconds) noexcept {
    LARGE_INTEGER time;
    time.QuadPart = -10000ll * milliseconds; // 100 nanoseconds from now
    return g_bareCalls.wait(object, FALSE, &time) == 0;
}

void PlatformBareWaitForever(HANDLE object) noexcept {
    g_bareCalls.wait(object, FALSE, nullptr);
}

void PlatformBareEndProcess(std::uint32_t exitCode) noexcept {
    for (;;)
        g_bareCalls.endProcess(self, static_cast<BareStatus>(exitCode));
}

// A flag of the process, which it reads.
bool PlatformBareShutsDown() noexcept {
    return g_bareCalls.shutsDown() != FALSE;
}

// No call into the system: it is read from the thread's own block.
std::uint32_t PlatformBareThreadId() noexcept {
    return GetCurrentThreadId();
}

} // namespace tvut
