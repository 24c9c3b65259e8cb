// Names are kept for a second, because the objects of a report share most of their frames: to look one up
// takes files to be opened and searched. Only what is copied out of them under a guard is used.
#include "runtime/stack_names.h"

#include "platform/guarded.h"
#include "platform/readable_name.h"
#include "platform/wide.h"
#include "runtime/code_point.h"
#include "runtime/indexed_modules.h"
#include "runtime/symbol_service.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>

namespace tvut {

namespace {

constexpr std::size_t longestLinkedName = 1024; // bytes
constexpr std::size_t longestFunction = 400;    // bytes in UTF-8
constexpr std::size_t longestFile = 260;
constexpr DWORD keptFor = 1000; // milliseconds

std::atomic<bool> wanted{false};

clsModuleSymbols* openSymbols = nullptr; // of the outermost object; guarded by the global lock

struct scFoundPlace {
    FunctionName kind = FunctionName::none;
    std::array<char, longestLinkedName> linkedName;
    std::array<char, longestFile> file;
    std::size_t nameLength = 0, fileLength = 0;
    std::uint32_t functionOffset = 0, line = 0;

    std::string_view LinkedName() const noexcept { return {linkedName.data(), nameLength}; }
    std::string_view File() const noexcept { return {file.data(), fileLength}; }
};

// What frames were called of late, in one store of text that begins again when it is full.
class clsRecentFrames {
  public:
    bool Find(const void* address, FrameAddress meaning, scNamedFrame& frame) const noexcept {
        const scRow& row = rows_[IndexOf(address)];
        if (row.address != address || row.meaning != meaning || row.generation != Generation() ||
            GetTickCount() - row.madeAt >= keptFor)
            return false;
        frame = {row.kind, {store_.data() + row.position, row.length}};
        return true;
    }

    scNamedFrame Keep(const void* address, FrameAddress meaning, FrameKind kind,
                      std::u16string_view text) noexcept {
        if (text.size() > store_.size() - used_) {
            ForgetAll();
            used_ = 0;
        }
        text.copy(store_.data() + used_, text.size());
        rows_[IndexOf(address)] = {address,     used_, static_cast<std::uint16_t>(text.size()),
                                   meaning,     kind,  GetTickCount(),
                                   Generation()};
        const scNamedFrame kept{kind, {store_.data() + used_, text.size()}};
        used_ += text.size();
        return kept;
    }

    // From any thread; all else is done under the global lock.
    void ForgetAll() noexcept { generation_.fetch_add(1, std::memory_order_relaxed); }

  private:
    struct scRow {
        const void* address = nullptr;
        std::size_t position = 0;
        std::uint16_t length = 0;
        FrameAddress meaning = FrameAddress::exact;
        FrameKind kind = FrameKind::caller;
        DWORD madeAt = 0; // milliseconds
        unsigned generation = 0;
    };
    static constexpr std::size_t rowCount = 512; // a power of two

    static std::size_t IndexOf(const void* address) noexcept {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return (number ^ number / rowCount) % rowCount;
    }
    unsigned Generation() const noexcept { return generation_.load(std::memory_order_relaxed); }

