// A file on its way from a server: the system's URL moniker, bound asynchronously on a thread of its own.
//
// The service reports to whoever asked it on that one's thread, by messages, and needs COM there. A caller's
// thread has neither COM nor messages to give, and must stay free to give up: so each download has a thread
// with an apartment and a loop of its own, which holds the library until it has returned to the system.
#pragma once

#include "platform/download/events.h"
#include "platform/owned.h"

#include <memory>
#include <string>
#include <string_view>

namespace tvut {

class clsDownload {
  public:
    // Starts. The events stay until the service has done with them, also after this object's end. Throws
    // clsException, std::bad_alloc.
    clsDownload(std::u16string_view url, std::shared_ptr<IclsDownloadEvents> events);
    clsDownload(const clsDownload&) = delete;
    clsDownload& operator=(const clsDownload&) = delete;
    ~clsDownload(); // asks it to end

    void Abort() noexcept; // Ended comes soon

  private:
    struct scShared;
    std::shared_ptr<scShared> shared_;

    static DWORD WINAPI Thread(void* shared) noexcept;
};

} // namespace tvut
