// Ctrl+C, a closed console and the like: what is under way is given up, cleaned up after, and the process
// ends with its exit code for it.
#pragma once

namespace tool::tvut {

// From here on for the whole process.
void WatchForInterrupt();

bool IsInterrupted();

// Throws Failure.
void StopIfInterrupted();

} // namespace tool::tvut