    std::atomic<unsigned> generation_{0};
    std::array<scRow, rowCount> rows_{};
    std::array<char16_t, std::size_t{64} * 1024> store_{};
    std::size_t used_ = 0;
};

constinit clsRecentFrames recentFrames;
clsIndexedModules indexedModules; // guarded by the global lock

// Bytes as a line shows them: UTF-8, without what would break the line. At most as many as a linked name has.
void PutText(clsDiagnosticLine& line, std::string_view bytes) noexcept {
    std::array<char16_t, longestLinkedName> text;
    char16_t* end = text.data();
    while (!bytes.empty()) {
        const char32_t point = UtilpTakeUtf8(bytes);
        end = UtilpPutUtf16(end, point < U' ' ? U'?' : point);
    }
    line.Put({text.data(), end});
}

void PutOffset(clsDiagnosticLine& line, std::uint32_t offset) noexcept {
    line.Put(u"+0x").PutHex(offset, 1);
}

void PutLineNumber(clsDiagnosticLine& line, std::uint32_t number) noexcept {
    line.Put(u":").PutDecimal(number, 1).Put(u")");
}

// The functions that programs begin with, as linked, less the bytes of their arguments.
bool IsMain(std::string_view name) noexcept {
    constexpr std::array<std::string_view, 4> names{"main", "wmain", "WinMain", "wWinMain"};
    return std::find(names.begin(), names.end(), name.substr(0, name.find('@'))) != names.end();
}

bool IsMain(std::wstring_view name) noexcept {
    std::array<char, 16> narrow;
    if (name.size() > narrow.size())
        return false;
    std::transform(name.begin(), name.end(), narrow.begin(),
                   [](wchar_t unit) { return static_cast<char>(unit); });
    return IsMain(std::string_view(narrow.data(), name.size()));
}

// Where threads begin: the system's own libraries, and the C runtimes that begin threads for their callers.
bool IsOfSystem(std::u16string_view fileName) noexcept {
    constexpr std::array<std::u16string_view, 5> names{u"ntdll.dll", u"kernel32.dll", u"kernelbase.dll",
                                                       u"msvcrt.dll", u"ucrtbase.dll"};
    return std::any_of(names.begin(), names.end(), [&](std::u16string_view name) {
        return CompareStringOrdinal(ToWide(name.data()), static_cast<int>(name.size()),
                                    ToWide(fileName.data()), static_cast<int>(fileName.size()),
                                    TRUE) == CSTR_EQUAL;
    });
}

FrameKind KindOf(const clsModuleAt& module) noexcept {
    if (module.Base() == PlatformOwnModule())
        return FrameKind::library;
    return IsOfSystem(module.FileName()) ? FrameKind::system : FrameKind::caller;
}

void TakePlace(const scCodePlace& place, scFoundPlace& found) noexcept {
    found.nameLength = place.function.copy(found.linkedName.data(), found.linkedName.size());
    found.fileLength = place.source.file.copy(found.file.data(), found.file.size());
    found.functionOffset = place.functionOffset;
    found.line = place.source.line;
    found.kind = place.kind;
}

// Files are views, so what is found in them is copied under the guard.
void FindPlace(const clsModuleSymbols::scModule& files, std::uint32_t offset, scFoundPlace& found) noexcept {
    auto find = [&] { TakePlace(files.Symbols().Find(offset), found); };
    if (PlatformGuarded(find) != 0)
        found.kind = FunctionName::none;
}

// A name before the frame's address, by so many bytes.
void PutFunction(clsDiagnosticLine& line, const scFoundPlace& place, std::uint32_t before) noexcept {
    std::array<char, longestFunction> readable;
    line.Put(u" ");
    PutText(line, PlatformReadableName(place.LinkedName(), readable));
    PutOffset(line, place.functionOffset + before);
    if (place.fileLength == 0 || place.line == 0)
        return;
    line.Put(u" (");
    PutText(line, place.File());
    PutLineNumber(line, place.line);
}

void PutFunction(clsDiagnosticLine& line, const scServiceFunction& function, std::uint32_t before) noexcept {
    line.Put(u" ").Put(FromWide(std::wstring_view(function.function.data())));
    PutOffset(line, function.functionOffset + before);
    if (function.file[0] == 0)
        return;
    line.Put(u" (").Put(FromWide(std::wstring_view(function.file.data())));
    PutLineNumber(line, function.line);
}

// Module and offset, and what its symbols know. False where the address lies in no module.
bool PutPlace(clsDiagnosticLine& line, clsModuleSymbols& symbols, const scImageStamp& stamp,
              const char* sought, std::uint32_t before, FrameKind& kind, scFoundPlace& place) noexcept {
    const auto offset = static_cast<std::uint32_t>(sought - static_cast<const char*>(stamp.base));
    if (const scIndexedModule* const known = indexedModules.Find(stamp)) {
        PutOffset(line.Put(known->Name()), offset + before);
        kind = known->kind;
        TakePlace(known->index.Find(offset), place);
        return true;
    }
    const clsModuleAt module(sought);
    if (module.Path().empty())
        return false;
    PutOffset(line.Put(module.FileName()), module.OffsetOf(sought) + before);
    kind = KindOf(module);
    const clsModuleSymbols::scModule& files = symbols.Of(module);
    FindPlace(files, module.OffsetOf(sought), place);
    if (stamp.base)
        indexedModules.NoteSearch(stamp, module, kind, files);
    return true;
}

} // namespace

void UtilpWantStackNames() noexcept {
    wanted.store(true, std::memory_order_relaxed);
}

void UtilpPrepareStackNames() noexcept {
    if (wanted.load(std::memory_order_relaxed) && UtilpDiagnosticsOn())
        UtilpPrepareStackNamesAsked();
}

void UtilpPrepareStackNamesAsked() noexcept {
    if (UtilpPrepareSymbolService())
        recentFrames.ForgetAll();
}

clsStackNames::clsStackNames() noexcept : symbols_(openSymbols ? openSymbols : &ownSymbols_) {
    openSymbols = symbols_;
}

clsStackNames::~clsStackNames() {
    if (openSymbols == &ownSymbols_)
        openSymbols = nullptr;
}

scNamedFrame clsStackNames::Name(const void* address, FrameAddress meaning) noexcept {
    scNamedFrame frame;
    if (recentFrames.Find(address, meaning, frame))
        return frame;
    clsDiagnosticLine line;
    const std::uint32_t before = meaning == FrameAddress::afterCall ? 1 : 0;
    const auto number = reinterpret_cast<std::uintptr_t>(address);
    const auto* const sought = reinterpret_cast<const char*>(number - before); // null ends some stacks
    scFoundPlace place;
    if (number - before - reinterpret_cast<std::uintptr_t>(lastModule_.base) >= lastModule_.size)
        lastModule_ = PlatformImageStampAt(sought);
    if (!PutPlace(line, *symbols_, lastModule_, sought, before, frame.kind, place)) {
        return recentFrames.Keep(address, meaning, address ? FrameKind::caller : FrameKind::system,
                                 line.Put(u"0x").PutHex(static_cast<std::uint32_t>(number), 8).View());
    }
    scServiceFunction function;
    if (place.kind != FunctionName::symbol)
        UtilpAskSymbolService(sought, function);
    if (place.kind != FunctionName::symbol && function.function[0] != 0) {
        PutFunction(line, function, before);
        frame.kind = IsMain(std::wstring_view(function.function.data())) ? FrameKind::main : frame.kind;
    } else if (place.kind != FunctionName::none) {
        PutFunction(line, place, before);
        frame.kind = IsMain(place.LinkedName()) ? FrameKind::main : frame.kind;
    }
    return recentFrames.Keep(address, meaning, frame.kind, line.View());
}

} // namespace tvut
