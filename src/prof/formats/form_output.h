// Output of a writer, in UTF-16 or in bytes: collects lines in a block and hands full blocks to a sink.
//
// All blocks but the last are of one size, a power of two: the system takes a third more time for a file that
// comes in pieces which do not end where its pages end. So lines may go beyond the block, into room for the
// longest of them, and what is there when the block is passed on begins the next one.
#pragma once

#include "platform/bytes.h"
#include "text/units.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace tvut {

// A TAB for every four levels and a blank for each level beyond.
constexpr std::uint64_t ProfpIndentationLength(std::uint32_t level) {
    return level / 4 + level % 4;
}

template <class Unit>
class clsFormOutput {
  public:
    using View = std::basic_string_view<Unit>;

    // Takes its memory, then passes on how many bytes will come.
    clsFormOutput(clsByteSink& sink, std::uint64_t bytes);

    void Put(Unit c);
    void Put(View text);
    // Puts a text piece by piece, each copied by a function of where to and the piece.
    void PutBy(void (*copy)(Unit* to, View piece), View text);
    void PutIndentation(std::uint32_t level);

    // Room for some characters in one piece, which Took then counts; null when they are too many for that
    // and have to be put piece by piece.
    Unit* Reserve(std::uint64_t length) {
        if (length > longestReserve)
            return nullptr;
        PassBlockOn();
        return block_.get() + used_;
    }
    void Took(std::size_t length) { used_ += length; }

    void Flush();

  private:
    static constexpr std::size_t blockLength = 128 * 1024 / sizeof(Unit);
    static constexpr std::size_t longestReserve = blockLength;

    // If it is full: there is room for longestReserve units then.
    void PassBlockOn() {
        if (used_ >= blockLength)
            WriteBlock();
    }
    void WriteBlock();

    clsByteSink& sink_;
    std::unique_ptr<Unit[]> block_;
    std::size_t used_ = 0;
};

using clsTextOutput = clsFormOutput<char16_t>;
using clsByteOutput = clsFormOutput<char>;

// The same calls on reserved room, without a look at what is left of it.
template <class Unit>
class clsReservedOutput {
  public:
    explicit clsReservedOutput(Unit* room) : begin_(room), next_(room) {}

    void Put(Unit c) { *next_++ = c; }
    void Put(std::basic_string_view<Unit> text) {
        CopyUnits(text);
        next_ += text.size();
    }
    template <class Copy>
    void PutBy(Copy copy, std::basic_string_view<Unit> text) {
        copy(next_, text);
        next_ += text.size();
    }
    void PutIndentation(std::uint32_t level) {
        for (std::uint32_t tabs = level / 4; tabs != 0; --tabs)
            *next_++ = Unit{'\t'};
        next_[0] = next_[1] = next_[2] = Unit{' '}; // what follows is longer than that
        next_ += level % 4;
    }
    Unit* Next() { return next_; }
    void Took(std::size_t length) { next_ += length; }
    std::size_t Length() const { return static_cast<std::size_t>(next_ - begin_); }

  private:
    void CopyUnits(std::basic_string_view<Unit> text) {
        if constexpr (sizeof(Unit) == sizeof(char16_t))
            UtilpCopy(next_, text.data(), text.size());
        else
            std::memcpy(next_, text.data(), text.size());
    }

    Unit* begin_;
    Unit* next_;
};

// Values mostly lie one after the other in memory: fetches those that come some items after one.
inline void ProfpFetchAhead(std::u16string_view value) {
    UtilpPrefetch(value.data() + 256);
}

// Calls put(output) with reserved room for at most some characters, or with the output itself when they
// are more than fit into its block.
template <class Unit, class PutLine>
void ProfpPutInOnePiece(clsFormOutput<Unit>& output, std::uint64_t most, PutLine put) {
    if (Unit* const room = output.Reserve(most)) {
        clsReservedOutput<Unit> line(room);
        put(line);
        output.Took(line.Length());
    } else {
        put(output);
    }
}

} // namespace tvut
