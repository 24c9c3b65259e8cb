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

void Check(HRESULT result) {
    if (FAILED(result))
        throw std::bad_alloc{};
}

ULARGE_INTEGER Position(std::size_t bytes) {
    ULARGE_INTEGER result;
    result.QuadPart = bytes;
    return result;
}

} // namespace

StreamPtr MemoryStream(std::string_view bytes) {
    IStream* raw = nullptr;
    Check(CreateStreamOnHGlobal(nullptr, TRUE, &raw));
    StreamPtr stream{raw};
    if (!bytes.empty()) {
        Check(stream->SetSize(Position(bytes.size()))); // once, instead of growing while it is written
        Check(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr));
        Check(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    }
    return stream;
}

StreamPtr FileStream(const std::wstring& path, const std::string& subject) {
    if (const std::string reason = WhyNotReadable(path); !reason.empty())
        throw scFailure{ExitCode::cannotOpen, subject, reason};
    IStream* raw = nullptr;
    const HRESULT result = SHCreateStreamOnFileEx(path.c_str(), STGM_READ | STGM_SHARE_DENY_NONE,
                                                  FILE_ATTRIBUTE_NORMAL, FALSE, nullptr, &raw);
    if (FAILED(result))
        throw scFailure{ExitCode::cannotOpen, subject, SystemReason(HRESULT_CODE(result))};
    return StreamPtr{raw};
}

std::string ContentsOf(IStream& stream) {
    STATSTG facts{};
    Check(stream.Stat(&facts, STATFLAG_NONAME));
    if (facts.cbSize.QuadPart > std::numeric_limits<LONG>::max())
        throw std::bad_alloc{};
    std::string bytes(facts.cbSize.LowPart, '\0');
    ULONG count = 0;
    Check(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    Check(stream.Read(bytes.data(), facts.cbSize.LowPart, &count));
    bytes.resize(count);
    return bytes;
}

} // namespace tool::prof
