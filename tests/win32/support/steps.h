// Stops the process, or lets a file call fail, at a chosen step of what the DLL does to the disk.
#pragma once

#include "import_hook.h"

#include <type_traits>

namespace testing_prof {

// A step is one call of the DLL that can change the disk. What happens at a chosen step:
enum class Fault { None, Die, Fail };
inline Fault fault = Fault::None;
inline int faultAt = 0;
inline int steps = 0;

constexpr UINT kDied = 77; // the exit code

inline bool faultHere() {
    return ++steps == faultAt;
}

template <int Id, class Function>
struct Step;
template <int Id, class Result, class... Args>
struct Step<Id, Result(WINAPI*)(Args...)> {
    static inline Result(WINAPI* original)(Args...);

    static Result WINAPI call(Args... args) {
        if (!faultHere())
            return original(args...);
        if (fault == Fault::Die)
            TerminateProcess(GetCurrentProcess(), kDied);
        SetLastError(ERROR_DISK_FULL);
        if constexpr (std::is_same_v<Result, HANDLE>)
            return INVALID_HANDLE_VALUE;
        else
            return Result{};
    }
};

// A write that is interrupted has written its first half.
inline BOOL WINAPI writeHalf(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD done, LPOVERLAPPED overlapped) {
    if (!faultHere())
        return WriteFile(file, bytes, size, done, overlapped);
    WriteFile(file, bytes, size / 2, done, overlapped);
    if (fault == Fault::Die)
        TerminateProcess(GetCurrentProcess(), kDied);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

template <int Id, class Function>
ImportHook step(const char* name, Function function) {
    Step<Id, Function>::original = function;
    return ImportHook(name, reinterpret_cast<void*>(&Step<Id, Function>::call));
}

/// Counts the steps of what runs while it lives, with a fault at one of them.
class Steps {
  public:
    Steps(Fault what, int at) {
        fault = what;
        faultAt = at;
        steps = 0;
    }

  private:
    ImportHook hooks_[11] = {
        ImportHook("WriteFile", reinterpret_cast<void*>(writeHalf)),
        step<1>("CreateFileW", &CreateFileW),
        step<2>("SetEndOfFile", &SetEndOfFile),
        step<3>("SetFilePointerEx", &SetFilePointerEx),
        step<4>("FlushFileBuffers", &FlushFileBuffers),
        step<5>("MoveFileExW", &MoveFileExW),
        step<6>("ReplaceFileW", &ReplaceFileW),
        step<7>("GetTempFileNameW", &GetTempFileNameW),
        step<8>("SetFileInformationByHandle", &SetFileInformationByHandle),
        step<9>("CopyFileW", &CopyFileW),
        step<10>("CreateDirectoryW", &CreateDirectoryW),
    };
};

} // namespace testing_prof
