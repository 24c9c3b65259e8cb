// Exports of ZIP archives.
#include "exports/result_call.h"
#include "platform/exception.h"
#include "platform/file.h"
#include "platform/long_path.h"
#include "platform/random_file.h"
#include "platform/stream.h"
#include "platform/unpack_folder.h"
#include "runtime/diagnostics.h"
#include "runtime/handle_table.h"
#include "runtime/system_result.h"
#include "zip/zip_extraction.h"
#include "zip/zip_file.h"

#include <tvut22/zip.h>

#include <atomic>
#include <bit>
#include <new>
#include <vector>

using namespace tvut;

namespace {

constexpr UINT64 usualLimit = 1ull << 32;
constexpr std::size_t mostArchives = 1024;

// An archive, and whether a call is at work on it: its callback may call anything.
struct scArchive {
    clsZIPFile file;
    std::atomic<bool> isBusy{false};
};

constinit clsHandleTable<scArchive, HandleKind::archive, mostArchives> archives;

UtilZip ToZip(std::uint32_t handle) {
    return reinterpret_cast<UtilZip>(static_cast<std::uintptr_t>(handle));
}
std::uint32_t FromZip(UtilZip zip) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(zip));
}

bool IsNone(const wchar_t* text) {
    return !text || !*text;
}

// The options of a call; none when they are wrong.
std::optional<UtilZipOptions> OptionsOf(const UtilZipOptions* given, UINT known) {
    UtilZipOptions options{};
    if (!given)
        return options;
    if (given->size < sizeof options)
        return {};
    options = *given;
    if (options.reserved != 0 || !UtilpOnly(options.flags, known))
        return {};
    return options;
}

class clsCallback final : public IclsZipCallback {
  public:
    explicit clsCallback(const UtilZipOptions& options) : callback_(options.callback), user_(options.user) {}

    ZipAnswer Show(const scShownZipEntry& shown) override {
        UtilZipEntry entry{};
        entry.size = sizeof entry;
        entry.flags = (shown.isFolder ? UTIL_ZIP_IS_FOLDER : 0) |
                      (shown.isEncrypted ? UTIL_ZIP_IS_ENCRYPTED : 0) |
                      (shown.isLink ? UTIL_ZIP_IS_LINK : 0) | (shown.isRenamed ? UTIL_ZIP_IS_RENAMED : 0) |
                      (shown.isQuestion ? UTIL_ZIP_IS_QUESTION : 0);
        entry.name = ToWide(shown.name);
        entry.target = ToWide(shown.target);
        entry.bytes = shown.bytes;
        entry.packed = shown.packed;
        entry.done = shown.done;
        entry.modified = std::bit_cast<FILETIME>(shown.modified);
        entry.index = shown.index;
        entry.count = shown.count;
        const INT answer = callback_(&entry, user_);
        if (answer == UTIL_ZIP_SKIP)
            return shown.isQuestion ? ZipAnswer::skip : ZipAnswer::go;
        return answer == UTIL_ZIP_GO ? ZipAnswer::go : ZipAnswer::cancel;
    }

  private:
    UtilZipCallback callback_;
    UINT_PTR user_;
};

std::unique_ptr<IclsZipCallback> CallbackOf(const UtilZipOptions& options) {
    return options.callback ? std::make_unique<clsCallback>(options) : nullptr;
}

// The thread's last error is what a failed call leaves to its caller.
UtilZip Create(const wchar_t* file, const UtilZipOptions& options) {
    try {
        auto archive = std::unique_ptr<scArchive>(new scArchive{clsZIPFile(
            UtilpView(file),
            (options.flags & UTIL_ZIP_STORE) != 0 ? ZipCompression::store : ZipCompression::deflate,
            UtilpView(options.password), CallbackOf(options))});
        const std::uint32_t handle = archives.Add(archive);
        if (handle == 0)
            SetLastError(ERROR_TOO_MANY_OPEN_FILES);
        return ToZip(handle);
    } catch (const clsException& error) {
        SetLastError(error.Reason());
    } catch (...) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    }
    return nullptr;
}

// Calls work with an archive that no other call is at work on.
template <class Work>
INT WithArchive(UtilZip zip, Work work) {
    return UtilpResultOf([&]() -> UtilResult {
        const auto archive = archives.Use(FromZip(zip));
        if (!archive || archive->isBusy.exchange(true))
            return UtilResult::badArgument;
        struct scBusy {
            std::atomic<bool>& flag;
            ~scBusy() { flag = false; }
        } const busy{archive->isBusy};
        return work(archive->file);
    });
}

