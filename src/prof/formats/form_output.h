// Output of a writer, in UTF-16 or in bytes: collects lines in a block and hands full blocks to a sink.
#pragma once

#include "platform/bytes.h"
#include "text/units.h"

#include <algorithm>
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
    clsFormOutput(clsByteSink& sink, std::uint64_t bytes)
        : sink_(sink), block_(std::make_unique_for_overwrite<Unit[]>(blockLength)) {
        sink_.Extend(bytes);
    }

    void Put(Unit c) {
        Room(1);
        block_[used_++] = c;
    }

    void Put(View text) {
        PutBy([](Unit* to, View part) { std::memcpy(to, part.data(), part.size() * sizeof(Unit)); }, text);
    }

    // Puts a text piece by piece, each copied by a function of where to and the piece.
    template <class Copy>
    void PutBy(Copy copy, View text) {
        while (!text.empty()) {
            const std::size_t part = Part(text.size());
            copy(block_.get() + used_, text.substr(0, part));
            used_ += part;
            text.remove_prefix(part);
        }
    }

    void PutIndentation(std::uint32_t level) {
        for (std::uint32_t tabs = level / 4; tabs != 0; --tabs)
            Put(Unit{'\t'});
        for (std::uint32_t blanks = level % 4; blanks != 0; --blanks)
            Put(Unit{' '});
    }

    // Room for some characters in one piece, which Took then counts; null when the block is too small
    // for them and they have to be put piece by piece.
    Unit* Reserve(std::uint64_t length) {
        if (length > blockLength)
            return nullptr;
        Room(static_cast<std::size_t>(length));
        return block_.get() + used_;
    }
    void Took(std::size_t length) { used_ += length; }

    void Flush() {
        if (used_ != 0)
            sink_.Write(block_.get(), used_ * sizeof(Unit));
        used_ = 0;
    }

  private:
    static constexpr std::size_t blockLength = 64 * 1024;

    void Room(std::size_t length) {
        if (blockLength - used_ < length)
            Flush();
    }
    // How much of a text of some length goes into the block now; never 0.
    std::size_t Part(std::size_t length) {
        Room(1);
        return std::min(length, blockLength - used_);
    }

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
        for (std::uint32_t blanks = level % 4; blanks != 0; --blanks)
            *next_++ = Unit{' '};
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
