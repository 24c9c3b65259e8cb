// One open profile: from a file in whatever form, or standard input, and saved again.
#pragma once

#include "exit_code.h"

#include <tvut22/prof.h>

#include <memory>
#include <string>
#include <string_view>

namespace tool::prof {

// The name that stands for standard input or output.
inline constexpr const char* standardStream = "-";

// The name of a file in messages.
std::string DisplayName(const std::string& name);

// All of standard input, read by the first call.
const std::string& StandardInput();

// What to say of a file that cannot be saved.
scFailure WhyNotSaved(const std::string& name);

struct scCloseJob {
    void operator()(ProfJob job) const { ProfJobClose(job); }
};
using JobPtr = std::unique_ptr<ProfJobObject, scCloseJob>;

class clsProfile {
  public:
    // Throws std::bad_alloc for none.
    explicit clsProfile(JobPtr job);

    // Opens and loads; throws Failure with cannotOpen or malformed. A plain INI file is known by its name,
    // its contents or the caller's word; standard error says so when only the contents show it, and what was
    // not read.
    static clsProfile Open(const std::string& name, bool plainIni);

    // Opens a file that is there, and keeps others from changing it while the profile lives; waits for those
    // who do so. Throws Failure, also for contents that are not read to the end.
    static clsProfile OpenHeld(const std::string& name);

    // A profile's bytes; name is for messages, the flags are PROF_READ_...
    static clsProfile OfBytes(std::string_view bytes, const std::string& name, UINT flags);

    // A profile with nothing in it.
    static clsProfile MakeEmpty();

    // Throws Failure with notFound when there is none, or malformed.
    static clsProfile FromClipboard();

    ProfJob Job() const { return job_.get(); }

    // Everything that is in it, without a file.
    clsProfile Copy() const;

    // Saves to a file or standard output; throws Failure with cannotSave.
    void Save(const std::string& name, UINT flags) const;

  private:
    void SaveToStandardOutput(UINT flags) const;

    JobPtr job_;
};

} // namespace tool::prof