std::uint64_t Now() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return std::bit_cast<std::uint64_t>(now);
}

// An archive that cannot even be opened.
UtilResult NotOpened(const wchar_t* file, DWORD error) {
    const UtilResult result = UtilpResultOfError(error);
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilExtractZip('").Put(UtilpView(file)).Put(u"'): ");
    if (result == UtilResult::notFound)
        line.Put(u"not found");
    else
        line.Put(u"cannot be read (").PutDecimal(error, 1).Put(u")");
    line.Write();
    return result;
}

UtilResult Extract(const wchar_t* file, const wchar_t* folder, const UtilZipOptions& options) {
    DWORD error = 0;
    clsPatience patience(openPatience);
    const clsFileHandle handle = PlatformOpenFile(FromWide(file), openToRead, patience, error);
    if (!handle)
        return NotOpened(file, error);
    clsRandomFile source(handle.Get());
    const std::wstring full = folder ? PlatformFullPath(folder) : std::wstring();
    if (folder && full.empty())
        return UtilResult::noAccess;
    std::optional<clsUnpackFolder> target;
    if (folder)
        target.emplace(full);
    const std::unique_ptr<IclsZipCallback> callback = CallbackOf(options);
    const scZipExtractionOrder order{
        UtilpView(file), FromWide(std::wstring_view(full)), UtilpView(options.password),
        options.limit != 0 ? options.limit : usualLimit, (options.flags & UTIL_ZIP_KEEP_EXISTING) != 0};
    return clsZIPExtraction(source, order, target ? &*target : nullptr, callback.get()).Run();
}

} // namespace

UtilZip TVUT22_CALL UtilZIPCreate(const wchar_t* file, const UtilZipOptions* options) {
    const std::optional<UtilZipOptions> chosen = OptionsOf(options, UTIL_ZIP_STORE);
    if (!chosen || IsNone(file)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    return Create(file, *chosen);
}

INT TVUT22_CALL UtilZIPAppend(UtilZip zip, const wchar_t* source, const wchar_t* name) {
    return WithArchive(zip, [&](clsZIPFile& file) {
        if (IsNone(source) || (name && !*name))
            return UtilResult::badArgument;
        return file.Append(std::u16string(UtilpView(source)), UtilpView(name));
    });
}

INT TVUT22_CALL UtilZIPAppendList(UtilZip zip, const wchar_t* const* sources, UINT count,
                                  const wchar_t* folder) {
    return WithArchive(zip, [&](clsZIPFile& file) {
        if (!sources && count != 0)
            return UtilResult::badArgument;
        std::vector<std::u16string> list;
        for (UINT number = 0; number < count; ++number) {
            if (IsNone(sources[number]))
                return UtilResult::badArgument;
            list.emplace_back(UtilpView(sources[number]));
        }
        return file.AppendList(list, UtilpView(folder));
    });
}

INT TVUT22_CALL UtilZIPAppendStream(UtilZip zip, IStream* stream, const wchar_t* name,
                                    const FILETIME* modified) {
    return WithArchive(zip, [&](clsZIPFile& file) {
        if (!stream || IsNone(name))
            return UtilResult::badArgument;
        clsStreamSource source(stream);
        return file.AppendStream(source, UtilpView(name),
                                 modified ? std::bit_cast<std::uint64_t>(*modified) : Now());
    });
}

// Within a callback of a call that is at work, the archive cannot be completed: that call abandons it when it
// is done.
INT TVUT22_CALL UtilZIPClose(UtilZip zip, BOOL keep) {
    if (!zip)
        return UTIL_OK;
    return UtilpResultOf([&]() -> UtilResult {
        const auto archive = archives.Close(FromZip(zip));
        if (!archive)
            return UtilResult::badArgument;
        if (archive->isBusy)
            return UtilResult::failed;
        return keep ? archive->file.Close() : UtilResult::ok;
    });
}

INT TVUT22_CALL UtilExtractZip(const wchar_t* file, const wchar_t* folder, const UtilZipOptions* options) {
    const std::optional<UtilZipOptions> chosen = OptionsOf(options, UTIL_ZIP_KEEP_EXISTING);
    if (!chosen || IsNone(file) || (folder && !*folder))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] { return Extract(file, folder, *chosen); });
}
