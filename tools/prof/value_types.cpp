// One row a type: how its text is checked and stored, and how it is read and printed.
#include "value_types.h"

#include "parse_value.h"
#include "text_io.h"
#include "tree_walk.h"

#include <charconv>
#include <new>
#include <optional>
#include <stdexcept>
#include <type_traits>

namespace tool::prof {

namespace {

constexpr const wchar_t* anyName = L"value"; // of the one item of a profile

template <typename Value>
using Parse = std::optional<Value> (*)(std::string_view text);
template <typename Value>
using Print = std::string (*)(Value value);

// How the library takes and returns a value: numbers by value, structures by pointer.
template <typename Value>
using Passed = std::conditional_t<std::is_class_v<Value>, const Value*, Value>;
template <typename Value>
using Set = void(TVUT22_CALL*)(ProfJob job, ProfList list, const wchar_t* path, Passed<Value> value);
template <typename Value>
using Get = INT(TVUT22_CALL*)(ProfJob job, ProfList list, const wchar_t* path, Value* out,
                              Passed<Value> defaultValue);

template <typename Value>
Passed<Value> AsPassed(const Value& value) {
    if constexpr (std::is_class_v<Value>)
        return &value;
    else
        return value;
}

template <typename Value>
auto Storer(Parse<Value> parse, Set<Value> set) {
    return [=](ProfJob job, const wchar_t* path, std::string_view text) {
        const std::optional<Value> value = parse(text);
        if (value && job != nullptr)
            set(job, nullptr, path, AsPassed(*value));
        return value.has_value();
    };
}

template <typename Value>
auto Fetcher(Get<Value> get, Print<Value> print) {
    return [=](ProfJob job, const wchar_t* path, std::string& text) {
        Value value{};
        const INT result = get(job, nullptr, path, &value, AsPassed(Value{}));
        if (result == PROF_OK)
            text = print(value);
        return result;
    };
}

template <typename Value>
scValueType Type(const char* name, Parse<Value> parse, Set<Value> set, Get<Value> get, Print<Value> print) {
    return {name, Storer<Value>(parse, set), Fetcher<Value>(get, print)};
}

template <typename Value>
scValueType Type(const char* name, Parse<Value> parse, Set<Value> set) {
    return {name, Storer<Value>(parse, set), {}};
}

bool StoreString(ProfJob job, const wchar_t* path, std::string_view text) {
    if (job != nullptr)
        ProfSetStringW(job, nullptr, path, ToWide(text).c_str());
    return true;
}

INT FetchString(ProfJob job, const wchar_t* path, std::string& text) {
    const INT length = ProfGetStringLengthW(job, nullptr, path);
    if (length < 0)
        return length;
    std::wstring value(static_cast<std::size_t>(length), L'\0');
    ProfGetStringW(job, nullptr, path, value.data(), static_cast<UINT>(length) + 1, nullptr);
    text = ToUtf8(value);
    return PROF_OK;
}

template <typename Number>
std::string PrintNumber(Number value) {
    char text[32]; // room for the shortest text that reads back as the same number, of any kind
    return {text, std::to_chars(text, std::end(text), value).ptr};
}

template <typename... Numbers>
std::string PrintNumbers(Numbers... numbers) {
    std::string text;
    ((text += text.empty() ? '(' : ',', text += PrintNumber(numbers)), ...);
    return text + ')';
}

// A size may be as large as the whole range of a side; the library lets it wrap as well.
LONG Extent(LONG nearSide, LONG side) {
    return static_cast<LONG>(static_cast<ULONG>(side) - static_cast<ULONG>(nearSide));
}

std::string PrintBool(BOOL value) {
    return value ? "TRUE" : "FALSE";
}
std::string PrintPoint(POINT p) {
    return PrintNumbers(p.x, p.y);
}
std::string PrintRect(RECT r) {
    return PrintNumbers(r.left, r.top, r.right, r.bottom);
}
std::string PrintRectLtwh(RECT r) {
    return PrintNumbers(r.left, r.top, Extent(r.left, r.right), Extent(r.top, r.bottom));
}
std::string PrintColor(COLORREF c) {
    return PrintNumbers(UINT{GetRValue(c)}, UINT{GetGValue(c)}, UINT{GetBValue(c)});
}

const std::vector<scValueType>& Types() {
    static const std::vector<scValueType> table{
        {"string", StoreString, FetchString},
        Type<BOOL>("bool", ParseBool, ProfSetBoolW, ProfGetBoolW, PrintBool),
        Type<INT>("int", ParseInt, ProfSetIntW, ProfGetIntW, PrintNumber),
        Type<UINT>("inthex", ParseIntHex, ProfSetIntHexW),
        Type<INT64>("int64", ParseInt64, ProfSetInt64W, ProfGetInt64W, PrintNumber),
        Type<INT64>("int64hex", ParseInt64, ProfSetInt64HexW),
        Type<double>("double", ParseDouble, ProfSetDoubleW, ProfGetDoubleW, PrintNumber),
        Type<POINT>("point", ParsePoint, ProfSetPointW, ProfGetPointW, PrintPoint),
        Type<RECT>("rect", ParseRect, ProfSetRectW, ProfGetRectW, PrintRect),
        Type<RECT>("rectltwh", ParseRectLtwh, ProfSetRectLTWHW, ProfGetRectLTWHW, PrintRectLtwh),
        Type<COLORREF>("colorref", ParseColor, ProfSetColorrefW, ProfGetColorrefW, PrintColor),
    };
    return table;
}

} // namespace

const scValueType& ValueType(std::string_view name) {
    for (const scValueType& type : Types())
        if (type.name == name)
            return type;
    throw std::out_of_range{"value type"};
}

std::wstring StoredText(const scValueType& type, const std::string& value) {
    const clsProfile profile = clsProfile::MakeEmpty();
    type.store(profile.Job(), anyName, value);
    clsTreeWalk walk{profile.Job(), nullptr, clsTreeWalk::Scope::oneList};
    if (!walk.Next())
        throw std::bad_alloc{};
    return std::wstring{walk.Entry().value};
}

std::optional<std::string> clsTypedReader::Read(const std::wstring& stored) const {
    ProfEmptyList(scratch_.Job(), nullptr); // setting does not tell when memory runs out
    ProfSetStringW(scratch_.Job(), nullptr, anyName, stored.c_str());
    std::string text;
    return type_.fetch(scratch_.Job(), anyName, text) == PROF_OK ? std::optional{text} : std::nullopt;
}

std::vector<std::string> StorableTypes() {
    std::vector<std::string> names;
    for (const scValueType& type : Types())
        names.push_back(type.name);
    return names;
}

std::vector<std::string> FetchableTypes() {
    std::vector<std::string> names;
    for (const scValueType& type : Types())
        if (type.fetch)
            names.push_back(type.name);
    return names;
}

} // namespace tool::prof
