// Nothing in the viewer's memory is trusted: it is copied whole before a field is looked at, so that no
// field can change between its check and its use, and the copy is made under a guard, because the memory
// may be a file that has been cut short. Even a viewer that lies about its size gets little of the address
// space.
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
    LogpanSharedInfo published;
    if (!info.mapping_.Map(sizeof published) || !info.mapping_.Read(published)) {
        Report(u"cannot be accessed");
        return {}; // keeps nothing of it, so that another viewer may take the name
    }
    // A viewer that publishes more is mapped whole; one that lies about it keeps the part that is there.
    if (published.size > sizeof published)
        info.mapping_.Map(std::min(published.size, mostMapped));
    return info;
}

scViewerWish clsViewerInfo::Wish() noexcept {
    if (!*this)
        return {};
    LogpanSharedInfo published;
    if (!mapping_.Read(published)) {
        mapping_ = {};
        return {};
    }
    return {published.mask != 0,
            {static_cast<std::uint16_t>(published.port <= 0xFFFF ? published.port : 0),
             std::clamp<std::size_t>(published.largestDatagram, leastDatagram, mostDatagram)}};
}

} // namespace tvut
