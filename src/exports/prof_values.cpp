// Exports of the profile store: Append, Set and Get of every typed value, and the converters.
//
// All of them are templates over the type's descriptor and the caller's character type; the exports
// at the end only give them names.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/path.h"
#include "prof/value_types.h"

using namespace tvut;

namespace {

// ---- From the caller's types to the descriptors' and back -----------------------------------------

scPoint FromCaller(const POINT& value) {
    return {value.x, value.y};
}
scRect FromCaller(const RECT& value) {
    return {value.left, value.top, value.right, value.bottom};
}
std::uint32_t FromCaller(DWORD value) {
    return value;
} // COLORREF
template <class Number>
Number FromCaller(Number value) {
    return value;
}

void Store(POINT& out, const scPoint& value) {
    out = {value.x, value.y};
}
void Store(RECT& out, const scRect& value) {
    out = {value.left, value.top, value.right, value.bottom};
}
template <class Out, class Number>
void Store(Out& out, Number value) {
    out = static_cast<Out>(value);
}

// A null pointer to a default counts as all zeros.
template <class Value>
Value OrZeros(const Value* value) {
    return value ? *value : Value{};
}

// ---- Append and Set -------------------------------------------------------------------------------

template <class Type, class Char, class Value>
void Add(AddItem add, ProfJob job, ProfList list, const Char* path, const Value& value) {
    WithPath(job, list, path, [&](clsItemList& start, std::u16string_view name) {
        clsValueText text;
        Type::Format(text, FromCaller(value));
        add(start, name, text.View());
    });
}

template <class Type, class Char, class Value>
void Add(AddItem add, ProfJob job, ProfList list, const Char* path, const Value* value) {
    if (value)
        Add<Type>(add, job, list, path, *value);
}

// ---- Get ------------------------------------------------------------------------------------------

// Parses a text into a value that may be filled in part even when the text is not of the type.
template <class Type, class Out>
bool ParseInto(std::u16string_view text, Out& out) {
    typename Type::Value value = FromCaller(out);
    const bool parsed = Type::Parse(text, value);
    Store(out, value);
    return parsed;
}

template <class Type>
std::u16string_view Examined(std::u16string_view text) {
    return std::is_same_v<Type, clsDoubleType> ? text : text.substr(0, examinedCharacters);
}

template <class Type, class Char, class Out>
INT Get(ProfJob job, ProfList list, const Char* path, Out* out, const Out& defaultValue) {
    Out unwanted{};
    Out& target = out ? *out : unwanted;
    const Out fallback = defaultValue; // may be the target itself
    const INT result = WithItem(job, list, path, [&](const clsItem& item) {
        if (item.Value().empty())
            return PROF_NOT_FOUND;
        return ParseInto<Type>(Examined<Type>(item.Value()), target) ? PROF_OK : PROF_NOT_PARSED;
    });
    if (result == PROF_NOT_FOUND)
        target = fallback;
    return result;
}

template <class Type, class Char, class Out>
INT Get(ProfJob job, ProfList list, const Char* path, Out* out, const Out* defaultValue) {
    return Get<Type>(job, list, path, out, OrZeros(defaultValue));
}

// ---- Converters -----------------------------------------------------------------------------------

// The decimal forms only: a text that the caller holds is not one this library wrote.
struct clsDecimalIntType : clsIntType {
    static bool Parse(std::u16string_view text, Value& value) { return ParseDecimal(text, value); }
};
struct clsDecimalInt64Type : clsInt64Type {
    static bool Parse(std::u16string_view text, Value& value) { return ParseDecimal(text, value); }
};
// The empty text is true, as it always was.
struct clsConvertedBoolType : clsBoolType {
    static bool Parse(std::u16string_view text, Value& value) {
        value = 1;
        return text.empty() || clsBoolType::Parse(text, value);
    }
};

template <class Type, class Char, class Out>
void Convert(const Char* text, Out* out, const Out& defaultValue) {
    if (!out)
        return;
    const Out fallback = defaultValue;
    const bool parsed = UtilpGuard(false, [&] {
        const clsTextArgument<Char> argument(text);
        return !argument.IsNull() && ParseInto<Type>(argument.View(), *out);
    });
    if (!parsed)
        *out = fallback;
}

template <class Type, class Char, class Out>
void Convert(const Char* text, Out* out, const Out* defaultValue) {
    Convert<Type>(text, out, OrZeros(defaultValue));
}

} // namespace

// ---- The names ------------------------------------------------------------------------------------

