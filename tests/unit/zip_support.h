// What tests of archives share: memory that archives are written to and read from, a target folder in memory,
// callers who answer, and archives made record by record.
#pragma once

#include "unit/native_platform.h"
#include "zip/zip_extraction.h"
#include "zip/zip_writer.h"

#include <zlib.h>

#include <functional>
#include <map>
#include <set>

namespace tvut {

// Fails at a chosen call that changes it, counted from 1, and never works again.
class clsMemoryArchive final : public clsRandomSource, public clsPatchableSink {
  public:
    clsMemoryArchive() = default;
    explicit clsMemoryArchive(std::string archive) : bytes(std::move(archive)) {}

    std::uint64_t Size() override { return bytes.size(); }
    std::size_t ReadAt(std::uint64_t position, void* buffer, std::size_t count) override {
        read += count;
        return position >= bytes.size() ? 0 : bytes.copy(static_cast<char*>(buffer), count, position);
    }
    void Write(const void* data, std::size_t count) override {
        Step();
        bytes.append(static_cast<const char*>(data), count);
    }
    void Patch(std::uint64_t position, const void* data, std::size_t count) override {
        Step();
        bytes.replace(position, count, static_cast<const char*>(data), count);
    }
    void Cut(std::uint64_t size) override {
        Step();
        bytes.resize(size);
    }

    std::string bytes;
    int failAt = 0, steps = 0;
    std::uint64_t read = 0;

  private:
    void Step() {
        if (++steps == failAt || (failAt != 0 && steps > failAt))
            throw clsException("archive is full");
    }
};

class clsNoProgress final : public IclsZipProgress {
  public:
    void Tell(std::uint64_t, std::uint64_t, bool) override {}
};

// A folder in memory.
class clsMemoryTarget final : public IclsTargetFolder {
  public:
    struct scFile {
        std::string bytes;
        scFileMarks marks;
    };

    std::uint64_t FreeBytes() override { return freeBytes; }
    void Make() override { isMade = true; }
    bool Enter(std::u16string_view path) override {
        for (std::size_t end = 0; end < path.size();) {
            end = std::min(path.find(u'\\', end + 1), path.size());
            const std::u16string folder(path.substr(0, end));
            if (files.contains(folder))
                throw clsException("a file is there", 5);
            folders.insert(folder);
        }
        return true;
    }
    bool Exists(std::u16string_view path) override { return files.contains(std::u16string(path)); }
    std::unique_ptr<IclsTargetFile> NewFile(std::u16string_view path) override {
        return std::make_unique<clsFile>(*this, std::u16string(path));
    }

    bool isMade = false;
    std::uint64_t freeBytes = UINT64_MAX;
    std::size_t room = SIZE_MAX; // bytes that can be written before the disk is full
    std::uint64_t written = 0;   // bytes that were given to files, whatever became of them
    std::map<std::u16string, scFile> files;
    std::set<std::u16string> folders;
    int unfinished = 0; // files that were begun and are neither in their place nor gone

  private:
    class clsFile final : public IclsTargetFile {
      public:
        clsFile(clsMemoryTarget& target, std::u16string path) : target_(target), path_(std::move(path)) {
            ++target_.unfinished;
        }
        ~clsFile() override { --target_.unfinished; }
        void Extend(std::uint64_t bytes) override { extended_ = bytes; }
        void Write(const void* data, std::size_t count) override {
            target_.written += count;
            if (count > target_.room || count > extended_ - bytes_.size())
                throw clsException("disk full", 112);
            target_.room -= count;
            bytes_.append(static_cast<const char*>(data), count);
        }
        void Finish() override {}
        void PutInPlace(const scFileMarks& marks, bool replaces) override {
            if (replaces || !target_.files.contains(path_))
                target_.files[path_] = {bytes_, marks};
        }

