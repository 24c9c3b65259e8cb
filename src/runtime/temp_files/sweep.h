// What processes that are gone have left in their temporary folders.
#pragma once

namespace tvut {

// Removes the folders of dead processes beside our own, for 2 seconds at most: those named as own_folder.h
// says that belong to the process's user and are no links. A process is dead when its lock can be opened, or
// when there is none and the folder was not written to for an hour. Each one removed is reported in a
// diagnostic line.
void UtilpSweepTempFolders() noexcept;

} // namespace tvut
