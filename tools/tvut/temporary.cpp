#include "temporary.h"

#include "exit_code.h"
#include "interrupt.h"
#include "owned.h"
#include "system_reason.h"
#include "text_io.h"

#include <tvut22/files.h>

#include <windows.h>

#include <oleauto.h>

#include <vector>

namespace tool::tvut {

namespace {

clsHandle Open(const std::wstring& path, DWORD access) {
    clsHandle file =
        FileHandle(CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file)
        throw scFailure{ExitCode::cannotOpen, "temporary file", SystemReason(GetLastError())};
    return file;
}

constexpr DWORD pieceBytes = 64 * 1024;

} // namespace

clsTemporary::clsTemporary(Kind kind) {
    BSTR path = nullptr;
    const UINT flags = kind == Kind::folder ? UTIL_TEMP_FOLDER : 0;
    if (UtilTempFileCreate(nullptr, L"archive.zip", flags, &path) != UTIL_OK)
        throw scFailure{ExitCode::cannotSave, "temporary file", "cannot be made"};
    path_.assign(path, SysStringLen(path));
    SysFreeString(path);
}

clsTemporary::~clsTemporary() {
    UtilTempFileRelease(path_.c_str(), FALSE);
}

void CopyInputTo(const std::wstring& path) {
    const clsHandle file = Open(path, GENERIC_WRITE);
    std::vector<char> piece(pieceBytes);
    for (;;) {
        StopIfInterrupted();
        DWORD count = 0, written = 0;
        if (!ReadFile(GetStdHandle(STD_INPUT_HANDLE), piece.data(), pieceBytes, &count, nullptr) &&
            GetLastError() != ERROR_BROKEN_PIPE) // the writer's end of a pipe was closed: the end
            throw scFailure{ExitCode::cannotOpen, "standard input", SystemReason(GetLastError())};
        if (count == 0)
            return StopIfInterrupted(); // which may have ended the reading
        if (!WriteFile(file.get(), piece.data(), count, &written, nullptr))
            throw scFailure{ExitCode::cannotSave, "temporary file", SystemReason(GetLastError())};
    }
}

void CopyToOutput(const std::wstring& path) {
    const clsHandle file = Open(path, GENERIC_READ);
    std::vector<char> piece(pieceBytes);
    for (;;) {
        StopIfInterrupted();
        DWORD count = 0;
        if (!ReadFile(file.get(), piece.data(), pieceBytes, &count, nullptr))
            throw scFailure{ExitCode::cannotOpen, "temporary file", SystemReason(GetLastError())};
        if (count == 0)
            return;
        clsOutput::Standard().WriteDocument({piece.data(), count});
    }
}

} // namespace tool::tvut
