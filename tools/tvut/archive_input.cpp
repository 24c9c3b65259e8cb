#include "archive_input.h"

#include "text_io.h"

namespace tool::tvut {

clsArchiveInput::clsArchiveInput(const std::string& archive) : path_(toWide(archive)), subject_(archive) {
    if (archive != "-")
        return;
    copy_.emplace(clsTemporary::Kind::file);
    CopyInputTo(copy_->Path());
    path_ = copy_->Path();
    subject_ = "standard input";
}

} // namespace tool::tvut
