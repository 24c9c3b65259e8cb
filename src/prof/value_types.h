// The typed values of a profile: one descriptor a type, all the typed calls are templates over them.
//
// A descriptor says what a caller passes (Value), how it becomes an item's text (Format), and how a
// text becomes it (Parse). Parse returns whether the text is of the type; a type may have stored part
// of a value before it says no. Adding a type is adding a descriptor.
#pragma once

#include "prof/value_text.h"

#include <cstdint>
#include <string_view>

namespace tvut {

struct scPoint {
    std::int32_t x, y;
};
struct scRect {
    std::int32_t left, top, right, bottom;
};

// A text is looked at this far: what a number can take, with ample room for blanks.
constexpr std::size_t examinedCharacters = 199;
constexpr std::size_t examinedCharactersInt64 = 63;

struct clsBoolType {
    using Value = std::int32_t;
    static void Format(clsValueText& text, Value value) { text.Put(value ? u"TRUE" : u"FALSE"); }
    static bool Parse(std::u16string_view text, Value& value) {
        value = text.front() == u'T' || text.front() == u'Y' || text.front() == u'y';
        return true;
    }
};

struct clsIntType {
    using Value = std::int32_t;
    static void Format(clsValueText& text, Value value) { text.PutDecimal(value); }
    static bool Parse(std::u16string_view text, Value& value);
    static bool ParseDecimal(std::u16string_view text, Value& value);
};

struct clsIntHexType {
    using Value = std::uint32_t;
    static void Format(clsValueText& text, Value value);
};

struct clsInt64Type {
    using Value = std::int64_t;
    static void Format(clsValueText& text, Value value) {
        text.PutUnsigned(static_cast<std::uint64_t>(value));
    }
    static bool Parse(std::u16string_view text, Value& value);
    static bool ParseDecimal(std::u16string_view text, Value& value);
};

struct clsInt64HexType {
    using Value = std::int64_t;
    static void Format(clsValueText& text, Value value);
};

struct clsDoubleType {
    using Value = double;
    static void Format(clsValueText& text, Value value) { text.PutFixed(value); }
    static bool Parse(std::u16string_view text, Value& value) {
        value = ProfpScanDouble(text);
        return true;
    }
};

struct clsPointType {
    using Value = scPoint;
    static void Format(clsValueText& text, const Value& value);
    static bool Parse(std::u16string_view text, Value& value);
};

struct clsRectType {
    using Value = scRect;
    static void Format(clsValueText& text, const Value& value);
    static bool Parse(std::u16string_view text, Value& value);
};

// A rectangle stored as left, top, width and height.
struct clsRectLTWHType {
    using Value = scRect;
    static void Format(clsValueText& text, const Value& value);
    static bool Parse(std::u16string_view text, Value& value);
};

// Red in the lowest byte, then green, then blue.
struct clsColorrefType {
    using Value = std::uint32_t;
    static void Format(clsValueText& text, Value value);
    static bool Parse(std::u16string_view text, Value& value);
};

} // namespace tvut
