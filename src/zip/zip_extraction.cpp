// Everything that can be refused is refused on the directory alone, before the first byte is written. What
// shows only when an entry is unpacked costs that entry and no other, unless it is that nothing can be read
// or written any more.
#include "zip/zip_extraction.h"

#include "runtime/diagnostics.h"
#include "zip/zip_progress.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tvut {

namespace {

struct scWords {
    ZipFault fault;
    std::u16string_view words;
    bool hasNumber;
};

constexpr std::array<scWords, 10> archiveWords{{
    {ZipFault::noArchive, u"no ZIP archive", false},
    {ZipFault::badDirectory, u"damaged directory", false},
    {ZipFault::overlap, u"entries overlap", false},
    {ZipFault::unsafeName, u"name leads out of the folder: ", false},
    {ZipFault::tooManyBytes, u"more than ", false},
    {ZipFault::tooManyEntries, u"too many entries", false},
    {ZipFault::severalDisks, u"several disks", false},
    {ZipFault::longPath, u"path too long: ", false},
    {ZipFault::unreadable, u"cannot be read (", true},
    {ZipFault::noTarget, u"cannot be written (", true},
}};

constexpr std::array<scWords, 8> entryWords{{
    {ZipFault::damaged, u"damaged", false},
    {ZipFault::method, u"method ", true},
    {ZipFault::password, u"wrong password", false},
    {ZipFault::link, u"symbolic link", false},
    {ZipFault::linkFolder, u"folder is a link", false},
    {ZipFault::noTarget, u"cannot be written (", true},
    {ZipFault::unwritable, u"cannot be written (", true},
    {ZipFault::unreadable, u"cannot be read (", true},
}};

template <std::size_t count>
void PutWords(clsDiagnosticLine& line, const std::array<scWords, count>& table, const clsZIPError& error) {
    const auto found = std::ranges::find(table, error.Fault(), &scWords::fault);
    if (found == table.end())
        return;
    line.Put(found->words);
    if (found->hasNumber)
        line.PutDecimal(error.Number(), 1);
    if (found->words.ends_with(u'('))
        line.Put(u")");
}

// A fault that the other entries would meet, too.
bool EndsAll(ZipFault fault) {
    return fault == ZipFault::cancelled || fault == ZipFault::unwritable || fault == ZipFault::unreadable;
}

} // namespace

// An entry's contents on their way to its file. That is made when the first of them come: what fails before
// that leaves no trace.
class clsZIPExtraction::clsTargetSink final : public clsByteSink {
  public:
    clsTargetSink(clsZIPExtraction& extraction, std::uint32_t index)
        : extraction_(extraction), index_(index) {}

    void Extend(std::uint64_t bytes) override { bytes_ = bytes; }
    void Write(const void* data, std::size_t bytes) override {
        if (bytes != 0 && done_ - told_ >= progressBytes) // the end is shown once the file is in place
            extraction_.TellProgress(index_, told_ = done_);
        if (IclsTargetFile* const file = File())
            CallFile([&] { file->Write(data, bytes); });
        done_ += bytes;
    }
    void Finish() override {
        if (IclsTargetFile* const file = File())
            CallFile([&] { file->Finish(); });
    }
    void PutInPlace(const scFileMarks& marks) {
        if (file_)
            file_->PutInPlace(marks, !extraction_.order_.keepsExisting);
    }

  private:
    // None when nothing is to be written.
    IclsTargetFile* File() {
        if (!file_ && extraction_.target_) {
            extraction_.EnterFolder();
            file_ = extraction_.target_->NewFile(extraction_.path_);
            CallFile([this] { file_->Extend(bytes_); });
        }
        return file_.get();
    }
    template <class Call>
    static void CallFile(Call call) {
        try {
            call();
        } catch (const clsException& error) {
            throw clsZIPError(ZipFault::unwritable, error);
        }
    }

    clsZIPExtraction& extraction_;
    std::uint32_t index_;
    std::unique_ptr<IclsTargetFile> file_;
    std::uint64_t bytes_ = 0, done_ = 0, told_ = 0;
};

clsZIPExtraction::clsZIPExtraction(clsRandomSource& source, const scZipExtractionOrder& order,
                                   IclsTargetFolder* target, IclsZipCallback* callback)
    : order_(order), target_(target), callback_(callback), reader_(source), passwords_(order.password) {}

