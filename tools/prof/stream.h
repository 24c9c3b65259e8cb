// IStream objects: what the library reads plain INI files and standard input from, and saves to.
#pragma once

#include <objidl.h>

#include <memory>
#include <string>
#include <string_view>

namespace tool::prof {

struct scReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};

using StreamPtr = std::unique_ptr<IStream, scReleaseObject>;

// A stream in memory that holds a copy of the bytes and stands at its start.
StreamPtr MemoryStream(std::string_view bytes);

// A file as a stream for reading; throws Failure.
StreamPtr FileStream(const std::wstring& path, const std::string& subject);

// Everything that a stream of memoryStream holds.
std::string ContentsOf(IStream& stream);

} // namespace tool::prof
