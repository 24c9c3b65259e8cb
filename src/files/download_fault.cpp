#include "files/download_fault.h"

#include "files/url.h"

#include <iterator>

namespace tvut {

namespace {

// What stands for the mark in a reason's text.
enum class Mark { none, number, hexadecimal, address, text };

struct scReason {
    UtilResult result;
    std::u16string_view before;
    Mark mark = Mark::none;
    std::u16string_view after = {};
};

constexpr scReason reasons[] = {
    {UtilResult::ok, u""},
    {UtilResult::badArgument, u"no http address"},
    {UtilResult::badArgument, u"bad options"},
    {UtilResult::badArgument, u"no file name"},
    {UtilResult::unsafe, u"no https address"},
    {UtilResult::serverRefused, u"status ", Mark::number},
    {UtilResult::failed, u"", Mark::number, u" bytes"},
    {UtilResult::tooLarge, u"more than ", Mark::number, u" bytes"},
    {UtilResult::serverRefused, u"too many redirections"},
    {UtilResult::unsafe, u"redirected to '", Mark::address, u"'"},
    {UtilResult::unsafe, u"certificate refused (", Mark::hexadecimal, u")"},
    {UtilResult::timeout, u"no answer for ", Mark::number, u" ms"},
    {UtilResult::mismatch, u"checksum is ", Mark::text},
    {UtilResult::cancelled, u"cancelled"},
    {UtilResult::noAccess, u"cannot be written (", Mark::number, u")"},
    {UtilResult::failed, u"cannot be written (", Mark::number, u")"},
    {UtilResult::failed, u"", Mark::hexadecimal},
};
static_assert(std::size(reasons) == static_cast<std::size_t>(DownloadFault::service) + 1);

const scReason& ReasonOf(const scDownloadFault& fault) {
    return reasons[static_cast<std::size_t>(fault.fault)];
}

} // namespace

UtilResult UtilpResultOf(const scDownloadFault& fault) noexcept {
    return ReasonOf(fault).result;
}

void UtilpPutReason(clsDiagnosticLine& line, const scDownloadFault& fault) noexcept {
    const scReason& reason = ReasonOf(fault);
    line.Put(reason.before);
    if (reason.mark == Mark::number)
        line.PutLarge(fault.number);
    if (fault.fault == DownloadFault::length)
        line.Put(u" of ").PutLarge(fault.another);
    if (reason.mark == Mark::hexadecimal)
        line.Put(u"0x").PutHex(static_cast<std::uint32_t>(fault.number), 8);
    if (reason.mark == Mark::address)
        UtilpPutUrl(line, fault.text);
    if (reason.mark == Mark::text)
        line.Put(fault.text);
    line.Put(reason.after);
}

} // namespace tvut
