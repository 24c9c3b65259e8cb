// An open file whose bytes are read from any place.
#pragma once

#include "platform/bytes.h"
#include "platform/owned.h"

namespace tvut {

// The file is the caller's, and must stay open while the object does.
class clsRandomFile final : public clsRandomSource {
  public:
    explicit clsRandomFile(HANDLE file) : file_(file) {}
    std::uint64_t Size() override;
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t bytes) override;

  private:
    HANDLE file_;
};

} // namespace tvut
