// Variants: what can be stored comes back the same, in texts that never change; what cannot is refused.
#include "support/log.h"
#include "support/piece_stream.h"

#include <oleauto.h>

#include <cstring>
#include <memory>
#include <string>

namespace testing_prof {
namespace {

class Variant {
  public:
    Variant() { VariantInit(&value_); }
    explicit Variant(VARTYPE type) : Variant() { V_VT(&value_) = type; }
    template <class T>
    Variant(VARTYPE type, T contents) : Variant(type) {
        static_assert(sizeof contents <= 8);
        std::memcpy(&V_I8(&value_), &contents, sizeof contents);
    }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    ~Variant() { VariantClear(&value_); }
    operator VARIANT*() { return &value_; }
    VARIANT& operator*() { return value_; }

    static BSTR text(std::wstring_view text) {
        return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }

  private:
    VARIANT value_;
};

std::wstring stored(VARIANT* value) {
    const Job job;
    ProfAppendVariant(job, 0, L"L/v", value);
    return textOf(job, L"L/v");
}

/// The text of what a text is read as: the same again, if nothing was lost.
std::wstring again(const std::wstring& text) {
    Variant read;
    return ProfGetVariantFromContents(text.c_str(), read) == PROF_OK ? stored(read) : L"<not read>";
}

SAFEARRAY* array(VARTYPE type, std::initializer_list<SAFEARRAYBOUND> bounds) {
    return SafeArrayCreate(type, static_cast<UINT>(bounds.size()),
                           const_cast<SAFEARRAYBOUND*>(bounds.begin()));
}

template <class T>
T* elements(SAFEARRAY* array) {
    return static_cast<T*>(array->pvData);
}

/// Numbers that differ in every byte, two dimensions with lower bounds of their own.
SAFEARRAY* matrix(VARTYPE type) {
    SAFEARRAY* made = array(type, {{3, -1}, {2, 10}});
    for (UINT i = 0; i < 6 * made->cbElements; ++i)
        elements<char>(made)[i] = static_cast<char>(i + 1);
    return made;
}

TEST(Variants, AreStoredInTextsThatNeverChange) {
    const DECIMAL decimal = {0, {{2, DECIMAL_NEG}}, 0, {{123, 0}}};
    struct {
        const wchar_t* text;
        Variant value;
    } rows[] = {
        {L"var://AQAA", Variant()},
        {L"var://AQEA", Variant(VT_NULL)},
        {L"var://ARAA/w==", Variant(VT_I1, '\xFF')},
        {L"var://AQIAAYA=", Variant(VT_I2, static_cast<short>(-32767))},
        {L"var://AQMAKgAAAA==", Variant(VT_I4, 42)},
        {L"var://ARQA//////////8=", Variant(VT_I8, -1LL)},
        {L"var://AREA/w==", Variant(VT_UI1, '\xFF')},
        {L"var://ARIA//8=", Variant(VT_UI2, static_cast<unsigned short>(0xFFFF))},
        {L"var://ARMA/////w==", Variant(VT_UI4, ~0u)},
        {L"var://ARUAAQAAAAAAAIA=", Variant(VT_UI8, 0x8000000000000001ull)},
        {L"var://ARYA/v///w==", Variant(VT_INT, -2)},
        {L"var://ARcA/v///w==", Variant(VT_UINT, -2)},
        {L"var://AQQAAADAPw==", Variant(VT_R4, 1.5f)},
        {L"var://AQUAAAAAAAAA+D8=", Variant(VT_R8, 1.5)},
        {L"var://AQYAECcAAAAAAAA=", Variant(VT_CY, 10000LL)},
        {L"var://AQcAAAAAABAk5UA=", Variant(VT_DATE, 43296.5)},
        {L"var://AQsA//8=", Variant(VT_BOOL, VARIANT_TRUE)},
        {L"var://AQoABQAHgA==", Variant(VT_ERROR, E_ACCESSDENIED)},
        {L"var://AQgABgAAAGEAAABiAA==", Variant(VT_BSTR, Variant::text(std::wstring_view(L"a\0b", 3)))},
        {L"var://AQgAAwAAAGFiYw==", Variant(VT_BSTR, SysAllocStringByteLen("abc", 3))},
        {L"var://AQgA/////w==", Variant(VT_BSTR, BSTR{})},
        {L"var://AQkAAA==", Variant(VT_DISPATCH, static_cast<IDispatch*>(nullptr))},
        {L"var://AQ0AAA==", Variant(VT_UNKNOWN, static_cast<IUnknown*>(nullptr))},
        {L"var://AQMgAAA=", Variant(VT_ARRAY | VT_I4, static_cast<SAFEARRAY*>(nullptr))},
        {L"var://AREgAgADAAAA/////wIAAAAKAAAAAQIDBAUG", Variant(VT_ARRAY | VT_UI1, matrix(VT_UI1))},
        {L"var://AQggAQABAAAABQAAAP////8=", Variant(VT_ARRAY | VT_BSTR, array(VT_BSTR, {{1, 5}}))},
        {L"var://AQ0gAQADAAAAAAAAAAAAAA==", Variant(VT_ARRAY | VT_UNKNOWN, array(VT_UNKNOWN, {{3, 0}}))},
        {L"var://AQwgAQACAAAAAAAAAAAAAAA=", Variant(VT_ARRAY | VT_VARIANT, array(VT_VARIANT, {{2, 0}}))},
        {L"var://AQUgAQAAAAAABwAAAA==", Variant(VT_ARRAY | VT_R8, array(VT_R8, {{0, 7}}))},
        {L"var://AQ4AAoAAAAAAewAAAAAAAAA=", Variant()}};
    auto& last = *std::rbegin(rows);
    V_DECIMAL(&*last.value) = decimal;
    V_VT(&*last.value) = VT_DECIMAL;
    for (auto& row : rows) {
        EXPECT_EQ(stored(row.value), row.text);
        EXPECT_EQ(again(row.text), row.text);
    }
}

TEST(Variants, OfManyElementsComeBackWhole) {
    for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_BOOL, VT_I4, VT_UI4, VT_INT, VT_UINT,
                               VT_ERROR, VT_R4, VT_R8, VT_CY, VT_DATE, VT_I8, VT_UI8}) {
        Variant value(VT_ARRAY | type, matrix(type)), read;
        ASSERT_EQ(ProfGetVariantFromContents(stored(value).c_str(), read), PROF_OK) << type;
        const SAFEARRAY *before = V_ARRAY(&*value), *after = V_ARRAY(&*read);
        ASSERT_EQ(V_VT(&*read), VT_ARRAY | type);
        EXPECT_EQ(after->cDims, 2);
        EXPECT_FALSE(std::memcmp(after->rgsabound, before->rgsabound, 2 * sizeof(SAFEARRAYBOUND))) << type;
        EXPECT_FALSE(std::memcmp(after->pvData, before->pvData, 6 * before->cbElements)) << type;
    }
    SAFEARRAY* decimals = array(VT_DECIMAL, {{2, 0}});
    elements<DECIMAL>(decimals)[1].scale = 28;
    elements<DECIMAL>(decimals)[1].Lo64 = 7;
    SAFEARRAY* inner = array(VT_VARIANT, {{1, 0}});
    V_VT(elements<VARIANT>(inner)) = VT_BSTR;
    V_BSTR(elements<VARIANT>(inner)) = Variant::text(std::wstring(500, L'x'));
    SAFEARRAY* outer = array(VT_VARIANT, {{2, 0}});
    V_VT(elements<VARIANT>(outer)) = VT_ARRAY | VT_DECIMAL;
    V_ARRAY(elements<VARIANT>(outer)) = decimals;
    V_VT(elements<VARIANT>(outer) + 1) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(elements<VARIANT>(outer) + 1) = inner;
    Variant value(VT_ARRAY | VT_VARIANT, outer), read;
    const std::wstring text = stored(value);
    EXPECT_EQ(text.substr(0, 9), L"var://@2@");
    EXPECT_EQ(again(text), text);
    ASSERT_EQ(ProfGetVariantFromContents(text.c_str(), read), PROF_OK);
    const VARIANT* both = elements<VARIANT>(V_ARRAY(&*read));
    EXPECT_EQ(elements<DECIMAL>(V_ARRAY(both))[1].Lo64, 7u);
    EXPECT_EQ(SysStringLen(V_BSTR(elements<VARIANT>(V_ARRAY(both + 1)))), 500u);
}

