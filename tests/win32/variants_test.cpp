// Variants: what can be stored comes back the same, in texts that never change; what cannot is refused.
#include "support/log.h"
#include "support/piece_stream.h"

#include <oleauto.h>

#include <cstring>
#include <string>

namespace testing_prof {
namespace {

class clsVariant {
  public:
    clsVariant() { VariantInit(&value_); }
    explicit clsVariant(VARTYPE type) : clsVariant() { V_VT(&value_) = type; }
    template <class T>
    clsVariant(VARTYPE type, T contents) : clsVariant(type) {
        static_assert(sizeof contents <= 8);
        std::memcpy(&V_I8(&value_), &contents, sizeof contents);
    }
    explicit clsVariant(const DECIMAL& contents) {
        V_DECIMAL(&value_) = contents;
        V_VT(&value_) = VT_DECIMAL;
    }
    clsVariant(const clsVariant&) = delete;
    clsVariant& operator=(const clsVariant&) = delete;
    ~clsVariant() { VariantClear(&value_); }
    operator VARIANT*() { return &value_; }
    VARIANT& operator*() { return value_; }

    static BSTR Text(std::wstring_view text) {
        return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }

  private:
    VARIANT value_;
};

std::wstring Stored(VARIANT* value) {
    const clsJob job;
    ProfAppendVariant(job, 0, L"L/v", value);
    return TextOf(job, L"L/v");
}

// The text of what a text is read as: the same again, if nothing was lost.
std::wstring Again(const std::wstring& text) {
    clsVariant read;
    return ProfGetVariantFromContents(text.c_str(), read) == PROF_OK ? Stored(read) : L"<not read>";
}

SAFEARRAY* Array(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds) {
    return SafeArrayCreate(type, static_cast<UINT>(bounds.size()),
                           const_cast<SAFEARRAYBOUND*>(bounds.begin()));
}

template <class T>
T* Elements(SAFEARRAY* array) {
    return static_cast<T*>(array->pvData);
}

// Numbers that differ in every byte, two dimensions with lower bounds of their own.
SAFEARRAY* Matrix(VARTYPE type) {
    SAFEARRAY* made = Array(type, {{3, -1}, {2, 10}});
    for (UINT i = 0; i < 6 * made->cbElements; ++i)
        Elements<char>(made)[i] = static_cast<char>(i + 1);
    return made;
}

TEST(Variants, AreStoredInTextsThatNeverChange) {
    struct {
        const wchar_t* text;
        clsVariant value;
    } rows[] = {
        {L"var://AQAA", clsVariant()},
        {L"var://AQEA", clsVariant(VT_NULL)},
        {L"var://ARAA/w==", clsVariant(VT_I1, '\xFF')},
        {L"var://AQIAAYA=", clsVariant(VT_I2, static_cast<short>(-32767))},
        {L"var://AQMAKgAAAA==", clsVariant(VT_I4, 42)},
        {L"var://ARQA//////////8=", clsVariant(VT_I8, -1LL)},
        {L"var://AREA/w==", clsVariant(VT_UI1, '\xFF')},
        {L"var://ARIA//8=", clsVariant(VT_UI2, static_cast<unsigned short>(0xFFFF))},
        {L"var://ARMA/////w==", clsVariant(VT_UI4, ~0u)},
        {L"var://ARUAAQAAAAAAAIA=", clsVariant(VT_UI8, 0x8000000000000001ull)},
        {L"var://ARYA/v///w==", clsVariant(VT_INT, -2)},
        {L"var://ARcA/v///w==", clsVariant(VT_UINT, -2)},
        {L"var://AQQAAADAPw==", clsVariant(VT_R4, 1.5f)},
        {L"var://AQUAAAAAAAAA+D8=", clsVariant(VT_R8, 1.5)},
        {L"var://AQYAECcAAAAAAAA=", clsVariant(VT_CY, 10000LL)},
        {L"var://AQcAAAAAABAk5UA=", clsVariant(VT_DATE, 43296.5)},
        {L"var://AQsA//8=", clsVariant(VT_BOOL, VARIANT_TRUE)},
        {L"var://AQoABQAHgA==", clsVariant(VT_ERROR, E_ACCESSDENIED)},
        {L"var://AQgABgAAAGEAAABiAA==", clsVariant(VT_BSTR, clsVariant::Text(std::wstring_view(L"a\0b", 3)))},
        {L"var://AQgAAwAAAGFiYw==", clsVariant(VT_BSTR, SysAllocStringByteLen("abc", 3))},
        {L"var://AQgA/////w==", clsVariant(VT_BSTR, BSTR{})},
        {L"var://AQkAAA==", clsVariant(VT_DISPATCH, static_cast<IDispatch*>(nullptr))},
        {L"var://AQ0AAA==", clsVariant(VT_UNKNOWN, static_cast<IUnknown*>(nullptr))},
        {L"var://AQMgAAA=", clsVariant(VT_ARRAY | VT_I4, static_cast<SAFEARRAY*>(nullptr))},
        {L"var://AREgAgADAAAA/////wIAAAAKAAAAAQIDBAUG", clsVariant(VT_ARRAY | VT_UI1, Matrix(VT_UI1))},
        {L"var://AQggAQABAAAABQAAAP////8=", clsVariant(VT_ARRAY | VT_BSTR, Array(VT_BSTR, {{1, 5}}))},
        {L"var://AQ0gAQADAAAAAAAAAAAAAA==", clsVariant(VT_ARRAY | VT_UNKNOWN, Array(VT_UNKNOWN, {{3, 0}}))},
        {L"var://AQwgAQACAAAAAAAAAAAAAAA=", clsVariant(VT_ARRAY | VT_VARIANT, Array(VT_VARIANT, {{2, 0}}))},
        {L"var://AQUgAQAAAAAABwAAAA==", clsVariant(VT_ARRAY | VT_R8, Array(VT_R8, {{0, 7}}))},
        {L"var://AQ4AAoAAAAAAewAAAAAAAAA=", clsVariant(DECIMAL{0, {{2, DECIMAL_NEG}}, 0, {{123, 0}}})}};
    for (auto& row : rows) {
        EXPECT_EQ(Stored(row.value), row.text);
        EXPECT_EQ(Again(row.text), row.text);
    }
}

TEST(Variants, OfManyElementsComeBackWhole) {
    for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_BOOL, VT_I4, VT_UI4, VT_INT, VT_UINT,
                               VT_ERROR, VT_R4, VT_R8, VT_CY, VT_DATE, VT_I8, VT_UI8}) {
        clsVariant value(VT_ARRAY | type, Matrix(type)), read;
        ASSERT_EQ(ProfGetVariantFromContents(Stored(value).c_str(), read), PROF_OK) << type;
        const SAFEARRAY *before = V_ARRAY(&*value), *after = V_ARRAY(&*read);
        ASSERT_EQ(V_VT(&*read), VT_ARRAY | type);
        EXPECT_EQ(after->cDims, 2);
        EXPECT_FALSE(std::memcmp(after->rgsabound, before->rgsabound, 2 * sizeof(SAFEARRAYBOUND))) << type;
        EXPECT_FALSE(std::memcmp(after->pvData, before->pvData, 6 * before->cbElements)) << type;
    }
    SAFEARRAY* decimals = Array(VT_DECIMAL, {{2, 0}});
    Elements<DECIMAL>(decimals)[1] = DECIMAL{0, {{28, 0}}, 0, {{7, 0}}};
    SAFEARRAY* outer = Array(VT_VARIANT, {{2, 0}});
    V_VT(Elements<VARIANT>(outer)) = VT_ARRAY | VT_DECIMAL;
    V_ARRAY(Elements<VARIANT>(outer)) = decimals;
    V_VT(Elements<VARIANT>(outer) + 1) = VT_BSTR;
    V_BSTR(Elements<VARIANT>(outer) + 1) = clsVariant::Text(std::wstring(500, L'x'));
    clsVariant value(VT_ARRAY | VT_VARIANT, outer), read;
    const std::wstring text = Stored(value);
    EXPECT_EQ(Again(text), text);
    ASSERT_EQ(ProfGetVariantFromContents(text.c_str(), read), PROF_OK);
    const VARIANT* both = Elements<VARIANT>(V_ARRAY(&*read));
    EXPECT_EQ(Elements<DECIMAL>(V_ARRAY(both))[1].Lo64, 7u);
    EXPECT_EQ(SysStringLen(V_BSTR(both + 1)), 500u);
}

