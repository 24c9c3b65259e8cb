// An entry of an archive that is being written: what is kept of it for the directory, and its headers.
#pragma once

#include "zip/name_arena.h"
#include "zip/zip_records.h"
#include "zip/zip_times.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace tvut {

// A short run of bytes under construction, such as an entry's extra fields.
class clsShortBytes {
  public:
    // Write puts bytes at the place that it is passed and returns where the next ones belong.
    template <class Write>
    void Put(Write write) {
        end_ = write(end_);
    }
    const char* Data() const { return bytes_.data(); }
    std::size_t Size() const { return static_cast<std::size_t>(end_ - bytes_.data()); }

    clsShortBytes() = default;
    clsShortBytes(const clsShortBytes&) = delete;
    clsShortBytes& operator=(const clsShortBytes&) = delete;

  private:
    std::array<char, 128> bytes_; // all headers' fields together take less
    char* end_ = bytes_.data();
};

// 56 bytes. Its position follows from the sizes of those before it.
struct scWrittenEntry {
    enum Mark : std::uint16_t {
        deflated = 1 << 0,
        enciphered = 1 << 1,
        utf8Name = 1 << 2,
        largeRoom = 1 << 3, // the local header has room for sizes of 64 bits
        farAway = 1 << 4,   // its position has 64 bits
    };

    std::uint64_t packed = 0, bytes = 0;
    scZipTimes times{};
    std::uint32_t crc = 0;
    std::uint32_t attributes = 0; // as Windows has them
    clsNameArena::Place name = 0;
    std::uint16_t nameBytes = 0;
    std::uint16_t marks = 0;

    bool Is(Mark mark) const { return (marks & mark) != 0; }
    void Set(Mark mark, bool isSet) {
        marks = static_cast<std::uint16_t>(isSet ? marks | mark : marks & ~mark);
    }

    bool IsLarge() const; // a size has 64 bits

    scLocalHeader LocalHeader() const;
    scCentralHeader CentralHeader(std::uint64_t position) const;
    void PutLocalExtras(clsShortBytes& extras) const;
    void PutCentralExtras(clsShortBytes& extras, std::uint64_t position) const;

    // How many bytes its header, its name and its data take in the archive, and its part of the directory.
    std::uint64_t LocalBytes() const;
    std::uint64_t CentralBytes(std::uint64_t position) const;
};

// A number as a header of 32 bits shows it.
constexpr bool UtilpIsLarge(std::uint64_t number) {
    return number >= elsewhere32;
}
constexpr std::uint32_t UtilpShown(std::uint64_t number) {
    return UtilpIsLarge(number) ? elsewhere32 : static_cast<std::uint32_t>(number);
}

// What made our archives, and the version of the format that it takes to read a plain one and one with
// Zip64 numbers.
constexpr std::uint16_t madeOnNtfs = 10 << 8;
constexpr std::uint16_t plainVersion = 20, zip64Version = 45;

} // namespace tvut
