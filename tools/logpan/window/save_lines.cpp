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

[[noreturn]] void Fail(const std::wstring& path, DWORD error) {
    throw scFailure{ExitCode::cannotSave, ToUtf8(path), SystemReason(error)};
}

class clsTemporaryFile {
  public:
    // Under a name that nobody has: a file that is there belongs to somebody.
    explicit clsTemporaryFile(const std::wstring& target) : target_(target) {
        constexpr int mostNames = 1000;
        for (int number = 1; !file_; ++number) {
            path_ = target + L"." + std::to_wstring(number) + L".tmp";
            file_ = FileHandle(CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                           FILE_ATTRIBUTE_NORMAL, nullptr));
            if (!file_ && (GetLastError() != ERROR_FILE_EXISTS || number == mostNames))
                Fail(target_, GetLastError());
        }
    }
    ~clsTemporaryFile() {
        if (!file_)
            return;
        file_.reset();
        DeleteFileW(path_.c_str());
    }
    clsTemporaryFile(const clsTemporaryFile&) = delete;
    clsTemporaryFile& operator=(const clsTemporaryFile&) = delete;

    void Write(const std::string& bytes) {
        DWORD written = 0;
        if (!WriteFile(file_.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
            Fail(target_, GetLastError());
        if (written != bytes.size())
            Fail(target_, ERROR_DISK_FULL);
    }

    void TakePlace() {
        file_.reset();
        if (MoveFileExW(path_.c_str(), target_.c_str(), MOVEFILE_REPLACE_EXISTING))
            return;
        const DWORD error = GetLastError();
        DeleteFileW(path_.c_str());
        Fail(target_, error);
    }

  private:
    std::wstring target_;
    std::wstring path_;
    clsHandle file_;
};

bool IsJson(const std::wstring& path) {
    constexpr std::wstring_view ending = L".json";
    return path.size() >= ending.size() &&
           _wcsicmp(path.c_str() + path.size() - ending.size(), ending.data()) == 0;
}

} // namespace

void SaveLines(const clsShownLines& lines, const std::wstring& path) {
    const bool json = IsJson(path);
    clsTemporaryFile file{path};
    std::string piece;
    for (std::size_t row = 0; row < lines.size(); ++row) {
        piece += json ? ToUtf8(JsonLine(*lines[row])) + "\n" : ToUtf8(PlainLine(*lines[row])) + "\r\n";
        if (piece.size() >= pieceSize) {
            file.Write(piece);
            piece.clear();
        }
    }
    file.Write(piece);
    file.TakePlace();
}

} // namespace tool::logpan
