// Paths are kept as the system takes them, whatever their length: at the process's end none has to be made
// first. Files are made and removed without the lock. One that is being removed stays in the list, marked,
// until it is gone: should the process end meanwhile, it is still known.
#include "runtime/temp_files/temp_file_remover.h"

#include "platform/file.h"
#include "platform/folder_walk.h"
#include "platform/wide.h"
#include "runtime/diagnostics.h"
#include "runtime/output/writer.h"
#include "runtime/system_result.h"
#include "runtime/temp_files/sweep.h"

#include <atomic>
#include <mutex>

namespace tvut {

namespace {

constexpr ULONGLONG releasePatience = 2000; // milliseconds
constexpr std::size_t longestPath = 32767;

std::atomic<clsTempFileRemover*> remover{nullptr};

std::u16string_view ViewOf(const std::wstring& text) {
    return FromWide(std::wstring_view(text));
}

// A line about a path, which is shown as callers know it.
clsDiagnosticLine Line(std::u16string_view before, std::u16string_view path, std::u16string_view after,
                       DWORD error) {
    constexpr std::u16string_view verbatim = u"\\\\?\\", share = u"\\\\?\\UNC\\";
    clsDiagnosticLine line;
    line.Put(before);
    if (path.starts_with(share))
        line.Put(u"\\\\").Put(path.substr(share.size()));
    else
        line.Put(path.substr(path.starts_with(verbatim) ? verbatim.size() : 0));
    return line.Put(after).PutDecimal(error, 1).Put(u")");
}

// A file that was made and is not registered yet.
class clsNewFile {
  public:
    explicit clsNewFile(const std::wstring& path) : path_(&path) {}
    ~clsNewFile() {
        if (path_)
            PlatformRemoveTree(path_->c_str(), noDeadline);
    }
    clsNewFile(const clsNewFile&) = delete;
    clsNewFile& operator=(const clsNewFile&) = delete;
    void Keep() { path_ = nullptr; }

