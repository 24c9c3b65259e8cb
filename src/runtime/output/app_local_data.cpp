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
    bool created = false;
    mapping_ = clsMapping::OpenOrCreate(MappingName().text, sizeof(scAppLocalData), created);
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
    InterlockedIncrement(&Data()->modules);
}

bool clsAppLocalData::DiscountModule() noexcept {
    const clsExclusive exclusive(*this);
    LONG count = Data()->modules;
    while (count > 0) {
        const LONG seen = InterlockedCompareExchange(&Data()->modules, count - 1, count);
        if (seen == count)
            return count == 1;
        count = seen;
    }
    return true;
}

} // namespace tvut
