// Nobody vouches for these fields: a list ends at the first one that reaches beyond it, and a number that a
// field is too short for is missing. Where a field is repeated, the first one counts for numbers, names and
// the cipher, so that nothing that follows changes what was checked. NTFS times are finer than Unix times and
// go before them.
#include "zip/zip_extra.h"

#include "text/bytes/crc32.h"
#include "zip/zip_records.h"

namespace tvut {

namespace {

enum FieldId : std::uint16_t {
    largeNumbers = 0x0001,
    ntfsTimes = 0x000A,
    unixTime = 0x5455,
    unicodeName = 0x7075,
    aesEncryption = 0x9901,
    growthHint = 0xA220,
};

constexpr std::uint16_t growthHintMark = 0xA028;

// Takes a number off the front of a field's data; 0 when it ends before.
template <class Number>
Number Take(std::string_view& data) {
    if (data.size() < sizeof(Number))
        return 0;
    const auto number = UtilpReadNumber<Number>(data.data());
    data.remove_prefix(sizeof(Number));
    return number;
}

// The field holds parts of its own; that of the times has the mark 1.
scZipTimes NtfsTimes(std::string_view data) {
    constexpr std::uint16_t timesMark = 1, timesBytes = 24;
    Take<std::uint32_t>(data); // reserved
    while (data.size() >= extraHeadBytes) {
        const auto mark = Take<std::uint16_t>(data);
        const auto length = Take<std::uint16_t>(data);
        if (mark == timesMark && length == timesBytes && data.size() >= timesBytes) {
            const auto modified = Take<std::uint64_t>(data);
            const auto accessed = Take<std::uint64_t>(data);
            return {modified, accessed, Take<std::uint64_t>(data)};
        }
        data.remove_prefix(std::min<std::size_t>(length, data.size()));
    }
    return {};
}

scZipTimes UnixTimes(std::string_view data) {
    constexpr std::uint8_t hasModified = 1;
    if (data.size() < 5 || (data[0] & hasModified) == 0)
        return {};
    return {UtilpFromUnixTime(UtilpReadNumber<std::uint32_t>(data.data() + 1)), 0, 0};
}

// Puts one number in its place from the front of the Zip64 field; false when it is not there.
template <class Number>
bool TakeIfElsewhere(Number& place, std::uint64_t mark, std::string_view& data) {
    if (place != mark)
        return true;
    if (data.size() < sizeof(Number))
        return false;
    place = Take<Number>(data);
    return true;
}

char* WriteHead(char* to, FieldId id, std::size_t wholeBytes) {
    to = UtilpWriteNumber(to, static_cast<std::uint16_t>(id));
    return UtilpWriteNumber(to, static_cast<std::uint16_t>(wholeBytes - extraHeadBytes));
}

} // namespace

bool clsExtraFields::Next() {
    if (rest_.size() < extraHeadBytes)
        return false;
    id_ = Take<std::uint16_t>(rest_);
    const auto length = Take<std::uint16_t>(rest_);
    if (length > rest_.size())
        return false;
    data_ = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return true;
}

clsEntryExtras::clsEntryExtras(std::string_view bytes) {
    const auto keepFirst = [](std::string_view& place, std::string_view data) {
        place = place.empty() ? data : place;
    };
    scZipTimes unixTimes{};
    for (clsExtraFields fields(bytes); fields.Next();) {
        switch (fields.Id()) {
        case largeNumbers:
            keepFirst(large_, fields.Data());
            break;
        case ntfsTimes:
            times_ = NtfsTimes(fields.Data());
            break;
        case unixTime:
            unixTimes = UnixTimes(fields.Data());
            break;
        case unicodeName:
            keepFirst(unicodeName_, fields.Data());
            break;
        case aesEncryption:
            keepFirst(aes_, fields.Data());
            break;
        default:
            break;
        }
    }
    if (times_.modified == 0)
        times_ = unixTimes;
}

bool clsEntryExtras::TakeLargeNumbers(scLargeNumbers& numbers) const {
    std::string_view data = large_;
    return TakeIfElsewhere(numbers.bytes, elsewhere32, data) &&
           TakeIfElsewhere(numbers.packed, elsewhere32, data) &&
           TakeIfElsewhere(numbers.position, elsewhere32, data) &&
           TakeIfElsewhere(numbers.disk, elsewhere16, data);
}

std::optional<std::string_view> clsEntryExtras::UnicodeName(std::string_view headerName) const {
    std::string_view data = unicodeName_;
    const auto version = Take<std::uint8_t>(data);
    const auto crc = Take<std::uint32_t>(data);
    if (version != 1 || data.empty() || crc != UtilpCrc32(0, headerName.data(), headerName.size()))
        return {};
    return data;
}

std::optional<scAesField> clsEntryExtras::Aes() const {
    if (aes_.size() < aesFieldBytes - extraHeadBytes || aes_.substr(2, 2) != "AE")
        return {};
    return scAesField{UtilpReadNumber<std::uint16_t>(aes_.data()),
                      UtilpReadNumber<std::uint8_t>(aes_.data() + 4),
                      UtilpReadNumber<std::uint16_t>(aes_.data() + 5)};
}

// ---- Writing ------------------------------------------------------------------------------------

char* UtilpWriteLargeRoom(char* to) {
    to = WriteHead(to, growthHint, largeRoomBytes);
    to = UtilpWriteNumber(to, growthHintMark);
    to = UtilpWriteNumber(to, std::uint16_t{12}); // bytes of padding
    to = UtilpWriteNumber(to, std::uint32_t{0});
    return UtilpWriteNumber(to, std::uint64_t{0});
}

char* UtilpWriteLargeSizes(char* to, std::uint64_t bytes, std::uint64_t packed) {
    to = WriteHead(to, largeNumbers, largeRoomBytes);
    to = UtilpWriteNumber(to, bytes);
    return UtilpWriteNumber(to, packed);
}

char* UtilpWriteUnixTime(char* to, std::uint64_t modified) {
    to = WriteHead(to, unixTime, unixTimeBytes);
    to = UtilpWriteNumber(to, std::uint8_t{1}); // the time of modification follows
    return UtilpWriteNumber(to, UtilpUnixTime(modified));
}

char* UtilpWriteNtfsTimes(char* to, const scZipTimes& times) {
    to = WriteHead(to, ntfsTimes, ntfsTimesBytes);
    to = UtilpWriteNumber(to, std::uint32_t{0});
    to = UtilpWriteNumber(to, std::uint16_t{1});
    to = UtilpWriteNumber(to, std::uint16_t{24});
    to = UtilpWriteNumber(to, times.modified);
    to = UtilpWriteNumber(to, times.accessed);
    return UtilpWriteNumber(to, times.created);
}

char* UtilpWriteAesField(char* to, const scAesField& field) {
    to = WriteHead(to, aesEncryption, aesFieldBytes);
    to = UtilpWriteNumber(to, field.version);
    *to++ = 'A';
    *to++ = 'E';
    to = UtilpWriteNumber(to, field.strength);
    return UtilpWriteNumber(to, field.method);
}

std::size_t UtilpLargeNumbersBytes(const scLargeNumbers& numbers) {
    std::size_t data = 0;
    for (const std::uint64_t number : {numbers.bytes, numbers.packed, numbers.position})
        data += number >= elsewhere32 ? sizeof number : 0;
    return data == 0 ? 0 : extraHeadBytes + data;
}

char* UtilpWriteLargeNumbers(char* to, const scLargeNumbers& numbers) {
    const std::size_t wholeBytes = UtilpLargeNumbersBytes(numbers);
    if (wholeBytes == 0)
        return to;
    to = WriteHead(to, largeNumbers, wholeBytes);
    for (const std::uint64_t number : {numbers.bytes, numbers.packed, numbers.position})
        to = number >= elsewhere32 ? UtilpWriteNumber(to, number) : to;
    return to;
}

} // namespace tvut
