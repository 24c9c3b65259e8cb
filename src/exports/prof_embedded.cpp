// Exports of the profile store: bytes of streams and files in items, and whole files in lists.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "platform/stream.h"
#include "prof/embedded_files.h"
#include "prof/path.h"
#include "text/bytes/byte_text.h"

#include <string>

using namespace tvut;

namespace {

// Calls the body of an export that appends. It has no result: a last error of 0 means success to its caller.
template <class Body>
void AppendWithReason(ProfJob handle, Body&& body) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return;
    const clsJobKeeper keeper(*job);
    const bool appended = UtilpGuardWithReason(false, [&] {
        body(*job);
        return true;
    });
    if (appended)
        SetLastError(ERROR_SUCCESS);
}

// The stream is the caller's code: it may close the job or delete the list while it is read.
template <class Char>
void AppendStream(ProfJob handle, ProfList listHandle, const Char* path, const Char* keyText,
                  IStream* stream) {
    AppendWithReason(handle, [&](clsProfJob& job) {
        RequireArguments(path, stream);
        const clsTextArgument<Char> name(path);
        const clsTextArgument<Char> key(keyText);
        RequireArguments(StartOf(job, listHandle, name.View()));
        clsStreamSource source(stream);
        const clsPackedBytes bytes = ProfpPackBytes(source, key.View());
        clsItemList* const list = StartOf(job, listHandle, name.View());
        RequireArguments(list);
        ProfpAppendBytes(*list, name.View(), bytes);
    });
}

template <class Char>
void AppendFile(ProfJob handle, ProfList listHandle, const Char* path, const Char* keyText,
                const Char* fileName) {
    AppendWithReason(handle, [&](clsProfJob& job) {
        RequireArguments(path, fileName);
        const clsTextArgument<Char> name(path);
        clsItemList* const list = StartOf(job, listHandle, name.View());
        RequireArguments(list);
        const std::u16string file(clsTextArgument<Char>(fileName).View());
        const clsTextArgument<Char> key(keyText);
        ProfpAppendBytes(*list, name.View(), ProfpPackFile(file, key.View()));
    });
}

// Calls write with the text and the key of an item; it throws unless the bytes are where they belong.
template <class Char, class Write>
INT GetBytes(ProfJob handle, ProfList listHandle, const Char* path, const Char* keyText, Write write) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return PROF_OK;
    const clsJobKeeper keeper(*job);
    return UtilpGuardWithReason(PROF_DECODE_FAILED, [&]() -> INT {
        const clsItem* const item = FindItem(*job, listHandle, path);
        if (!item)
            return PROF_NOT_FOUND;
        const clsTextKeeper text(job->Tree(), item->value);
        write(text.View(), clsTextArgument<Char>(keyText).View());
        return PROF_OK;
    });
}

template <class Char>
INT GetStream(ProfJob job, ProfList list, const Char* path, const Char* keyText, IStream* stream) {
    return GetBytes(job, list, path, keyText, [stream](std::u16string_view text, std::u16string_view key) {
        RequireArguments(stream);
        clsStreamSink sink(stream);
        ProfpWriteBytes(text, key, sink);
    });
}

template <class Char>
INT GetFile(ProfJob job, ProfList list, const Char* path, const Char* keyText, const Char* fileName) {
    return GetBytes(job, list, path, keyText, [fileName](std::u16string_view text, std::u16string_view key) {
        RequireArguments(fileName);
        ProfpWriteFile(std::u16string(clsTextArgument<Char>(fileName).View()), text, key);
    });
}

// What AppendFiles and ExtractFiles share: a list, a text about files and a key.
template <class Char>
INT WithFiles(void (*work)(clsItemList&, std::u16string_view, std::u16string_view), ProfJob handle,
              ProfList listHandle, const Char* files, const Char* keyText, INT failure) {
    if (!handle)
        return PROF_OK;
    clsItemList* const list = ListOf(handle, listHandle);
    if (!list)
        return PROF_NOT_FOUND;
    return UtilpGuardWithReason(failure, [&] {
        const clsTextArgument<Char> key(keyText);
        work(*list, clsTextArgument<Char>(files).View(), key.View());
        return PROF_OK;
    });
}

} // namespace

void TVUT22_CALL ProfAppendStreamA(ProfJob job, ProfList list, const char* path, const char* key,
                                   IStream* stream) {
    AppendStream(job, list, path, key, stream);
}
void TVUT22_CALL ProfAppendStreamW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                                   IStream* stream) {
    AppendStream(job, list, path, key, stream);
}

INT TVUT22_CALL ProfGetStreamA(ProfJob job, ProfList list, const char* path, const char* key,
                               IStream* stream) {
    return GetStream(job, list, path, key, stream);
}
INT TVUT22_CALL ProfGetStreamW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                               IStream* stream) {
    return GetStream(job, list, path, key, stream);
}

void TVUT22_CALL ProfAppendFileA(ProfJob job, ProfList list, const char* path, const char* key,
                                 const char* fileName) {
    AppendFile(job, list, path, key, fileName);
}
void TVUT22_CALL ProfAppendFileW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                                 const wchar_t* fileName) {
    AppendFile(job, list, path, key, fileName);
}

INT TVUT22_CALL ProfGetFileA(ProfJob job, ProfList list, const char* path, const char* key,
                             const char* fileName) {
    return GetFile(job, list, path, key, fileName);
}
INT TVUT22_CALL ProfGetFileW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* key,
                             const wchar_t* fileName) {
    return GetFile(job, list, path, key, fileName);
}

INT TVUT22_CALL ProfAppendFilesA(ProfJob job, ProfList list, const char* files, const char* key) {
    return WithFiles(ProfpAppendFiles, job, list, files, key, PROF_CONVERT_FAILED);
}
INT TVUT22_CALL ProfAppendFilesW(ProfJob job, ProfList list, const wchar_t* files, const wchar_t* key) {
    return WithFiles(ProfpAppendFiles, job, list, files, key, PROF_CONVERT_FAILED);
}

INT TVUT22_CALL ProfExtractFilesA(ProfJob job, ProfList list, const char* folder, const char* key) {
    return WithFiles(ProfpExtractFiles, job, list, folder, key, PROF_SAVE_FAILED);
}
INT TVUT22_CALL ProfExtractFilesW(ProfJob job, ProfList list, const wchar_t* folder, const wchar_t* key) {
    return WithFiles(ProfpExtractFiles, job, list, folder, key, PROF_SAVE_FAILED);
}
