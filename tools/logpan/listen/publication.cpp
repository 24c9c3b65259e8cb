// Writes the two mappings that senders look for.
#include "publication.h"

#include "exit_code.h"
#include "system_reason.h"

#include <atomic>

namespace tool::logpan {

namespace {

constexpr const wchar_t* mutexName = L"Local\\LOGPANViewerRuns";
constexpr UINT32 smallestInfo = 24;

clsHandle MakeMapping(const wchar_t* name, DWORD size) {
    clsHandle mapping{CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, name)};
    if (!mapping)
        throw scFailure{ExitCode::cannotOpen, "", "cannot publish the port: " + SystemReason(GetLastError())};
    return mapping;
}

template <class T>
clsView<T> MapView(const clsHandle& mapping) {
    clsView<T> view{static_cast<T*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, sizeof(T)))};
    if (!view)
        throw scFailure{ExitCode::cannotOpen, "", "cannot publish the port: " + SystemReason(GetLastError())};
    return view;
}

// Senders read at any time.
void Store(UINT32& field, UINT32 value) {
    std::atomic_ref{field}.store(value);
}

} // namespace

clsOnlyViewer::clsOnlyViewer() : mutex_(CreateMutexW(nullptr, FALSE, mutexName)) {
    if (!mutex_)
        throw scFailure{ExitCode::cannotOpen, "", "cannot start: " + SystemReason(GetLastError())};
    // One that died gave it back, or took it along.
    if (WaitForSingleObject(mutex_.get(), 0) == WAIT_TIMEOUT)
        throw scFailure{ExitCode::cannotOpen, "", "another logpan is running; there can be one in a session"};
}

clsOnlyViewer::~clsOnlyViewer() {
    ReleaseMutex(mutex_.get());
}

clsPublication::clsPublication(UINT32 port, UINT32 largestDatagram, HWND window)
    : infoMapping_(MakeMapping(LOGPAN_SHARED_INFO_LOCAL, sizeof(LogpanSharedInfo))),
      info_(MapView<LogpanSharedInfo>(infoMapping_)),
      windowMapping_(MakeMapping(LOGPAN_GLOBAL_DATA, sizeof(UINT32))),
      window_(MapView<UINT32>(windowMapping_)) {
    static_assert(sizeof(LogpanSharedInfo) == smallestInfo);
    const auto handle = static_cast<UINT32>(reinterpret_cast<UINT_PTR>(window));
    SetWanted(false);
    Store(info_->port, port);
    Store(info_->largestDatagram, largestDatagram);
    Store(info_->window, handle);
    if (info_->size < smallestInfo) // a larger one stays: senders may have mapped it
        Store(info_->size, smallestInfo);
    SetWanted(true);
    Store(*window_, handle);
}

clsPublication::~clsPublication() {
    SetWanted(false);
    Store(info_->port, 0);
    Store(info_->window, 0);
    Store(*window_, 0);
}

void clsPublication::SetWanted(bool wanted) {
    auto* halves = reinterpret_cast<UINT32*>(&info_->mask);
    Store(halves[1], 0);
    Store(halves[0], wanted ? 1 : 0);
}

} // namespace tool::logpan
