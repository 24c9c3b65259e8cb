// Each part is written under a guard of its own, so that a fault in one, such as a stack that leads nowhere,
// leaves all others. What is large stands in the prepared room; the thread's stack is small.
#include "runtime/crash/crash_files.h"

#include "platform/guarded.h"
#include "runtime/crash/dump_writer.h"
#include "runtime/crash/frame_walk.h"
#include "runtime/crash/live_process.h"
#include "runtime/crash/module_names.h"
#include "runtime/crash/system_facts.h"

namespace tvut {

namespace {

constexpr std::size_t mostFrames = 64;
constexpr unsigned mostTries = 99; // names that are taken

// ---- Time -----------------------------------------------------------------------------------------

// Days since 1601-03-01 as a date: in years that begin in March, a leap day comes last.
scReportTime TimeOf(std::uint64_t time) noexcept {
    constexpr std::uint32_t daysInEra = 146097; // of 400 years
    constexpr std::uint32_t fromMarch1600 = 306;
    const auto milliseconds = static_cast<std::uint32_t>(time / 10000 % 86400000);
    const auto days = static_cast<std::uint32_t>(time / 864000000000) + fromMarch1600;
    const std::uint32_t era = days / daysInEra, day = days % daysInEra;
    const std::uint32_t year = (day - day / 1460 + day / 36524 - day / 146096) / 365;
    const std::uint32_t dayOfYear = day - (365 * year + year / 4 - year / 100);
    const std::uint32_t month = (5 * dayOfYear + 2) / 153;
    const auto number = [](std::uint32_t value) { return static_cast<std::uint16_t>(value); };
    return {.year = number(1600 + era * 400 + year + (month >= 10)),
            .month = number(month < 10 ? month + 3 : month - 9),
            .day = number(dayOfYear - (153 * month + 2) / 5 + 1),
            .hour = number(milliseconds / 3600000),
            .minute = number(milliseconds / 60000 % 60),
            .second = number(milliseconds / 1000 % 60),
            .millisecond = number(milliseconds % 1000)};
}

// ---- Names of files -------------------------------------------------------------------------------

CrashPath PathOf(const scPreparation& preparation, const scReportTime& time, unsigned number) noexcept {
    clsDiagnosticLine name;
    name.PutDecimal(time.year, 4).PutDecimal(time.month, 2).PutDecimal(time.day, 2).Put(u"-");
    name.PutDecimal(time.hour, 2).PutDecimal(time.minute, 2).PutDecimal(time.second, 2).Put(u"-");
    name.PutDecimal(preparation.processId, 1);
    if (number > 1)
        name.Put(u"-").PutDecimal(number, 1);
    CrashPath path;
    return path.Put(preparation.prefix.View()).Put(name.View());
}

CrashPath With(const CrashPath& path, std::u16string_view ending) noexcept {
    CrashPath longer = path;
    return longer.Put(ending);
}

// "0xC000007F".
std::array<char16_t, 10> StatusText(BareStatus status) noexcept {
    std::array<char16_t, 10> text{u'0', u'x'};
    for (std::size_t i = 0; i < 8; ++i)
        text[2 + i] = u"0123456789ABCDEF"[static_cast<std::uint32_t>(status) >> (28 - 4 * i) & 0xF];
    return text;
}

std::u16string_view From(std::u16string_view text, std::size_t position) noexcept {
    return {text.data() + position, text.size() - position};
}

std::u16string_view LastComponent(std::u16string_view path) noexcept {
    return From(path, path.rfind(u'\\') + 1);
}

// As callers open files: "\\?\" where the path is too long for its plain form.
void GiveTo(CrashPath& to, std::u16string_view native) noexcept {
    constexpr std::size_t prefix = 4, longestPlain = 259;
    constexpr std::u16string_view share = u"UNC\\";
    const std::u16string_view rest = From(native, prefix);
    if (rest.size() > longestPlain) {
        to.Set(u"\\\\?\\");
        to.Put(rest);
    } else if (rest.starts_with(share)) {
        to.Set(u"\\\\");
        to.Put(From(rest, share.size()));
    } else {
        to.Set(rest);
    }
}

// ---- The crash ------------------------------------------------------------------------------------

std::u16string_view ReasonOf(const scCrashEvent& event) noexcept {
    switch (event.kind) {
    case CrashKind::abort:
        return u"abort";
    case CrashKind::pureCall:
        return u"pure virtual call";
    case CrashKind::invalidParameter:
        return u"invalid parameter";
    default:
        return UtilpReasonOf(event.exception->ExceptionRecord->ExceptionCode);
    }
}

// A crash that is being written down.
class clsCrashFiles {
  public:
    clsCrashFiles(const scPreparation& preparation, const scCrashEvent& event) noexcept
        : prepared_(preparation), event_(event), now_(PlatformBareTime()), time_(TimeOf(now_)),
          exception_(UtilpExceptionOf(*event.exception->ExceptionRecord, event.thread)),
          context_(UtilpContextOf(*event.exception->ContextRecord)), memory_(UtilpOwnProcess()),
          room_(preparation.room) {}

    void Write(scCrashFiles& files) noexcept;

  private:
    bool MakeReport() noexcept;
    void PutHead() noexcept;
    void PutStack() noexcept;
    void WriteReport() noexcept;
    BareStatus WriteDump() noexcept;
    BareStatus WriteDumpTo(clsBareFile& file) noexcept;
    void PutLastLine(BareStatus dump) noexcept;

