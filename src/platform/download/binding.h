// The side of a download that the URL moniker service talks to.
#pragma once

#include "platform/download/events.h"

#include <array>
#include <atomic>
#include <memory>
#include <urlmon.h>
#include <utility>
#include <windows.h>

namespace tvut {

// Counts its own references: the service may keep one longer than the download's thread is there. Only that
// thread calls it.
class clsDownloadBinding final : public IBindStatusCallback, public IHttpNegotiate {
  public:
    explicit clsDownloadBinding(std::shared_ptr<IclsDownloadEvents> events) : events_(std::move(events)) {}
    clsDownloadBinding(const clsDownloadBinding&) = delete;
    clsDownloadBinding& operator=(const clsDownloadBinding&) = delete;

    // From the binding's start on Ended comes from the service, before that from here.
    void Start(const wchar_t* url) noexcept;
    bool HasEnded() const noexcept { return hasEnded_; }
    void Abort() noexcept;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    HRESULT STDMETHODCALLTYPE OnStartBinding(DWORD, IBinding* binding) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPriority(LONG*) noexcept override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnLowResource(DWORD) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnProgress(ULONG, ULONG, ULONG code, const wchar_t* text) noexcept override;
    HRESULT STDMETHODCALLTYPE OnStopBinding(HRESULT result, const wchar_t*) noexcept override;
    HRESULT STDMETHODCALLTYPE GetBindInfo(DWORD* flags, BINDINFO* info) noexcept override;
    HRESULT STDMETHODCALLTYPE OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM* medium) noexcept override;
    HRESULT STDMETHODCALLTYPE OnObjectAvailable(REFIID, IUnknown*) noexcept override { return S_OK; }

    HRESULT STDMETHODCALLTYPE BeginningTransaction(const wchar_t*, const wchar_t*, DWORD,
                                                   wchar_t**) noexcept override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnResponse(DWORD status, const wchar_t* head, const wchar_t*,
                                         wchar_t**) noexcept override;

  private:
    ~clsDownloadBinding() = default;

    template <class Event>
    HRESULT Tell(Event event) noexcept;
    unsigned Status() const noexcept;
    void End(HRESULT result) noexcept;
    HRESULT ReadAll(IStream& stream) noexcept;

    std::atomic<ULONG> references_{1};
    std::shared_ptr<IclsDownloadEvents> events_;
    IBinding* binding_ = nullptr; // from OnStartBinding to OnStopBinding
    bool hasEnded_ = false, isAborted_ = false;
    std::array<unsigned char, 64 * 1024> buffer_;
};

} // namespace tvut
