// A caller's IStream as a source or a sink of bytes.
//
// Callers implement streams of every kind: some cannot seek, some cannot change their size, most
// read and write less than asked. Only reading and writing have to work.
#pragma once

#include "platform/bytes.h"

#include <objidl.h>

namespace tvut {

class clsStreamSource final : public clsByteSource {
  public:
    explicit clsStreamSource(IStream* stream);
    std::uint64_t SizeHint() override;
    std::size_t Read(void* buffer, std::size_t bytes) override;

  private:
    IStream* stream_;
};

class clsStreamSink final : public clsByteSink {
  public:
    explicit clsStreamSink(IStream* stream);
    void Extend(std::uint64_t bytes) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    IStream* stream_;
    std::uint64_t written_ = 0;
    bool fromStart_;
};

} // namespace tvut
