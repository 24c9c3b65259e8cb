// What tests and fuzzers of document properties share: documents in memory, and their properties as one text.
#pragma once

#include "docinfo/detect.h"
#include "text/encoding/utf8.h"
#include "unit/native_platform.h"

#include <string>
#include <string_view>

namespace tvut {

// Counts what is read of it; fails at a chosen read, counted from 1.
class clsMemoryDocument final : public clsRandomSource {
  public:
    explicit clsMemoryDocument(std::string_view document, unsigned failingRead = 0)
        : bytes_(document), failingRead_(failingRead) {}
    std::uint64_t Size() override { return bytes_.size(); }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t count) override {
        if (++reads == failingRead_)
            throw clsException("document cannot be read", reason::readFault);
        const std::size_t given = position >= bytes_.size() ? 0
                                                            : bytes_.copy(static_cast<char*>(buffer), count,
                                                                          static_cast<std::size_t>(position));
        read += given;
        return given;
    }

    unsigned reads = 0;
    std::uint64_t read = 0;

  private:
    std::string_view bytes_;
    unsigned failingRead_;
};

inline std::string Utf8(std::u16string_view text) {
    std::string bytes(text.size() * longestUtf8, '\0');
    bytes.resize(UtilpEncodeUtf8(text, bytes.data()));
    return bytes;
}

// Name=value, one a line; line ends within values as \n.
inline std::string Properties(const clsDocInfo& info) {
    std::string text;
    const std::u16string names = info.Names();
    for (std::size_t at = 0; at < names.size();) {
        const std::size_t end = std::min(names.find(u'\n', at), names.size());
        const std::u16string name = names.substr(at, end - at);
        text += Utf8(name) + "=";
        for (const char c : Utf8(info.Find(name).value()))
            text += c == '\n' ? std::string("\\n") : std::string(1, c);
        text += '\n';
        at = end + 1;
    }
    return text;
}

// The properties of a document; empty when it is none.
inline std::string Properties(clsRandomSource& document) {
    clsDocInfo info;
    DiagnosticLines().clear();
    return UtilpReadDocument(document, u"document", info) ? Properties(info) : std::string();
}
inline std::string Properties(std::string_view document) {
    clsMemoryDocument source(document);
    return Properties(source);
}

} // namespace tvut
