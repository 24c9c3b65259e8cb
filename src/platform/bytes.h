// Where bytes come from and where they go: files, callers' streams and memory, seen alike.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

namespace tvut {

class clsByteSource {
  public:
    virtual ~clsByteSource() = default;
    // The number of bytes to expect, 0 when unknown. Only a hint: reading tells.
    virtual std::uint64_t SizeHint() = 0;
    // Reads up to a number of bytes; 0 only at the end. Throws clsException when the source fails.
    virtual std::size_t Read(void* buffer, std::size_t bytes) = 0;
};

// Bytes in memory as a source.
class clsSpanSource final : public clsByteSource {
  public:
    clsSpanSource(const void* data, std::size_t bytes)
        : next_(static_cast<const char*>(data)), left_(bytes) {}
    std::uint64_t SizeHint() override { return left_; }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const std::size_t count = std::min(bytes, left_);
        if (count != 0)
            std::memcpy(buffer, next_, count);
        next_ += count;
        left_ -= count;
        return count;
    }

  private:
    const char* next_;
    std::size_t left_;
};

class clsByteSink {
  public:
    static constexpr std::uint64_t unknownLength = UINT64_MAX;

    virtual ~clsByteSink() = default;
    // Whether Extend makes use of the length, which may be dear to know.
    virtual bool UsesLength() const { return true; }
    // Called once before the first Write; until then the target is as it was. Takes how many bytes will come,
    // so that a lack of room shows before anything is overwritten, or unknownLength. Throws clsException.
    virtual void Extend(std::uint64_t bytes) = 0;
    // Writes all bytes or throws clsException.
    virtual void Write(const void* data, std::size_t bytes) = 0;
    // Everything is written: ends the target where writing stands. Throws clsException.
    virtual void Finish() = 0;
};

// Bytes collected in memory.
class clsStringSink final : public clsByteSink {
  public:
    void Extend(std::uint64_t) override {}
    void Write(const void* data, std::size_t bytes) override { // throws std::bad_alloc
        bytes_.append(static_cast<const char*>(data), bytes);
    }
    void Finish() override {}
    const std::string& Bytes() const { return bytes_; }
    std::string Take() { return std::move(bytes_); }

  private:
    std::string bytes_;
};

// Bytes that can be read from any place.
class clsRandomSource {
  public:
    virtual ~clsRandomSource() = default;
    virtual std::uint64_t Size() = 0; // throws clsException
    // Reads up to a number of bytes from a position; fewer only where the source ends. Throws clsException
    // when the source fails.
    virtual std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) = 0;
};

// Bytes that grow at their end, may be changed where they are, and lose their end again. Each throws
// clsException.
class clsPatchableSink {
  public:
    virtual ~clsPatchableSink() = default;
    virtual void Write(const void* data, std::size_t bytes) = 0; // all of them, at the end
    // Overwrites bytes that were written; writing goes on at the end.
    virtual void Patch(std::uint64_t position, const void* data, std::size_t bytes) = 0;
    virtual void Cut(std::uint64_t size) = 0; // to a size that it has had
};

} // namespace tvut
