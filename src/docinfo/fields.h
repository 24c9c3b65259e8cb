// Numbers and bytes at places of a source that nobody vouches for: one that lies beyond its end is reported
// as damage, never read.
#pragma once

#include "docinfo/doc_info.h"
#include "platform/bytes.h"

#include <array>
#include <concepts>
#include <span>

namespace tvut {

enum class ByteOrder { little, big };

class clsFields {
  public:
    explicit clsFields(clsRandomSource& source, ByteOrder order = ByteOrder::little)
        : source_(source), order_(order) {}

    // All of them, or clsDocDamage.
    void Read(std::uint64_t position, std::span<unsigned char> bytes) {
        UtilpRequire(source_.ReadAt(position, bytes.data(), bytes.size()) == bytes.size(),
                     "it ends too early");
    }

    template <std::unsigned_integral Number>
    Number At(std::uint64_t position) {
        std::array<unsigned char, sizeof(Number)> bytes;
        Read(position, bytes);
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i)
            number = number << 8 | bytes[order_ == ByteOrder::big ? i : bytes.size() - 1 - i];
        return static_cast<Number>(number);
    }

    // At most that many bytes, fewer only where the source ends.
    std::string Text(std::uint64_t position, std::size_t most) {
        std::string text(most, '\0');
        text.resize(source_.ReadAt(position, text.data(), most));
        return text;
    }

  private:
    clsRandomSource& source_;
    ByteOrder order_;
};

} // namespace tvut