TEST(Variants, AreCompressedFrom101BytesOn) {
    for (const UINT bytes : {93u, 94u}) { // 7 more are type and length
        Variant value(VT_BSTR, SysAllocStringByteLen(std::string(bytes, 'x').c_str(), bytes));
        const std::wstring text = stored(value);
        EXPECT_EQ(text.find(L"@2@"), bytes == 93 ? std::wstring::npos : 6) << text;
        EXPECT_EQ(again(text), text);
    }
}

TEST(Variants, AreResolvedWhenTheyAreReferences) {
    long number = 42;
    Variant text(VT_BSTR, Variant::text(L"ab"));
    SAFEARRAY* numbers = matrix(VT_I2);
    Variant owner(VT_ARRAY | VT_I2, numbers);
    for (const auto& [reference, resolved] :
         {std::pair{std::make_unique<Variant>(VT_BYREF | VT_I4, &number), L"var://AQMAKgAAAA=="},
          {std::make_unique<Variant>(VT_BYREF | VT_VARIANT, static_cast<VARIANT*>(text)),
           L"var://AQgABAAAAGEAYgA="}})
        EXPECT_EQ(stored(*reference), resolved);
    Variant reference(VT_BYREF | VT_ARRAY | VT_I2, &numbers);
    EXPECT_EQ(stored(reference), stored(owner));
    SAFEARRAY* held = array(VT_VARIANT, {{1, 0}});
    V_VT(elements<VARIANT>(held)) = VT_BYREF | VT_I4;
    V_I4REF(elements<VARIANT>(held)) = &number;
    Variant holder(VT_ARRAY | VT_VARIANT, held);
    EXPECT_EQ(stored(holder), L"var://AQwgAQABAAAAAAAAAAMAKgAAAA==");
}

