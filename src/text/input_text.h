// A whole input in memory: read as bytes, decoded once to UTF-16, handed to a line reader.
//
// The bytes are read into storage made of UTF-16 units, so that an input that is UTF-16 already is
// used where it lies. Behind the last character stand a line end and seven more units: scanners may
// look at eight units at a time and need no other end condition.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace tvut {

class clsInputText {
  public:
    static constexpr std::size_t padding = 8; // units behind the last one

    // Reads a source to its end. Throws std::bad_alloc, clsException.
    static clsInputText Read(clsByteSource& source);

    std::string_view Bytes() const { return {reinterpret_cast<const char*>(storage_.get()), byteCount_}; }

    // Decodes the bytes. With a byte-order mark: UTF-16 (either order) or UTF-8. Without: UTF-16
    // little-endian when zero bytes show it, else UTF-8 when all of it is valid, else the code page.
    void Decode(unsigned codePage);

    // After Decode: the text without its byte-order mark.
    std::u16string_view Text() const { return text_; }

    // A larger block that begins with the same bytes.
    void Reserve(std::size_t bytes);
    char* Data() { return reinterpret_cast<char*>(storage_.get()); }
    std::size_t Capacity() const { return capacity_; }
    void SetByteCount(std::size_t bytes) { byteCount_ = bytes; }

  private:
    void UseInPlace(std::size_t skippedBytes, bool swapped);
    void Terminate(std::size_t first, std::size_t length);

    std::unique_ptr<char16_t[]> storage_;
    std::size_t capacity_ = 0; // bytes, padding not counted
    std::size_t byteCount_ = 0;
    std::u16string_view text_;
};

} // namespace tvut
