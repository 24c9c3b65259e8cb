// A caller's IStream as a source or a sink of bytes.
//
// Callers implement streams of every kind: some cannot seek, some cannot change their size, most
// read and write less than asked. Only reading and writing have to work.
#pragma once

#include "platform/bytes.h"
#include "platform/owned.h"

#include <objidl.h>

namespace tvut {

struct scStreamPolicy {
    using Value = IStream*;
    static Value None() noexcept { return nullptr; }
    static void Close(Value value) noexcept { value->Release(); }
};
using clsStream = clsOwned<scStreamPolicy>;

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
    // What is there already is replaced where the stream can seek and change its size; or stays, and
    // what is written goes where the stream stands.
    enum class Contents { areReplaced, stay };
    explicit clsStreamSink(IStream* stream, Contents contents = Contents::areReplaced);
    void Extend(std::uint64_t bytes) override;
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    IStream* stream_;
    Contents contents_;
    std::uint64_t written_ = 0;
    bool fromStart_ = false;
};

} // namespace tvut
