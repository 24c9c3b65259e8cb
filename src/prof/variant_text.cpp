#include "prof/variant_text.h"

#include "platform/exception.h"
#include "text/bytes/byte_text.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

constexpr std::u16string_view mark = u"var://";
constexpr std::size_t compressedFrom = 101;

class clsViewSource final : public clsByteSource {
  public:
    explicit clsViewSource(std::string_view bytes) : rest_(bytes) {}
    std::uint64_t SizeHint() override { return rest_.size(); }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const std::size_t count = std::min(bytes, rest_.size());
        std::memcpy(buffer, rest_.data(), count);
        rest_.remove_prefix(count);
        return count;
    }

  private:
    std::string_view rest_;
};

class clsStringSink final : public clsByteSink {
  public:
    void Extend(std::uint64_t bytes) override { bytes_.reserve(static_cast<std::size_t>(bytes)); }
    void Write(const void* data, std::size_t bytes) override {
        bytes_.append(static_cast<const char*>(data), bytes);
    }
    void Finish() override {}
    std::string Take() { return std::move(bytes_); }

  private:
    std::string bytes_;
};

} // namespace

std::u16string ProfpVariantText(std::string_view bytes) {
    clsViewSource source(bytes);
    using Compression = clsPackedBytes::Compression;
    const clsPackedBytes packed(source, bytes.size() < compressedFrom ? Compression::none : Compression::zlib,
                                {});
    std::u16string text(mark);
    text.resize(mark.size() + packed.TextLength());
    packed.WriteText(text.data() + mark.size());
    return text;
}

std::string ProfpVariantBytes(std::u16string_view text) {
    clsStringSink bytes;
    if (!text.starts_with(mark) || !UtilpWriteBytesOfText(text.substr(mark.size()), {}, bytes))
        throw clsException("text is no variant");
    return bytes.Take();
}

} // namespace tvut
