#include "archive_input.h"

#include "exit_code.h"
#include "system_reason.h"
#include "text_io.h"

#include <windows.h>

namespace tool::tvut {

namespace {

void RequireFile(const std::wstring& path, const std::string& archive) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        throw scFailure{ExitCode::cannotOpen, archive, SystemReason(GetLastError())};
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        throw scFailure{ExitCode::cannotOpen, archive, "is a folder"};
}

} // namespace

clsArchiveInput::clsArchiveInput(const std::string& archive) : path_(ToWide(archive)), subject_(archive) {
    if (archive != "-") {
        RequireFile(path_, archive);
    } else {
        copy_.emplace(clsTemporary::Kind::file);
        CopyInputTo(copy_->Path());
        path_ = copy_->Path();
        subject_ = "standard input";
    }
}

} // namespace tool::tvut
