// Writes a temporary file beside the target, which then takes its place.
#include "save_lines.h"

#include "columns.h"
#include "exit_code.h"
#include "owned.h"
#include "system_reason.h"
#include "text_io.h"

namespace tool::logpan {

namespace {

constexpr std::size_t pieceSize = 64 * 1024;

[[noreturn]] void fail(const std::wstring& path, DWORD error) {
    throw Failure{ExitCode::cannotSave, toUtf8(path), systemReason(error)};
}

class TemporaryFile {
  public:
    explicit TemporaryFile(const std::wstring& target) : target_(target), path_(target + L".tmp") {
        file_ = fileHandle(CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file_)
            fail(target_, GetLastError());
    }
    ~TemporaryFile() {
        if (!file_)
            return;
        file_.reset();
        DeleteFileW(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(const std::string& bytes) {
        DWORD written = 0;
        if (!WriteFile(file_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
            fail(target_, GetLastError());
        if (written != bytes.size())
            fail(target_, ERROR_DISK_FULL);
    }

    void takePlace() {
        file_.reset();
        if (MoveFileExW(path_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING))
            return;
        const DWORD error = GetLastError();
        DeleteFileW(path_.c_str());
        fail(target_, error);
    }

  private:
    std::wstring target_;
    std::wstring path_;
    Handle file_;
};

bool isJson(const std::wstring& path) {
    constexpr std::wstring_view ending = L".json";
    return path.size() >= ending.size() &&
           _wcsicmp(path.c_str() + path.size() - ending.size(), ending.data()) == 0;
}

} // namespace

void saveLines(const ShownLines& lines, const std::wstring& path) {
    const bool json = isJson(path);
    TemporaryFile file{path};
    std::string piece;
    for (std::size_t row = 0; row < lines.size(); ++row) {
        piece += json ? toUtf8(jsonLine(*lines[row])) + "\n" : toUtf8(plainLine(*lines[row])) + "\r\n";
        if (piece.size() >= pieceSize) {
            file.write(piece);
            piece.clear();
        }
    }
    file.write(piece);
    file.takePlace();
}

} // namespace tool::logpan