    const scPreparation& prepared_;
    const scCrashEvent& event_;
    std::uint64_t now_;
    scReportTime time_;
    scException exception_;
    scThreadContext context_;
    clsLiveMemory memory_;
    clsRoom room_;
    CrashPath path_; // without its ending
    clsBareFile file_;
    clsBareFileSink sink_{file_};
    clsCrashReport report_{sink_};
    std::span<const scModule> modules_;
};

bool clsCrashFiles::MakeReport() noexcept {
    for (unsigned number = 1; number <= mostTries; ++number) {
        path_ = PathOf(prepared_, time_, number);
        const BareStatus status = file_.MakeNew(With(path_, u".txt").View());
        if (status != bareStatus::nameCollision)
            return status >= 0;
    }
    return false;
}

void clsCrashFiles::PutHead() noexcept {
    report_.PutTitle();
    report_.PutProgram({.product = prepared_.product.View(),
                        .version = prepared_.version.View(),
                        .path = prepared_.program.View(),
                        .time = time_,
                        .processId = prepared_.processId});
    report_.PutEvent(exception_, ReasonOf(event_), context_);
    report_.PutSystem(UtilpSystemNow(prepared_));
    report_.PutNotes(UtilpNotes());
}

void clsCrashFiles::PutStack() noexcept {
    report_.PutStackHead();
    scFrame frames[mostFrames];
    clsModuleNames names;
    const std::size_t count = UtilpWalkFrames(memory_, UtilpWalkStart(context_), frames);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t address = frames[i].address;
        clsDiagnosticLine line;
        names.Put(line, modules_, address, i == 0 || address == 0 ? address : address - 1);
        report_.PutFrame(line.View(), frames[i].isGuess);
    }
}

void clsCrashFiles::WriteReport() noexcept {
    auto head = [this] { PutHead(); };
    auto modules = [this] { modules_ = UtilpModulesOf(UtilpOwnProcess(), prepared_.drives, room_); };
    auto stack = [this] { PutStack(); };
    auto moduleList = [this] { report_.PutModules(modules_); };
    PlatformGuarded(head);
    report_.Flush(); // whatever comes of the rest
    PlatformGuarded(modules);
    PlatformGuarded(stack);
    PlatformGuarded(moduleList);
    report_.Flush();
    file_.Flush();
}

BareStatus clsCrashFiles::WriteDumpTo(clsBareFile& file) noexcept {
    clsRoom room = room_;
    clsStoppedThreads threads(UtilpOwnProcess(), prepared_.processId, event_.thread, PlatformBareThreadId(),
                              room);
    threads.Add(event_.thread, context_);
    const std::span<char16_t> comment = room.Take<char16_t>(clsNotes::longestText);
    const std::size_t commentLength = UtilpNotes().ReadAll(comment);
    const clsNotes* const notes = &UtilpNotes();
    const scMemoryRange extra[] = {
        {static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(notes)), sizeof *notes}};
    scDumpPicture picture{.time = UtilpDumpTime(now_),
                          .system = prepared_.dumpSystem,
                          .misc = {.flags = 1, .processId = prepared_.processId},
                          .threads = threads.Threads(),
                          .modules = modules_,
                          .exception = &exception_,
                          .exceptionContext = &context_,
                          .comment = {comment.data(), commentLength},
                          .extra = extra,
                          .isFull = prepared_.isFull};
    clsBareFileSink sink(file);
    BareStatus status = bareStatus::insufficientResources;
    auto write = [&] {
        clsDumpWriter writer(picture, memory_, room.Rest());
        if (writer.Measure() != 0 && writer.Write(sink))
            status = 0;
        else if (sink.Status() < 0)
            status = sink.Status();
    };
    const auto fault = static_cast<BareStatus>(PlatformGuarded(write));
    return fault != 0 ? fault : status;
}

BareStatus clsCrashFiles::WriteDump() noexcept {
    clsBareFile file;
    BareStatus status = file.MakeNew(With(path_, u".dmp.part").View());
    if (status < 0)
        return status;
    status = WriteDumpTo(file);
    if (status >= 0)
        status = file.Flush();
    if (status >= 0)
        status = file.Rename(With(path_, u".dmp").View());
    if (status < 0)
        file.Remove();
    return status;
}

void clsCrashFiles::PutLastLine(BareStatus dump) noexcept {
    const std::array why = StatusText(dump);
    if (dump >= 0)
        report_.PutDump(LastComponent(With(path_, u".dmp").View()));
    else
        report_.PutNoDump({why.data(), why.size()});
    report_.Flush();
    file_.Flush();
}

void clsCrashFiles::Write(scCrashFiles& files) noexcept {
    const bool hasReport = MakeReport();
    if (!hasReport)
        return;
    WriteReport();
    const BareStatus dump = WriteDump();
    PutLastLine(dump);
    file_.Close();
    GiveTo(files.report, With(path_, u".txt").View());
    if (dump >= 0)
        GiveTo(files.dump, With(path_, u".dmp").View());
}

} // namespace

void UtilpWriteCrashFiles(const scPreparation& preparation, const scCrashEvent& event,
                          scCrashFiles& files) noexcept {
    clsCrashFiles(preparation, event).Write(files);
}

} // namespace tvut
