// Exports of the conversions between HTML and plain text.
#include "exports/guard.h"
#include "platform/ole_string.h"
#include "platform/wide.h"
#include "text/html/html.h"
#include "text/string_functions.h"

#include <tvut22/html.h>

#include <memory>
#include <span>

using namespace tvut;

namespace {

// A unit becomes 16 at most; no measured length can overflow.
constexpr std::size_t longestText = (std::size_t{1} << 28) - 1;

HtmlForm FormOf(BOOL markers) {
    return markers ? HtmlForm::markers : HtmlForm::tags;
}

// Whether there is anything to do; the text as a view.
bool Prepare(const wchar_t* text, const BSTR* result, std::u16string_view& view) {
    if (!result)
        return false;
    view = text ? std::u16string_view(FromWide(text), UtilpLength(FromWide(text))) : std::u16string_view();
    return view.size() <= longestText;
}

// Lets a function write a text of a length, straight into the result unless it overwrote its own source.
template <class Write>
void Deliver(const wchar_t* text, BSTR& result, std::size_t length, Write write) {
    if (PlatformIsPartOf(text, result)) {
        const auto buffer = std::make_unique_for_overwrite<char16_t[]>(length);
        const std::size_t written = write(std::span<char16_t>(buffer.get(), length));
        PlatformAssign(result, {buffer.get(), written});
    } else if (PlatformResize(result, length)) {
        try {
            PlatformShorten(result, write(std::span<char16_t>(FromWide(result), length)));
        } catch (...) {
            PlatformDiscard(result);
            throw;
        }
    }
}

} // namespace

TVUT22_API void TVUT22_CALL UtilMaskAllHTMLCharacters(const wchar_t* text, BSTR* result) {
    UtilpGuard([&] {
        std::u16string_view view;
        if (!Prepare(text, result, view))
            return;
        Deliver(text, *result, UtilpMaskedLength(view), [&](std::span<char16_t> out) {
            UtilpMask(view, out);
            return out.size();
        });
    });
}

TVUT22_API void TVUT22_CALL UtilDemaskAllHTMLCharacters(const wchar_t* text, BSTR* result) {
    UtilpGuard([&] {
        std::u16string_view view;
        if (Prepare(text, result, view))
            Deliver(text, *result, view.size(),
                    [&](std::span<char16_t> out) { return UtilpDemask(view, out.data()); });
    });
}

TVUT22_API void TVUT22_CALL UtilConvertText2HTML(const wchar_t* text, BSTR* result, BOOL markers) {
    UtilpGuard([&] {
        std::u16string_view view;
        if (!Prepare(text, result, view))
            return;
        Deliver(text, *result, UtilpHtmlLength(view, FormOf(markers)), [&](std::span<char16_t> out) {
            UtilpTextToHtml(view, FormOf(markers), out);
            return out.size();
        });
    });
}

TVUT22_API void TVUT22_CALL UtilConvertHtml2PlainText(const wchar_t* html, BSTR* result, BOOL markers) {
    UtilpGuard([&] {
        std::u16string_view view;
        if (Prepare(html, result, view))
            Deliver(html, *result, view.size(), [&](std::span<char16_t> out) {
                return UtilpHtmlToPlainText(view, FormOf(markers), out.data());
            });
    });
}
