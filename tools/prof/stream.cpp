// Streams from the system: over a block of memory and over a file.
#include "stream.h"

#include "exit_code.h"
#include "file_access.h"
#include "system_reason.h"

#include <windows.h>

#include <shlwapi.h>

#include <limits>
#include <new>

namespace tool::prof {

namespace {

void check(HRESULT result) {
    if (FAILED(result))
        throw std::bad_alloc{};
}

ULARGE_INTEGER position(std::size_t bytes) {
    ULARGE_INTEGER result;
    result.QuadPart = bytes;
    return result;
}

} // namespace

StreamPtr memoryStream(std::string_view bytes) {
    IStream* raw = nullptr;
    check(CreateStreamOnHGlobal(nullptr, TRUE, &raw));
    StreamPtr stream{raw};
    if (!bytes.empty()) {
        check(stream->SetSize(position(bytes.size()))); // once, instead of growing while it is written
        check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
        check(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    }
    return stream;
}

StreamPtr fileStream(const std::wstring& path, const std::string& subject) {
    if (const std::string reason = whyNotReadable(path); !reason.empty())
        throw Failure{ExitCode::cannotOpen, subject, reason};
    IStream* raw = nullptr;
    const HRESULT result = SHCreateStreamOnFileEx(path.c_str(), STGM_READ | STGM_SHARE_DENY_NONE,
                                                  FILE_ATTRIBUTE_NORMAL, FALSE, nullptr, &raw);
    if (FAILED(result))
        throw Failure{ExitCode::cannotOpen, subject, systemReason(HRESULT_CODE(result))};
    return StreamPtr{raw};
}

std::string contentsOf(IStream& stream) {
    STATSTG facts{};
    check(stream.Stat(&facts, STATFLAG_NONAME));
    if (facts.cbSize.QuadPart > std::numeric_limits<LONG>::max())
        throw std::bad_alloc{};
    std::string bytes(facts.cbSize.LowPart, '\0');
    ULONG count = 0;
    check(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    check(stream.Read(bytes.data(), facts.cbSize.LowPart, &count));
    bytes.resize(count);
    return bytes;
}

} // namespace tool::prof
