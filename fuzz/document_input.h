// Has one reader of documents read any bytes, within what is allowed: no more is read than it may, and what
// it says is clean.
#pragma once

#include "docinfo/detect.h"
#include "require.h"
#include "text/encoding/utf8.h"

namespace tvut {

// Counts what is read.
class clsCountedSource final : public clsRandomSource {
  public:
    clsCountedSource(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override {
        Require(position <= size_ && bytes <= size_ - position ? nullptr : "read beyond the end");
        if (bytes != 0)
            std::memcpy(buffer, data_ + position, bytes);
        read += bytes;
        return bytes;
    }

    std::uint64_t read = 0;

  private:
    const std::uint8_t* data_;
    std::size_t size_;
};

inline void RequireClean(const clsDocInfo& info) {
    const std::u16string names = info.Names();
    std::size_t units = 0;
    for (std::size_t start = 0; start < names.size();) {
        const std::size_t end = std::min(names.find(u'\n', start), names.size());
        const auto text = info.Find(std::u16string_view(names).substr(start, end - start));
        Require(text && !text->empty() ? nullptr : "a name without a value");
        Require(UtilpIsUtf16(*text) && text->size() <= clsDocInfo::longestValue ? nullptr
                                                                                : "a value is not clean");
        units += text->size();
        start = end + 1;
    }
    Require(units <= clsDocInfo::mostUnits + 1000 ? nullptr : "the values are too long together");
}

inline int ReadAnyDocument(DocReader* read, std::uint64_t mostBytes, const std::uint8_t* data,
                           std::size_t size) {
    clsCountedSource counted(data, size);
    clsPagedSource source(counted);
    clsDocInfo info;
    try {
        Require(read(source, info) == info.Has(DocProperty::format) ? nullptr : "a format without a name");
    } catch (const clsDocDamage&) {
    }
    Require(counted.read <= mostBytes ? nullptr : "too much was read");
    RequireClean(info);
    return 0;
}

} // namespace tvut
