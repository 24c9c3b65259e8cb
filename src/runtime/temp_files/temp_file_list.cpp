// Files are chained twice: by age, for the end of the process, which removes the newest first, and by the
// hash of their path, for lookup. Paths that differ in letter case only are the same file, so the hash
// folds what ASCII knows of case and takes all other letters for one; the system compares what is left.
#include "runtime/temp_files/temp_file_list.h"

#include "platform/letter_case.h"

#include <algorithm>

namespace tvut {

// Letters beyond ASCII all count the same: which of them are one without regard to case only the system
// knows.
std::uint32_t UtilpHashPath(std::u16string_view path) noexcept {
    std::uint32_t hash = 0x811C9DC5u;
    for (const char16_t unit : path) {
        const bool isLower = unit >= u'a' && unit <= u'z';
        const std::uint32_t seen = unit >= 128 ? 128u : isLower ? unit - 32u : unit;
        hash = (hash ^ seen) * 0x01000193u;
    }
    return hash;
}

clsTempFileList::~clsTempFileList() {
    while (newest_)
        Take(*newest_);
}

std::unique_ptr<scTempFile> clsTempFileList::Make(std::u16string_view path, scNumberedWish wish) {
    auto characters = std::make_unique_for_overwrite<char16_t[]>(path.size() + 1);
    *std::copy(path.begin(), path.end(), characters.get()) = u'\0';
    return std::make_unique<scTempFile>(scTempFile{
        std::move(characters), static_cast<std::uint32_t>(path.size()), UtilpHashPath(path), wish});
}

scTempFile* clsTempFileList::Find(std::u16string_view path) const noexcept {
    const std::uint32_t hash = UtilpHashPath(path);
    scTempFile* file = places_[hash % places_.size()];
    while (file &&
           (file->leaving || file->hash != hash || PlatformCompareIgnoringCase(file->Path(), path) != 0))
        file = file->next;
    return file;
}

void clsTempFileList::Put(std::unique_ptr<scTempFile> file) noexcept {
    NoteTaken(file->wish);
    scTempFile*& place = places_[file->hash % places_.size()];
    file->next = place;
    file->older = newest_;
    if (newest_)
        newest_->newer = file.get();
    newest_ = place = file.release();
    ++count_;
}

std::unique_ptr<scTempFile> clsTempFileList::Take(scTempFile& file) noexcept {
    NoteFree(file.wish);
    scTempFile** link = &places_[file.hash % places_.size()];
    while (*link != &file)
        link = &(*link)->next;
    *link = file.next;
    (file.newer ? file.newer->older : newest_) = file.older;
    if (file.older)
        file.older->newer = file.newer;
    --count_;
    return std::unique_ptr<scTempFile>(&file);
}

std::uint32_t clsTempFileList::FirstNumber(std::uint32_t wish) const noexcept {
    const scHint& hint = hints_[wish % hints_.size()];
    return hint.wish == wish ? hint.first : 1;
}

// All before it were found taken when it was made.
void clsTempFileList::NoteTaken(const scNumberedWish& wish) noexcept {
    scHint& hint = HintOf(wish.wish);
    if (wish.number != 0 && (hint.wish != wish.wish || hint.first <= wish.number))
        hint = {wish.wish, wish.number + 1};
}

void clsTempFileList::NoteFree(const scNumberedWish& wish) noexcept {
    scHint& hint = HintOf(wish.wish);
    if (wish.number != 0 && hint.wish == wish.wish)
        hint.first = std::min(hint.first, wish.number);
}

} // namespace tvut
