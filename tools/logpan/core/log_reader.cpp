// A row is what stands between two line feeds. Each form is recognised by itself, so files may be mixed.
#include "log_reader.h"

#include "finish_line.h"
#include "saved_line.h"
#include "text_message.h"

#include <algorithm>
#include <utility>

namespace tool::logpan {

namespace {

constexpr std::size_t longestRow = 8 * longestLine; // JSON escapes may need six characters for one

std::wstring_view WithoutReturns(std::wstring_view row) {
    return row.substr(0, row.find_last_not_of(L'\r') + 1);
}

} // namespace

void clsLogReader::Add(std::wstring_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\n'), text.size());
        const std::wstring_view piece = text.substr(0, end);
        if (end == text.size()) { // the row goes on in the next piece
            rest_ += piece;
            if (rest_.size() > longestRow)
                AddRow(std::exchange(rest_, {}));
            return;
        }
        text.remove_prefix(end + 1);
        AddRow(rest_.empty() ? piece : std::wstring_view{rest_ += piece});
        rest_.clear();
    }
}

void clsLogReader::End() {
    AddRow(rest_);
    rest_.clear();
    GiveOut();
}

void clsLogReader::AddRow(std::wstring_view row) {
    row = WithoutReturns(row);
    if (row.empty())
        return;
    std::optional<scLine> saved = row.starts_with(L'{') ? ParseJsonLine(row) : ParsePlainLine(row);
    if (saved) {
        GiveOut();
        saved->process = Known(saved->process);
        take_(std::move(*saved));
        return;
    }
    std::optional<scLine> logged = ParseTextMessage(row);
    if (!logged && log_ && log_->text.size() + row.size() < longestLine) {
        log_->text.append(L"\n").append(row);
        return;
    }
    GiveOut();
    if (logged) {
        log_ = std::move(logged);
        return;
    }
    scLine plain;
    plain.time = noTime;
    plain.text = row;
    FinishLine(plain);
    take_(std::move(plain));
}

void clsLogReader::GiveOut() {
    if (!log_)
        return;
    FinishLine(*log_);
    hosts_.TakeFrom(*log_);
    take_(std::move(*log_));
    log_.reset();
}

// Lines of one process share it.
ProcessPtr clsLogReader::Known(const ProcessPtr& process) {
    if (process == nullptr || process_ == nullptr || process->id != process_->id ||
        process->name != process_->name)
        process_ = process;
    return process_;
}

} // namespace tool::logpan