TEST(Variants, ThatMeanNothingElsewhereAreRefused) {
    PieceStream live;
    VARIANT loop;
    SAFEARRAY* self = array(VT_VARIANT, {{2, 0}});
    V_VT(&loop) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(&loop) = self;
    for (int i = 0; i < 2; ++i) {
        V_VT(elements<VARIANT>(self) + i) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(elements<VARIANT>(self) + i) = &loop;
    }
    SAFEARRAY* objects = array(VT_UNKNOWN, {{2, 0}});
    elements<IUnknown*>(objects)[1] = (live.AddRef(), &live);
    IUnknown* pointer = &live; // any object
    Variant rows[] = {Variant(VT_UNKNOWN, (live.AddRef(), pointer)), Variant(VT_BYREF | VT_UNKNOWN, &pointer),
                      Variant(VT_ARRAY | VT_UNKNOWN, objects), Variant(VT_ARRAY | VT_VARIANT, self),
                      Variant(VT_BYREF | VT_I4, static_cast<long*>(nullptr))};
    for (Variant& row : rows) {
        const Job job(L"v=old;");
        const Log log;
        ProfSetVariant(job, 0, L"v", row);
        ProfAppendVariant(job, 0, L"v", row);
        EXPECT_EQ(describe(job), L"v=old;") << V_VT(&*row);
        const auto lines = log.lines();
        EXPECT_TRUE(lines.size() == 2 && lines[1].ends_with("cannot be stored")) << V_VT(&*row);
    }
    for (Variant& row : rows)
        VariantClear(row);
    EXPECT_EQ(live.references, 1);
    const Job job;
    ProfAppendVariant(job, 0, L"v", nullptr);
    EXPECT_EQ(describe(job), L"");
}

TEST(Variants, AreReadFromVariantsOnly) {
    const Job job(L"empty=;text=abc;plain=AQMAKgAAAA==;cut=var://AQMAKgAA;bad=var://AQMAKgA*AA==;"
                  L"packed=var://@2@AQMAKgAAAA==;none=var://;good=var://AQMAKgAAAA==;");
    const std::pair<const wchar_t*, INT> rows[] = {{L"empty", PROF_NOT_FOUND},  {L"missing", PROF_NOT_FOUND},
                                                   {nullptr, PROF_NOT_FOUND},   {L"text", PROF_NOT_PARSED},
                                                   {L"plain", PROF_NOT_PARSED}, {L"cut", PROF_NOT_PARSED},
                                                   {L"bad", PROF_NOT_PARSED},   {L"packed", PROF_NOT_PARSED},
                                                   {L"none", PROF_NOT_PARSED},  {L"good", PROF_OK}};
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
    SAFEARRAY* outer = array(VT_VARIANT, {{2, 0}});
    V_VT(elements<VARIANT>(outer)) = VT_BSTR;
    V_BSTR(elements<VARIANT>(outer)) = Variant::text(L"ab");
    V_VT(elements<VARIANT>(outer) + 1) = VT_ARRAY | VT_BSTR;
    V_ARRAY(elements<VARIANT>(outer) + 1) = array(VT_BSTR, {{2, 0}, {1, 0}});
    Variant value(VT_ARRAY | VT_VARIANT, outer);
    const std::wstring text = stored(value);
    const std::wstring_view digits = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (size_t at = 6; at < text.size(); ++at)
        for (int bit = 1; bit < 64 && text[at] != L'='; bit *= 2) {
            std::wstring damaged = text;
            damaged[at] = digits[digits.find(text[at]) ^ static_cast<size_t>(bit)];
            Variant out;
            const INT result = ProfGetVariantFromContents(damaged.c_str(), out);
            EXPECT_TRUE(result == PROF_OK || (result == PROF_NOT_PARSED && V_VT(&*out) == VT_EMPTY))
                << damaged;
        }
}

} // namespace
} // namespace testing_prof
