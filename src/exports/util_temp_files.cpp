// Exports of temporary files.
#include "exports/result_call.h"
#include "files/make_name.h"
#include "files/path_root.h"
#include "files/path_split.h"
#include "platform/long_path.h"
#include "runtime/temp_files/temp_file_remover.h"

#include <tvut22/files.h>

using namespace tvut;

namespace {

constexpr std::u16string_view defaultName = u"tmp";

bool IsNone(const wchar_t* text) {
    return !text || !*text;
}

std::wstring_view WideView(std::u16string_view text) {
    return {ToWide(text.data()), text.size()};
}

// The full form of a path, without a separator at its end; empty for what is no file or folder but a
// drive, share or device, and must not be removed.
std::wstring RemovablePath(const wchar_t* path) {
    std::wstring full = PlatformPlainPath(PlatformFullPath(path));
    const std::size_t rootLength = UtilpRootOf(FromWide(std::wstring_view(full))).length;
    while (full.ends_with(L'\\') && full.size() > rootLength)
        full.pop_back();
    return full.size() > rootLength ? PlatformLongPath(full) : std::wstring();
}

UtilResult Create(const wchar_t* folder, const wchar_t* name, bool isFolder, BSTR* path) {
    const std::wstring full = IsNone(folder) ? std::wstring() : PlatformFullPath(folder);
    if (full.empty() && !IsNone(folder))
        return UtilResult::notFound;
    clsBoundedText leaf;
    UtilpMakeFileName(IsNone(name) ? defaultName : UtilpView(name), leaf);
    const std::size_t extensionAt = UtilpExtensionStart(leaf.View());
    const scTempFileWish wish{full, WideView(leaf.View().substr(0, extensionAt)),
                              WideView(leaf.View().substr(extensionAt)), isFolder};
    scMadeTempFile made;
    const UtilResult result = UtilpTempFileRemover().Create(wish, made);
    if (result != UtilResult::ok)
        return result;
    const UtilResult given = UtilpGive({{path, FromWide(std::wstring_view(made.path))}});
    if (given != UtilResult::ok)
        UtilpTempFileRemover().Release(made.systemPath, false);
    return given;
}

template <class Work>
INT WithPath(const wchar_t* path, Work work) {
    if (IsNone(path))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] {
        const std::wstring full = RemovablePath(path);
        return full.empty() ? UtilResult::badArgument : work(full);
    });
}

} // namespace

INT TVUT22_CALL UtilTempFileCreate(const wchar_t* folder, const wchar_t* name, UINT flags, BSTR* path) {
    if (!path || !UtilpOnly(flags, UTIL_TEMP_FOLDER))
        return UTIL_BAD_ARGUMENT;
    return UtilpResultOf([&] { return Create(folder, name, (flags & UTIL_TEMP_FOLDER) != 0, path); });
}

INT TVUT22_CALL UtilTempFileAdd(const wchar_t* path) {
    return WithPath(path, [](const std::wstring& full) { return UtilpTempFileRemover().Add(full); });
}

INT TVUT22_CALL UtilTempFileRelease(const wchar_t* path, BOOL keep) {
    return WithPath(path, [&](const std::wstring& full) {
        clsTempFileRemover* const remover = UtilpTempFileRemoverIfMade();
        return remover ? remover->Release(full, keep != FALSE) : UtilResult::notFound;
    });
}
