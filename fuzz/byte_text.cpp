// Takes the input as a text of bytes, with and without a key, and as bytes that must come back.
#include "require.h"

#include "text/bytes/byte_text.h"
#include "unit/native_platform.h"

using namespace tvut;

namespace {

constexpr std::uint64_t limit = 1024 * 1024;

class clsLimitedSink final : public clsByteSink {
  public:
    void Extend(std::uint64_t) override {}
    void Write(const void*, std::size_t bytes) override {
        written_ += bytes;
        Require(written_ <= limit);
    }
    void Finish() override {}

  private:
    std::uint64_t written_ = 0;
};

void ComeBack(std::string_view bytes, clsPackedBytes::Compression compression, std::u16string_view key) {
    clsMemorySource source(bytes, 100);
    const clsPackedBytes packed(source, compression, key);
    std::u16string text(packed.TextLength(), u'?');
    packed.WriteText(text.data());
    clsMemorySink back;
    Require(UtilpWriteBytesOfText(text, key, back) && back.bytes == bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::u16string text(data, data + size);
    for (const std::u16string_view key : {u"", u"key"}) {
        DiagnosticLines().clear();
        clsLimitedSink sink;
        UtilpWriteBytesOfText(text, key, sink, limit);
        for (const auto compression : {clsPackedBytes::Compression::none, clsPackedBytes::Compression::zlib})
            ComeBack(bytes, compression, key);
    }
    return 0;
}
