// The table of the system's calls, and the structures that they take. For platform/bare_system alone.
//
// Names and layouts are those of the system's own library, ntdll, as its headers and the documentation of the
// driver kit have them.
#pragma once

#include <cstdint>
#include <windows.h>

namespace tvut {

struct scNativeText {
    USHORT length; // bytes
    USHORT room;   // bytes
    wchar_t* text;
};

struct scNativeObject {
    ULONG size;
    HANDLE root;
    const scNativeText* name;
    ULONG attributes;
    void* security;
    void* quality;
};

struct scNativeResult {
    std::int32_t status;
    ULONG_PTR information;
};

struct scNativeClient {
    HANDLE process;
    HANDLE thread;
};

using NativeStatus = std::int32_t;

// One member a call, in the order of bare_start.cpp's names.
struct scBareCalls {
    NativeStatus(NTAPI* createFile)(HANDLE*, ULONG access, const scNativeObject*, scNativeResult*,
                                    LARGE_INTEGER* size, ULONG attributes, ULONG share, ULONG disposition,
                                    ULONG options, void*, ULONG);
    NativeStatus(NTAPI* writeFile)(HANDLE, HANDLE, void*, void*, scNativeResult*, const void*, ULONG,
                                   LARGE_INTEGER* offset, ULONG*);
    NativeStatus(NTAPI* flushFile)(HANDLE, scNativeResult*);
    NativeStatus(NTAPI* setFile)(HANDLE, scNativeResult*, void*, ULONG, ULONG kind);
    NativeStatus(NTAPI* queryFile)(HANDLE, scNativeResult*, void*, ULONG, ULONG kind);
    NativeStatus(NTAPI* close)(HANDLE);
    NativeStatus(NTAPI* createSection)(HANDLE*, ULONG access, const scNativeObject*, LARGE_INTEGER*,
                                       ULONG protection, ULONG attributes, HANDLE file);
    NativeStatus(NTAPI* mapView)(HANDLE section, HANDLE process, void** base, ULONG_PTR zeroBits,
                                 SIZE_T commit, LARGE_INTEGER* offset, SIZE_T* size, ULONG inherit,
                                 ULONG kind, ULONG protection);
    NativeStatus(NTAPI* unmapView)(HANDLE process, void* base);
    NativeStatus(NTAPI* queryMemory)(HANDLE process, const void*, ULONG kind, void*, SIZE_T, SIZE_T*);
    NativeStatus(NTAPI* readMemory)(HANDLE process, const void*, void*, SIZE_T, SIZE_T*);
    NativeStatus(NTAPI* querySystem)(ULONG kind, void*, ULONG, ULONG*);
    NativeStatus(NTAPI* queryTime)(LARGE_INTEGER*);
    NativeStatus(NTAPI* openThread)(HANDLE*, ULONG access, const scNativeObject*, const scNativeClient*);
    NativeStatus(NTAPI* queryThread)(HANDLE, ULONG kind, void*, ULONG, ULONG*);
    NativeStatus(NTAPI* suspendThread)(HANDLE, ULONG*);
    NativeStatus(NTAPI* resumeThread)(HANDLE, ULONG*);
    NativeStatus(NTAPI* getContext)(HANDLE, CONTEXT*);
    NativeStatus(NTAPI* setEvent)(HANDLE, LONG*);
    NativeStatus(NTAPI* resetEvent)(HANDLE, LONG*);
    NativeStatus(NTAPI* wait)(HANDLE, BOOLEAN alertable, const LARGE_INTEGER*);
    NativeStatus(NTAPI* endProcess)(HANDLE, NativeStatus);
    BOOLEAN(NTAPI* shutsDown)();
};

extern scBareCalls g_bareCalls;

} // namespace tvut
