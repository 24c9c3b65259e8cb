// The lines of files, read by a thread of its own into a store as those that programs write.
#pragma once

#include "store.h"

#include <atomic>
#include <thread>

namespace tool::logpan {

class clsFileLines {
  public:
    // Of files with more than that the last lines are held.
    static constexpr std::size_t mostLines = 5'000'000;
    static constexpr std::size_t mostBytes = 400 * 1024 * 1024;

    explicit clsFileLines(std::vector<std::wstring> paths);
    ~clsFileLines();
    clsFileLines(const clsFileLines&) = delete;
    clsFileLines& operator=(const clsFileLines&) = delete;

    clsStore& Store() { return store_; }
    // The name of the file, how many there are, or why one of them cannot be read.
    std::wstring Title() const;

  private:
    void Read();
    void SetTitle(std::wstring title);

    std::vector<std::wstring> paths_;
    clsStore store_{mostLines, mostBytes};
    mutable std::mutex mutex_;
    std::wstring title_;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

} // namespace tool::logpan
