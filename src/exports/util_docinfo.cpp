// Exports of document information.
#include "docinfo/detect.h"
#include "exports/reason_guard.h"
#include "exports/result_call.h"
#include "platform/file.h"
#include "platform/random_file.h"
#include "platform/random_stream.h"
#include "runtime/handle_table.h"

#include <tvut22/docinfo.h>

using namespace tvut;

namespace {

constexpr std::size_t mostOpen = 4096;

constinit clsHandleTable<clsDocInfo, HandleKind::document, mostOpen> documents;

UtilDocInfo ToInfo(std::uint32_t handle) {
    return reinterpret_cast<UtilDocInfo>(static_cast<std::uintptr_t>(handle));
}
std::uint32_t FromInfo(UtilDocInfo info) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(info));
}

UtilDocInfo Read(clsRandomSource& document, std::u16string_view name) {
    auto info = std::make_unique<clsDocInfo>();
    if (!UtilpReadDocument(document, name, *info))
        throw clsException("document of no known format", ERROR_BAD_FORMAT);
    const std::uint32_t handle = documents.Add(info);
    if (handle == 0)
        throw clsException("too many documents", ERROR_TOO_MANY_OPEN_FILES);
    return ToInfo(handle);
}

UtilDocInfo ReadFile(std::u16string_view file) {
    DWORD error = 0;
    clsPatience patience(openPatience);
    const clsFileHandle handle = PlatformOpenFile(file.data(), openToRead, patience, error);
    if (!handle)
        throw clsException("document cannot be opened", error);
    clsRandomFile source(handle.Get());
    return Read(source, file);
}

} // namespace

UtilDocInfo TVUT22_CALL UtilDocInfoOpen(const wchar_t* file) {
    return UtilpGuardWithReason(UtilDocInfo(nullptr), [&] {
        RequireArguments(file && *file ? file : nullptr);
        return ReadFile(UtilpView(file));
    });
}

UtilDocInfo TVUT22_CALL UtilDocInfoOpenStream(IStream* stream) {
    return UtilpGuardWithReason(UtilDocInfo(nullptr), [&] {
        RequireArguments(stream);
        clsRandomStream source(stream);
        return Read(source, u"stream");
    });
}

INT TVUT22_CALL UtilDocInfoGet(UtilDocInfo info, const wchar_t* name, BSTR* value) {
    return UtilpResultOf([&] {
        const auto document = documents.Use(FromInfo(info));
        if (!document)
            return UtilResult::badArgument;
        if (!name || !*name)
            return UtilpGive({{value, document->Names()}});
        const std::optional<std::u16string_view> text = document->Find(UtilpView(name));
        return text ? UtilpGive({{value, *text}}) : UtilResult::notFound;
    });
}

INT TVUT22_CALL UtilDocInfoClose(UtilDocInfo info) {
    if (!info)
        return UTIL_OK;
    return UtilpResultOf(
        [&] { return documents.Close(FromInfo(info)) ? UtilResult::ok : UtilResult::badArgument; });
}
