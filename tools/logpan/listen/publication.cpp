// Writes the two mappings that senders look for.
#include "publication.h"

#include "exit_code.h"
#include "system_reason.h"

#include <atomic>

namespace tool::logpan {

namespace {

constexpr const wchar_t* mutexName = L"Local\\LOGPANViewerRuns";
constexpr UINT32 smallestInfo = 24;

Handle makeMapping(const wchar_t* name, DWORD size) {
    Handle mapping{CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, name)};
    if (!mapping)
        throw Failure{ExitCode::cannotOpen, "", "cannot publish the port: " + systemReason(GetLastError())};
    return mapping;
}

template <class T>
View<T> mapView(const Handle& mapping) {
    View<T> view{static_cast<T*>(MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, sizeof(T)))};
    if (!view)
        throw Failure{ExitCode::cannotOpen, "", "cannot publish the port: " + systemReason(GetLastError())};
    return view;
}

// Senders read at any time.
void store(UINT32& field, UINT32 value) {
    std::atomic_ref{field}.store(value);
}

} // namespace

OnlyViewer::OnlyViewer() : mutex_(CreateMutexW(nullptr, FALSE, mutexName)) {
    if (!mutex_)
        throw Failure{ExitCode::cannotOpen, "", "cannot start: " + systemReason(GetLastError())};
    // One that died gave it back, or took it along.
    if (WaitForSingleObject(mutex_.get(), 0) == WAIT_TIMEOUT)
        throw Failure{ExitCode::cannotOpen, "", "another logpan is running; there can be one in a session"};
}

OnlyViewer::~OnlyViewer() {
    ReleaseMutex(mutex_.get());
}

Publication::Publication(UINT32 port, UINT32 largestDatagram, HWND window)
    : infoMapping_(makeMapping(LOGPAN_SHARED_INFO_LOCAL, sizeof(LogpanSharedInfo))),
      info_(mapView<LogpanSharedInfo>(infoMapping_)),
      windowMapping_(makeMapping(LOGPAN_GLOBAL_DATA, sizeof(UINT32))),
      window_(mapView<UINT32>(windowMapping_)) {
    static_assert(sizeof(LogpanSharedInfo) == smallestInfo);
    const auto handle = static_cast<UINT32>(reinterpret_cast<UINT_PTR>(window));
    setWanted(false);
    store(info_->port, port);
    store(info_->largestDatagram, largestDatagram);
    store(info_->window, handle);
    if (info_->size < smallestInfo) // a larger one stays: senders may have mapped it
        store(info_->size, smallestInfo);
    setWanted(true);
    store(*window_, handle);
}

Publication::~Publication() {
    setWanted(false);
    store(info_->port, 0);
    store(info_->window, 0);
    store(*window_, 0);
}

void Publication::setWanted(bool wanted) {
    auto* halves = reinterpret_cast<UINT32*>(&info_->mask);
    store(halves[1], 0);
    store(halves[0], wanted ? 1 : 0);
}

} // namespace tool::logpan
