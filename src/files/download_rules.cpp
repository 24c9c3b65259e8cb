// The service takes a connection that ends for the end of an answer, also in the middle of its head. So an
// answer that says nothing of its length and brings no byte is one that broke off.
#include "files/download_rules.h"

#include <algorithm>
#include <utility>

namespace tvut {

namespace {

constexpr unsigned usualRedirection = 302;
constexpr unsigned noContent = 204, resetContent = 205;

// Codes of the service: INET_E_CANNOT_CONNECT, INET_E_DATA_NOT_AVAILABLE.
constexpr std::uint32_t cannotConnect = 0x800C0004, dataNotAvailable = 0x800C0007;

// Codes of the service for a server that cannot show who it is.
constexpr std::uint32_t certificateCodes[] = {
    0x800C000E, // INET_E_SECURITY_PROBLEM
    0x800C0019, // INET_E_INVALID_CERTIFICATE
};

bool IsFine(unsigned status) {
    return status >= 200 && status <= 299;
}

} // namespace

clsDownloadRules::clsDownloadRules(std::u16string_view url, bool httpsOnly, std::uint64_t limit) noexcept
    : scheme_(UtilpUrlScheme(url)), limit_(limit), httpsOnly_(httpsOnly) {
    if (scheme_ == UrlScheme::none)
        Refuse(DownloadFault::badAddress);
    else if (httpsOnly_ && scheme_ != UrlScheme::https)
        Refuse(DownloadFault::notSecure);
}

bool clsDownloadRules::Redirected(std::u16string_view url, unsigned status) {
    if (fault_ || IsUnderWay())
        return false;
    isAnswered_ = false;
    total_.reset();
    if (status != 0)
        status_ = status;
    else if (redirections_ == 0)
        status_ = usualRedirection;
    if (++redirections_ > mostRedirections)
        return Refuse(DownloadFault::redirections);
    const UrlScheme before = std::exchange(scheme_, UtilpUrlScheme(url));
    if (scheme_ == UrlScheme::https ||
        (scheme_ == UrlScheme::http && before == UrlScheme::http && !httpsOnly_))
        return true;
    fault_.text = url;
    return Refuse(DownloadFault::redirectedTo);
}

bool clsDownloadRules::Answered(unsigned status, std::u16string_view head) noexcept {
    if (fault_ || status == 0)
        return !fault_;
    if (IsUnderWay())
        return false;
    status_ = status;
    isAnswered_ = true;
    if (!IsFine(status))
        return Refuse(DownloadFault::status, status);
    const scHttpHead read = UtilpReadHttpHead(head);
    if (!read.isEncoded && status != noContent)
        total_ = read.length;
    mayBeEmpty_ = read.length || read.isChunked || status == noContent || status == resetContent;
    return total_.value_or(0) <= limit_ || Refuse(DownloadFault::tooLarge, limit_);
}

bool clsDownloadRules::Received(std::uint64_t bytes) noexcept {
    if (fault_)
        return false;
    if (!isAnswered_)
        return Refuse(DownloadFault::service, dataNotAvailable);
    if (bytes > limit_ - done_)
        return Refuse(DownloadFault::tooLarge, limit_);
    done_ += bytes;
    return !total_ || done_ <= *total_ || Refuse(DownloadFault::length, done_, *total_);
}

bool clsDownloadRules::Completed() noexcept {
    if (fault_)
        return false;
    if (!isAnswered_)
        return Refuse(DownloadFault::service, cannotConnect);
    if (total_ && done_ != *total_)
        return Refuse(DownloadFault::length, done_, *total_);
    return done_ != 0 || mayBeEmpty_ || Refuse(DownloadFault::service, dataNotAvailable);
}

// Bytes of one answer cannot be followed by another answer.
bool clsDownloadRules::IsUnderWay() noexcept {
    if (done_ != 0)
        Refuse(DownloadFault::service, dataNotAvailable);
    return done_ != 0;
}

// What the service makes of a status is known by then.
void clsDownloadRules::Failed(std::uint32_t code) noexcept {
    if (!fault_)
        Refuse(std::ranges::find(certificateCodes, code) != std::end(certificateCodes)
                   ? DownloadFault::certificate
                   : DownloadFault::service,
               code);
}

bool clsDownloadRules::Refuse(DownloadFault fault, std::uint64_t number, std::uint64_t another) noexcept {
    fault_.fault = fault;
    fault_.number = number;
    fault_.another = another;
    return false;
}

} // namespace tvut
