// An archive under construction: bytes that go out in blocks, while the last ones can still be changed in
// memory. A target that fails once stays failed.
#pragma once

#include "platform/bytes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tvut {

class clsArchiveOutput {
  public:
    static constexpr std::size_t blockBytes = 64 * 1024;

    // The target must stay while the object does. Throws std::bad_alloc.
    explicit clsArchiveOutput(clsPatchableSink& target);

    // All throw clsZIPError when the target fails.
    void Write(const void* data, std::size_t bytes);
    void Patch(std::uint64_t position, const void* data, std::size_t bytes); // of what was written
    void Cut(std::uint64_t position);
    void Flush();

    // Room for bytes that the caller puts there itself, at least this many, at most a block; they count once
    // they are added.
    std::span<char> Room(std::size_t least);
    void Add(std::size_t bytes) { used_ += bytes; }

    std::uint64_t Position() const { return flushed_ + used_; }
    bool HasFailed() const { return hasFailed_; }
    void Fail() { hasFailed_ = true; }

  private:
    template <class Call>
    void CallTarget(Call call);

    clsPatchableSink& target_;
    std::unique_ptr<char[]> block_;
    std::size_t used_ = 0;
    std::uint64_t flushed_ = 0; // bytes that the target has
    bool hasFailed_ = false;
};

} // namespace tvut
