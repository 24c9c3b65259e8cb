// Exports of the conversions between bytes (in memory, in a stream, in a global memory block) and text.
#include "exports/guard.h"
#include "platform/global_memory.h"
#include "platform/stream.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"
#include "text/bytes/base64.h"
#include "text/bytes/byte_text.h"
#include "text/string_functions.h"

#include <tvut22/text.h>

#include <limits>

using namespace tvut;

namespace {

constexpr INT largestSize = std::numeric_limits<INT>::max();

// The runtime's way to a length is several times slower, and such texts are long.
std::u16string_view View(const wchar_t* text) {
    return {FromWide(text), UtilpLength(FromWide(text))};
}

// Bytes that become text as they are, without a copy of them.
class clsPlainBytes {
  public:
    clsPlainBytes(const void* bytes, std::size_t count)
        : bytes_(static_cast<const std::uint8_t*>(bytes), count) {}
    std::size_t TextLength() const { return UtilpBase64Length(bytes_.size()); }
    void WriteText(char16_t* text) const { UtilpBase64Encode(bytes_, text); }

  private:
    std::span<const std::uint8_t> bytes_;
};

template <class Bytes>
INT GiveText(const Bytes& bytes, wchar_t* destination, UINT size) {
    const std::size_t length = bytes.TextLength();
    if (length >= static_cast<std::size_t>(largestSize))
        return UTIL_CONVERT_FAILED;
    if (!destination || size == 0)
        return static_cast<INT>(length + 1);
    if (length >= size)
        return UTIL_CONVERT_TOO_SMALL;
    bytes.WriteText(FromWide(destination));
    destination[length] = L'\0';
    return 0;
}

INT GivePackedText(clsByteSource& source, wchar_t* destination, UINT size, BOOL compress) {
    const auto compression = compress ? clsPackedBytes::Compression::zlib : clsPackedBytes::Compression::none;
    return GiveText(clsPackedBytes(source, compression, {}), destination, size);
}

INT GiveTextOfMemory(const void* bytes, std::size_t count, wchar_t* destination, UINT size, BOOL compress) {
    return UtilpGuard(UTIL_CONVERT_FAILED, [&] {
        UtilpRequireReadable(count);
        if (!compress)
            return GiveText(clsPlainBytes(bytes, count), destination, size);
        clsSpanSource source(bytes, count);
        return GivePackedText(source, destination, size, compress);
    });
}

// Memory of the caller's: what does not fit is only counted.
class clsBufferSink final : public clsByteSink {
  public:
    clsBufferSink(void* buffer, std::size_t size)
        : next_(static_cast<char*>(buffer)), room_(buffer ? size : 0) {}
    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override {
        const std::size_t count = std::min(bytes, room_);
        if (count != 0)
            std::memcpy(next_, data, count);
        next_ += count;
        room_ -= count;
        written_ += bytes;
    }
    void Finish() override {}
    std::uint64_t Written() const { return written_; }

  private:
    char* next_;
    std::size_t room_;
    std::uint64_t written_ = 0;
};

// All or nothing: the bytes are complete before the first is written.
void WriteBytes(const wchar_t* text, IStream* stream) {
    clsByteBlocks blocks;
    if (!UtilpWriteBytesOfText(View(text), {}, blocks))
        return;
    clsStreamSink sink(stream, clsStreamSink::Contents::stay);
    sink.Extend(blocks.Size());
    for (const auto& block : blocks.Blocks())
        sink.Write(block.data(), block.size());
}

} // namespace

INT TVUT22_CALL UtilConvertBLOBToString(const void* bytes, UINT byteCount, wchar_t* destination, UINT size,
                                        BOOL compress) {
    if (!bytes && byteCount != 0)
        return UTIL_CONVERT_NO_ARGUMENT;
    return GiveTextOfMemory(bytes, byteCount, destination, size, compress);
}

INT TVUT22_CALL UtilConvertStreamToString(IStream* stream, wchar_t* destination, UINT size, BOOL compress) {
    if (!stream)
        return UTIL_CONVERT_NO_ARGUMENT;
    return UtilpGuard(UTIL_CONVERT_FAILED, [&] {
        clsStreamSource source(stream);
        return GivePackedText(source, destination, size, compress);
    });
}

INT TVUT22_CALL UtilConvertHGLOBALToString(HGLOBAL block, wchar_t* destination, UINT size, BOOL compress) {
    if (!block)
        return UTIL_CONVERT_NO_ARGUMENT;
    const clsLockedMemory locked(block);
    if (!locked.IsBlock())
        return UTIL_CONVERT_NO_ARGUMENT;
    return GiveTextOfMemory(locked.Data(), locked.Size(), destination, size, compress);
}

INT TVUT22_CALL UtilConvertStringToBLOB(const wchar_t* text, void* destination, UINT size) {
    if (!text)
        return UTIL_CONVERT_NO_ARGUMENT;
    return UtilpGuard(UTIL_CONVERT_FAILED, [&] {
        clsBufferSink sink(destination, size);
        if (!UtilpWriteBytesOfText(View(text), {}, sink))
            return 0;
        if (destination && sink.Written() > size)
            return UTIL_CONVERT_TOO_LARGE;
        return sink.Written() > static_cast<std::uint64_t>(largestSize) ? UTIL_CONVERT_FAILED
                                                                        : static_cast<INT>(sink.Written());
    });
}

INT TVUT22_CALL UtilConvertStringToStream(const wchar_t* text, IStream* stream) {
    if (!text || !stream)
        return UTIL_CONVERT_NO_ARGUMENT;
    return UtilpGuard(UTIL_CONVERT_FAILED, [&] {
        WriteBytes(text, stream);
        return 0;
    });
}

INT TVUT22_CALL UtilConvertStringToHGLOBAL(const wchar_t* text, HGLOBAL* out) {
    if (out)
        *out = nullptr;
    if (!text || !out)
        return UTIL_CONVERT_NO_ARGUMENT;
    clsStream stream;
    if (FAILED(CreateStreamOnHGlobal(nullptr, FALSE, stream.Receive())))
        return UTIL_CONVERT_NO_ARGUMENT;
    clsGlobalMemory block;
    const INT result = UtilConvertStringToStream(text, stream.Get());
    if (FAILED(GetHGlobalFromStream(stream.Get(), block.Receive()))) {
        clsDiagnosticLine().Put(u"GetHGlobalFromStream() failed").Write();
        return UTIL_CONVERT_FAILED;
    }
    if (result == 0)
        *out = block.Take();
    return result;
}
