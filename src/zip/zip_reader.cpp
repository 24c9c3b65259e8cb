// An entry's bytes pass through: archive -> cipher, in place in the window -> inflater -> length and CRC ->
// sink. Nothing of it grows with the entry.
//
// The local header is held against the directory before anything is unpacked: a program that reads entries
// one after the other must find what one that goes by the directory finds.
#include "zip/zip_reader.h"

#include "text/bytes/crc32.h"
#include "zip/zip_fault.h"
#include "zip/zip_records.h"

#include <algorithm>

namespace tvut {

namespace {

ConstCipherBytes AsCipherBytes(std::string_view bytes) {
    return {reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()};
}
CipherBytes AsCipherBytes(std::span<char> bytes) {
    return {reinterpret_cast<unsigned char*>(bytes.data()), bytes.size()};
}

} // namespace

// The packed bytes of an entry in the order in which they come, deciphered.
class clsZIPReader::clsPackedData {
  public:
    clsPackedData(clsSourceWindow& window, std::uint64_t at, std::uint64_t bytes, IclsZipCipher* cipher)
        : window_(window), at_(at), left_(bytes), cipher_(cipher) {}

    std::uint64_t Left() const { return left_; }

    // The next bytes; none at the end. They stay until the next call.
    std::span<char> Next() {
        if (left_ == 0)
            return {};
        const std::span<char> bytes = window_.Take(at_, left_);
        UtilpRequire(!bytes.empty(), ZipFault::damaged); // the archive became shorter meanwhile
        at_ += bytes.size();
        left_ -= bytes.size();
        if (cipher_)
            cipher_->Decipher(AsCipherBytes(bytes));
        return bytes;
    }

    // What stands after the data must vouch for it.
    void End() {
        UtilpRequire(left_ == 0, ZipFault::damaged);
        if (!cipher_)
            return;
        const std::size_t bytes = cipher_->TrailerBytes();
        const std::string_view trailer = window_.At(at_, bytes);
        UtilpRequire(trailer.size() == bytes && cipher_->Vouches(AsCipherBytes(trailer)), ZipFault::damaged);
    }

  private:
    clsSourceWindow& window_;
    std::uint64_t at_, left_;
    IclsZipCipher* cipher_;
};

// The unpacked bytes on their way into the sink; never more than the entry has.
class clsZIPReader::clsContents {
  public:
    clsContents(const scZipEntry& entry, clsByteSink& sink) : entry_(entry), sink_(sink) {}

    void Put(const char* data, std::size_t bytes) {
        UtilpRequire(bytes <= entry_.bytes - done_, ZipFault::damaged);
        done_ += bytes;
        if (HasCrc())
            crc_ = UtilpCrc32(crc_, data, bytes);
        sink_.Write(data, bytes);
    }

    void End() {
        UtilpRequire(done_ == entry_.bytes && (!HasCrc() || crc_ == entry_.crc), ZipFault::damaged);
    }

  private:
    bool HasCrc() const { return !entry_.Is(scZipEntry::authenticatedOnly); }

