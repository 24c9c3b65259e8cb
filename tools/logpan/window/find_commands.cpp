// Going to a line: the next one with a text, the next bookmark.
#include "main_window.h"

#include "resource.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

constexpr std::chrono::milliseconds firstBudget{200}; // before the window goes on and finds bit by bit

} // namespace

void clsMainWindow::Find(bool backwards) {
    clsPattern wanted;
    try {
        wanted = bar_->Find();
    } catch (const scBadPattern& bad) {
        status_->Say(ToWide(bad.reason));
        return;
    }
    if (wanted.IsEmpty()) {
        bar_->GoTo(ID_FIND);
        return;
    }
    search_.Begin(lines_.size(), list_->FocusedRow(), backwards, [this, wanted](std::size_t row) {
        return wanted.IsIn(lines_[row]->text, false) || wanted.IsIn(lines_[row]->module, false);
    });
    GoOnFinding(firstBudget);
}

void clsMainWindow::GoOnFinding(std::chrono::milliseconds budget) {
    switch (search_.Advance(budget)) {
    case clsSearch::State::found:
        search_.Cancel();
        list_->Select(search_.Row());
        AfterScroll();
        Say();
        break;
    case clsSearch::State::notFound:
        search_.Cancel();
        status_->Say(L"Not found");
        break;
    case clsSearch::State::running:
        status_->Say(L"Finding...");
        break;
    case clsSearch::State::idle:
        break;
    }
}

void clsMainWindow::ToggleBookmark() {
    const std::optional<std::size_t> row = list_->FocusedRow();
    if (!row)
        return;
    marks_.bookmarks.Toggle(lines_.Number(*row));
    InvalidateRect(list_->Handle(), nullptr, FALSE);
}

void clsMainWindow::GoToBookmark(bool backwards) {
    search_.Begin(lines_.size(), list_->FocusedRow(), backwards,
                  [this](std::size_t row) { return marks_.bookmarks.Has(lines_.Number(row)); });
    GoOnFinding(firstBudget);
}

} // namespace tool::logpan
