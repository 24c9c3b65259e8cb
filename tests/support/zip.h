// Archives through the exported calls: options with a callback, and what is in a folder.
#pragma once

#include "files.h"

#include <tvut22/zip.h>

#include <functional>
#include <map>
#include <utility>
#include <vector>

namespace testing_prof {

// What a callback was shown.
struct ShownEntry {
    std::wstring name, target;
    UtilZipEntry entry;
    bool is(UINT flag) const { return (entry.flags & flag) != 0; }
};

// Options whose callback notes what it is shown, and answers as it is told.
class ZipOptions {
  public:
    using Answer = std::function<INT(const UtilZipEntry&)>;

    explicit ZipOptions(const wchar_t* password = nullptr, UINT flags = 0, Answer answer = {})
        : answer_(std::move(answer)) {
        options.size = sizeof options;
        options.flags = flags;
        options.password = password;
        options.callback = show;
        options.user = reinterpret_cast<UINT_PTR>(this);
    }
    explicit ZipOptions(Answer answer) : ZipOptions(nullptr, 0, std::move(answer)) {}
    ZipOptions(const ZipOptions&) = delete;
    ZipOptions& operator=(const ZipOptions&) = delete;

    UtilZipOptions options{};
    std::vector<ShownEntry> seen;

  private:
    static INT TVUT22_CALL show(const UtilZipEntry* entry, UINT_PTR user) {
        auto* const self = reinterpret_cast<ZipOptions*>(user);
        self->seen.push_back({entry->name, entry->target ? entry->target : L"", *entry});
        return self->answer_ ? self->answer_(*entry) : UTIL_ZIP_GO;
    }

    Answer answer_;
};

// Paths below a folder with what is in the files; folders with a separator at their end.
using Tree = std::map<std::wstring, Bytes>;

inline Tree treeOf(const std::filesystem::path& folder) {
    Tree tree;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        const std::wstring name = entry.path().lexically_relative(folder).wstring();
        if (entry.is_directory())
            tree[name + L"\\"];
        else
            tree[name] = ReadBytes(entry.path());
    }
    return tree;
}

inline void makeTree(const std::filesystem::path& folder, const Tree& tree) {
    for (const auto& [name, bytes] : tree) {
        const std::filesystem::path path = folder / name;
        std::filesystem::create_directories(name.ends_with(L'\\') ? path : path.parent_path());
        if (!name.ends_with(L'\\'))
            WriteBytes(path, bytes);
    }
}

// Packs one source into a new archive; gives the first result that is not UTIL_OK.
inline INT packed(const std::wstring& archive, const std::wstring& source,
                  const UtilZipOptions* options = nullptr, const wchar_t* name = nullptr) {
    const UtilZip zip = UtilZIPCreate(archive.c_str(), options);
    if (!zip)
        return UTIL_FAILED;
    const INT appended = UtilZIPAppend(zip, source.c_str(), name);
    const INT closed = UtilZIPClose(zip, appended == UTIL_OK);
    return appended != UTIL_OK ? appended : closed;
}

// The names of an archive's entries in its order.
inline std::vector<std::wstring> entriesOf(const std::wstring& archive) {
    ZipOptions options([](const UtilZipEntry&) { return UTIL_ZIP_SKIP; });
    std::vector<std::wstring> names;
    if (UtilExtractZip(archive.c_str(), nullptr, &options.options) != UTIL_OK)
        names.push_back(L"(refused)");
    for (const ShownEntry& shown : options.seen)
        names.push_back(shown.name);
    return names;
}

} // namespace testing_prof