    const scZipEntry& entry_;
    clsByteSink& sink_;
    std::uint64_t done_ = 0;
    std::uint32_t crc_ = 0;
};

clsZIPReader::clsZIPReader(clsRandomSource& source, const scZipBounds& bounds, std::size_t windowBytes)
    : source_(source), window_(source, windowBytes), directory_(bounds) {}

void clsZIPReader::Open() {
    std::uint64_t bytes = 0;
    try {
        bytes = source_.Size();
    } catch (const clsException& error) {
        throw clsZIPError(ZipFault::unreadable, error);
    }
    directory_.Read(window_, bytes);
}

void clsZIPReader::Unpack(const scZipEntry& entry, const clsZipPasswords& passwords, clsByteSink& sink) {
    UtilpRequire(!entry.Is(scZipEntry::link), ZipFault::link);
    const std::unique_ptr<IclsZipCipher> cipher =
        entry.Is(scZipEntry::encrypted) ? UtilpCipherOf(entry) : nullptr;
    if (entry.method != zipmethod::stored && entry.method != zipmethod::deflated)
        throw clsZIPError(ZipFault::method, entry.method);
    const std::uint64_t at = DataOf(entry);
    if (cipher)
        Begin(*cipher, entry, at, passwords);
    const std::size_t head = cipher ? cipher->HeaderBytes() : 0;
    const std::size_t around = head + (cipher ? cipher->TrailerBytes() : 0);
    UtilpRequire(entry.packed >= around, ZipFault::damaged);
    clsPackedData data(window_, at + head, entry.packed - around, cipher.get());
    clsContents contents(entry, sink);
    sink.Extend(entry.bytes);
    if (entry.method == zipmethod::stored)
        Copy(data, contents);
    else
        Inflate(data, contents);
    data.End();
    contents.End();
    sink.Finish();
}

// Where an entry's data begins.
std::uint64_t clsZIPReader::DataOf(const scZipEntry& entry) {
    const std::size_t fixed = scLocalHeader::size + entry.nameBytes;
    const std::string_view bytes = window_.At(entry.position, fixed);
    scLocalHeader header;
    UtilpRequire(bytes.size() == fixed && UtilpReadRecord(bytes, header) &&
                     header.nameBytes == entry.nameBytes &&
                     bytes.substr(scLocalHeader::size) == directory_.HeaderName(entry),
                 ZipFault::damaged);
    const bool isAes = entry.Is(scZipEntry::aesStrength);
    const bool isEncrypted = (header.flags & zipflag::encrypted) != 0;
    UtilpRequire(header.method == (isAes ? zipmethod::aes : entry.method) &&
                     isEncrypted == entry.Is(scZipEntry::encrypted),
                 ZipFault::damaged);
    const std::uint64_t at = entry.position + fixed + header.extraBytes;
    const std::uint64_t end = directory_.EndOf(entry);
    UtilpRequire(at <= end && entry.packed <= end - at, ZipFault::damaged);
    return at;
}

// With the first password that fits.
void clsZIPReader::Begin(IclsZipCipher& cipher, const scZipEntry& entry, std::uint64_t dataAt,
                         const clsZipPasswords& passwords) {
    UtilpRequire(passwords.Any(), ZipFault::password);
    UtilpRequire(entry.packed >= cipher.HeaderBytes(), ZipFault::damaged);
    const std::string_view header = window_.At(dataAt, cipher.HeaderBytes());
    UtilpRequire(header.size() == cipher.HeaderBytes(), ZipFault::damaged);
    for (const std::string_view password : {passwords.Utf8(), passwords.InCodePage()}) {
        if (!password.empty() && cipher.Begin(AsCipherBytes(header), password))
            return;
    }
    throw clsZIPError(ZipFault::password);
}

void clsZIPReader::Copy(clsPackedData& data, clsContents& contents) {
    for (std::span<char> bytes = data.Next(); !bytes.empty(); bytes = data.Next())
        contents.Put(bytes.data(), bytes.size());
}

// The stream must end where the data does: anything else is another length than the directory's.
void clsZIPReader::Inflate(clsPackedData& data, clsContents& contents) {
    if (inflater_)
        inflater_->Restart();
    else
        inflater_.emplace(Wrapping::none);
    if (!room_)
        room_ = std::make_unique_for_overwrite<char[]>(clsSourceWindow::usualBytes);
    while (inflater_->Now() == clsInflater::State::running) {
        if (inflater_->Left() == 0) {
            const std::span<char> bytes = data.Next();
            UtilpRequire(!bytes.empty(), ZipFault::damaged);
            inflater_->Feed(bytes.data(), bytes.size());
        }
        // A full room says that there may be more of what was fed.
        for (std::size_t given = clsSourceWindow::usualBytes; given == clsSourceWindow::usualBytes;) {
            given = inflater_->Unfold(room_.get(), clsSourceWindow::usualBytes);
            contents.Put(room_.get(), given);
        }
    }
    UtilpRequire(inflater_->Now() == clsInflater::State::ended && inflater_->Left() == 0, ZipFault::damaged);
}

} // namespace tvut
