// Keeps a thread's priority as it is meant to be, whatever the calls do to it that the thread makes for
// others.
//
// The system has to be asked for the priority, which takes longer than many a call. So it is asked after the
// first call, at the end, and between them whenever that takes at most a fiftieth of the thread's time: after
// each call of some 20 microseconds or more, or a few times a second where asking is dear.
#pragma once

#include <cstdint>

namespace tvut {

class clsThreadPriority {
  public:
    // Of the calling thread: normal, or one step below.
    explicit clsThreadPriority(bool background) noexcept;
    ~clsThreadPriority();
    clsThreadPriority(const clsThreadPriority&) = delete;
    clsThreadPriority& operator=(const clsThreadPriority&) = delete;

    // A call was made, and another one comes.
    void BetweenCalls() noexcept;

  private:
    void PutBack() noexcept;

    int meant_;
    std::uint64_t nextAt_ = 0; // in the processor's time
};

} // namespace tvut
