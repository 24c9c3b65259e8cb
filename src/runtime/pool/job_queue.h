// The jobs of a pool that wait, in the order in which they were added.
//
// They stand in blocks of 4 KB, so that a waiting job costs its own eight bytes. A queue that has run empty
// keeps one block.
#pragma once

#include "platform/pool_threads.h"

#include <array>
#include <cstddef>

namespace tvut {

struct scPoolJob {
    PoolFunction function;
    std::uintptr_t user;
};

class clsJobQueue {
  public:
    clsJobQueue() noexcept = default;
    ~clsJobQueue();
    clsJobQueue(const clsJobQueue&) = delete;
    clsJobQueue& operator=(const clsJobQueue&) = delete;

    std::size_t Count() const noexcept { return count_; }
    bool Empty() const noexcept { return count_ == 0; }

    // Makes room for one more job. False: no memory.
    bool Reserve() noexcept { return HasRoom() || Grow(); }

    // After Reserve.
    void Push(scPoolJob job) noexcept;

    // The oldest one; the queue is not empty.
    scPoolJob Pop() noexcept;

    // Moves all jobs into an empty queue.
    void MoveTo(clsJobQueue& other) noexcept;

  private:
    static constexpr std::size_t blockBytes = 4096;
    static constexpr std::size_t jobsInBlock = (blockBytes - sizeof(void*)) / sizeof(scPoolJob);
    struct scBlock {
        scBlock* next;
        std::array<scPoolJob, jobsInBlock> jobs;
    };
    static_assert(sizeof(scBlock) <= blockBytes);

    bool HasRoom() const noexcept { return last_ && pushAt_ < jobsInBlock; }
    bool Grow() noexcept;
    void DropFirst() noexcept;
    void RanEmpty() noexcept;

    scBlock* first_ = nullptr;
    scBlock* last_ = nullptr;
    scBlock* spare_ = nullptr;
    std::size_t popAt_ = 0;  // in the first block
    std::size_t pushAt_ = 0; // in the last block
    std::size_t count_ = 0;
};

} // namespace tvut
