#include "runtime/output/viewer_info.h"

#include "platform/system_error.h"
#include "runtime/output/debugger.h"

#include <algorithm>
#include <tvut22/viewer.h>

namespace tvut {

namespace {

static_assert(sizeof(LogpanSharedInfo) == 24);

constexpr std::size_t leastDatagram = 512;
constexpr std::size_t mostDatagram = 65507; // as much as UDP carries
constexpr UINT32 mostMapped = 0x10000;      // a viewer gets no more of a program's address space

const volatile LogpanSharedInfo& Published(const clsMapping& mapping) noexcept {
    return *mapping.As<const volatile LogpanSharedInfo>();
}

void Report(std::u16string_view what) noexcept {
    const DWORD error = GetLastError();
    UtilpWriteToDebugger(clsDiagnosticLine()
                             .Put(u"'LOGPAN4_SharedData' ")
                             .Put(what)
                             .Put(u": ")
                             .Put(clsSystemErrorText(error).View())
                             .Put(u"\n"));
}

clsMapping OpenInfo() noexcept {
    for (const wchar_t* const name : {LOGPAN_SHARED_INFO_LOCAL, LOGPAN_SHARED_INFO_GLOBAL}) {
        clsMapping mapping = clsMapping::OpenForReading(name);
        if (mapping.HasObject())
            return mapping;
        if (GetLastError() != ERROR_FILE_NOT_FOUND)
            Report(u"cannot be accessed");
    }
    if (UtilpIsDeveloper())
        Report(u"not found");
    return {};
}

} // namespace

clsViewerInfo clsViewerInfo::Find() noexcept {
    clsViewerInfo info;
    info.mapping_ = OpenInfo();
    if (!info.mapping_.HasObject())
        return info;
    if (!info.mapping_.Map(sizeof(LogpanSharedInfo))) {
        Report(u"cannot be accessed");
        return {}; // keeps nothing of it, so that another viewer may take the name
    }
    // A viewer that publishes more is mapped whole; one that lies about it keeps the part that is there.
    const UINT32 size = Published(info.mapping_).size;
    if (size > sizeof(LogpanSharedInfo))
        info.mapping_.Map(std::min(size, mostMapped));
    return info;
}

scViewerWish clsViewerInfo::Wish() const noexcept {
    if (!mapping_.HasView())
        return {};
    const volatile LogpanSharedInfo& published = Published(mapping_);
    const UINT32 port = published.port, datagram = published.largestDatagram;
    return {published.mask != 0,
            {static_cast<std::uint16_t>(port <= 0xFFFF ? port : 0),
             std::clamp<std::size_t>(datagram, leastDatagram, mostDatagram)}};
}

} // namespace tvut
