// What the viewer publishes may change or vanish between two lines: it is read once for each line, which is
// then sent by that copy, even where sending leads to another line. A text that is longer than a datagram
// goes in several, all with the same stamp, by which the viewer joins them.
#include "runtime/output/viewer.h"

#include "platform/wide.h"
#include "runtime/output/debugger.h"
#include "runtime/output/line_pieces.h"

#include <tvut22/viewer.h>

#include <bit>

namespace tvut {

namespace {

static_assert(sizeof(LogpanPacketHeader) == 112);

constexpr UINT32 kindLine = 1;

LogpanPacketHeader HeaderOf(const scOutputLine& line) noexcept {
    LogpanPacketHeader header{};
    header.headerSize = sizeof header;
    header.time = std::bit_cast<SYSTEMTIME>(line.time);
    line.tag.copy(FromWide(header.tag), LOGPAN_TAG_LENGTH - 1);
    header.thread = line.stamp.thread;
    header.processor = line.stamp.processor;
    header.sequence = UtilpSequenceCharacter(line.stamp.lineNumber);
    header.kind = kindLine;
    return header;
}

} // namespace

bool clsViewer::Wants() noexcept {
    const scViewerWish wish = info_.Wish();
    address_ = wish.address;
    return wish.lines;
}

void clsViewer::Take(const scOutputLine& line) noexcept {
    const scViewerAddress to = address_; // what the debugger does with our words may ask the viewer again
    FollowPort(to.port);
    if (to.port == 0 || !socket_.IsOpen())
        return;
    LogpanPacketHeader header = HeaderOf(line);
    clsDiagnosticLine text;
    text.PutBlanks(line.stamp.level).Put(line.text);
    const std::size_t longest = (to.longestDatagram - sizeof header) / sizeof(char16_t);
    std::u16string_view left = text.View();
    do { // an empty line is a packet, too
        const std::u16string_view piece = UtilpTakePiece(left, longest);
        header.textBytes = static_cast<UINT32>(piece.size() * sizeof(char16_t));
        socket_.Send(to.port, &header, sizeof header, piece.data(), header.textBytes);
    } while (!left.empty());
}

// A viewer that was started again listens elsewhere.
void clsViewer::FollowPort(std::uint16_t port) noexcept {
    if (lastPort_ != 0 && port != lastPort_) {
        UtilpWriteToDebugger(u"re-attach to new LOGPAN port!\n");
        socket_.Renew();
    }
    lastPort_ = port;
}

void clsViewer::Leave() noexcept {
    info_ = {};
    socket_.Leave();
}

} // namespace tvut