TEST(Variants, AreCompressedFrom101BytesOn) {
    for (const UINT bytes : {93u, 94u}) { // 7 more are type and length
        clsVariant value(VT_BSTR, SysAllocStringByteLen(std::string(bytes, 'x').c_str(), bytes));
        const std::wstring text = Stored(value);
        EXPECT_EQ(text.find(L"@2@"), bytes == 93 ? std::wstring::npos : 6) << text;
        EXPECT_EQ(Again(text), text);
    }
}

TEST(Variants, AreResolvedWhenTheyAreReferences) {
    long number = 42;
    SAFEARRAY* numbers = Matrix(VT_I2);
    clsVariant text(VT_BSTR, clsVariant::Text(L"ab")), owner(VT_ARRAY | VT_I2, numbers);
    clsVariant toNumber(VT_BYREF | VT_I4, &number),
        toText(VT_BYREF | VT_VARIANT, static_cast<VARIANT*>(text)),
        toArray(VT_BYREF | VT_ARRAY | VT_I2, &numbers);
    EXPECT_EQ(Stored(toNumber), L"var://AQMAKgAAAA==");
    EXPECT_EQ(Stored(toText), Stored(text));
    EXPECT_EQ(Stored(toArray), Stored(owner));
    SAFEARRAY* held = Array(VT_VARIANT, {{1, 0}});
    *Elements<VARIANT>(held) = *toNumber;
    clsVariant holder(VT_ARRAY | VT_VARIANT, held);
    EXPECT_EQ(Stored(holder), L"var://AQwgAQABAAAAAAAAAAMAKgAAAA==");
}

