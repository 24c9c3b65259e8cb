// Reading is what stored profiles have relied on all along: numbers wrap, and what follows a value is not
// looked at. All of it is done in unsigned numbers, for which wrapping is defined.
#include "prof/value_types.h"

#include <initializer_list>

namespace tvut {

namespace {

void PutTuple(clsValueText& text, std::initializer_list<std::int32_t> numbers) {
    char16_t separator = u'(';
    for (const std::int32_t number : numbers) {
        text.Put(separator);
        text.PutDecimal(number);
        separator = u',';
    }
    text.Put(u')');
}

// Stores each number as it is read, so that a fault leaves the ones before it. The closing
// parenthesis is not looked for.
bool ScanTuple(std::u16string_view text, std::initializer_list<std::int32_t*> numbers) {
    clsValueScanner scanner(text);
    char16_t separator = u'(';
    for (std::int32_t* const number : numbers) {
        std::uint32_t value = 0;
        if (!scanner.Literal(separator) || !scanner.Decimal(value))
            return false;
        *number = static_cast<std::int32_t>(value);
        separator = u',';
    }
    return true;
}

template <class Unsigned>
bool ScanPrefixedHexadecimal(std::u16string_view text, Unsigned& number) {
    clsValueScanner scanner(text);
    return scanner.Literal(u'x') && scanner.Hexadecimal(number);
}

template <class Unsigned, class Value>
bool ScanDecimal(std::u16string_view text, Value& value) {
    Unsigned number = 0;
    if (!clsValueScanner(text).Decimal(number))
        return false;
    value = static_cast<Value>(number);
    return true;
}

template <class Unsigned, class Value>
bool ScanEitherWay(std::u16string_view text, Value& value) {
    Unsigned number = 0;
    if (!ScanPrefixedHexadecimal(text, number))
        return ScanDecimal<Unsigned>(text, value);
    value = static_cast<Value>(number);
    return true;
}

// Differences and sums of coordinates wrap like the integers they are.
std::int32_t Add(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
std::int32_t Subtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

} // namespace

bool clsIntType::Parse(std::u16string_view text, Value& value) {
    return ScanEitherWay<std::uint32_t>(text, value);
}

bool clsIntType::ParseDecimal(std::u16string_view text, Value& value) {
    return ScanDecimal<std::uint32_t>(text, value);
}

void clsIntHexType::Format(clsValueText& text, Value value) {
    text.Put(u'x');
    text.PutHexadecimal(value, 8);
}

bool clsInt64Type::Parse(std::u16string_view text, Value& value) {
    return ScanEitherWay<std::uint64_t>(text.substr(0, examinedCharactersInt64), value);
}

bool clsInt64Type::ParseDecimal(std::u16string_view text, Value& value) {
    return ScanDecimal<std::uint64_t>(text, value);
}

void clsInt64HexType::Format(clsValueText& text, Value value) {
    text.Put(u'x');
    text.PutHexadecimal(static_cast<std::uint64_t>(value), 1);
}

void clsPointType::Format(clsValueText& text, const Value& value) {
    PutTuple(text, {value.x, value.y});
}

bool clsPointType::Parse(std::u16string_view text, Value& value) {
    return ScanTuple(text, {&value.x, &value.y});
}

void clsRectType::Format(clsValueText& text, const Value& value) {
    PutTuple(text, {value.left, value.top, value.right, value.bottom});
}

bool clsRectType::Parse(std::u16string_view text, Value& value) {
    return ScanTuple(text, {&value.left, &value.top, &value.right, &value.bottom});
}

void clsRectLTWHType::Format(clsValueText& text, const Value& value) {
    PutTuple(text,
             {value.left, value.top, Subtract(value.right, value.left), Subtract(value.bottom, value.top)});
}

bool clsRectLTWHType::Parse(std::u16string_view text, Value& value) {
    if (!clsRectType::Parse(text, value))
        return false;
    value.right = Add(value.left, value.right);
    value.bottom = Add(value.top, value.bottom);
    return true;
}

void clsColorrefType::Format(clsValueText& text, Value value) {
    PutTuple(text, {static_cast<std::int32_t>(value & 0xFF), static_cast<std::int32_t>(value >> 8 & 0xFF),
                    static_cast<std::int32_t>(value >> 16 & 0xFF)});
}

bool clsColorrefType::Parse(std::u16string_view text, Value& value) {
    if (ScanPrefixedHexadecimal(text, value))
        return true;
    scRect color{};
    if (!ScanTuple(text, {&color.left, &color.top, &color.right}))
        return false;
    value = (static_cast<std::uint32_t>(color.left) & 0xFF) |
            (static_cast<std::uint32_t>(color.top) & 0xFF) << 8 |
            (static_cast<std::uint32_t>(color.right) & 0xFF) << 16;
    return true;
}

} // namespace tvut
