// One row a type: how its text is checked and stored, and how it is read and printed.
#include "value_types.h"

#include "parse_value.h"
#include "text_io.h"

#include <charconv>
#include <optional>
#include <stdexcept>
#include <type_traits>

namespace tool::prof {

namespace {

template <typename Value>
using Parse = std::optional<Value> (*)(std::string_view text);
template <typename Value>
using Print = std::string (*)(Value value);

// How the library takes and gives a value: numbers by value, structures by pointer.
template <typename Value>
using Passed = std::conditional_t<std::is_class_v<Value>, const Value*, Value>;
template <typename Value>
using Set = void(TVUT22_CALL*)(ProfJob job, ProfList list, const wchar_t* path, Passed<Value> value);
template <typename Value>
using Get = INT(TVUT22_CALL*)(ProfJob job, ProfList list, const wchar_t* path, Value* out,
                              Passed<Value> defaultValue);

template <typename Value>
Passed<Value> passed(const Value& value) {
    if constexpr (std::is_class_v<Value>)
        return &value;
    else
        return value;
}

template <typename Value>
auto storer(Parse<Value> parse, Set<Value> set) {
    return [=](ProfJob job, const wchar_t* path, std::string_view text) {
        const std::optional<Value> value = parse(text);
        if (value && job != nullptr)
            set(job, nullptr, path, passed(*value));
        return value.has_value();
    };
}

template <typename Value>
auto fetcher(Get<Value> get, Print<Value> print) {
    return [=](ProfJob job, const wchar_t* path, std::string& text) {
        Value value{};
        const INT result = get(job, nullptr, path, &value, passed(Value{}));
        if (result == PROF_OK)
            text = print(value);
        return result;
    };
}

template <typename Value>
ValueType type(const char* name, Parse<Value> parse, Set<Value> set, Get<Value> get, Print<Value> print) {
    return {name, storer<Value>(parse, set), fetcher<Value>(get, print)};
}

template <typename Value>
ValueType type(const char* name, Parse<Value> parse, Set<Value> set) {
    return {name, storer<Value>(parse, set), {}};
}

bool storeString(ProfJob job, const wchar_t* path, std::string_view text) {
    if (job != nullptr)
        ProfSetStringW(job, nullptr, path, toWide(text).c_str());
    return true;
}

INT fetchString(ProfJob job, const wchar_t* path, std::string& text) {
    const INT length = ProfGetStringLengthW(job, nullptr, path);
    if (length < 0)
        return length;
    std::wstring value(static_cast<std::size_t>(length), L'\0');
    ProfGetStringW(job, nullptr, path, value.data(), static_cast<UINT>(length) + 1, nullptr);
    text = toUtf8(value);
    return PROF_OK;
}

template <typename Number>
std::string printNumber(Number value) {
    char text[32]; // room for the shortest text that reads back as the same number, of any kind
    return {text, std::to_chars(text, std::end(text), value).ptr};
}

template <typename... Numbers>
std::string printNumbers(Numbers... numbers) {
    std::string text;
    ((text += text.empty() ? '(' : ',', text += printNumber(numbers)), ...);
    return text + ')';
}

// A size may be as large as the whole range of a side; the library lets it wrap as well.
LONG extent(LONG nearSide, LONG side) {
    return static_cast<LONG>(static_cast<ULONG>(side) - static_cast<ULONG>(nearSide));
}

std::string printBool(BOOL value) {
    return value ? "TRUE" : "FALSE";
}
std::string printPoint(POINT p) {
    return printNumbers(p.x, p.y);
}
std::string printRect(RECT r) {
    return printNumbers(r.left, r.top, r.right, r.bottom);
}
std::string printRectLTWH(RECT r) {
    return printNumbers(r.left, r.top, extent(r.left, r.right), extent(r.top, r.bottom));
}
std::string printColor(COLORREF c) {
    return printNumbers(UINT{GetRValue(c)}, UINT{GetGValue(c)}, UINT{GetBValue(c)});
}

const std::vector<ValueType>& types() {
    static const std::vector<ValueType> table{
        {"string", storeString, fetchString},
        type<BOOL>("bool", parseBool, ProfSetBoolW, ProfGetBoolW, printBool),
        type<INT>("int", parseInt, ProfSetIntW, ProfGetIntW, printNumber),
        type<UINT>("inthex", parseIntHex, ProfSetIntHexW),
        type<INT64>("int64", parseInt64, ProfSetInt64W, ProfGetInt64W, printNumber),
        type<INT64>("int64hex", parseInt64, ProfSetInt64HexW),
        type<double>("double", parseDouble, ProfSetDoubleW, ProfGetDoubleW, printNumber),
        type<POINT>("point", parsePoint, ProfSetPointW, ProfGetPointW, printPoint),
        type<RECT>("rect", parseRect, ProfSetRectW, ProfGetRectW, printRect),
        type<RECT>("rectltwh", parseRectLTWH, ProfSetRectLTWHW, ProfGetRectLTWHW, printRectLTWH),
        type<COLORREF>("colorref", parseColor, ProfSetColorrefW, ProfGetColorrefW, printColor),
    };
    return table;
}

} // namespace

const ValueType& valueType(std::string_view name) {
    for (const ValueType& type : types())
        if (type.name == name)
            return type;
    throw std::out_of_range{"value type"};
}

std::vector<std::string> storableTypes() {
    std::vector<std::string> names;
    for (const ValueType& type : types())
        names.push_back(type.name);
    return names;
}

std::vector<std::string> fetchableTypes() {
    std::vector<std::string> names;
    for (const ValueType& type : types())
        if (type.fetch)
            names.push_back(type.name);
    return names;
}

} // namespace tool::prof
