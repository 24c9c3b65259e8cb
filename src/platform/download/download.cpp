// The caller may let go of a download before the service has reported its end, or after. So what they share
// is kept by a reference each. The thread keeps the library, and gives it back in the call that ends the
// thread; where the service still holds the binding then, the library stays for good.
#include "platform/download/download.h"

#include "platform/download/binding.h"
#include "platform/exception.h"
#include "platform/held_library.h"
#include "platform/wide.h"

#include <objbase.h>

namespace tvut {

struct clsDownload::scShared {
    std::wstring url;
    std::shared_ptr<IclsDownloadEvents> events;
    clsHandle abort{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    clsLibrary library;
};

namespace {

class clsApartment {
  public:
    clsApartment() noexcept : result_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    ~clsApartment() {
        if (SUCCEEDED(result_))
            CoUninitialize();
    }
    clsApartment(const clsApartment&) = delete;
    clsApartment& operator=(const clsApartment&) = delete;

  private:
    HRESULT result_;
};

// All messages are those of the service's own windows.
void Dispatch() noexcept {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

void WaitForEnd(clsDownloadBinding& binding, HANDLE abort) noexcept {
    bool isAborted = false;
    while (!binding.HasEnded()) {
        const DWORD handles = isAborted ? 0 : 1;
        const DWORD woken =
            MsgWaitForMultipleObjectsEx(handles, &abort, INFINITE, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
        if (handles != 0 && woken == WAIT_OBJECT_0) {
            isAborted = true;
            binding.Abort();
        }
        Dispatch();
    }
}

// Whether the service has let everything of ours go.
bool Transfer(const wchar_t* url, std::shared_ptr<IclsDownloadEvents> events, HANDLE abort) noexcept {
    const clsApartment apartment;
    auto* const binding = new (std::nothrow) clsDownloadBinding(events);
    if (!binding) {
        events->Ended(static_cast<std::uint32_t>(E_OUTOFMEMORY));
        return true;
    }
    events.reset();
    binding->Start(url);
    WaitForEnd(*binding, abort);
    return binding->Release() == 0;
}

} // namespace

clsDownload::clsDownload(std::u16string_view url, std::shared_ptr<IclsDownloadEvents> events)
    : shared_(std::make_shared<scShared>()) {
    shared_->url.assign(ToWide(url.data()), url.size());
    shared_->events = std::move(events);
    shared_->library = PlatformOwnLibrary();
    auto given = std::make_unique<std::shared_ptr<scShared>>(shared_);
    const clsHandle thread(shared_->abort && shared_->library
                               ? CreateThread(nullptr, 0, Thread, given.get(), 0, nullptr)
                               : nullptr);
    if (!thread)
        throw clsException("no thread for a download", reason::noMemory);
    given.release();
}

clsDownload::~clsDownload() {
    Abort();
}

void clsDownload::Abort() noexcept {
    SetEvent(shared_->abort.Get());
}

// Where the service keeps a reference, the library stays for it.
DWORD WINAPI clsDownload::Thread(void* given) noexcept {
    HMODULE library = nullptr;
    bool isDone = false;
    {
        const std::unique_ptr<std::shared_ptr<scShared>> shared(
            static_cast<std::shared_ptr<scShared>*>(given));
        scShared& state = **shared;
        library = state.library.Take();
        isDone = Transfer(state.url.c_str(), std::move(state.events), state.abort.Get());
    }
    if (isDone)
        FreeLibraryAndExitThread(library, 0);
    return 0;
}

} // namespace tvut
