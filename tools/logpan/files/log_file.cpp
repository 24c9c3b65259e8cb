// Reads piece by piece, and converts what ends at a line feed: no character stands across that. A piece is
// mostly UTF-8 as a whole. Where it is not, each of its lines is asked by itself, for programs of two kinds
// may write to one file.
#include "log_file.h"

#include "exit_code.h"
#include "owned.h"
#include "system_reason.h"
#include "text_io.h"

#include <algorithm>

namespace tool::logpan {

namespace {

constexpr std::size_t pieceSize = 256 * 1024;
constexpr std::size_t mostWaiting = 4 * pieceSize; // for the end of a line
constexpr std::string_view utf8Mark = "\xef\xbb\xbf";
constexpr std::string_view utf16Mark = "\xff\xfe";

bool Convert(UINT codePage, DWORD flags, std::string_view bytes, std::wstring& text) {
    text.resize(bytes.size());
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), size);
    text.resize(static_cast<std::size_t>(length));
    return length > 0 || bytes.empty();
}

// How many bytes stand before the last character, of which the rest may not have been read.
std::size_t BeforeLastCharacter(std::string_view utf8) {
    constexpr std::size_t longestCharacter = 4;
    std::size_t at = utf8.size() - 1;
    while (at > 0 && utf8.size() - at < longestCharacter && (utf8[at] & 0xC0) == 0x80)
        --at;
    return at;
}

// The bytes of a file as text, whatever pieces they come in.
class clsDecoder {
  public:
    explicit clsDecoder(clsLogReader& reader) : reader_(reader) {}

    void Add(std::string_view bytes) {
        rest_ += bytes;
        if (!begun_ && rest_.size() >= utf8Mark.size())
            Begin();
        if (begun_)
            Decode(Whole());
    }

    void End() {
        if (!begun_)
            Begin();
        Decode(rest_.size());
        reader_.End();
    }

  private:
    void Begin() {
        begun_ = true;
        wide_ = rest_.starts_with(utf16Mark);
        if (wide_)
            rest_.erase(0, utf16Mark.size());
        else if (rest_.starts_with(utf8Mark))
            rest_.erase(0, utf8Mark.size());
    }

    // How many bytes are whole lines, or whole characters where a line does not end.
    std::size_t Whole() const {
        if (wide_)
            return rest_.size() / sizeof(wchar_t) * sizeof(wchar_t);
        if (const std::size_t end = rest_.rfind('\n'); end != std::string::npos)
            return end + 1;
        return rest_.size() > mostWaiting ? BeforeLastCharacter(rest_) : 0;
    }

    void Decode(std::size_t length) {
        const std::string_view bytes = std::string_view{rest_}.substr(0, length);
        if (wide_)
            reader_.Add({reinterpret_cast<const wchar_t*>(bytes.data()), length / sizeof(wchar_t)});
        else if (Convert(CP_UTF8, MB_ERR_INVALID_CHARS, bytes, text_))
            reader_.Add(text_);
        else
            DecodeLines(bytes);
        rest_.erase(0, length);
    }

    void DecodeLines(std::string_view bytes) {
        while (!bytes.empty()) {
            const std::string_view line = bytes.substr(0, std::min(bytes.find('\n'), bytes.size() - 1) + 1);
            if (!Convert(CP_UTF8, MB_ERR_INVALID_CHARS, line, text_))
                Convert(CP_ACP, 0, line, text_);
            reader_.Add(text_);
            bytes.remove_prefix(line.size());
        }
    }

    clsLogReader& reader_;
    std::string rest_;
    std::wstring text_;
    bool begun_ = false;
    bool wide_ = false;
};

[[noreturn]] void Fail(const std::wstring& path) {
    const DWORD error = GetLastError();
    throw scFailure{ExitCode::cannotOpen, ToUtf8(path), SystemReason(error)};
}

} // namespace

void ReadLogFile(const std::wstring& path, const std::atomic<bool>& stop, clsLogReader::Take take) {
    const clsHandle file = FileHandle(
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file)
        Fail(path);
    clsLogReader reader{std::move(take)};
    clsDecoder decoder{reader};
    std::string piece(pieceSize, '\0');
    for (DWORD count = 1; count > 0 && !stop;) {
        if (!ReadFile(file.get(), piece.data(), static_cast<DWORD>(pieceSize), &count, nullptr))
            Fail(path);
        decoder.Add({piece.data(), count});
    }
    decoder.End();
}

} // namespace tool::logpan
