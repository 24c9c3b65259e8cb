// UTF-16 output of a writer: collects lines in a block and hands full blocks to a sink.
#pragma once

#include "platform/bytes.h"
#include "text/scan.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tvut {

class clsTextOutput {
  public:
    // Takes its memory, then tells the sink how many bytes will come.
    clsTextOutput(clsByteSink& sink, std::uint64_t bytes);

    void Put(char16_t c) {
        Room(1);
        block_[used_++] = c;
    }
    void Put(std::u16string_view text);

    // Writes text whose characters may have to be replaced; see clsReplacingCopy.
    template <bool isName, class Replace>
    void PutReplacing(std::u16string_view text, Replace replace) {
        while (!text.empty()) {
            const std::size_t part = Part(text.size());
            clsReplacingCopy<isName>::Copy(block_.get() + used_, text.data(), part, replace);
            used_ += part;
            text.remove_prefix(part);
        }
    }

    // A TAB for every four levels and a blank for each level beyond.
    void PutIndentation(std::uint32_t level);

    // Room for some characters in one piece, which Took then counts; null when the block is too small
    // for them and they have to be put piece by piece.
    char16_t* Reserve(std::size_t length) {
        if (length > blockLength)
            return nullptr;
        Room(length);
        return block_.get() + used_;
    }
    void Took(std::size_t length) { used_ += length; }

    void Flush();

    static constexpr std::uint64_t IndentationLength(std::uint32_t level) { return level / 4 + level % 4; }

  private:
    static constexpr std::size_t blockLength = 64 * 1024;

    void Room(std::size_t length) {
        if (blockLength - used_ < length)
            Flush();
    }
    // How much of a text of some length goes into the block now; never 0.
    std::size_t Part(std::size_t length);

    clsByteSink& sink_;
    std::unique_ptr<char16_t[]> block_;
    std::size_t used_ = 0;
};

} // namespace tvut
