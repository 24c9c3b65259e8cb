// Put by the writer of crash reports, so that both read alike. Its facts are those that a crash has prepared,
// gathered anew for this call.
#include "support/system_text.h"

#include "platform/host.h"
#include "platform/machine.h"
#include "runtime/crash/crash_report.h"
#include "runtime/crash/live_process.h"
#include "runtime/crash/protection.h"
#include "runtime/crash/system_facts.h"
#include "runtime/default_code_page.h"
#include "runtime/diagnostics.h"

#include <memory>
#include <vector>
#include <windows.h>

namespace tvut {

namespace {

constexpr std::size_t roomForModules = 512 * 1024; // bytes

class clsTextSink final : public IclsBareSink {
  public:
    bool Write(const void* bytes, std::size_t count) noexcept override {
        try {
            text.append(static_cast<const char*>(bytes), count);
            return true;
        } catch (...) {
            return false;
        }
    }
    std::string text;
};

scReportTime Now() noexcept {
    SYSTEMTIME now;
    GetSystemTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds};
}

std::uint32_t Megabytes(std::uint64_t bytes) noexcept {
    return static_cast<std::uint32_t>(bytes >> 20);
}

void PutUser(clsCrashReport& text) {
    text.PutLine("Language", PlatformUserLocale());
    clsDiagnosticLine codePage;
    text.PutLine("Code page", codePage.PutDecimal(UtilpCodePage(), 1).View());
    const scMemoryUse memory = PlatformMemoryUse();
    clsDiagnosticLine used;
    used.PutDecimal(Megabytes(memory.now), 1).Put(u" MB, at most ").PutDecimal(Megabytes(memory.most), 1);
    text.PutLine("Memory", used.Put(u" MB").View());
}

void PutMonitors(clsCrashReport& text) {
    for (const scMonitor& monitor : PlatformMonitors()) {
        clsDiagnosticLine line;
        line.Put(monitor.width).Put(u" x ").Put(monitor.height).Put(u" at ");
        line.Put(monitor.left).Put(u", ").Put(monitor.top).Put(monitor.isPrimary ? u", primary" : u"");
        text.PutLine("Monitor", line.View());
    }
}

void PutDrives(clsCrashReport& text) {
    for (const scDriveRoom& drive : PlatformDriveRooms()) {
        clsDiagnosticLine line;
        line.Put({&drive.letter, 1}).Put(u": ").PutDecimal(Megabytes(drive.free), 1).Put(u"/");
        line.PutDecimal(Megabytes(drive.total), 1).Put(u" MB free");
        text.PutLine("Drive", line.View());
    }
}

} // namespace

std::string UtilpSystemText() {
    const scProductName product = UtilpProductName();
    const auto facts = std::make_unique<scPreparation>();
    UtilpNoteSystem(*facts);
    std::vector<std::byte> memory(roomForModules);
    clsRoom room(memory);
    clsTextSink sink;
    clsCrashReport text(sink);
    text.PutProgram({product.name, product.version, PlatformHostFileName(), Now(), facts->processId});
    text.PutSystem(UtilpSystemNow(*facts));
    PutUser(text);
    PutMonitors(text);
    PutDrives(text);
    text.PutModules(UtilpModulesOf(UtilpOwnProcess(), facts->drives, room));
    if (!text.Flush())
        throw std::bad_alloc();
    return std::move(sink.text);
}

} // namespace tvut