// A type cannot stand in parentheses.
// NOLINTBEGIN(bugprone-macro-parentheses)

// Append and Set of one type, in both character types. Argument is what the caller passes.
#define TVUT_ADD_EXPORTS(Name, Type, Argument)                                                               \
    void TVUT22_CALL ProfAppend##Name##A(ProfJob job, ProfList list, const char* path, Argument value) {     \
        Add<Type>(ProfpAppendItem, job, list, path, value);                                                  \
    }                                                                                                        \
    void TVUT22_CALL ProfAppend##Name##W(ProfJob job, ProfList list, const wchar_t* path, Argument value) {  \
        Add<Type>(ProfpAppendItem, job, list, path, value);                                                  \
    }                                                                                                        \
    void TVUT22_CALL ProfSet##Name##A(ProfJob job, ProfList list, const char* path, Argument value) {        \
        Add<Type>(ProfpSetItem, job, list, path, value);                                                     \
    }                                                                                                        \
    void TVUT22_CALL ProfSet##Name##W(ProfJob job, ProfList list, const wchar_t* path, Argument value) {     \
        Add<Type>(ProfpSetItem, job, list, path, value);                                                     \
    }

// Get of one type, in both character types. Default is how the caller passes the default.
#define TVUT_GET_EXPORTS(Name, Type, Out, Default)                                                           \
    INT TVUT22_CALL ProfGet##Name##A(ProfJob job, ProfList list, const char* path, Out* out,                 \
                                     Default defaultValue) {                                                 \
        return Get<Type>(job, list, path, out, defaultValue);                                                \
    }                                                                                                        \
    INT TVUT22_CALL ProfGet##Name##W(ProfJob job, ProfList list, const wchar_t* path, Out* out,              \
                                     Default defaultValue) {                                                 \
        return Get<Type>(job, list, path, out, defaultValue);                                                \
    }

#define TVUT_CONVERT_EXPORTS(Name, Type, Out, Default)                                                       \
    void TVUT22_CALL ProfLPSTRto##Name##A(const char* text, Out* out, Default defaultValue) {                \
        Convert<Type>(text, out, defaultValue);                                                              \
    }                                                                                                        \
    void TVUT22_CALL ProfLPSTRto##Name##W(const wchar_t* text, Out* out, Default defaultValue) {             \
        Convert<Type>(text, out, defaultValue);                                                              \
    }

// NOLINTEND(bugprone-macro-parentheses)

TVUT_ADD_EXPORTS(Bool, clsBoolType, BOOL)
TVUT_ADD_EXPORTS(Int, clsIntType, INT)
TVUT_ADD_EXPORTS(IntHex, clsIntHexType, UINT)
TVUT_ADD_EXPORTS(Int64, clsInt64Type, INT64)
TVUT_ADD_EXPORTS(Int64Hex, clsInt64HexType, INT64)
TVUT_ADD_EXPORTS(Double, clsDoubleType, double)
TVUT_ADD_EXPORTS(Point, clsPointType, const POINT*)
TVUT_ADD_EXPORTS(Rect, clsRectType, const RECT*)
TVUT_ADD_EXPORTS(RectLTWH, clsRectLTWHType, const RECT*)
TVUT_ADD_EXPORTS(Colorref, clsColorrefType, COLORREF)

TVUT_GET_EXPORTS(Bool, clsBoolType, BOOL, BOOL)
TVUT_GET_EXPORTS(Int, clsIntType, INT, INT)
TVUT_GET_EXPORTS(Int64, clsInt64Type, INT64, INT64)
TVUT_GET_EXPORTS(Double, clsDoubleType, double, double)
TVUT_GET_EXPORTS(Point, clsPointType, POINT, const POINT*)
TVUT_GET_EXPORTS(Rect, clsRectType, RECT, const RECT*)
TVUT_GET_EXPORTS(RectLTWH, clsRectLTWHType, RECT, const RECT*)
TVUT_GET_EXPORTS(Colorref, clsColorrefType, COLORREF, COLORREF)

TVUT_CONVERT_EXPORTS(BOOL, clsConvertedBoolType, BOOL, BOOL)
TVUT_CONVERT_EXPORTS(INT, clsDecimalIntType, INT, INT)
TVUT_CONVERT_EXPORTS(INT64, clsDecimalInt64Type, INT64, INT64)
TVUT_CONVERT_EXPORTS(RECT, clsRectType, RECT, const RECT*)
TVUT_CONVERT_EXPORTS(COLORREF, clsColorrefType, COLORREF, COLORREF)
