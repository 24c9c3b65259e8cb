// Folders come first, wherever they stand in the archive: they cannot get a number, since what lies in them
// names them, too. Then each file in turn takes its path, or the first one with a number that is free.
#include "zip/target_paths.h"

#include "files/numbered_name.h"

namespace tvut {

using Kind = clsTakenNames::Kind;

namespace {

std::size_t NameStart(std::u16string_view path) {
    return path.rfind(u'\\') + 1; // nothing found: npos + 1 is 0
}

} // namespace

clsTargetPaths::clsTargetPaths(const clsZipDirectory& directory) : directory_(directory) {
    const auto count = static_cast<std::uint32_t>(directory.Entries().size());
    std::u16string path, folderBefore;
    for (std::uint32_t index = 0; index < count; ++index) {
        ReadUnnumbered(index, path);
        const bool isFolder = directory.Entries()[index].Is(scZipEntry::folder);
        const std::u16string_view folder(path.data(), NameStart(path));
        if (!isFolder && folder == folderBefore)
            continue; // most files lie in the folder of the one before
        TakeFolders(path, isFolder);
        folderBefore = folder;
    }
    for (std::uint32_t index = 0; index < count; ++index) {
        if (directory.Entries()[index].Is(scZipEntry::folder))
            continue;
        ReadUnnumbered(index, path);
        TakeFile(index, path);
    }
}

void clsTargetPaths::Read(std::uint32_t index, std::u16string& path) const {
    ReadUnnumbered(index, path);
    const auto numbered = numbers_.find(index);
    if (numbered == numbers_.end())
        return;
    const std::size_t nameAt = NameStart(path);
    path.replace(nameAt, path.npos, UtilpNumberedName(std::u16string_view(path).substr(nameAt), numbered->second));
}

void clsTargetPaths::ReadUnnumbered(std::uint32_t index, std::u16string& path) const {
    std::u16string name;
    directory_.ReadName(directory_.Entries()[index], name);
    UtilpMakePossiblePath(name, path);
}

void clsTargetPaths::TakeFolders(std::u16string_view path, bool isFolder) {
    const PathKey key = keys_.Along(path, u'\\', [this](PathKey folder) { taken_.Take(folder, Kind::folder); });
    if (isFolder)
        taken_.Take(key, Kind::folder);
}

// The numbers of a path that are taken already are not tried again: a million files of one name are a million
// steps.
void clsTargetPaths::TakeFile(std::uint32_t index, std::u16string_view path) {
    PathKey folder = topFolder;
    const PathKey key = keys_.Along(path, u'\\', [&](PathKey above) { folder = above; });
    if (taken_.What(key) == Kind::nothing)
        return taken_.Take(key, Kind::file);
    std::uint32_t& number = lastNumbers_.try_emplace(key, 1).first->second;
    PathKey numbered;
    do
        numbered = keys_.Below(folder, UtilpNumberedName(path.substr(NameStart(path)), ++number));
    while (taken_.What(numbered) != Kind::nothing);
    taken_.Take(numbered, Kind::file);
    numbers_.emplace(index, number);
}

} // namespace tvut
