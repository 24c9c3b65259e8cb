// The records of a ZIP archive (PKWARE's APPNOTE.TXT 6.3, section 4.3), each with its fields in file order:
// one list a record serves reading and writing. Numbers are little-endian and stand anywhere.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tvut {

constexpr std::uint16_t elsewhere16 = 0xFFFF;     // the number stands in a Zip64 record or field
constexpr std::uint32_t elsewhere32 = 0xFFFFFFFF; // likewise

namespace zipflag {
constexpr std::uint16_t encrypted = 1 << 0;
constexpr std::uint16_t sizesFollow = 1 << 3; // in a descriptor after the data
constexpr std::uint16_t strongEncryption = 1 << 6;
constexpr std::uint16_t utf8 = 1 << 11;
constexpr std::uint16_t maskedHeaders = 1 << 13;
} // namespace zipflag

namespace zipmethod {
constexpr std::uint16_t stored = 0;
constexpr std::uint16_t deflated = 8;
constexpr std::uint16_t aes = 99; // the real one stands in the extra field 0x9901
} // namespace zipmethod

// Before each entry's data.
struct scLocalHeader {
    static constexpr std::uint32_t signature = 0x04034B50;
    static constexpr std::size_t size = 30;

    std::uint16_t neededVersion, flags, method;
    std::uint32_t time; // as DOS has it
    std::uint32_t crc, packed, bytes;
    std::uint16_t nameBytes, extraBytes;

    static constexpr std::size_t crcAt = 14; // where crc, packed and bytes stand

    void EachField(auto&& field) {
        (field(neededVersion), field(flags), field(method), field(time), field(crc), field(packed),
         field(bytes), field(nameBytes), field(extraBytes));
    }
};

// Of each entry in the directory at the archive's end.
struct scCentralHeader {
    static constexpr std::uint32_t signature = 0x02014B50;
    static constexpr std::size_t size = 46;

    std::uint16_t madeBy; // system above version
    std::uint16_t neededVersion, flags, method;
    std::uint32_t time;
    std::uint32_t crc, packed, bytes;
    std::uint16_t nameBytes, extraBytes, commentBytes, disk, internalAttributes;
    std::uint32_t attributes, position;

    void EachField(auto&& field) {
        (field(madeBy), field(neededVersion), field(flags), field(method), field(time), field(crc),
         field(packed), field(bytes), field(nameBytes), field(extraBytes), field(commentBytes), field(disk),
         field(internalAttributes), field(attributes), field(position));
    }
};

struct scEndRecord {
    static constexpr std::uint32_t signature = 0x06054B50;
    static constexpr std::size_t size = 22;

    std::uint16_t disk, directoryDisk, entriesHere, entries;
    std::uint32_t directoryBytes, directoryAt;
    std::uint16_t commentBytes;

    void EachField(auto&& field) {
        (field(disk), field(directoryDisk), field(entriesHere), field(entries), field(directoryBytes),
         field(directoryAt), field(commentBytes));
    }
};

struct scZip64EndRecord {
    static constexpr std::uint32_t signature = 0x06064B50;
    static constexpr std::size_t size = 56;
    static constexpr std::uint64_t sizeOfRest = size - 12; // what restBytes counts

    std::uint64_t restBytes;
    std::uint16_t madeBy, neededVersion;
    std::uint32_t disk, directoryDisk;
    std::uint64_t entriesHere, entries, directoryBytes, directoryAt;

    void EachField(auto&& field) {
        (field(restBytes), field(madeBy), field(neededVersion), field(disk), field(directoryDisk),
         field(entriesHere), field(entries), field(directoryBytes), field(directoryAt));
    }
};

// Stands right before the end record.
struct scZip64Locator {
    static constexpr std::uint32_t signature = 0x07064B50;
    static constexpr std::size_t size = 20;

    std::uint32_t disk;
    std::uint64_t recordAt;
    std::uint32_t disks;

    void EachField(auto&& field) { (field(disk), field(recordAt), field(disks)); }
};

template <std::unsigned_integral Number>
Number UtilpReadNumber(const char* bytes) {
    Number number = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&number, bytes, sizeof number);
        return number;
    }
    for (std::size_t i = sizeof(Number); i-- > 0;)
        number = static_cast<Number>(number << (sizeof(Number) > 1 ? 8 : 0) |
                                     static_cast<unsigned char>(bytes[i]));
    return number;
}

// Returns where the bytes after the number belong.
template <std::unsigned_integral Number>
char* UtilpWriteNumber(char* bytes, Number number) {
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        *bytes++ = static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

// False unless the bytes begin with a whole record of this kind.
template <class Record>
bool UtilpReadRecord(std::string_view bytes, Record& record) {
    if (bytes.size() < Record::size || UtilpReadNumber<std::uint32_t>(bytes.data()) != Record::signature)
        return false;
    const char* next = bytes.data() + sizeof Record::signature;
    record.EachField([&]<class Number>(Number& number) {
        number = UtilpReadNumber<Number>(next);
        next += sizeof(Number);
    });
    return true;
}

template <class Record>
char* UtilpWriteRecord(char* bytes, Record record) {
    bytes = UtilpWriteNumber(bytes, Record::signature);
    record.EachField([&](auto number) { bytes = UtilpWriteNumber(bytes, number); });
    return bytes;
}

} // namespace tvut
