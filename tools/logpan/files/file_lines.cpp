// One file after the other.
#include "file_lines.h"

#include "exit_code.h"
#include "log_file.h"
#include "text_io.h"

#include <new>

namespace tool::logpan {

clsFileLines::clsFileLines(std::vector<std::wstring> paths) : paths_(std::move(paths)) {
    const std::wstring first = paths_.front().substr(paths_.front().find_last_of(L"\\/") + 1);
    title_ = paths_.size() == 1 ? first : first + L" and " + std::to_wstring(paths_.size() - 1) + L" more";
    thread_ = std::thread{[this] { Read(); }};
}

clsFileLines::~clsFileLines() {
    stopping_ = true;
    thread_.join();
}

std::wstring clsFileLines::Title() const {
    const std::lock_guard lock{mutex_};
    return title_;
}

void clsFileLines::SetTitle(std::wstring title) {
    const std::lock_guard lock{mutex_};
    title_ = std::move(title);
}

void clsFileLines::Read() {
    try {
        for (const std::wstring& path : paths_)
            ReadLogFile(path, stopping_, [this](scLine&& line) { store_.AddLine(std::move(line)); });
    } catch (const scFailure& failure) {
        SetTitle(ToWide(failure.subject + ": " + failure.reason));
    } catch (const std::bad_alloc&) {
        SetTitle(L"Out of memory");
    }
}

} // namespace tool::logpan
