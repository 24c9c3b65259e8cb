// Two threads share one object: the caller's makes the new file, waits, shows and puts the file in place; the
// download's tells what happens and writes. A caller that gives up closes the door under the lock, and takes
// the file away itself: whatever the service does later meets a closed door.
#include "files/download.h"

#include "files/download_rules.h"
#include "files/file_name.h"
#include "platform/cipher.h"
#include "platform/download/download.h"
#include "platform/exception.h"
#include "platform/lock.h"
#include "platform/replacement.h"

#include <algorithm>
#include <mutex>
#include <optional>

namespace tvut {

namespace {

constexpr DWORD showEvery = 100;            // milliseconds
constexpr DWORD abortPatience = 2000;       // milliseconds that the service has to end
constexpr ULONGLONG replacePatience = 2000; // milliseconds that others have to close the file
constexpr std::size_t checksumDigits = 64;

std::u16string Hexadecimal(std::span<const unsigned char> bytes) {
    constexpr std::u16string_view digits = u"0123456789abcdef";
    std::u16string text;
    for (const unsigned char byte : bytes)
        text.append({digits[byte >> 4], digits[byte & 15]});
    return text;
}

bool IsSameChecksum(std::u16string_view wanted, std::u16string_view lower) {
    return std::ranges::equal(wanted, lower, {}, [](char16_t unit) {
        return unit >= u'A' && unit <= u'F' ? static_cast<char16_t>(unit | 0x20) : unit;
    });
}

scDownloadFault Fault(DownloadFault fault, std::uint64_t number = 0) {
    return {fault, number, 0, {}};
}

// A lack of room or memory is no lack of rights.
scDownloadFault NoFile(unsigned long error) {
    const bool isFailure = error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL ||
                           error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY;
    return Fault(isFailure ? DownloadFault::notWritten : DownloadFault::noFile, error);
}

// The new file and what is known of its way.
class clsFileDownload final : public IclsDownloadEvents {
  public:
    explicit clsFileDownload(const scDownloadOrder& order)
        : rules_(order.url, order.httpsOnly, order.limit), tellsProgress_(order.watcher != nullptr) {
        if (!order.sha256.empty())
            hash_.emplace();
        if (!news_)
            throw clsException("no event for a download", reason::noMemory);
        try {
            file_.emplace(order.file);
        } catch (const clsException& error) {
            fault_ = NoFile(error.Reason());
        }
    }

    // ---- On the download's thread ----------------------------------------------------------------

    bool Redirected(std::u16string_view url, unsigned status) override {
        return Happens([&] { return rules_.Redirected(url, status); });
    }
    bool Answered(unsigned status, std::u16string_view head) override {
        return Happens([&] { return rules_.Answered(status, head); });
    }
    bool Received(const void* data, std::size_t bytes) override {
        const bool goesOn = Happens([&] { return rules_.Received(bytes) && Write(data, bytes); });
        if (tellsProgress_)
            SetEvent(news_.Get());
        return goesOn;
    }
    void Ended(std::uint32_t code) noexcept override {
        const std::lock_guard guard(lock_);
        if (code != 0)
            rules_.Failed(code);
        else
            rules_.Completed();
        hasEnded_ = true;
        SetEvent(news_.Get());
    }

    // ---- On the caller's -------------------------------------------------------------------------

    HANDLE News() const noexcept { return news_.Get(); }

    struct scPicture {
        bool hasEnded;
        std::uint64_t done, total, happened;
    };
    scPicture Look() noexcept {
        const std::lock_guard guard(lock_);
        return {hasEnded_, rules_.Done(), rules_.Total(), happened_};
    }
    unsigned Status() noexcept {
        const std::lock_guard guard(lock_);
        return rules_.Status();
    }
    scDownloadFault TakeFault() {
        const std::lock_guard guard(lock_);
        return fault_ ? fault_ : rules_.Fault();
    }

    // From now on nothing is written; the new file is gone unless it was put in place.
    void Close(const scDownloadFault& fault) noexcept {
        const std::lock_guard guard(lock_);
        if (!fault_ && !rules_.Fault())
            fault_.fault = fault.fault, fault_.number = fault.number;
        isClosed_ = true;
        file_.reset();
    }

    scDownloadFault CheckSum(std::u16string_view wanted) {
        if (!hash_)
            return {};
        std::u16string sum = Hexadecimal(hash_->Finish());
        return IsSameChecksum(wanted, sum) ? scDownloadFault{}
                                           : scDownloadFault{DownloadFault::checksum, 0, 0, std::move(sum)};
    }

