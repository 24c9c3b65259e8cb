#include "runtime/output/viewer_sender.h"

#include "platform/wide.h"
#include "runtime/output/debugger.h"
#include "runtime/output/line_pieces.h"

#include <tvut22/viewer.h>

namespace tvut {

namespace {

static_assert(sizeof(LogpanPacketHeader) == 112);

constexpr UINT32 kindLine = 1;

LogpanPacketHeader HeaderOf(const SYSTEMTIME& time, std::u16string_view tag,
                            const scLineStamp& stamp) noexcept {
    LogpanPacketHeader header{};
    header.headerSize = sizeof header;
    header.time = time;
    tag.copy(FromWide(header.tag), LOGPAN_TAG_LENGTH - 1);
    header.thread = stamp.thread;
    header.processor = stamp.processor;
    header.sequence = UtilpSequenceCharacter(stamp.lineNumber);
    header.kind = kindLine;
    return header;
}

} // namespace

void clsViewerSender::Send(const scViewerAddress& viewer, const SYSTEMTIME& time, std::u16string_view tag,
                           const scLineStamp& stamp, std::u16string_view text) noexcept {
    FollowPort(viewer.port);
    if (viewer.port == 0 || !socket_.IsOpen())
        return;
    LogpanPacketHeader header = HeaderOf(time, tag, stamp);
    clsDiagnosticLine line;
    line.PutBlanks(stamp.level).Put(text);
    const std::size_t longest = (viewer.longestDatagram - sizeof header) / sizeof(char16_t);
    std::u16string_view left = line.View();
    do { // an empty line is a packet, too
        const std::u16string_view piece = UtilpTakePiece(left, longest);
        header.textBytes = static_cast<UINT32>(piece.size() * sizeof(char16_t));
        socket_.Send(viewer.port, &header, sizeof header, piece.data(), header.textBytes);
    } while (!left.empty());
}

// A viewer that was started again listens elsewhere.
void clsViewerSender::FollowPort(std::uint16_t port) noexcept {
    if (lastPort_ != 0 && port != lastPort_) {
        UtilpWriteToDebugger(u"re-attach to new LOGPAN port!\n");
        socket_.Renew();
    }
    lastPort_ = port;
}

} // namespace tvut
