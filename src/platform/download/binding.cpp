// An answer of "no" to one of the service's calls ends nothing by itself: a silent transfer goes on. So each
// of them aborts the binding, too, and the service then ends it with E_ABORT.
#include "platform/download/binding.h"

#include "platform/owned.h"
#include "platform/system_function.h"
#include "platform/wide.h"

#include <cstring>
#include <utility>
#include <wininet.h>

namespace tvut {

namespace {

constinit clsSystemFunction<decltype(CreateURLMonikerEx)> createMoniker(L"urlmon.dll", "CreateURLMonikerEx");
constinit clsSystemFunction<decltype(CreateAsyncBindCtx)> createContext(L"urlmon.dll", "CreateAsyncBindCtx");

struct scComPolicy {
    using Value = IUnknown*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { value->Release(); }
};
using clsReference = clsOwned<scComPolicy>;

constexpr DWORD bindFlags = BINDF_ASYNCHRONOUS | BINDF_ASYNCSTORAGE | BINDF_PULLDATA |
                            BINDF_GETNEWESTVERSION | BINDF_NOWRITECACHE | BINDF_PRAGMA_NO_CACHE |
                            BINDF_SILENTOPERATION | BINDF_NO_UI;

HRESULT Bind(const wchar_t* url, IBindStatusCallback* callback) {
    if (!createMoniker.Get() || !createContext.Get())
        return HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
    IMoniker* moniker = nullptr;
    if (const HRESULT result = createMoniker.Get()(nullptr, url, &moniker, URL_MK_UNIFORM); FAILED(result))
        return result;
    const clsReference ownedMoniker(moniker);
    IBindCtx* context = nullptr;
    if (const HRESULT result = createContext.Get()(0, callback, nullptr, &context); FAILED(result))
        return result;
    const clsReference ownedContext(context);
    IStream* stream = nullptr;
    const HRESULT result =
        moniker->BindToStorage(context, nullptr, IID_IStream, reinterpret_cast<void**>(&stream));
    const clsReference ownedStream(stream);
    return result;
}

} // namespace

void clsDownloadBinding::Start(const wchar_t* url) noexcept {
    if (const HRESULT result = Bind(url, this); FAILED(result))
        End(result);
}

void clsDownloadBinding::Abort() noexcept {
    isAborted_ = true;
    if (binding_)
        binding_->Abort();
}

// ---- What the service calls --------------------------------------------------------------------------

HRESULT clsDownloadBinding::QueryInterface(REFIID id, void** object) noexcept {
    if (id == IID_IUnknown || id == IID_IBindStatusCallback)
        *object = static_cast<IBindStatusCallback*>(this);
    else if (id == IID_IHttpNegotiate)
        *object = static_cast<IHttpNegotiate*>(this);
    else
        *object = nullptr;
    if (*object)
        AddRef();
    return *object ? S_OK : E_NOINTERFACE;
}

ULONG clsDownloadBinding::AddRef() noexcept {
    return ++references_;
}

ULONG clsDownloadBinding::Release() noexcept {
    const ULONG left = --references_;
    if (left == 0)
        delete this;
    return left;
}

HRESULT clsDownloadBinding::OnStartBinding(DWORD, IBinding* binding) noexcept {
    binding->AddRef();
    binding_ = binding;
    return S_OK;
}

HRESULT clsDownloadBinding::OnProgress(ULONG, ULONG, ULONG code, const wchar_t* text) noexcept {
    if (code != BINDSTATUS_REDIRECTING || !text)
        return isAborted_ ? E_ABORT : S_OK;
    return Tell([&] { return events_->Redirected(FromWide(std::wstring_view(text)), Status()); });
}

HRESULT clsDownloadBinding::OnStopBinding(HRESULT result, const wchar_t*) noexcept {
    End(result);
    return S_OK;
}

HRESULT clsDownloadBinding::GetBindInfo(DWORD* flags, BINDINFO* info) noexcept {
    const ULONG size = info->cbSize;
    memset(info, 0, size);
    info->cbSize = size;
    info->dwBindVerb = BINDVERB_GET;
    *flags = bindFlags;
    return S_OK;
}

HRESULT clsDownloadBinding::OnDataAvailable(DWORD, DWORD, FORMATETC*, STGMEDIUM* medium) noexcept {
    return medium && medium->tymed == TYMED_ISTREAM && medium->pstm ? ReadAll(*medium->pstm) : S_OK;
}

HRESULT clsDownloadBinding::OnResponse(DWORD status, const wchar_t* head, const wchar_t*,
                                       wchar_t**) noexcept {
    return Tell([&] {
        return events_->Answered(status, head ? FromWide(std::wstring_view(head)) : std::u16string_view());
    });
}

// ---- What is made of it ------------------------------------------------------------------------------

template <class Event>
HRESULT clsDownloadBinding::Tell(Event event) noexcept {
    bool goesOn = false;
    try {
        goesOn = !isAborted_ && !hasEnded_ && event();
    } catch (...) { // without memory there is no going on
    }
    if (goesOn)
        return S_OK;
    Abort();
    return E_ABORT;
}

// Of the answer that the service follows; 0 when it has gone on meanwhile, and knows a later one.
unsigned clsDownloadBinding::Status() const noexcept {
    IWinInetHttpInfo* info = nullptr;
    if (!binding_ || FAILED(binding_->QueryInterface(IID_IWinInetHttpInfo, reinterpret_cast<void**>(&info))))
        return 0;
    const clsReference owned(info);
    DWORD status = 0, size = sizeof status, flags = 0, reserved = 0;
    const HRESULT result =
        info->QueryInfo(HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size, &flags, &reserved);
    return result == S_OK && status >= 300 && status <= 399 ? status : 0;
}

void clsDownloadBinding::End(HRESULT result) noexcept {
    const clsReference ended(std::exchange(binding_, nullptr));
    if (std::exchange(hasEnded_, true))
        return;
    events_->Ended(static_cast<std::uint32_t>(result));
    events_.reset();
}

// To where there is nothing more yet: the service tells when there is.
HRESULT clsDownloadBinding::ReadAll(IStream& stream) noexcept {
    ULONG read = 0;
    do {
        const HRESULT result = stream.Read(buffer_.data(), static_cast<ULONG>(buffer_.size()), &read);
        if (FAILED(result) && result != E_PENDING)
            return S_OK; // the end of the binding tells
        if (read == 0 || read > buffer_.size())
            return S_OK;
        if (const HRESULT told = Tell([&] { return events_->Received(buffer_.data(), read); }); FAILED(told))
            return told;
    } while (true);
}

} // namespace tvut