UtilResult clsZIPExtraction::Run() {
    try {
        reader_.Open();
        CheckNames();
        reader_.Directory().CheckPositions();
        NamePaths();
        AskForEach();
        CheckRoom();
        MakeTarget();
    } catch (const clsZIPError& error) {
        TellArchive(error);
        return UtilpResultOf(error.Fault());
    }
    return UnpackWanted();
}

// ---- Before anything is written -----------------------------------------------------------------

void clsZIPExtraction::CheckNames() {
    for (const scZipEntry& entry : reader_.Directory().Entries()) {
        if (entry.Is(scZipEntry::plainName) && order_.folder.size() + 2 * entry.nameBytes <= longestZipPath)
            continue;
        const ZipNameKind kind = reader_.Directory().ReadName(entry, name_);
        UtilpRequire(kind != ZipNameKind::unsafe, ZipFault::unsafeName);
        UtilpRequire(kind != ZipNameKind::none, ZipFault::badDirectory);
        if (order_.folder.size() + 2 * name_.size() <= longestZipPath)
            continue;
        UtilpMakePossiblePath(name_, path_);
        UtilpRequire(order_.folder.size() + 1 + path_.size() <= longestZipPath, ZipFault::longPath);
    }
}

void clsZIPExtraction::NamePaths() {
    if (!target_)
        return;
    paths_.emplace(reader_.Directory());
    fullPath_ = order_.folder;
    if (!fullPath_.ends_with(u'\\'))
        fullPath_ += u'\\';
}

void clsZIPExtraction::AskForEach() {
    wanted_.assign(Count(), true);
    for (std::uint32_t index = 0; callback_ && index < Count(); ++index) {
        Look(index);
        const ZipAnswer answer = Show(index, true, 0);
        UtilpRequire(answer != ZipAnswer::cancel, ZipFault::cancelled);
        wanted_[index] = answer != ZipAnswer::skip;
    }
}

bool clsZIPExtraction::IsAnyWanted() const {
    return std::ranges::find(wanted_, true) != wanted_.end();
}

void clsZIPExtraction::CheckRoom() {
    std::uint64_t bytes = 0;
    for (std::uint32_t index = 0; index < Count(); ++index) {
        if (wanted_[index])
            bytes += std::min(Entry(index).bytes, std::numeric_limits<std::uint64_t>::max() - bytes);
    }
    allowed_ = order_.limit;
    UtilpRequire(bytes <= allowed_, ZipFault::tooManyBytes);
    if (!target_ || !IsAnyWanted())
        return;
    try {
        allowed_ = std::min(allowed_, target_->FreeBytes());
    } catch (const clsException&) { // a volume that does not tell: writing will show
    }
    UtilpRequire(bytes <= allowed_, ZipFault::tooManyBytes);
}

// ---- Unpacking ----------------------------------------------------------------------------------

// Of an archive in which nothing is, too; not for somebody who only looks what is there.
void clsZIPExtraction::MakeTarget() {
    if (!target_ || (Count() != 0 && !IsAnyWanted()))
        return;
    try {
        target_->Make();
    } catch (const clsException& error) {
        throw clsZIPError(ZipFault::noTarget, error);
    }
}

UtilResult clsZIPExtraction::UnpackWanted() {
    UtilResult first = UtilResult::ok;
    for (std::uint32_t index = 0; index < Count(); ++index) {
        if (!wanted_[index])
            continue;
        try {
            UnpackOne(index);
        } catch (const clsZIPError& error) {
            TellEntry(error);
            first = first == UtilResult::ok ? UtilpResultOf(error.Fault()) : first;
            if (EndsAll(error.Fault()))
                return error.Fault() == ZipFault::cancelled ? UtilResult::cancelled : first;
        }
    }
    return first;
}

void clsZIPExtraction::UnpackOne(std::uint32_t index) {
    Look(index);
    try {
        TellRenamed(index);
        if (Entry(index).Is(scZipEntry::folder))
            UnpackFolder(index);
        else if (!IsThereAndStays())
            UnpackFile(index);
    } catch (const clsZIPError&) {
        throw;
    } catch (const clsException& error) { // of the target
        throw clsZIPError(ZipFault::noTarget, error);
    }
}

