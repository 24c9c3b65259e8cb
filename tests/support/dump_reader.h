// Takes a minidump apart again, and looks at each place that it names before it goes there.
#pragma once

#include "runtime/crash/dump_layout.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tvut {

class clsDumpReader {
  public:
    // Throws std::runtime_error, as all others do, when the file is no dump.
    explicit clsDumpReader(std::string_view file) : file_(file) {
        const auto header = At<scDumpHeader>(0);
        if (header.signature != dumpSignature || header.version != dumpVersion)
            throw std::runtime_error("no dump");
        directory_ = List<scDumpDirectory>(header.directoryPosition, header.streamCount);
    }

    std::string_view Bytes(std::uint64_t position, std::uint64_t bytes) const {
        if (position > file_.size() || bytes > file_.size() - position)
            throw std::runtime_error("beyond the end");
        return file_.substr(static_cast<std::size_t>(position), static_cast<std::size_t>(bytes));
    }
    std::string_view Bytes(scDumpLocation location) const { return Bytes(location.position, location.bytes); }
    std::string_view Bytes(DumpStream stream) const {
        for (const scDumpDirectory& entry : directory_) {
            if (entry.stream == stream)
                return Bytes(entry.location);
        }
        return {};
    }

    // The only object of a stream, or a list after its number of 4 bytes.
    template <class Object>
    Object One(DumpStream stream) const {
        return clsDumpReader(Bytes(stream), {}).At<Object>(0);
    }
    template <class Object>
    std::vector<Object> All(DumpStream stream) const {
        const clsDumpReader part(Bytes(stream), {});
        return part.List<Object>(sizeof(std::uint32_t), part.At<std::uint32_t>(0));
    }

    template <class Object>
    Object At(std::uint64_t position) const {
        Object object;
        std::memcpy(&object, Bytes(position, sizeof object).data(), sizeof object);
        return object;
    }
    template <class Object>
    std::vector<Object> List(std::uint64_t position, std::uint64_t count) const {
        if (count > file_.size())
            throw std::runtime_error("too many");
        std::vector<Object> objects;
        for (std::uint64_t i = 0; i < count; ++i)
            objects.push_back(At<Object>(position + i * sizeof(Object)));
        return objects;
    }

    static std::u16string Text(std::string_view bytes) {
        std::u16string text(bytes.size() / 2, u'\0');
        bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * 2);
        return text;
    }
    std::u16string TextAt(std::uint32_t position) const { // its length stands before it, a zero after it
        const auto bytes = At<std::uint32_t>(position);
        if (At<char16_t>(std::uint64_t{position} + 4 + bytes) != 0)
            throw std::runtime_error("a text without an end");
        return Text(Bytes(position + 4, bytes));
    }

    const std::vector<scDumpDirectory>& Directory() const { return directory_; }

  private:
    clsDumpReader(std::string_view part, std::vector<scDumpDirectory>) : file_(part) {}

    std::string_view file_;
    std::vector<scDumpDirectory> directory_;
};

} // namespace tvut