TEST(Variants, ThatMeanNothingElsewhereAreRefused) {
    clsPieceStream live;
    VARIANT loop;
    SAFEARRAY* self = Array(VT_VARIANT, {{2, 0}});
    V_VT(&loop) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&loop) = self;
    for (int i = 0; i < 2; ++i) {
        V_VT(Elements<VARIANT>(self) + i) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(Elements<VARIANT>(self) + i) = &loop;
    }
    SAFEARRAY* objects = Array(VT_UNKNOWN, {{2, 0}});
    Elements<IUnknown*>(objects)[1] = (live.AddRef(), &live);
    IUnknown* pointer = &live; // any object
    clsVariant rows[] = {clsVariant(VT_UNKNOWN, (live.AddRef(), pointer)),
                         clsVariant(VT_BYREF | VT_UNKNOWN, &pointer),
                         clsVariant(VT_ARRAY | VT_UNKNOWN, objects), clsVariant(VT_ARRAY | VT_VARIANT, self),
                         clsVariant(VT_BYREF | VT_I4, static_cast<long*>(nullptr))};
    for (clsVariant& row : rows) {
        const clsJob job(L"v=old;");
        const clsLog log;
        ProfSetVariant(job, 0, L"v", row);
        ProfAppendVariant(job, 0, L"v", row);
        EXPECT_EQ(Describe(job), L"v=old;") << V_VT(&*row);
        const auto lines = log.Lines();
        EXPECT_TRUE(lines.size() == 2 && lines[1].ends_with("cannot be stored")) << V_VT(&*row);
    }
    for (clsVariant& row : rows)
        VariantClear(row);
    EXPECT_EQ(live.references, 1);
    const clsJob job;
    ProfAppendVariant(job, 0, L"v", nullptr);
    EXPECT_EQ(Describe(job), L"");
}

