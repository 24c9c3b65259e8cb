// The extra fields of an entry: what the fixed part of its headers has no room for.
#pragma once

#include "zip/zip_times.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tvut {

// Walks the fields one after the other. What cannot be one ends the walk: makers pad with anything.
class clsExtraFields {
  public:
    explicit clsExtraFields(std::string_view bytes) : rest_(bytes) {}
    bool Next(); // to the next field; false at the end
    std::uint16_t Id() const { return id_; }
    std::string_view Data() const { return data_; }

  private:
    std::string_view rest_, data_;
    std::uint16_t id_ = 0;
};

// Numbers of a header that may stand in the Zip64 field (0x0001) in their place.
struct scLargeNumbers {
    std::uint64_t bytes, packed, position;
    std::uint32_t disk;
};

// Of WinZip's AES encryption (0x9901).
struct scAesField {
    std::uint16_t version; // 1: AE-1, 2: AE-2
    std::uint8_t strength; // 1, 2, 3: a key of 128, 192, 256 bits
    std::uint16_t method;  // how the data was packed before it was enciphered
};

// What the fields of an entry in the directory tell; of fields that stand there twice, the first one.
class clsEntryExtras {
  public:
    explicit clsEntryExtras(std::string_view bytes);

    // Puts the numbers in their places that stand elsewhere; false when one of them is missing.
    bool TakeLargeNumbers(scLargeNumbers& numbers) const;
    // Modified first of the NTFS field (0x000A), else of the Unix one (0x5455); 0 where none tells.
    scZipTimes Times() const { return times_; }
    // The name in UTF-8 (0x7075), unless it belongs to another name than the header's.
    std::optional<std::string_view> UnicodeName(std::string_view headerName) const;
    std::optional<scAesField> Aes() const;

  private:
    std::string_view large_, unicodeName_, aes_;
    scZipTimes times_{};
};

// ---- Writing ------------------------------------------------------------------------------------

constexpr std::size_t extraHeadBytes = 4; // id and length before a field's data
constexpr std::size_t largeRoomBytes = extraHeadBytes + 2 * sizeof(std::uint64_t);
constexpr std::size_t unixTimeBytes = extraHeadBytes + 5;
constexpr std::size_t ntfsTimesBytes = extraHeadBytes + 32;
constexpr std::size_t aesFieldBytes = extraHeadBytes + 7;

// Each writes its field and returns where the next one belongs. Room for the Zip64 numbers of a local
// header is a field that readers pass over (0xA220, which other makers use for the same).
char* UtilpWriteLargeRoom(char* to);
char* UtilpWriteLargeSizes(char* to, std::uint64_t bytes, std::uint64_t packed);
char* UtilpWriteUnixTime(char* to, std::uint64_t modified); // UtilpHasUnixTime
char* UtilpWriteNtfsTimes(char* to, const scZipTimes& times);
char* UtilpWriteAesField(char* to, const scAesField& field);

// The Zip64 field of the directory: only numbers that do not fit their places. The second returns its length,
// 0 when all fit.
char* UtilpWriteLargeNumbers(char* to, const scLargeNumbers& numbers);
std::size_t UtilpLargeNumbersBytes(const scLargeNumbers& numbers);

} // namespace tvut
