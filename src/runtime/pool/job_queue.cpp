// A chain of blocks: jobs are pushed into the last and popped from the first, and none is ever moved. One
// block whose jobs are all taken is kept for the next that is wanted, so that a queue of some length
// allocates nothing; an empty queue keeps the one that it stands in. Reserve is apart from Push, so that a
// push cannot fail.
#include "runtime/pool/job_queue.h"

#include <memory>
#include <new>
#include <utility>

namespace tvut {

clsJobQueue::~clsJobQueue() {
    while (first_)
        delete std::exchange(first_, first_->next);
    delete spare_;
}

bool clsJobQueue::Grow() noexcept {
    scBlock* const block = spare_ ? std::exchange(spare_, nullptr) : new (std::nothrow) scBlock;
    if (!block)
        return false;
    block->next = nullptr;
    (last_ ? last_->next : first_) = block;
    last_ = block;
    pushAt_ = 0;
    return true;
}

void clsJobQueue::Push(scPoolJob job) noexcept {
    last_->jobs[pushAt_++] = job;
    ++count_;
}

scPoolJob clsJobQueue::Pop() noexcept {
    const scPoolJob job = first_->jobs[popAt_++];
    if (--count_ == 0)
        RanEmpty();
    else if (popAt_ == jobsInBlock)
        DropFirst();
    return job;
}

// The first block, all of whose jobs were taken, becomes the spare one, or goes.
void clsJobQueue::DropFirst() noexcept {
    scBlock* const block = std::exchange(first_, first_->next);
    popAt_ = 0;
    if (spare_)
        delete block;
    else
        spare_ = block;
}

void clsJobQueue::RanEmpty() noexcept {
    while (first_ != last_) // a block that was made and not needed
        DropFirst();
    popAt_ = pushAt_ = 0;
    delete std::exchange(spare_, nullptr);
}

void clsJobQueue::MoveTo(clsJobQueue& other) noexcept {
    other.first_ = std::exchange(first_, nullptr);
    other.last_ = std::exchange(last_, nullptr);
    other.popAt_ = std::exchange(popAt_, 0);
    other.pushAt_ = std::exchange(pushAt_, 0);
    other.count_ = std::exchange(count_, 0);
}

} // namespace tvut
