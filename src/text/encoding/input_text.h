// An input in memory: read as bytes, decoded once to UTF-16, handed to a line reader.
//
// The bytes are read into storage made of UTF-16 units, so that an input that is UTF-16 already is
// used where it lies; and when its byte-order mark says so, it is read a window at a time, because
// touching a few megabytes of fresh memory costs more than reading them. Every other encoding is recognised
// and decoded from the whole input. After the last character stand a line end and 31 more
// units: scanners may look at 32 units at a time and need no other end condition.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace tvut {

class clsInputText {
  public:
    static constexpr std::size_t padding = 32; // units after the last one

    // Reads the beginning of a source, which must outlive the object. Throws std::bad_alloc and what
    // the source throws, as do ReadAll, Decode and Refill.
    explicit clsInputText(clsByteSource& source);

    // Takes bytes that are complete.
    clsInputText(std::unique_ptr<char16_t[]> paddedStorage, std::size_t byteCount);

    // Reads what is left of the source.
    void ReadAll();

    std::string_view Bytes() const { return {reinterpret_cast<const char*>(storage_.get()), byteCount_}; }

    // Decodes the bytes. With a byte-order mark: UTF-16 (either order) or UTF-8. Without: UTF-16
    // little-endian when its line ends, "=" and brackets are, else UTF-8 when all of it is valid, else the
    // code page; and the code page at once when the text is said to be in it.
    void Decode(unsigned codePage, bool isSaid = false);

    // After Decode: the text, or the first window of it, without the byte-order mark.
    std::u16string_view Text() const { return text_; }

    // After ReadAll and Decode: the text ends before the zero units at its end.
    void DropZerosAtEnd();

    // Drops the text before a position of Text() and reads more after what is kept: Text() is new
    // then, and begins there. False when the whole input has been seen; Text() is as it was.
    bool Refill(const char16_t* keepFrom);

    // Names and values are texts that end with a NUL: what would be one in the middle of a line becomes
    // the picture of it, which is how it is saved, too.
    void ReplaceZeros(const char16_t* begin, const char16_t* end);
    static constexpr char16_t pictureOfZero = u'\u2400';

    // Storage for some bytes with room for the padding.
    static std::unique_ptr<char16_t[]> Allocate(std::size_t bytes);

  private:
    void Reserve(std::size_t bytes);
    void Fill();
    void UseInPlace(std::size_t skippedBytes);
    void SwapBytes();
    void Terminate(std::size_t first, std::size_t length);

    clsByteSource* source_ = nullptr; // none: everything has been read
    std::unique_ptr<char16_t[]> storage_;
    std::size_t capacity_ = 0; // bytes, padding not counted
    std::size_t byteCount_ = 0;
    std::u16string_view text_;
};

} // namespace tvut