    scDownloadFault PutInPlace() {
        const DWORD error = file_->PutInPlace(replacePatience);
        return error == ERROR_SUCCESS ? scDownloadFault{} : NoFile(error);
    }

  private:
    template <class Event>
    bool Happens(Event event) {
        const std::lock_guard guard(lock_);
        ++happened_;
        return !isClosed_ && !fault_ && event();
    }

    bool Write(const void* data, std::size_t bytes) {
        try {
            file_->File().Write(data, bytes);
            if (hash_)
                hash_->Add({static_cast<const unsigned char*>(data), bytes});
            return true;
        } catch (const clsException& error) {
            fault_ = Fault(DownloadFault::notWritten, error.Reason());
            return false;
        }
    }

    clsLock lock_;
    clsDownloadRules rules_;
    std::optional<clsSha256> hash_;
    std::optional<clsReplacement> file_;
    clsHandle news_{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    scDownloadFault fault_; // of the file or the caller
    std::uint64_t happened_ = 0;
    bool tellsProgress_, hasEnded_ = false, isClosed_ = false;
};

// Waits with the caller's thread.
class clsWait {
  public:
    clsWait(clsFileDownload& file, const scDownloadOrder& order) : file_(file), order_(order) {}

    // Until it has ended, or the caller or the patience gives up.
    scDownloadFault Run() {
        ULONGLONG heardAt = GetTickCount64();
        std::uint64_t happened = 0;
        for (;;) {
            WaitForSingleObject(file_.News(), std::min<DWORD>(showEvery, order_.patience));
            const auto picture = file_.Look();
            if (picture.hasEnded)
                return {};
            const ULONGLONG now = GetTickCount64();
            if (picture.happened != happened)
                heardAt = now;
            happened = picture.happened;
            if (now - heardAt >= order_.patience)
                return Fault(DownloadFault::noAnswer, order_.patience);
            if (!Show(picture.done, picture.total))
                return Fault(DownloadFault::cancelled);
        }
    }

    // Of a service that was told to end.
    void ForEnd() const noexcept {
        const ULONGLONG start = GetTickCount64();
        for (ULONGLONG passed = 0; !file_.Look().hasEnded && passed < abortPatience;
             passed = GetTickCount64() - start)
            WaitForSingleObject(file_.News(), static_cast<DWORD>(abortPatience - passed));
    }

    bool Show(std::uint64_t done, std::uint64_t total) const {
        return !order_.watcher || order_.watcher->Show(done, total);
    }

  private:
    clsFileDownload& file_;
    const scDownloadOrder& order_;
};

// Whatever happens on the caller's thread, also what its watcher throws, nothing is left.
struct scClosing {
    clsFileDownload& file;
    unsigned& status;
    ~scClosing() {
        status = file.Status();
        file.Close({});
    }
};

scDownloadFault Transfer(const scDownloadOrder& order, const std::shared_ptr<clsFileDownload>& file) {
    clsWait wait(*file, order);
    if (!wait.Show(0, 0))
        return Fault(DownloadFault::cancelled);
    clsDownload download(order.url, file);
    if (const scDownloadFault given = wait.Run()) {
        file->Close(given);
        download.Abort();
        wait.ForEnd();
    }
    return file->TakeFault();
}

} // namespace

scDownloadFault UtilpDownload(const scDownloadOrder& order, unsigned& status) {
    if (const clsDownloadRules rules(order.url, order.httpsOnly, order.limit); rules.Fault())
        return rules.Fault();
    if (!order.sha256.empty() &&
        (order.sha256.size() != checksumDigits ||
         order.sha256.find_first_not_of(u"0123456789abcdefABCDEF") != order.sha256.npos))
        return Fault(DownloadFault::badOptions);
    if (!UtilpIsFileName(order.file))
        return Fault(DownloadFault::badName);
    const auto file = std::make_shared<clsFileDownload>(order);
    const scClosing closing{*file, status};
    if (scDownloadFault fault = file->TakeFault())
        return fault;
    if (scDownloadFault fault = Transfer(order, file))
        return fault;
    if (scDownloadFault fault = file->CheckSum(order.sha256))
        return fault;
    if (const std::uint64_t done = file->Look().done; order.watcher && !order.watcher->Show(done, done))
        return Fault(DownloadFault::cancelled);
    return file->PutInPlace();
}

} // namespace tvut
