// Whether an entry is worth deflating shows on its first 64 KB: they are deflated into the output's block,
// and packed as they are when that does not save a thirty-second. They are still at hand then, and nothing of
// them has left the block.
#include "zip/entry_packer.h"

#include "text/bytes/crc32.h"
#include "zip/zip_fault.h"

#include <array>

namespace tvut {

namespace {

using Wanted = clsRawDeflater::Wanted;

constexpr std::size_t inputBytes = 64 * 1024;
constexpr std::size_t leastDeflated = 32; // bytes
constexpr std::size_t usefulRoom = 4096;  // of the output's block; with less left, it is flushed first

} // namespace

void clsEntryPacker::Begin(clsByteSource& source, IclsZipProgress& progress) {
    if (!input_)
        input_ = std::make_unique_for_overwrite<char[]>(inputBytes);
    source_ = &source;
    progress_ = &progress;
    cipher_.reset();
    read_ = told_ = 0;
    crc_ = 0;
    isWhole_ = false;
    Read();
}

auto clsEntryPacker::Pack() -> scPacked {
    start_ = output_.Position();
    if (!password_.empty())
        BeginCipher();
    const bool isDeflated = IsWorthDeflating();
    if (isDeflated)
        DeflateRest();
    else
        StoreAll();
    if (cipher_)
        EndCipher();
    return {output_.Position() - start_, read_, cipher_ ? 0 : crc_, isDeflated};
}

// ---- From the source ----------------------------------------------------------------------------

void clsEntryPacker::Read() {
    filled_ = 0;
    while (filled_ < inputBytes && !isWhole_) {
        const std::size_t count = ReadSome();
        if (count != 0 && filled_ == 0)
            TellProgress();
        filled_ += count;
        isWhole_ = count == 0;
    }
    read_ += filled_;
    crc_ = UtilpCrc32(crc_, input_.get(), filled_);
}

std::size_t clsEntryPacker::ReadSome() {
    try {
        return source_->Read(input_.get() + filled_, inputBytes - filled_);
    } catch (const clsException& error) {
        throw clsZIPError(ZipFault::unreadable, error);
    }
}

// Of what was packed before this piece: the end of the entry is shown once all of it is in place.
void clsEntryPacker::TellProgress() {
    if (read_ - told_ < progressBytes)
        return;
    told_ = read_;
    progress_->Tell(read_, output_.Position() - start_, false);
}

// ---- Into the output ----------------------------------------------------------------------------

bool clsEntryPacker::IsWorthDeflating() {
    if (compression_ == ZipCompression::store || filled_ < leastDeflated)
        return false;
    if (deflater_)
        deflater_->Restart();
    else
        deflater_.emplace();
    const std::size_t most = filled_ * 31 / 32;
    const std::span<char> room = output_.Room(most + 1).first(most + 1);
    deflater_->Feed(input_.get(), filled_);
    const std::size_t given = deflater_->Fold(room.data(), room.size(), WantedAtMost(Wanted::allFed));
    if (given > most || deflater_->IsMore())
        return false;
    Add(room.first(given));
    return true;
}

void clsEntryPacker::DeflateRest() {
    while (!isWhole_) {
        Read();
        deflater_->Feed(input_.get(), filled_);
        do {
            const std::span<char> room = output_.Room(usefulRoom);
            Add(room.first(deflater_->Fold(room.data(), room.size(), WantedAtMost(Wanted::whatComes))));
        } while (deflater_->IsMore());
    }
}

clsRawDeflater::Wanted clsEntryPacker::WantedAtMost(Wanted wanted) const {
    return isWhole_ ? Wanted::wholeStream : wanted;
}

void clsEntryPacker::StoreAll() {
    for (;; Read()) {
        const std::span<char> bytes(input_.get(), filled_);
        Encipher(bytes);
        output_.Write(bytes.data(), bytes.size());
        if (isWhole_)
            return;
    }
}

// Takes bytes over that stand in the output's room.
void clsEntryPacker::Add(std::span<char> bytes) {
    Encipher(bytes);
    output_.Add(bytes.size());
}

void clsEntryPacker::BeginCipher() {
    cipher_.emplace(AesStrength::bits256);
    std::array<unsigned char, clsAesZipCipher::largestHeader> header;
    cipher_->BeginNew(header, password_);
    output_.Write(header.data(), header.size());
}

void clsEntryPacker::Encipher(std::span<char> bytes) {
    if (cipher_)
        cipher_->Encipher({reinterpret_cast<unsigned char*>(bytes.data()), bytes.size()});
}

void clsEntryPacker::EndCipher() {
    std::array<unsigned char, clsAesZipCipher::authenticationBytes> trailer;
    cipher_->End(trailer);
    output_.Write(trailer.data(), trailer.size());
}

} // namespace tvut
