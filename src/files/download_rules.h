// Whether what a server does may become a file: redirections, status, length and limit of an answer.
//
// One object a download, fed with what happens, in the order in which it happens. The first thing that is
// wrong counts; after it everything is refused.
#pragma once

#include "files/download_fault.h"
#include "files/http_head.h"
#include "files/url.h"

namespace tvut {

class clsDownloadRules {
  public:
    static constexpr unsigned mostRedirections = 10;

    // An address that was found good; at most this many bytes.
    clsDownloadRules(std::u16string_view url, bool httpsOnly, std::uint64_t limit) noexcept;

    // Each returns whether to go on.
    bool Redirected(std::u16string_view url, unsigned status); // status 0: not known. Throws std::bad_alloc.
    bool Answered(unsigned status, std::u16string_view head) noexcept;
    bool Received(std::uint64_t bytes) noexcept;

    // The service takes the answer for complete.
    bool Completed() noexcept;
    // The service has given up, with a code of its own.
    void Failed(std::uint32_t code) noexcept;

    const scDownloadFault& Fault() const noexcept { return fault_; }
    unsigned Status() const noexcept { return status_; } // of the last answer
    std::uint64_t Done() const noexcept { return done_; }
    std::uint64_t Total() const noexcept { return total_.value_or(0); } // 0: not known

  private:
    bool IsUnderWay() noexcept; // a fault, too
    bool Refuse(DownloadFault fault, std::uint64_t number = 0, std::uint64_t another = 0) noexcept;

    UrlScheme scheme_;
    std::uint64_t limit_;
    bool httpsOnly_;
    bool isAnswered_ = false, mayBeEmpty_ = false;
    unsigned redirections_ = 0, status_ = 0;
    std::uint64_t done_ = 0;
    std::optional<std::uint64_t> total_;
    scDownloadFault fault_;
};

} // namespace tvut
