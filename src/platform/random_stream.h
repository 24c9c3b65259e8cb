// A caller's IStream whose bytes are read from any place.
#pragma once

#include "platform/bytes.h"

#include <objidl.h>

namespace tvut {

// The stream is the caller's, and must stay while the object does; in the end it stands where it stood.
// Making one throws clsException when the stream cannot seek.
class clsRandomStream final : public clsRandomSource {
  public:
    explicit clsRandomStream(IStream* stream);
    clsRandomStream(const clsRandomStream&) = delete;
    clsRandomStream& operator=(const clsRandomStream&) = delete;
    ~clsRandomStream() override;

    std::uint64_t Size() override { return size_; }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override;

  private:
    std::uint64_t Seek(std::uint64_t position, DWORD origin);

    IStream* stream_;
    std::uint64_t stood_, size_;
};

} // namespace tvut
