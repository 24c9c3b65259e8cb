// The stored form of a variant: bytes that stay readable for ever, in and out, without Windows types.
//
// docs/variants.md describes the layout. Reader and writer meet in one sequence of calls (IclsVariantSink):
// the writer turns it into bytes, the reader makes it from bytes that nobody vouches for, and on Windows
// variant.cpp makes it from a VARIANT and a VARIANT from it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tvut {

// Type numbers as OLE Automation has them.
namespace variantType {
constexpr std::uint16_t empty = 0, null = 1, bstr = 8, dispatch = 9, variant = 12, unknown = 13, decimal = 14;
constexpr std::uint16_t array = 0x2000;
} // namespace variantType

constexpr std::size_t deepestVariant = 64; // arrays in arrays; freeing them recurses in the system
constexpr std::size_t mostVariantDimensions = 64;
constexpr std::uint32_t mostVariantElements = 0x7FFFFFFF / 16; // of an array; a VARIANT takes 16 bytes

struct scVariantBounds {
    std::uint32_t count;
    std::int32_t lowest;
};

// How many bytes a value of a type of fixed size is stored in; none for a type that has no such size or
// cannot be stored. An interface pointer can be stored when it is null, as one byte.
std::optional<std::size_t> ProfpVariantSize(std::uint16_t type);

// Whether 14 stored bytes are a decimal: an unknown sign or scale would lead arithmetic astray.
bool ProfpIsVariantDecimal(std::string_view bytes);

// What a variant consists of, in the order of its bytes. A value is Type and one of Plain, Text, Array and
// NoArray. Array is followed by the elements and EndArray: those of a fixed size all in one Plain, texts
// as one Text each, variants as values.
class IclsVariantSink {
  public:
    virtual ~IclsVariantSink() = default;
    virtual void Type(std::uint16_t type) = 0;
    virtual void Plain(std::string_view bytes) = 0;
    virtual void Text(std::optional<std::string_view> bytes) = 0; // none: the null text
    virtual void Array(std::span<const scVariantBounds> dimensions) = 0;
    virtual void NoArray() = 0; // an array type without an array
    virtual void EndArray() = 0;
};

class clsVariantWriter final : public IclsVariantSink {
  public:
    clsVariantWriter();
    void Type(std::uint16_t type) override { Put(type); }
    void Plain(std::string_view bytes) override { bytes_ += bytes; }
    void Text(std::optional<std::string_view> bytes) override;
    void Array(std::span<const scVariantBounds> dimensions) override;
    void NoArray() override { Put(std::uint16_t{0}); }
    void EndArray() override {}

    const std::string& Bytes() const { return bytes_; }

  private:
    template <class Number>
    void Put(Number number) {
        bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
    }

    std::string bytes_;
};

// Reads what the writer wrote. Throws clsException for anything else, and what the sink throws; by then
// the sink may have been called for a part by then. Asks for nothing that the bytes do not hold.
void ProfpReadVariant(std::string_view bytes, IclsVariantSink& sink);

} // namespace tvut
