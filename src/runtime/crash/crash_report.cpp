// Values of others pass through one function, character by character, so that none can end a line or hide the
// next. Numbers are put by digits of our own: a process that crashes may hold the locks of the C runtime.
#include "runtime/crash/crash_report.h"

#include "runtime/code_point.h"
#include "runtime/digits.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

constexpr std::uint32_t accessViolation = 0xC0000005;

struct scReason {
    std::uint32_t code;
    std::u16string_view text;
};
constexpr std::array<scReason, 8> reasons{{
    {accessViolation, u"access violation"},
    {0xC00000FD, u"stack overflow"},
    {0xC000001D, u"illegal instruction"},
    {0xC0000094, u"integer division by zero"},
    {0x80000003, u"breakpoint"},
    {0xE06D7363, u"C++ exception"}, // thrown by MSVC's runtime
    {0x20474343, u"C++ exception"}, // and by GCC's
    {0x21474343, u"C++ exception"}, // while it unwinds
}};

struct scAccess {
    std::uint32_t kind;
    std::string_view text;
};
constexpr std::array<scAccess, 3> accesses{{{0, "read"}, {1, "write"}, {8, "execute"}}};

struct scRegister {
    std::string_view text;
    std::uint32_t scThreadContext::*value;
};
constexpr std::array<scRegister, 10> registers{{{"eax=", &scThreadContext::eax},
                                                {" ebx=", &scThreadContext::ebx},
                                                {" ecx=", &scThreadContext::ecx},
                                                {" edx=", &scThreadContext::edx},
                                                {" esi=", &scThreadContext::esi},
                                                {" edi=", &scThreadContext::edi},
                                                {" ebp=", &scThreadContext::ebp},
                                                {" esp=", &scThreadContext::esp},
                                                {" eip=", &scThreadContext::eip},
                                                {" efl=", &scThreadContext::eflags}}};

bool IsControl(std::uint32_t code) noexcept {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

} // namespace

std::u16string_view UtilpReasonOf(std::uint32_t exceptionCode) noexcept {
    const auto* const found =
        std::find_if(reasons.data(), reasons.data() + reasons.size(),
                     [&](const scReason& reason) { return reason.code == exceptionCode; });
    return found != reasons.data() + reasons.size() ? found->text : u"exception";
}

void clsCrashReport::PutTitle() noexcept {
    Put("tvUT22 report 1").EndLine();
}

void clsCrashReport::PutProgram(const scReportProgram& program) noexcept {
    PutLine("Product", program.product);
    PutLine("Version", program.version);
    PutLine("Program", program.path);
    const scReportTime& time = program.time;
    Put("Time: ")
        .PutDecimal(time.year, 4)
        .Put("-")
        .PutDecimal(time.month, 2)
        .Put("-")
        .PutDecimal(time.day, 2);
    Put("T").PutDecimal(time.hour, 2).Put(":").PutDecimal(time.minute, 2).Put(":").PutDecimal(time.second, 2);
    Put(".").PutDecimal(time.millisecond, 3).Put("Z").EndLine();
    Put("Process: ").PutDecimal(program.processId).EndLine();
}

void clsCrashReport::PutEvent(const scException& exception, std::u16string_view reason,
                              const scThreadContext& context) noexcept {
    Put("Thread: ").PutDecimal(exception.threadId).EndLine();
    PutLine("Reason", reason);
    Put("Code: ").PutCode(exception.code).EndLine();
    Put("Address: ").PutCode(exception.address).EndLine();
    if (exception.code == accessViolation && exception.parameterCount >= 2)
        PutAccess(exception);
    PutRegisters(context);
}

void clsCrashReport::PutAccess(const scException& exception) noexcept {
    for (const scAccess& access : accesses) {
        if (access.kind == exception.parameters[0])
            Put("Access: ").Put(access.text).Put(" ").PutCode(exception.parameters[1]).EndLine();
    }
}

void clsCrashReport::PutRegisters(const scThreadContext& context) noexcept {
    Put("Registers: ");
    for (const scRegister& one : registers)
        Put(one.text).PutHex(context.*one.value);
    EndLine();
}

