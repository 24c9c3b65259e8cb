// An IStream in memory that reads and writes in small pieces and fails where a test wants it to.
#pragma once

#include "files.h"
#include "job.h"

#include <objidl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <optional>
#include <utility>

namespace testing_prof {

// IStream has no virtual destructor, and nothing is deleted through it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

class clsPieceStream final : public IStream {
  public:
    explicit clsPieceStream(Bytes contents = {}, size_t piece = SIZE_MAX)
        : data(std::move(contents)), piece_(piece) {}
    clsPieceStream(const clsPieceStream&) = delete;
    clsPieceStream& operator=(const clsPieceStream&) = delete;

    Bytes data;
    size_t position = 0;
    size_t failAt = SIZE_MAX; // reads and writes that would pass this position fail
    bool refuseSeek = false;
    bool refuseSetSize = false;
    std::optional<uint64_t> claimedSize;
    ProfJob closedByWrite = nullptr;
    std::function<void()> onRead;
    LONG references = 1;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }

    HRESULT STDMETHODCALLTYPE Read(void* out, ULONG size, ULONG* done) override {
        if (onRead)
            std::exchange(onRead, nullptr)();
        const size_t left = position < data.size() ? data.size() - position : 0;
        const size_t count = std::min({static_cast<size_t>(size), piece_, left});
        if (done)
            *done = 0;
        if (position + count > failAt || (count == 0 && size && failAt <= data.size()))
            return STG_E_READFAULT;
        std::memcpy(out, data.data() + position, count);
        return Moved(count, done, count < std::min<size_t>(size, piece_) ? S_FALSE : S_OK);
    }

    HRESULT STDMETHODCALLTYPE Write(const void* in, ULONG size, ULONG* done) override {
        ProfJobClose(std::exchange(closedByWrite, nullptr));
        const size_t count = std::min<size_t>(size, piece_);
        if (done)
            *done = 0;
        if (position + count > failAt)
            return STG_E_MEDIUMFULL;
        if (position + count > data.size())
            data.resize(position + count);
        std::memcpy(data.data() + position, in, count);
        return Moved(count, done, S_OK);
    }

    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* result) override {
        if (refuseSeek)
            return E_NOTIMPL;
        const int64_t bases[] = {0, static_cast<int64_t>(position), static_cast<int64_t>(data.size())};
        if (origin > STREAM_SEEK_END || bases[origin] + move.QuadPart < 0)
            return STG_E_INVALIDFUNCTION;
        position = static_cast<size_t>(bases[origin] + move.QuadPart);
        if (result)
            result->QuadPart = position;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
        if (refuseSetSize)
            return E_NOTIMPL;
        if (size.QuadPart > failAt)
            return STG_E_MEDIUMFULL;
        data.resize(static_cast<size_t>(size.QuadPart));
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Stat(STATSTG* out, DWORD) override {
        *out = {};
        out->type = STGTY_STREAM;
        out->cbSize.QuadPart = claimedSize.value_or(data.size());
        return S_OK;
    }

    // clang-format off
    using Count = ULARGE_INTEGER;
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, Count, Count*, Count*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(Count, Count, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE UnlockRegion(Count, Count, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }
    // clang-format on

  private:
    HRESULT Moved(size_t count, ULONG* done, HRESULT result) {
        position += count;
        if (done)
            *done = static_cast<ULONG>(count);
        return result;
    }

    size_t piece_;
};

#pragma GCC diagnostic pop

// A job read from bytes.
inline clsJob Opened(const Bytes& bytes, UINT flags = 0, size_t piece = SIZE_MAX) {
    clsPieceStream stream(bytes, piece);
    return clsJob(ProfJobOpenStreamObjectW(&stream, nullptr, flags));
}

// The bytes that a job is saved as; empty when saving fails.
inline Bytes Saved(ProfJob job, UINT flags = PROF_FORM_TEXT, size_t piece = SIZE_MAX) {
    clsPieceStream stream({}, piece);
    return ProfSaveToStream(job, &stream, flags) == PROF_OK ? stream.data : Bytes();
}

} // namespace testing_prof