void clsZIPExtraction::UnpackFolder(std::uint32_t index) {
    reader_.Check(Entry(index));
    UtilpRequire(Entry(index).bytes == 0, ZipFault::damaged);
    if (target_)
        UtilpRequire(target_->Enter(path_), ZipFault::linkFolder);
    TellProgress(index, 0);
}

void clsZIPExtraction::UnpackFile(std::uint32_t index) {
    const scZipEntry& entry = Entry(index);
    clsTargetSink sink(*this, index);
    reader_.Unpack(entry, passwords_, sink);
    sink.PutInPlace(
        {entry.modified, entry.created, entry.Is(scZipEntry::readOnly), entry.Is(scZipEntry::hidden)});
    TellProgress(index, entry.bytes);
}

bool clsZIPExtraction::IsThereAndStays() {
    if (!target_ || !order_.keepsExisting || !target_->Exists(path_))
        return false;
    EnterFolder();
    return true;
}

// The folder of the file that is looked at.
void clsZIPExtraction::EnterFolder() {
    const std::size_t end = path_.rfind(u'\\');
    const std::u16string_view folder(path_.data(), end == path_.npos ? 0 : end);
    UtilpRequire(target_->Enter(folder), ZipFault::linkFolder);
}

// ---- Telling ------------------------------------------------------------------------------------

// Makes an entry the one that is looked at.
void clsZIPExtraction::Look(std::uint32_t index) {
    reader_.Directory().ReadName(Entry(index), name_);
    if (!paths_)
        return;
    paths_->Read(index, path_);
    const std::u16string_view plain =
        name_.ends_with(u'/') ? std::u16string_view(name_).substr(0, name_.size() - 1) : name_;
    isRenamed_ = !std::ranges::equal(
        plain, path_, [](char16_t a, char16_t b) { return a == b || (a == u'/' && b == u'\\'); });
    const std::size_t start = order_.folder.size() + (order_.folder.ends_with(u'\\') ? 0 : 1);
    fullPath_.resize(path_.empty() ? order_.folder.size() : start, u'\\');
    fullPath_ += path_;
}

ZipAnswer clsZIPExtraction::Show(std::uint32_t index, bool isQuestion, std::uint64_t done) {
    const scZipEntry& entry = Entry(index);
    scShownZipEntry shown;
    shown.name = name_.c_str();
    shown.target = target_ ? fullPath_.c_str() : nullptr;
    shown.isFolder = entry.Is(scZipEntry::folder);
    shown.isEncrypted = entry.Is(scZipEntry::encrypted);
    shown.isLink = entry.Is(scZipEntry::link);
    shown.isRenamed = target_ && isRenamed_;
    shown.isQuestion = isQuestion;
    shown.bytes = entry.bytes;
    shown.packed = entry.packed;
    shown.done = done;
    shown.modified = entry.modified;
    shown.index = index;
    shown.count = Count();
    return callback_->Show(shown);
}

void clsZIPExtraction::TellProgress(std::uint32_t index, std::uint64_t done) {
    if (callback_)
        UtilpRequire(Show(index, false, done) != ZipAnswer::cancel, ZipFault::cancelled);
}

void clsZIPExtraction::TellRenamed(std::uint32_t index) {
    if (target_ && isRenamed_ && wanted_[index])
        clsDiagnosticLine()
            .Put(u"WRN: UtilExtractZip('")
            .Put(order_.archive)
            .Put(u"')['")
            .Put(name_)
            .Put(u"']: written as '")
            .Put(path_)
            .Put(u"'")
            .Write();
}

void clsZIPExtraction::TellArchive(const clsZIPError& error) const {
    if (error.Fault() == ZipFault::cancelled)
        return;
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilExtractZip('").Put(order_.archive).Put(u"'): ");
    PutWords(line, archiveWords, error);
    if (error.Fault() == ZipFault::unsafeName || error.Fault() == ZipFault::longPath)
        line.Put(u"'").Put(name_).Put(u"'");
    if (error.Fault() == ZipFault::tooManyBytes)
        line.PutLarge(allowed_).Put(u" bytes");
    line.Write();
}

void clsZIPExtraction::TellEntry(const clsZIPError& error) const {
    if (error.Fault() == ZipFault::cancelled)
        return;
    clsDiagnosticLine line;
    line.Put(u"ERR: UtilExtractZip('").Put(order_.archive).Put(u"')['").Put(name_).Put(u"']: ");
    PutWords(line, entryWords, error);
    line.Write();
}

} // namespace tvut