void clsCrashReport::PutSystem(const scReportSystem& system) noexcept {
    Put("System: Windows ").PutDecimal(system.major).Put(".").PutDecimal(system.minor);
    Put(".").PutDecimal(system.build).Put(", ").PutDecimal(system.processors).Put(" processors, memory ");
    PutDecimal(system.memoryUsed).Put("/").PutDecimal(system.memoryThere).Put(" MB, address space ");
    PutDecimal(system.addressesUsed).Put("/").PutDecimal(system.addressesThere).Put(" MB").EndLine();
}

void clsCrashReport::PutNotes(const clsNotes& notes) noexcept {
    scNote note;
    for (std::size_t place = 0; place < clsNotes::most; ++place) {
        if (notes.Read(place, note))
            Put("Note: ").Put(note.Name()).Put("=").Put(note.Value()).EndLine();
    }
}

void clsCrashReport::PutStackHead() noexcept {
    Put("Stack:").EndLine();
}

void clsCrashReport::PutFrame(std::u16string_view line, bool isGuess) noexcept {
    Put("  ").Put(line).Put(isGuess ? " ?" : "").EndLine();
}

void clsCrashReport::PutModules(std::span<const scModule> modules) noexcept {
    Put("Modules:").EndLine();
    for (const scModule& module : modules) {
        Put("  ").PutHex(module.range.address).Put("-");
        PutHex(static_cast<std::uint32_t>(module.range.End() - 1)).Put(" ");
        PutVersion(module).Put(" ").Put(module.path).EndLine();
    }
}

clsCrashReport& clsCrashReport::PutVersion(const scModule& module) noexcept {
    return PutDecimal(module.fileVersionHigh >> 16)
        .Put(".")
        .PutDecimal(module.fileVersionHigh & 0xFFFF)
        .Put(".")
        .PutDecimal(module.fileVersionLow >> 16)
        .Put(".")
        .PutDecimal(module.fileVersionLow & 0xFFFF);
}

void clsCrashReport::PutDump(std::u16string_view fileName) noexcept {
    PutLine("Dump", fileName);
}

void clsCrashReport::PutNoDump(std::u16string_view why) noexcept {
    Put("Dump: none (").Put(why).Put(")").EndLine();
}

void clsCrashReport::PutLine(std::string_view name, std::u16string_view value) noexcept {
    Put(name).Put(": ").Put(value).EndLine();
}

clsCrashReport& clsCrashReport::Put(std::u16string_view text) noexcept {
    while (!text.empty()) {
        const std::uint32_t code = UtilpTakeUtf16(text);
        std::array<char, 4> bytes;
        const char* const end = UtilpPutUtf8(bytes.data(), IsControl(code) ? U' ' : code);
        Put(std::string_view(bytes.data(), end));
    }
    return *this;
}

clsCrashReport& clsCrashReport::Put(std::string_view ascii) noexcept {
    if (ascii.size() > buffer_.size() - length_)
        Flush();
    std::memcpy(buffer_.data() + length_, ascii.data(), ascii.size());
    length_ += ascii.size();
    return *this;
}

clsCrashReport& clsCrashReport::PutDecimal(std::uint32_t number, std::size_t digits) noexcept {
    return Put(clsDigits<char>(number, 10, digits).View());
}

clsCrashReport& clsCrashReport::PutHex(std::uint32_t number) noexcept {
    return Put(clsDigits<char>(number, 16, 8).View());
}

clsCrashReport& clsCrashReport::PutCode(std::uint32_t number) noexcept {
    return Put("0x").Put(clsDigits<char>(number, 16, 8, upperDigits).View());
}

// What the sink does not take is dropped, or nothing that comes after it could be written, either.
bool clsCrashReport::Flush() noexcept {
    if (length_ != 0 && !sink_.Write(buffer_.data(), length_))
        isWhole_ = false;
    length_ = 0;
    return isWhole_;
}

} // namespace tvut
