// A 32-bit process in a test: regions of memory with what is in them, some of which turns out not to be
// there.
#pragma once

#include "runtime/crash/bare_sink.h"
#include "runtime/crash/process_memory.h"

#include <algorithm>
#include <map>
#include <string>

namespace tvut {

enum class MemoryKind { code, constants, data, guard, mapped };

class clsProcessPicture final : public IclsProcessMemory {
  public:
    // Pages of a kind, and the bytes that can be read there: fewer when the last pages are gone, or one page
    // in between by its number.
    void Add(std::uint32_t address, std::uint32_t bytes, MemoryKind kind, std::string contents,
             std::uint32_t gonePage = lastAddress / pageSize) {
        scMemoryRegion region{{address, bytes}, address};
        region.isImage = kind == MemoryKind::code || kind == MemoryKind::constants;
        region.isReadable = kind != MemoryKind::guard;
        region.isWritable = kind == MemoryKind::data;
        region.isExecutable = kind == MemoryKind::code;
        contents.resize(std::min<std::size_t>(contents.size(), bytes));
        pieces_[address] = {region, std::move(contents), gonePage * pageSize};
    }

    std::size_t Read(std::uint32_t address, void* to, std::size_t bytes) noexcept override {
        std::size_t done = 0;
        while (done != bytes) {
            const scPiece* const piece = PieceAt(address + static_cast<std::uint32_t>(done));
            if (!piece || !piece->region.isReadable)
                return done;
            const std::uint32_t at = address + static_cast<std::uint32_t>(done) - piece->region.range.address;
            if (at >= piece->contents.size() || at / pageSize == piece->gone / pageSize)
                return done;
            const std::size_t most = at < piece->gone ? piece->gone - at : bytes;
            done += piece->contents.copy(static_cast<char*>(to) + done, std::min(bytes - done, most), at);
        }
        return done;
    }

    bool RegionAt(std::uint32_t address, scMemoryRegion& region) noexcept override {
        if (const scPiece* const piece = PieceAt(address)) {
            region = piece->region;
            return true;
        }
        const auto next = pieces_.upper_bound(address);
        if (next == pieces_.end() && address >= lastAddress)
            return false;
        const std::uint32_t end = next == pieces_.end() ? lastAddress : next->first;
        region = {{address, end - address}};
        return true;
    }

    // Bytes as a dump has them: zeros where there are none.
    std::string Contents(scMemoryRange range) {
        std::string bytes(range.bytes, '\0');
        for (std::uint32_t at = 0; at < range.bytes;) {
            const std::size_t read = Read(range.address + at, &bytes[at], range.bytes - at);
            at += read != 0 ? static_cast<std::uint32_t>(read) : pageSize - (range.address + at) % pageSize;
        }
        return bytes;
    }

  private:
    static constexpr std::uint32_t pageSize = 4096;
    static constexpr std::uint32_t lastAddress = 0xFFFE0000;
    struct scPiece {
        scMemoryRegion region;
        std::string contents;
        std::uint32_t gone;
    };

    const scPiece* PieceAt(std::uint32_t address) const noexcept {
        auto found = pieces_.upper_bound(address);
        if (found == pieces_.begin() || (--found)->second.region.range.End() <= address)
            return nullptr;
        return &found->second;
    }

    std::map<std::uint32_t, scPiece> pieces_;
};

// Keeps what is written, up to some bytes.
class clsMemorySink final : public IclsBareSink {
  public:
    explicit clsMemorySink(std::size_t room = SIZE_MAX) : room_(room) {}

    bool Write(const void* bytes, std::size_t count) noexcept override {
        const std::size_t taken = std::min(count, room_ - written.size());
        written.append(static_cast<const char*>(bytes), taken);
        return taken == count;
    }

    std::string written;

  private:
    std::size_t room_;
};

} // namespace tvut
