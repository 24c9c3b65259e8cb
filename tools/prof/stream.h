// IStream objects: what the library reads plain INI files and standard input from, and saves to.
#ifndef PROF_TOOL_STREAM_H
#define PROF_TOOL_STREAM_H

#include <objidl.h>

#include <memory>
#include <string>
#include <string_view>

namespace tool::prof {

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};

using StreamPtr = std::unique_ptr<IStream, ReleaseObject>;

// A stream in memory that holds a copy of the bytes and stands at its start.
StreamPtr memoryStream(std::string_view bytes);

// A file as a stream for reading; throws Failure.
StreamPtr fileStream(const std::wstring& path, const std::string& subject);

// Everything that a stream of memoryStream holds.
std::string contentsOf(IStream& stream);

} // namespace tool::prof

#endif
