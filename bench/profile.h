// The library's handles as owning objects, and the few steps that several sections take with them.
#pragma once

#include "harness.h"

#include <tvut22/prof.h>

#include <string>
#include <utility>
#include <vector>

namespace bench {

// A job that is closed at the end.
class clsJob {
  public:
    // An empty profile, or one from a file.
    clsJob() : clsJob(nullptr) {}
    explicit clsJob(const std::wstring& path) : clsJob(path.c_str()) {}
    clsJob(clsJob&& other) noexcept : job_(std::exchange(other.job_, nullptr)) {}
    clsJob(const clsJob&) = delete;
    clsJob& operator=(const clsJob&) = delete;
    ~clsJob() { Close(); }

    operator ProfJob() const { return job_; }
    void Close() { ProfJobClose(std::exchange(job_, nullptr)); }

  private:
    explicit clsJob(const wchar_t* path) : job_(ProfJobOpenW(path)) {
        Require(job_ != nullptr && ProfGetError(job_) == PROF_OK, "a profile could not be opened");
    }

    ProfJob job_;
};

// The handles of the root list's lists, in order.
std::vector<ProfList> ListsOf(ProfJob job);

// How many items and lists a list holds, those of its lists not counted.
std::size_t EntriesOf(ProfJob job, ProfList list);

// Throws clsBenchError unless the job holds the whole work.
void RequireWork(ProfJob job);

} // namespace bench