  private:
    const std::wstring* path_;
};

// In a folder, a file that others have open may be about to go, too.
DWORD TryToRemove(const wchar_t* path) {
    const DWORD error = PlatformRemoveTree(path, noDeadline);
    return error == ERROR_DIR_NOT_EMPTY ? ERROR_SHARING_VIOLATION : error;
}

} // namespace

// ---- Making and registering --------------------------------------------------------------------------

bool clsTempFileRemover::IsFull() noexcept {
    const std::lock_guard lock(lock_);
    return files_.IsFull();
}

std::uint32_t clsTempFileRemover::FirstNumber(std::uint32_t wish) noexcept {
    const std::lock_guard lock(lock_);
    return files_.FirstNumber(wish);
}

DWORD clsTempFileRemover::FolderFor(const scTempFileWish& wish, std::wstring& folder) {
    folder = wish.folder;
    if (!folder.empty())
        return ERROR_SUCCESS;
    const std::lock_guard lock(lock_);
    const DWORD error = own_.Make();
    folder = own_.Path();
    return error;
}

UtilResult clsTempFileRemover::Register(std::unique_ptr<scTempFile> file) noexcept {
    const std::lock_guard lock(lock_);
    if (files_.Find(file->Path()))
        return UtilResult::ok;
    if (files_.IsFull())
        return UtilResult::tooLarge;
    files_.Put(std::move(file));
    return UtilResult::ok;
}

UtilResult clsTempFileRemover::Create(const scTempFileWish& wish, scMadeTempFile& made) {
    if (IsFull())
        return UtilResult::tooLarge;
    std::wstring folder;
    DWORD error = FolderFor(wish, folder);
    clsWishedPaths paths(folder, wish);
    if (paths.SystemPath().size() > longestPath)
        return UtilResult::tooLarge;
    const std::uint32_t hash = UtilpHashPath(ViewOf(paths.SystemPath()));
    scNumberedWish taken{hash, FirstNumber(hash)};
    if (error == ERROR_SUCCESS)
        error = UtilpMakeNewFile(paths, wish.isFolder, taken.number);
    if (error != ERROR_SUCCESS) {
        paths.Number(1);
        Line(u"ERR: clsTempFileRemover::Create('", ViewOf(paths.Path()), u"'): cannot be made (", error)
            .Write();
        return UtilpResultOfError(error);
    }
    clsNewFile file(paths.SystemPath());
    made = {paths.Path(), paths.SystemPath()};
    const UtilResult result = Register(clsTempFileList::Make(ViewOf(made.systemPath), taken));
    if (result == UtilResult::ok)
        file.Keep();
    return result;
}

UtilResult clsTempFileRemover::Add(const std::wstring& path) {
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return UtilpResultOfError(GetLastError());
    return Register(clsTempFileList::Make(ViewOf(path)));
}

// ---- Removing ----------------------------------------------------------------------------------------

bool clsTempFileRemover::Forget(std::u16string_view path) noexcept {
    std::unique_ptr<scTempFile> forgotten; // freed without the lock
    const std::lock_guard lock(lock_);
    scTempFile* const file = files_.Find(path);
    if (file)
        forgotten = files_.Take(*file);
    return file != nullptr;
}

scTempFile* clsTempFileRemover::BeginToRemove(std::u16string_view path) noexcept {
    const std::lock_guard lock(lock_);
    scTempFile* const file = files_.Find(path);
    if (file)
        file->leaving = true;
    return file;
}

void clsTempFileRemover::EndToRemove(scTempFile& file, bool removed) noexcept {
    std::unique_ptr<scTempFile> gone;
    const std::lock_guard lock(lock_);
    if (removed)
        gone = files_.Take(file);
    else
        file.leaving = false;
}

UtilResult clsTempFileRemover::Release(const std::wstring& path, bool keep) noexcept {
    if (keep)
        return Forget(ViewOf(path)) ? UtilResult::ok : UtilResult::notFound;
    scTempFile* const file = BeginToRemove(ViewOf(path));
    if (!file)
        return UtilResult::notFound;
    const DWORD error = clsPatience(releasePatience).Try([&] { return TryToRemove(path.c_str()); });
    EndToRemove(*file, error == ERROR_SUCCESS);
    if (error != ERROR_SUCCESS)
        Line(u"WRN: clsTempFileRemover::Release('", ViewOf(path), u"'): still in use (", error).Write();
    return UtilpResultOfError(error);
}

bool clsTempFileRemover::End(bool processEnds) noexcept {
    const std::unique_lock lock(lock_, std::try_to_lock);
    if (!lock)
        return false;
    for (const scTempFile* file = files_.Newest(); file; file = file->older) {
        const DWORD error = PlatformRemoveTree(ToWide(file->Path().data()), noDeadline);
        if (error == ERROR_SUCCESS)
            continue;
        const clsDiagnosticLine line =
            Line(u"WRN: clsTempFileRemover: '", file->Path(), u"' left at the end (", error);
        if (processEnds)
            UtilpDiagnosticWriter().WriteIfFree(line.View());
        else
            line.Write();
    }
    own_.End();
    return true;
}

// ---- The process's one -------------------------------------------------------------------------------

clsTempFileRemover& UtilpTempFileRemover() {
    clsTempFileRemover* there = remover.load(std::memory_order_acquire);
    if (there)
        return *there;
    auto made = std::make_unique<clsTempFileRemover>();
    if (!remover.compare_exchange_strong(there, made.get(), std::memory_order_acq_rel))
        return *there;
    there = made.release();
    UtilpDiagnosticsOn(); // whoever listens is found now: the process's end would be too late
    UtilpSweepTempFolders();
    return *there;
}

clsTempFileRemover* UtilpTempFileRemoverIfMade() noexcept {
    return remover.load(std::memory_order_acquire);
}

void UtilpEndTempFiles(bool processEnds) noexcept {
    std::unique_ptr<clsTempFileRemover> made(remover.exchange(nullptr));
    if (made && (!made->End(processEnds) || processEnds))
        (void)made.release(); // its memory goes with the process
}

} // namespace tvut
