// Deflated streams: compressing on the way into a sink, and unfolding what is at hand.
#pragma once

#include "platform/bytes.h"
#include "text/bytes/wrapping.h"

#include <cstddef>
#include <memory>

namespace tvut {

struct scInflateState;

// A sink that compresses on the way into another, which it hands whole blocks of 64 KB until the end.
class clsDeflatingSink final : public clsByteSink {
  public:
    explicit clsDeflatingSink(clsByteSink& target); // throws std::bad_alloc
    clsDeflatingSink(const clsDeflatingSink&) = delete;
    clsDeflatingSink& operator=(const clsDeflatingSink&) = delete;
    ~clsDeflatingSink() override;

    void Extend(std::uint64_t) override { target_.Extend(unknownLength); } // it shows in the end
    void Write(const void* data, std::size_t bytes) override;
    void Finish() override;

  private:
    struct scState;
    void Deflate(int flush);

    clsByteSink& target_;
    std::unique_ptr<scState> state_;
};

// Unfolds a stream that is fed in pieces.
class clsInflater {
  public:
    enum class State { running, ended, damaged };

    explicit clsInflater(Wrapping wrapping = Wrapping::zlib); // throws std::bad_alloc
    clsInflater(const clsInflater&) = delete;
    clsInflater& operator=(const clsInflater&) = delete;
    ~clsInflater();

    // Begins another stream; what was fed is forgotten.
    void Restart() noexcept;

    // What a stream without header was deflated with, before the first piece. Throws std::bad_alloc.
    void Presume(const void* dictionary, std::size_t bytes);

    // The next piece; the one before must be used up. It stays where it is until it is used up.
    void Feed(const void* data, std::size_t bytes);
    // Bytes of the piece that are not used up; those after the end of the stream never are.
    std::size_t Left() const;

    // Unfolds as much as is fed and there is room for; returns how many bytes. Throws std::bad_alloc.
    std::size_t Unfold(void* room, std::size_t bytes);
    State Now() const { return now_; }

  private:
    std::unique_ptr<scInflateState> state_;
    State now_ = State::running;
};

} // namespace tvut
