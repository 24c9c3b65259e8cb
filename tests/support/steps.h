// Stops the process, or lets a file call fail, at a chosen Step of what the DLL does to the disk.
#pragma once

#include "support/import_hook.h"

#include <type_traits>

namespace testing_prof {

// A Step is one call of the DLL that can change the disk. What happens at a chosen Step:
enum class Fault { None, Die, Fail };
inline Fault fault = Fault::None;
inline int faultAt = 0;
inline int steps = 0;

constexpr UINT diedCode = 77; // the exit code

inline bool FaultHere() {
    return ++steps == faultAt;
}

template <int Id, class Function>
struct scStep;
template <int Id, class Result, class... Args>
struct scStep<Id, Result(WINAPI*)(Args...)> {
    static inline Result(WINAPI* original)(Args...);

    static Result WINAPI Call(Args... args) {
        if (!FaultHere())
            return original(args...);
        if (fault == Fault::Die)
            TerminateProcess(GetCurrentProcess(), diedCode);
        SetLastError(ERROR_DISK_FULL);
        if constexpr (std::is_same_v<Result, HANDLE>)
            return INVALID_HANDLE_VALUE;
        else
            return Result{};
    }
};

// A write that is interrupted has written its first half.
inline BOOL WINAPI WriteHalf(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD done, LPOVERLAPPED overlapped) {
    if (!FaultHere())
        return WriteFile(file, bytes, size, done, overlapped);
    WriteFile(file, bytes, size / 2, done, overlapped);
    if (fault == Fault::Die)
        TerminateProcess(GetCurrentProcess(), diedCode);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

template <int Id, class Function>
clsImportHook Step(const char* name, Function function) {
    scStep<Id, Function>::original = function;
    return clsImportHook(name, reinterpret_cast<void*>(&scStep<Id, Function>::Call));
}

// Counts the steps of what runs while it lives, with a fault at one of them.
class clsSteps {
  public:
    clsSteps(Fault what, int at) {
        fault = what;
        faultAt = at;
        steps = 0;
    }

  private:
    clsImportHook hooks_[11] = {
        clsImportHook("WriteFile", reinterpret_cast<void*>(WriteHalf)),
        Step<1>("CreateFileW", &CreateFileW),
        Step<2>("SetEndOfFile", &SetEndOfFile),
        Step<3>("SetFilePointerEx", &SetFilePointerEx),
        Step<4>("FlushFileBuffers", &FlushFileBuffers),
        Step<5>("MoveFileExW", &MoveFileExW),
        Step<6>("ReplaceFileW", &ReplaceFileW),
        Step<7>("GetTempFileNameW", &GetTempFileNameW),
        Step<8>("SetFileInformationByHandle", &SetFileInformationByHandle),
        Step<9>("CopyFileW", &CopyFileW),
        Step<10>("CreateDirectoryW", &CreateDirectoryW),
    };
};

} // namespace testing_prof
