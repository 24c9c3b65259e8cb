// The exports' A and W forms as one table each, so that a case is written once and run through both.
#pragma once

#include <tvut22/prof.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace testing_prof {

// Wide text in a code page, and back. Both by the platform's own conversion.
inline std::string ToBytes(std::wstring_view text, UINT codePage) {
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 4, '\0');
    const int written = WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(),
                                            static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(written));
    return bytes;
}

inline std::wstring ToWide(std::string_view bytes, UINT codePage) {
    const int length = static_cast<int>(bytes.size());
    std::wstring text(bytes.size() + 1, L'\0');
    const int written =
        MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<size_t>(written));
    return text;
}

template <class Char>
std::basic_string<Char> In(std::wstring_view text) {
    if constexpr (sizeof(Char) == 1)
        return ToBytes(text, ProfGetOption(PROF_OPTION_CODE_PAGE));
    else
        return std::wstring(text);
}

inline std::wstring Wide(const char* text) {
    return ToWide(text, ProfGetOption(PROF_OPTION_CODE_PAGE));
}
inline std::wstring Wide(const wchar_t* text) {
    return text;
}

template <class Char>
struct scForm;

// A member a pair of exports; the two specialisations differ in the letter after each name only.
// clang-format off
#define PROF_CALL(NAME, EXPORT) static inline const auto NAME = &Prof##EXPORT
#define PROF_FORM_TABLE(CHAR, S) \
    template <> struct scForm<CHAR> { using Char = CHAR; \
        PROF_CALL(open, JobOpen##S); PROF_CALL(openExclusive, JobOpenExclusive##S); \
        PROF_CALL(openStream, JobOpenStreamObject##S); PROF_CALL(save, Save##S); \
        PROF_CALL(getList, GetList##S); PROF_CALL(createList, CreateList##S); \
        PROF_CALL(appendList, AppendList##S); PROF_CALL(deleteList, DeleteList##S); \
        PROF_CALL(deleteItem, DeleteItem##S); PROF_CALL(enumerate, Enum##S); \
        PROF_CALL(appendString, AppendString##S); PROF_CALL(setString, SetString##S); \
        PROF_CALL(appendBool, AppendBool##S); PROF_CALL(setBool, SetBool##S); \
        PROF_CALL(appendInt, AppendInt##S); PROF_CALL(setInt, SetInt##S); \
        PROF_CALL(appendIntHex, AppendIntHex##S); PROF_CALL(setIntHex, SetIntHex##S); \
        PROF_CALL(appendInt64, AppendInt64##S); PROF_CALL(setInt64, SetInt64##S); \
        PROF_CALL(appendInt64Hex, AppendInt64Hex##S); PROF_CALL(setInt64Hex, SetInt64Hex##S); \
        PROF_CALL(appendDouble, AppendDouble##S); PROF_CALL(setDouble, SetDouble##S); \
        PROF_CALL(appendPoint, AppendPoint##S); PROF_CALL(setPoint, SetPoint##S); \
        PROF_CALL(appendRect, AppendRect##S); PROF_CALL(setRect, SetRect##S); \
        PROF_CALL(appendRectLTWH, AppendRectLTWH##S); PROF_CALL(setRectLTWH, SetRectLTWH##S); \
        PROF_CALL(appendColorref, AppendColorref##S); PROF_CALL(setColorref, SetColorref##S); \
        PROF_CALL(getString, GetString##S); PROF_CALL(getStringLength, GetStringLength##S); \
        PROF_CALL(getBool, GetBool##S); PROF_CALL(getInt, GetInt##S); PROF_CALL(getInt64, GetInt64##S); \
        PROF_CALL(getDouble, GetDouble##S); PROF_CALL(getPoint, GetPoint##S); \
        PROF_CALL(getRect, GetRect##S); PROF_CALL(getRectLTWH, GetRectLTWH##S); \
        PROF_CALL(appendStream, AppendStream##S); PROF_CALL(getStream, GetStream##S); \
        PROF_CALL(appendFile, AppendFile##S); PROF_CALL(getFile, GetFile##S); \
        PROF_CALL(appendFiles, AppendFiles##S); PROF_CALL(extractFiles, ExtractFiles##S); \
        PROF_CALL(getColorref, GetColorref##S); PROF_CALL(toBool, LPSTRtoBOOL##S); \
        PROF_CALL(toInt, LPSTRtoINT##S); PROF_CALL(toInt64, LPSTRtoINT64##S); \
        PROF_CALL(toRect, LPSTRtoRECT##S); PROF_CALL(toColorref, LPSTRtoCOLORREF##S); }
PROF_FORM_TABLE(char, A);
PROF_FORM_TABLE(wchar_t, W);
#undef PROF_FORM_TABLE
#undef PROF_CALL
// clang-format on

using BothForms = ::testing::Types<scForm<char>, scForm<wchar_t>>;

// The fixture of tests that need no more than the form.
template <class F>
class InBothForms : public ::testing::Test {};

struct scFormNames {
    template <class F>
    static std::string GetName(int) {
        return sizeof(typename F::Char) == 1 ? "A" : "W";
    }
};

// Sets the process code page and puts the old one back.
class clsCodePage {
  public:
    explicit clsCodePage(UINT codePage) { ProfSetOption(PROF_OPTION_CODE_PAGE, codePage); }
    ~clsCodePage() { ProfSetOption(PROF_OPTION_CODE_PAGE, before_); }
    clsCodePage(const clsCodePage&) = delete;
    clsCodePage& operator=(const clsCodePage&) = delete;

  private:
    UINT before_ = ProfGetOption(PROF_OPTION_CODE_PAGE);
};

} // namespace testing_prof
