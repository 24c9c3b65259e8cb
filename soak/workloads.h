// The workloads, one a file, and the parts that their child processes play.
#pragma once

#include "run.h"

#include <span>

namespace soak {

void RunArchives(clsRun& run);
void RunCrowd(clsRun& run);
void RunHeaps(clsRun& run);
void RunKills(clsRun& run);
void RunLoading(clsRun& run);
void RunLowMemory(clsRun& run);
void RunSmallDisk(clsRun& run);

// Each takes the words after its name; what it returns is the process's exit code.
int PlayCrowd(std::span<char*> words);
int PlayPacker(std::span<char*> words);
int PlaySaver(std::span<char*> words);
int PlayUnpacker(std::span<char*> words);

} // namespace soak
