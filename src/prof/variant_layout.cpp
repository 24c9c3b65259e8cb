// The reader trusts nothing: each length is compared with what is left before it is used, a count of elements
// with the least bytes that so many take, and nesting with a fixed depth. Its frames are an array in the
// object, so that nested arrays cost no stack. The writer has nothing to check; who calls it does.
#include "prof/variant_layout.h"

#include "platform/exception.h"

#include <algorithm>
#include <cstring>

namespace tvut {

namespace {

constexpr char layoutNumber = 1;
constexpr std::uint32_t nullText = 0xFFFFFFFF;
constexpr std::uint8_t none = 0xFF; // in the table below: not of fixed size, or not stored

// By type number, from VT_EMPTY to VT_UINT.
constexpr std::array<std::uint8_t, 24> storedSizes{
    0,    0, 2, 4, 4,    8, 8,  8, // EMPTY NULL I2 I4 R4 R8 CY DATE
    none, 1, 4, 2, none, 1, 14,    // BSTR DISPATCH ERROR BOOL VARIANT UNKNOWN DECIMAL
    none, 1, 1, 2, 4,    8, 8,     // (15) I1 UI1 UI2 UI4 I8 UI8
    4,    4,                       // INT UINT
};

void Require(bool condition) {
    if (!condition)
        throw clsException("not the bytes of a variant");
}

bool IsInterface(std::uint16_t type) {
    return type == variantType::dispatch || type == variantType::unknown;
}

// The least number of bytes that an element takes; 0 for a type that no array has.
std::size_t LeastElementSize(std::uint16_t type) {
    if (type == variantType::bstr)
        return sizeof(std::uint32_t);
    if (type == variantType::variant)
        return sizeof(std::uint16_t);
    return ProfpVariantSize(type).value_or(0);
}

class clsVariantReader {
  public:
    clsVariantReader(std::string_view bytes, IclsVariantSink& sink) : rest_(bytes), sink_(sink) {}
    void Read();

  private:
    // An array that is being read; its elements are texts or variants.
    struct scFrame {
        std::uint16_t elementType;
        std::uint32_t left;
    };

    std::string_view Take(std::size_t count);
    template <class Number>
    Number Take();
    void Value();
    void Payload(std::uint16_t type);
    void Plain(std::uint16_t type, std::size_t size, std::size_t count);
    void Text();
    void Array(std::uint16_t elementType);
    void BeginElements(std::uint16_t elementType, std::uint32_t count);

    std::string_view rest_;
    IclsVariantSink& sink_;
    std::array<scFrame, deepestVariant> frames_;
    std::size_t depth_ = 0;
};

void clsVariantReader::Read() {
    Require(Take(1).front() == layoutNumber);
    Value();
    while (depth_ != 0) {
        scFrame& array = frames_[depth_ - 1];
        if (array.left == 0) {
            sink_.EndArray();
            --depth_;
            continue;
        }
        --array.left;
        if (array.elementType == variantType::variant)
            Value();
        else
            Text();
    }
    Require(rest_.empty());
}

std::string_view clsVariantReader::Take(std::size_t count) {
    Require(count <= rest_.size());
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
}

template <class Number>
Number clsVariantReader::Take() {
    Number number;
    std::memcpy(&number, Take(sizeof number).data(), sizeof number);
    return number;
}

void clsVariantReader::Value() {
    const auto type = Take<std::uint16_t>();
    sink_.Type(type);
    if (type & variantType::array)
        Array(static_cast<std::uint16_t>(type & ~variantType::array));
    else
        Payload(type);
}

void clsVariantReader::Payload(std::uint16_t type) {
    if (type == variantType::bstr)
        return Text();
    const auto size = ProfpVariantSize(type);
    Require(size.has_value());
    Plain(type, *size, 1);
}

void clsVariantReader::Plain(std::uint16_t type, std::size_t size, std::size_t count) {
    const std::string_view bytes = Take(size * count);
    if (IsInterface(type))
        Require(bytes.find_first_not_of('\0') == std::string_view::npos);
    if (type == variantType::decimal) {
        for (std::size_t at = 0; at < bytes.size(); at += size)
            Require(ProfpIsVariantDecimal(bytes.substr(at, size)));
    }
    sink_.Plain(bytes);
}

void clsVariantReader::Text() {
    const auto size = Take<std::uint32_t>();
    sink_.Text(size == nullText ? std::nullopt : std::optional(Take(size)));
}

void clsVariantReader::Array(std::uint16_t elementType) {
    const std::size_t least = LeastElementSize(elementType);
    Require(least != 0);
    const std::size_t dimensionCount = Take<std::uint16_t>();
    if (dimensionCount == 0)
        return sink_.NoArray();
    Require(dimensionCount <= mostVariantDimensions);
    std::array<scVariantBounds, mostVariantDimensions> dimensions;
    std::uint64_t count = 1;
    for (std::size_t i = 0; i < dimensionCount; ++i) {
        dimensions[i].count = Take<std::uint32_t>();
        dimensions[i].lowest = Take<std::int32_t>();
        Require(dimensions[i].count <= mostVariantElements);
        count *= dimensions[i].count;
        Require(count <= mostVariantElements);
    }
    Require(count * least <= rest_.size());
    sink_.Array({dimensions.data(), dimensionCount});
    BeginElements(elementType, static_cast<std::uint32_t>(count));
}

void clsVariantReader::BeginElements(std::uint16_t elementType, std::uint32_t count) {
    Require(depth_ < deepestVariant);
    std::uint32_t left = count;
    if (const auto size = ProfpVariantSize(elementType)) {
        Plain(elementType, *size, count);
        left = 0;
    }
    frames_[depth_++] = {elementType, left};
}

} // namespace

std::optional<std::size_t> ProfpVariantSize(std::uint16_t type) {
    if (type >= storedSizes.size() || storedSizes[type] == none)
        return std::nullopt;
    return storedSizes[type];
}

bool ProfpIsVariantDecimal(std::string_view bytes) {
    constexpr unsigned char largestScale = 28;
    constexpr unsigned char negative = 0x80;
    const auto scale = static_cast<unsigned char>(bytes[0]);
    const auto sign = static_cast<unsigned char>(bytes[1]);
    return scale <= largestScale && (sign == 0 || sign == negative);
}

void ProfpReadVariant(std::string_view bytes, IclsVariantSink& sink) {
    clsVariantReader(bytes, sink).Read();
}

// ---- Writing ----------------------------------------------------------------------------------

clsVariantWriter::clsVariantWriter() : bytes_(1, layoutNumber) {}

void clsVariantWriter::Text(std::optional<std::string_view> bytes) {
    Put(bytes ? static_cast<std::uint32_t>(bytes->size()) : nullText);
    bytes_ += bytes.value_or(std::string_view());
}

void clsVariantWriter::Array(std::span<const scVariantBounds> dimensions) {
    Put(static_cast<std::uint16_t>(dimensions.size()));
    for (const scVariantBounds& bounds : dimensions) {
        Put(bounds.count);
        Put(bounds.lowest);
    }
}

} // namespace tvut
