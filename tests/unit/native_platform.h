// What tests of the native build share: memory as source and sink, the diagnostic lines written.
#pragma once

#include "platform/bytes.h"
#include "platform/exception.h"
#include "prof/formats/load.h"
#include "prof/formats/save.h"
#include "prof/tree_walk.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace tvut {

std::vector<std::u16string>& DiagnosticLines();

// Bytes in memory, handed out in pieces of a given size.
class clsMemorySource final : public clsByteSource {
  public:
    explicit clsMemorySource(std::string_view bytes, std::size_t piece = 65536)
        : bytes_(bytes), piece_(piece) {}
    std::uint64_t SizeHint() override { return bytes_.size(); }
    std::size_t Read(void* buffer, std::size_t bytes) override {
        const std::size_t count = std::min({bytes, piece_, bytes_.size()});
        std::memcpy(buffer, bytes_.data(), count);
        bytes_.remove_prefix(count);
        return count;
    }

  private:
    std::string_view bytes_;
    std::size_t piece_;
};

// Bytes into memory.
class clsMemorySink final : public clsByteSink {
  public:
    bool UsesLength() const override { return usesLength; }
    void Extend(std::uint64_t total) override { extended = total; }
    void Write(const void* data, std::size_t count) override {
        bytes.append(static_cast<const char*>(data), count);
    }
    void Finish() override {}

    std::string bytes;
    std::uint64_t extended = 0;
    bool usesLength = true;
};

inline std::string Utf16Bytes(std::u16string_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
}

inline std::string Saved(clsTree& tree, std::uint32_t flags = 0) {
    clsMemorySink sink;
    return ProfpSave(tree.Root(), flags, false, sink) ? sink.bytes : "cannot be saved";
}

inline scLoadResult Load(clsTree& tree, std::string_view bytes, ReadMode mode = ReadMode::detect) {
    clsMemorySource source(bytes);
    return ProfpLoad(source, tree.Root(), {u"input", mode, 1252});
}

// A tree as a text: name=value; an item, name{...} a list.
inline std::u16string Describe(const clsItemList& list) {
    struct scDescription {
        std::u16string text;
        void Item(const clsItem& item, std::uint32_t) {
            text.append(item.Name()).append(u"=").append(item.Value()).append(u";");
        }
        void BeginList(const clsItem& entry, std::uint32_t) { text.append(entry.Name()).append(u"{"); }
        void EndList(std::uint32_t) { text += u"}"; }
    } description;
    ProfpWalk(list, 0, description);
    return description.text;
}

// What bytes are read as, or what the last diagnostic line says of them.
inline std::u16string Read(std::string_view bytes, ReadMode mode = ReadMode::detect) {
    DiagnosticLines().clear();
    clsTree tree(true);
    return Load(tree, bytes, mode).parsed ? Describe(tree.Root()) : DiagnosticLines().back();
}

} // namespace tvut