TEST(Variants, AreReadFromVariantsOnly) {
    const clsJob job(L"empty=;text=abc;plain=AQMAKgAAAA==;cut=var://AQMAKgAA;bad=var://AQMAKgA*AA==;"
                     L"packed=var://@2@AQMAKgAAAA==;none=var://;good=var://AQMAKgAAAA==;");
    std::vector<std::pair<const wchar_t*, INT>> rows = {{L"good", PROF_OK}};
    for (const wchar_t* path : {L"empty", L"missing", static_cast<const wchar_t*>(nullptr)})
        rows.emplace_back(path, PROF_NOT_FOUND);
    for (const wchar_t* path : {L"text", L"plain", L"cut", L"bad", L"packed", L"none"})
        rows.emplace_back(path, PROF_NOT_PARSED);
    for (const auto& [path, result] : rows) {
        VARIANT out;
        std::memset(&out, 0xCC, sizeof out); // initialised by the call, not cleared
        EXPECT_EQ(ProfGetVariant(job, 0, path, &out), result) << (path ? path : L"null");
        EXPECT_EQ(V_VT(&out), result == PROF_OK ? VT_I4 : VT_EMPTY) << (path ? path : L"null");
        EXPECT_EQ(ProfGetVariant(job, 0, path, nullptr), result);
    }
    VARIANT out;
    for (const wchar_t* text : {L"good", L"text"}) { // where the value goes
        const auto* path = static_cast<const wchar_t*>(std::memcpy(&out, text, 5 * sizeof(wchar_t)));
        EXPECT_EQ(ProfGetVariant(job, 0, path, &out), *text == L'g' ? PROF_OK : PROF_NOT_PARSED);
        EXPECT_EQ(V_VT(&out), *text == L'g' ? VT_I4 : VT_EMPTY);
    }
    V_VT(&out) = VT_NULL;
    EXPECT_EQ(ProfGetVariant(nullptr, 0, L"good", &out), 0);
    EXPECT_EQ(V_VT(&out), VT_NULL);
    EXPECT_EQ(ProfGetVariantFromContents(nullptr, &out), PROF_NOT_PARSED);
    EXPECT_EQ(V_VT(&out), VT_EMPTY);
}

// Every bit of a nested variant flipped, one at a time: refused or read, never more than that.
TEST(Variants, SurviveEveryDamage) {
    SAFEARRAY* outer = Array(VT_VARIANT, {{2, 0}});
    V_VT(Elements<VARIANT>(outer)) = VT_BSTR;
    V_BSTR(Elements<VARIANT>(outer)) = clsVariant::Text(L"ab");
    V_VT(Elements<VARIANT>(outer) + 1) = VT_ARRAY | VT_BSTR;
    V_ARRAY(Elements<VARIANT>(outer) + 1) = Array(VT_BSTR, {{2, 0}, {1, 0}});
    clsVariant value(VT_ARRAY | VT_VARIANT, outer);
    const std::wstring text = Stored(value);
    const std::wstring_view digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (size_t at = 6; at < text.size(); ++at)
        for (int bit = 1; bit < 64 && text[at] != L'='; bit *= 2) {
            std::wstring damaged = text;
            damaged[at] = digits[digits.find(text[at]) ^ static_cast<size_t>(bit)];
            clsVariant out;
            const INT result = ProfGetVariantFromContents(damaged.c_str(), out);
            EXPECT_TRUE(result == PROF_OK || (result == PROF_NOT_PARSED && V_VT(&*out) == VT_EMPTY))
                << damaged;
        }
}

} // namespace
} // namespace testing_prof
