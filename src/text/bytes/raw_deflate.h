// A bare deflated stream (RFC 1951) made in memory, piece by piece.
#pragma once

#include <cstddef>
#include <memory>

namespace tvut {

struct scDeflateState;

class clsRawDeflater {
  public:
    clsRawDeflater(); // throws std::bad_alloc
    clsRawDeflater(const clsRawDeflater&) = delete;
    clsRawDeflater& operator=(const clsRawDeflater&) = delete;
    ~clsRawDeflater();

    // Begins another stream; what was fed is forgotten.
    void Restart() noexcept;

    // The next piece; it stays where it is until it is folded. The one before must be.
    void Feed(const void* data, std::size_t bytes) noexcept;

    // How much of the stream a call of Fold wants to have in its room.
    enum class Wanted {
        whatComes,   // some of what was fed may be kept back
        allFed,      // all that was fed, but for some bits
        wholeStream, // no more is fed
    };

    // Deflates what was fed; gives how many bytes. More of the same is to come while IsMore().
    std::size_t Fold(void* room, std::size_t bytes, Wanted wanted) noexcept;
    bool IsMore() const noexcept { return isMore_; }

  private:
    std::unique_ptr<scDeflateState> state_;
    bool isMore_ = false;
};

} // namespace tvut
