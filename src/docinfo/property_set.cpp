// A stream holds one set or two, each with a list of properties and where their values lie. A value tells its
// own type, so each is read by what it says it is, not by what it should be.
#include "docinfo/property_set.h"

#include "docinfo/document_text.h"
#include "text/numbers/shortest_decimal.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>

namespace tvut {

namespace {

constexpr std::uint32_t dictionary = 0, codePageProperty = 1;
constexpr unsigned codePageUtf16 = 1200, codePageMissing = 1252;
constexpr std::size_t mostProperties = 65536;
constexpr std::size_t longestText = 128 * 1024; // bytes; more than is shown, in any code page
constexpr std::uint64_t setCountAt = 24, firstSetAt = 28, setHeaderBytes = 20;

enum class ValueType : std::uint16_t {
    int16 = 2,
    int32 = 3,
    real32 = 4,
    real64 = 5,
    currency = 6,
    date = 7,
    byteString = 8,
    boolean = 11,
    int8 = 16,
    uint8 = 17,
    uint16 = 18,
    uint32 = 19,
    int64 = 20,
    uint64 = 21,
    integer = 22,
    unsignedInteger = 23,
    codePageString = 30,
    wideString = 31,
    fileTime = 64,
};

template <class Number>
std::u16string Digits(Number number) {
    std::array<char, 24> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

std::u16string RealDigits(double number) {
    std::array<char16_t, longestShortestDecimal> digits;
    return {digits.data(), UtilpPutShortestDecimal(number, digits.data())};
}

scPropertyValue OfNumber(std::int64_t number) {
    return {Digits(number), number, {}};
}

scPropertyValue OfUnsigned(std::uint64_t number) {
    if (number > INT64_MAX)
        return {Digits(number), {}, {}};
    return OfNumber(static_cast<std::int64_t>(number));
}

scPropertyValue OfReal(double number) {
    return {std::isfinite(number) ? RealDigits(number) : std::u16string(), {}, {}};
}

scPropertyValue OfDate(const std::optional<scDocDate>& date) {
    return {date ? UtilpDateText(*date) : std::u16string(), {}, date};
}

// Days since 30 December 1899; the part of a day counts forward on days before, too. No zone.
scPropertyValue OfDays(double days) {
    constexpr double until1899 = 109205, until9999 = 2958466, secondsOfDay = 86400; // days since 1601
    if (!(days > -until1899 && days < until9999))
        return {};
    const double day = std::trunc(days);
    const double seconds = std::round((until1899 + day + std::fabs(days - day)) * secondsOfDay);
    auto date = UtilpDateOfFileTime(static_cast<std::uint64_t>(seconds) * 10'000'000);
    if (date)
        date->zone = scDocDate::Zone::unknown;
    return OfDate(date);
}

} // namespace

std::optional<clsPropertySet> clsPropertySet::Find(clsRandomSource& stream, PropertySetKind kind) {
    clsFields fields(stream);
    const std::uint32_t count = std::min(fields.At<std::uint32_t>(setCountAt), 2u);
    for (std::uint32_t set = 0; set < count; ++set) {
        const std::uint64_t at = firstSetAt + set * setHeaderBytes;
        if (fields.At<std::uint32_t>(at) == static_cast<std::uint32_t>(kind))
            return clsPropertySet(stream, fields.At<std::uint32_t>(at + 16));
    }
    return {};
}

clsPropertySet::clsPropertySet(clsRandomSource& stream, std::uint64_t start)
    : fields_(stream), start_(start), streamSize_(stream.Size()), codePage_(codePageMissing) {
    const std::size_t count = fields_.At<std::uint32_t>(start + 4);
    UtilpRequire(count <= mostProperties && start + 8 + 8 * count <= streamSize_,
                 "too many properties in a set");
    places_.reserve(count);
    for (std::size_t place = 0; place < count; ++place) {
        const std::uint64_t at = start + 8 + 8 * place;
        places_.push_back({fields_.At<std::uint32_t>(at), fields_.At<std::uint32_t>(at + 4)});
    }
    std::ranges::stable_sort(places_, {}, &scPlace::property);
    if (const auto codePage = Value(codePageProperty).number)
        codePage_ = static_cast<std::uint16_t>(*codePage); // a signed number in the files
}

scPropertyValue clsPropertySet::Value(std::uint32_t property) {
    const auto position = PositionOf(property);
    return position ? ValueAt(*position) : scPropertyValue{};
}

// The dictionary has no type, only a count. Names in UTF-16 are filled up to four bytes.
void clsPropertySet::EachNamed(
    const std::function<void(std::u16string_view name, const scPropertyValue& value)>& visit) {
    const auto position = PositionOf(dictionary);
    if (!position)
        return;
    std::uint32_t left = fields_.At<std::uint32_t>(*position);
    for (std::uint64_t at = *position + 4; left > 0; --left) {
        const std::uint32_t property = fields_.At<std::uint32_t>(at);
        const std::uint64_t length = fields_.At<std::uint32_t>(at + 4);
        const std::uint64_t bytes = codePage_ == codePageUtf16 ? 2 * length : length;
        at += 8;
        UtilpRequire(at + bytes <= streamSize_, "a property's name is too long");
        visit(TextAt(at, bytes, codePage_), Value(property));
        at += codePage_ == codePageUtf16 ? (bytes + 3) / 4 * 4 : bytes;
    }
}

auto clsPropertySet::PositionOf(std::uint32_t property) const -> std::optional<std::uint64_t> {
    const auto place = std::ranges::lower_bound(places_, property, {}, &scPlace::property);
    if (place == places_.end() || place->property != property)
        return {};
    return start_ + place->offset;
}

scPropertyValue clsPropertySet::ValueAt(std::uint64_t position) {
    const auto type = static_cast<ValueType>(fields_.At<std::uint16_t>(position));
    const std::uint64_t at = position + 4;
    const auto text = [&](std::uint64_t unit, unsigned codePage) {
        return scPropertyValue{TextAt(at + 4, unit * fields_.At<std::uint32_t>(at), codePage), {}, {}};
    };
    const auto signedOf = [&](auto number) {
        return OfNumber(static_cast<std::make_signed_t<decltype(number)>>(number));
    };
    switch (type) {
    case ValueType::int8:
        return signedOf(fields_.At<std::uint8_t>(at));
    case ValueType::int16:
        return signedOf(fields_.At<std::uint16_t>(at));
    case ValueType::int32:
    case ValueType::integer:
        return signedOf(fields_.At<std::uint32_t>(at));
    case ValueType::int64:
        return signedOf(fields_.At<std::uint64_t>(at));
    case ValueType::uint8:
        return OfUnsigned(fields_.At<std::uint8_t>(at));
    case ValueType::uint16:
        return OfUnsigned(fields_.At<std::uint16_t>(at));
    case ValueType::uint32:
    case ValueType::unsignedInteger:
        return OfUnsigned(fields_.At<std::uint32_t>(at));
    case ValueType::uint64:
        return OfUnsigned(fields_.At<std::uint64_t>(at));
    case ValueType::real32:
        return OfReal(std::bit_cast<float>(fields_.At<std::uint32_t>(at)));
    case ValueType::real64:
        return OfReal(std::bit_cast<double>(fields_.At<std::uint64_t>(at)));
    case ValueType::currency: {
        const auto tenThousandths = static_cast<std::int64_t>(fields_.At<std::uint64_t>(at));
        return OfReal(static_cast<double>(tenThousandths) / 10000);
    }
    case ValueType::date:
        return OfDays(std::bit_cast<double>(fields_.At<std::uint64_t>(at)));
    case ValueType::fileTime:
        return OfDate(UtilpDateOfFileTime(fields_.At<std::uint64_t>(at)));
    case ValueType::boolean:
        return {fields_.At<std::uint16_t>(at) != 0 ? u"true" : u"false", {}, {}};
    case ValueType::byteString:
    case ValueType::codePageString:
        return text(1, codePage_);
    case ValueType::wideString:
        return text(2, codePageUtf16);
    }
    return {};
}

std::u16string clsPropertySet::TextAt(std::uint64_t position, std::uint64_t bytes, unsigned codePage) {
    UtilpRequire(position + bytes <= streamSize_, "a property's text is too long");
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, longestText));
    UtilpRequire(count <= textLeft_, "too much text in a set of properties"); // the same again and again
    textLeft_ -= count;
    std::u16string text = UtilpDecodeText(codePage, fields_.Text(position, count));
    text.resize(std::min(text.find(u'\0'), text.size()));
    return text;
}

} // namespace tvut
