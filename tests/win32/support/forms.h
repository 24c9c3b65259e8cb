// The exports' A and W forms as one table each, so that a case is written once and run through both.
#pragma once

#include <tvut22/prof.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace testing_prof {

/// Wide text in a code page, and back. Both by the platform's own conversion.
inline std::string toBytes(std::wstring_view text, UINT codePage) {
    const int length = static_cast<int>(text.size());
    std::string bytes(text.size() * 4, '\0');
    const int written = WideCharToMultiByte(codePage, 0, text.data(), length, bytes.data(),
                                            static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<size_t>(written));
    return bytes;
}

inline std::wstring toWide(std::string_view bytes, UINT codePage) {
    const int length = static_cast<int>(bytes.size());
    std::wstring text(bytes.size() + 1, L'\0');
    const int written =
        MultiByteToWideChar(codePage, 0, bytes.data(), length, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<size_t>(written));
    return text;
}

template <class Char>
std::basic_string<Char> in(std::wstring_view text) {
    if constexpr (sizeof(Char) == 1)
        return toBytes(text, ProfGetOption(PROF_OPTION_CODE_PAGE));
    else
        return std::wstring(text);
}

inline std::wstring wide(const char* text) {
    return toWide(text, ProfGetOption(PROF_OPTION_CODE_PAGE));
}
inline std::wstring wide(const wchar_t* text) {
    return text;
}

template <class Char>
struct Form;

// A member a pair of exports; the two specialisations differ in the letter behind each name only.
#define PROF_FORM_TABLE(CHAR, S)                                                                             \
    template <>                                                                                              \
    struct Form<CHAR> {                                                                                      \
        using Char = CHAR;                                                                                   \
        static inline const auto open = &ProfJobOpen##S;                                                     \
        static inline const auto openExclusive = &ProfJobOpenExclusive##S;                                   \
        static inline const auto openStream = &ProfJobOpenStreamObject##S;                                   \
        static inline const auto save = &ProfSave##S;                                                        \
        static inline const auto getList = &ProfGetList##S;                                                  \
        static inline const auto createList = &ProfCreateList##S;                                            \
        static inline const auto appendList = &ProfAppendList##S;                                            \
        static inline const auto deleteList = &ProfDeleteList##S;                                            \
        static inline const auto deleteItem = &ProfDeleteItem##S;                                            \
        static inline const auto enumerate = &ProfEnum##S;                                                   \
        static inline const auto appendString = &ProfAppendString##S;                                        \
        static inline const auto setString = &ProfSetString##S;                                              \
        static inline const auto appendBool = &ProfAppendBool##S;                                            \
        static inline const auto setBool = &ProfSetBool##S;                                                  \
        static inline const auto appendInt = &ProfAppendInt##S;                                              \
        static inline const auto setInt = &ProfSetInt##S;                                                    \
        static inline const auto appendIntHex = &ProfAppendIntHex##S;                                        \
        static inline const auto setIntHex = &ProfSetIntHex##S;                                              \
        static inline const auto appendInt64 = &ProfAppendInt64##S;                                          \
        static inline const auto setInt64 = &ProfSetInt64##S;                                                \
        static inline const auto appendInt64Hex = &ProfAppendInt64Hex##S;                                    \
        static inline const auto setInt64Hex = &ProfSetInt64Hex##S;                                          \
        static inline const auto appendDouble = &ProfAppendDouble##S;                                        \
        static inline const auto setDouble = &ProfSetDouble##S;                                              \
        static inline const auto appendPoint = &ProfAppendPoint##S;                                          \
        static inline const auto setPoint = &ProfSetPoint##S;                                                \
        static inline const auto appendRect = &ProfAppendRect##S;                                            \
        static inline const auto setRect = &ProfSetRect##S;                                                  \
        static inline const auto appendRectLTWH = &ProfAppendRectLTWH##S;                                    \
        static inline const auto setRectLTWH = &ProfSetRectLTWH##S;                                          \
        static inline const auto appendColorref = &ProfAppendColorref##S;                                    \
        static inline const auto setColorref = &ProfSetColorref##S;                                          \
        static inline const auto getString = &ProfGetString##S;                                              \
        static inline const auto getStringLength = &ProfGetStringLength##S;                                  \
        static inline const auto getBool = &ProfGetBool##S;                                                  \
        static inline const auto getInt = &ProfGetInt##S;                                                    \
        static inline const auto getInt64 = &ProfGetInt64##S;                                                \
        static inline const auto getDouble = &ProfGetDouble##S;                                              \
        static inline const auto getPoint = &ProfGetPoint##S;                                                \
        static inline const auto getRect = &ProfGetRect##S;                                                  \
        static inline const auto getRectLTWH = &ProfGetRectLTWH##S;                                          \
        static inline const auto getColorref = &ProfGetColorref##S;                                          \
        static inline const auto toBool = &ProfLPSTRtoBOOL##S;                                               \
        static inline const auto toInt = &ProfLPSTRtoINT##S;                                                 \
        static inline const auto toInt64 = &ProfLPSTRtoINT64##S;                                             \
        static inline const auto toRect = &ProfLPSTRtoRECT##S;                                               \
        static inline const auto toColorref = &ProfLPSTRtoCOLORREF##S;                                       \
    }

PROF_FORM_TABLE(char, A);
PROF_FORM_TABLE(wchar_t, W);
#undef PROF_FORM_TABLE

using BothForms = ::testing::Types<Form<char>, Form<wchar_t>>;

struct FormNames {
    template <class F>
    static std::string GetName(int) {
        return sizeof(typename F::Char) == 1 ? "A" : "W";
    }
};

/// Sets the process code page and puts the old one back.
class CodePage {
  public:
    explicit CodePage(UINT codePage) { ProfSetOption(PROF_OPTION_CODE_PAGE, codePage); }
    ~CodePage() { ProfSetOption(PROF_OPTION_CODE_PAGE, before_); }
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

  private:
    UINT before_ = ProfGetOption(PROF_OPTION_CODE_PAGE);
};

} // namespace testing_prof