      private:
        clsMemoryTarget& target_;
        std::u16string path_;
        std::string bytes_;
        std::uint64_t extended_ = 0;
    };
};

// Notes what it is shown, and answers as it is told.
class clsCaller final : public IclsZipCallback {
  public:
    struct scSeen {
        std::u16string name, target;
        scShownZipEntry entry;
    };
    ZipAnswer Show(const scShownZipEntry& entry) override {
        seen.push_back({entry.name, entry.target ? entry.target : u"", entry});
        return answer ? answer(entry) : ZipAnswer::go;
    }
    std::function<ZipAnswer(const scShownZipEntry&)> answer;
    std::vector<scSeen> seen;
};

// ---- Our own archives ---------------------------------------------------------------------------

struct scContents {
    std::u16string name; // a folder's ends with "/"
    std::string bytes;
};

inline std::u16string WideNumber(std::uint64_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

inline void Add(clsZIPWriter& writer, const scContents& contents) {
    clsNoProgress progress;
    scNewZipEntry entry;
    entry.name = contents.name;
    entry.times.modified = 0x01D9000000000000;
    entry.bytes = contents.bytes.size();
    entry.isFolder = contents.name.ends_with(u'/');
    if (entry.isFolder) {
        entry.name.remove_suffix(1);
        return writer.AddFolder(entry);
    }
    clsMemorySource source(contents.bytes, 50000);
    writer.AddFile(entry, source, progress);
}

inline std::string Archive(const std::vector<scContents>& entries, std::string_view password = {},
                           ZipCompression compression = ZipCompression::deflate) {
    clsMemoryArchive archive;
    clsZIPWriter writer(archive, compression, password);
    for (const scContents& contents : entries)
        Add(writer, contents);
    writer.Finish();
    return archive.bytes;
}

// ---- Unpacking ----------------------------------------------------------------------------------

inline UtilResult Extract(std::string archive, clsMemoryTarget* target, IclsZipCallback* caller = nullptr,
                          std::u16string_view password = {}, std::uint64_t limit = 1 << 30,
                          bool keeps = false) {
    clsMemoryArchive source(std::move(archive));
    const scZipExtractionOrder order{u"a.zip", target ? u"C:\\out" : u"", password, limit, keeps};
    return clsZIPExtraction(source, order, target, caller).Run();
}

// ---- Archives of others, record by record -------------------------------------------------------

// An entry whose headers may say anything.
struct scForgedEntry {
    std::string name;
    std::string data = {};        // as it stands in the archive
    scCentralHeader central = {}; // sizes, CRC and position are set unless they are not 0
    scLocalHeader local = {};     // likewise, and nameBytes
    std::string localName = {};   // the name unless it is given
    std::string centralExtra = {}, localExtra = {};
    std::string after = {}; // what follows the data
};

inline std::string BytesOf(auto record) {
    std::string bytes(record.size, '\0');
    UtilpWriteRecord(bytes.data(), record);
    return bytes;
}

inline std::uint32_t CrcOf(std::string_view bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

template <class Number>
void SetUnlessGiven(Number& place, std::size_t number) {
    if (place == 0)
        place = static_cast<Number>(number);
}

// Stored entries, a directory, an end record: what is not given is right.
inline std::string Forged(std::vector<scForgedEntry> entries, std::string before = {},
                          const std::function<void(scEndRecord&)>& changeEnd = {}) {
    std::string archive = std::move(before), directory;
    for (scForgedEntry& entry : entries) {
        const std::string& localName = entry.localName.empty() ? entry.name : entry.localName;
        SetUnlessGiven(entry.central.position, archive.size());
        for (auto* sizes :
             {&entry.central.packed, &entry.central.bytes, &entry.local.packed, &entry.local.bytes})
            SetUnlessGiven(*sizes, entry.data.size());
        SetUnlessGiven(entry.central.crc, CrcOf(entry.data));
        SetUnlessGiven(entry.central.nameBytes, entry.name.size());
        SetUnlessGiven(entry.central.extraBytes, entry.centralExtra.size());
        SetUnlessGiven(entry.local.nameBytes, localName.size());
        SetUnlessGiven(entry.local.extraBytes, entry.localExtra.size());
        archive += BytesOf(entry.local) + localName + entry.localExtra + entry.data + entry.after;
        directory += BytesOf(entry.central) + entry.name + entry.centralExtra;
    }
    const auto count = static_cast<std::uint16_t>(entries.size());
    const auto bytes = static_cast<std::uint32_t>(directory.size());
    scEndRecord end{0, 0, count, count, bytes, static_cast<std::uint32_t>(archive.size()), 0};
    if (changeEnd)
        changeEnd(end);
    return archive + directory + BytesOf(end);
}

} // namespace tvut
