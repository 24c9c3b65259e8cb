// The memory is found by its name, so copies of the library need not know of each other. Words are changed
// atomically and by themselves; the mutex guards the number of modules only, for the sake of copies that
// count otherwise. One that cannot be had within a second is not waited for again until it was free once:
// its owner hangs, and modules must not hang with it.
#include "runtime/output/app_local_data.h"

#include "runtime/output/debugger.h"

#include <cwchar>

namespace tvut {

namespace {

// The process id makes the name the process's own; the host's module handle is the same for all copies.
struct scName {
    explicit scName(const wchar_t* format) noexcept {
        _snwprintf(text, std::size(text) - 1, format, GetModuleHandleW(nullptr), GetCurrentProcessId());
    }
    wchar_t text[80] = {};
};

scName MappingName() noexcept {
    return scName(L"QmzLOGPANAppLocalData_%#p_%d");
}

} // namespace

bool clsAppLocalData::Exists() noexcept {
    return clsMapping::OpenForReading(MappingName().text).HasObject();
}

bool clsAppLocalData::Open() noexcept {
    if (IsOpen())
        return true;
    mapping_ = clsMapping::OpenOrCreate(MappingName().text, sizeof(scAppLocalData));
    if (!mapping_.HasObject())
        UtilpWriteToDebugger(u"_hLOGPANInfoAppLocal FAIL\n");
    else if (!mapping_.HasView())
        UtilpWriteToDebugger(u"_pLOGPANInfoAppLocal FAIL\n");
    else
        mutex_ = clsHandle(CreateMutexW(nullptr, FALSE, scName(L"QmzLOGPANAppLocalMutex_%#p_%d").text));
    return IsOpen();
}

void clsAppLocalData::Close() noexcept {
    mutex_.Reset();
    mapping_ = {};
}

clsAppLocalData::clsExclusive::clsExclusive(clsAppLocalData& shared) noexcept {
    const HANDLE mutex = shared.mutex_.Get();
    const DWORD waited = WaitForSingleObject(mutex, shared.patience_);
    if (waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED)
        held_ = mutex;
    shared.patience_ = held_ ? longestWait : 0;
}

clsAppLocalData::clsExclusive::~clsExclusive() {
    if (held_)
        ReleaseMutex(held_);
}

void clsAppLocalData::CountModule() noexcept {
    const clsExclusive exclusive(*this);
    ++ModulesWord();
}

bool clsAppLocalData::DiscountModule() noexcept {
    const clsExclusive exclusive(*this);
    const auto modules = ModulesWord();
    for (std::int32_t count = modules; count > 0;)
        if (modules.compare_exchange_weak(count, count - 1))
            return count == 1;
    return true;
}

} // namespace tvut
