// Headers are made anew from what is kept of an entry whenever they are written or their length is asked for:
// that is cheaper than keeping them, and both sizes and places then come from one list of extra fields. The
// numbers of 64 bits are in them exactly where those of 32 bits do not hold, as readers expect it.
#include "zip/written_entry.h"

#include "zip/zip_extra.h"

namespace tvut {

namespace {

constexpr std::uint16_t aesVersion = 51;
constexpr std::uint16_t ae2 = 2;
constexpr std::uint8_t aes256 = 3;

std::uint16_t MethodUnderCipher(const scWrittenEntry& entry) {
    return entry.Is(scWrittenEntry::deflated) ? zipmethod::deflated : zipmethod::stored;
}

std::uint16_t MethodOf(const scWrittenEntry& entry) {
    return entry.Is(scWrittenEntry::enciphered) ? zipmethod::aes : MethodUnderCipher(entry);
}

std::uint16_t FlagsOf(const scWrittenEntry& entry) {
    return static_cast<std::uint16_t>((entry.Is(scWrittenEntry::enciphered) ? zipflag::encrypted : 0) |
                                      (entry.Is(scWrittenEntry::utf8Name) ? zipflag::utf8 : 0));
}

std::uint16_t VersionOf(const scWrittenEntry& entry) {
    if (entry.Is(scWrittenEntry::enciphered))
        return aesVersion;
    return entry.IsLarge() || entry.Is(scWrittenEntry::farAway) ? zip64Version : plainVersion;
}

// The fields that local header and directory share.
void PutSharedExtras(const scWrittenEntry& entry, clsShortBytes& extras) {
    if (UtilpHasUnixTime(entry.times.modified))
        extras.Put([&](char* to) { return UtilpWriteUnixTime(to, entry.times.modified); });
    if (entry.Is(scWrittenEntry::enciphered))
        extras.Put([&](char* to) { return UtilpWriteAesField(to, {ae2, aes256, MethodUnderCipher(entry)}); });
}

} // namespace

bool scWrittenEntry::IsLarge() const {
    return UtilpIsLarge(packed) || UtilpIsLarge(bytes);
}

// The local header shows both sizes or none.
scLocalHeader scWrittenEntry::LocalHeader() const {
    clsShortBytes extras;
    PutLocalExtras(extras);
    return {VersionOf(*this),
            FlagsOf(*this),
            MethodOf(*this),
            UtilpDosTime(times.modified),
            crc,
            IsLarge() ? elsewhere32 : UtilpShown(packed),
            IsLarge() ? elsewhere32 : UtilpShown(bytes),
            nameBytes,
            static_cast<std::uint16_t>(extras.Size())};
}

scCentralHeader scWrittenEntry::CentralHeader(std::uint64_t position) const {
    clsShortBytes extras;
    PutCentralExtras(extras, position);
    const std::uint16_t version = VersionOf(*this);
    return {static_cast<std::uint16_t>(madeOnNtfs | version),
            version,
            FlagsOf(*this),
            MethodOf(*this),
            UtilpDosTime(times.modified),
            crc,
            UtilpShown(packed),
            UtilpShown(bytes),
            nameBytes,
            static_cast<std::uint16_t>(extras.Size()),
            0, // no comment
            0, // one disk
            0,
            attributes,
            UtilpShown(position)};
}

void scWrittenEntry::PutLocalExtras(clsShortBytes& extras) const {
    if (Is(largeRoom))
        extras.Put([this](char* to) {
            return IsLarge() ? UtilpWriteLargeSizes(to, bytes, packed) : UtilpWriteLargeRoom(to);
        });
    PutSharedExtras(*this, extras);
}

void scWrittenEntry::PutCentralExtras(clsShortBytes& extras, std::uint64_t position) const {
    extras.Put([&](char* to) { return UtilpWriteLargeNumbers(to, {bytes, packed, position, 0}); });
    extras.Put([this](char* to) { return UtilpWriteNtfsTimes(to, times); });
    PutSharedExtras(*this, extras);
}

std::uint64_t scWrittenEntry::LocalBytes() const {
    clsShortBytes extras;
    PutLocalExtras(extras);
    return scLocalHeader::size + nameBytes + extras.Size() + packed;
}

std::uint64_t scWrittenEntry::CentralBytes(std::uint64_t position) const {
    clsShortBytes extras;
    PutCentralExtras(extras, position);
    return scCentralHeader::size + nameBytes + extras.Size();
}

} // namespace tvut
