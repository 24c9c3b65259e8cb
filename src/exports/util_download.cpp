// The export of downloads.
#include "exports/result_call.h"
#include "files/download.h"
#include "files/url.h"
#include "platform/exception.h"
#include "platform/loader.h"

#include <tvut22/download.h>

using namespace tvut;

namespace {

static_assert(sizeof(UtilDownloadOptions) == 40);

constexpr UINT usualPatience = 30000;        // milliseconds
constexpr ULONGLONG usualLimit = 1ull << 32; // bytes

class clsCallback final : public IclsDownloadWatcher {
  public:
    explicit clsCallback(const UtilDownloadOptions& options)
        : callback_(options.callback), user_(options.user) {}
    bool Show(std::uint64_t done, std::uint64_t total) override {
        return callback_(done, total, user_) != FALSE;
    }

  private:
    UtilDownloadCallback callback_;
    UINT_PTR user_;
};

scDownloadFault Download(const wchar_t* url, const wchar_t* file, const UtilDownloadOptions& options,
                         UINT& status) {
    clsCallback callback(options);
    const scDownloadOrder order{UtilpView(url),
                                FromWide(file ? file : L""),
                                UtilpView(options.sha256),
                                options.callback ? &callback : nullptr,
                                (options.flags & UTIL_DOWNLOAD_HTTPS_ONLY) != 0,
                                options.patience != 0 ? options.patience : usualPatience,
                                options.limit != 0 ? options.limit : usualLimit};
    return UtilpDownload(order, status);
}

// What the system cannot do, memory or a thread for instance, is the service's kind of failure.
scDownloadFault TryDownload(const wchar_t* url, const wchar_t* file, const UtilDownloadOptions& options,
                            UINT& status) {
    try {
        return Download(url, file, options, status);
    } catch (const clsException& error) {
        return {
            DownloadFault::service, static_cast<std::uint32_t>(HRESULT_FROM_WIN32(error.Reason())), 0, {}};
    } catch (const std::bad_alloc&) {
        return {DownloadFault::service, static_cast<std::uint32_t>(E_OUTOFMEMORY), 0, {}};
    }
}

UtilResult Told(const wchar_t* url, const scDownloadFault& fault) {
    if (fault) {
        clsDiagnosticLine line;
        line.Put(u"ERR: UtilDownloadFile('");
        UtilpPutUrl(line, UtilpShown(url));
        line.Put(u"'): ");
        UtilpPutReason(line, fault);
        line.Write();
    }
    return UtilpResultOf(fault);
}

} // namespace

INT TVUT22_CALL UtilDownloadFile(const wchar_t* url, const wchar_t* file, UtilDownloadOptions* options) {
    if (PlatformHoldsLoaderLock())
        return UTIL_FAILED;
    return UtilpResultOf([&] {
        const bool isWhole = !options || UtilpIsWhole(options);
        UINT unused = 0;
        UINT& status = options && isWhole ? options->status : unused;
        status = 0;
        if (!isWhole ||
            (options && (options->reserved != 0 || !UtilpOnly(options->flags, UTIL_DOWNLOAD_HTTPS_ONLY))))
            return Told(url, {DownloadFault::badOptions, 0, 0, {}});
        return Told(url, TryDownload(url, file, options ? *options : UtilDownloadOptions{}, status));
    });
}
