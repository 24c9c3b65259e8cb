// A header is patched when its data is known. That is mostly while it still stands in the block, which costs
// nothing; what the target has already is patched there. Cutting works alike: within the block it is a
// number.
#include "zip/archive_output.h"

#include "zip/zip_fault.h"

#include <algorithm>
#include <cstring>

namespace tvut {

clsArchiveOutput::clsArchiveOutput(clsPatchableSink& target)
    : target_(target), block_(std::make_unique_for_overwrite<char[]>(blockBytes)) {}

void clsArchiveOutput::Write(const void* data, std::size_t bytes) {
    UtilpRequire(!hasFailed_, ZipFault::unwritable);
    if (bytes > blockBytes - used_)
        Flush();
    if (bytes >= blockBytes) { // nothing is gained by copying it
        CallTarget([&] { target_.Write(data, bytes); });
        flushed_ += bytes;
        return;
    }
    if (bytes != 0)
        std::memcpy(block_.get() + used_, data, bytes);
    used_ += bytes;
}

// What is patched may lie partly in the target and partly in the block.
void clsArchiveOutput::Patch(std::uint64_t position, const void* data, std::size_t bytes) {
    const char* next = static_cast<const char*>(data);
    if (position < flushed_) {
        const auto before = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, flushed_ - position));
        CallTarget([&] { target_.Patch(position, next, before); });
        next += before;
        bytes -= before;
        position += before;
    }
    if (bytes != 0)
        std::memcpy(block_.get() + static_cast<std::size_t>(position - flushed_), next, bytes);
}

void clsArchiveOutput::Cut(std::uint64_t position) {
    if (position >= flushed_) {
        used_ = static_cast<std::size_t>(position - flushed_);
        return;
    }
    CallTarget([&] { target_.Cut(position); });
    flushed_ = position;
    used_ = 0;
}

void clsArchiveOutput::Flush() {
    if (used_ == 0)
        return;
    CallTarget([&] { target_.Write(block_.get(), used_); });
    flushed_ += used_;
    used_ = 0;
}

std::span<char> clsArchiveOutput::Room(std::size_t least) {
    if (blockBytes - used_ < least)
        Flush();
    return {block_.get() + used_, blockBytes - used_};
}

template <class Call>
void clsArchiveOutput::CallTarget(Call call) {
    UtilpRequire(!hasFailed_, ZipFault::unwritable);
    try {
        call();
    } catch (const clsException& error) {
        hasFailed_ = true;
        throw clsZIPError(ZipFault::unwritable, error);
    }
}

} // namespace tvut
