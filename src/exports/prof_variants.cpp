// Exports of the profile store: variants.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/path.h"
#include "prof/variant.h"
#include "prof/variant_text.h"

using namespace tvut;

namespace {

void Add(AddItem add, ProfJob job, ProfList list, const wchar_t* path, const VARIANT* value) {
    if (!value)
        return;
    WithPath(job, list, path, [&](clsItemList& start, std::u16string_view name) {
        add(start, name, ProfpVariantText(ProfpStoreVariant(*value)));
    });
}

// out, which may be null, is empty unless the text is a variant. The text may stand where out is.
INT Parse(std::u16string_view text, VARIANT* out) {
    return UtilpGuard(PROF_NOT_PARSED, [&] {
        clsVariant value;
        ProfpLoadVariant(ProfpVariantBytes(text), value);
        if (out)
            *out = value.Release();
        return PROF_OK;
    });
}

INT EmptyUnlessRead(INT result, VARIANT* out) {
    if (out && result != PROF_OK)
        VariantInit(out);
    return result;
}

} // namespace

void TVUT22_CALL ProfAppendVariant(ProfJob job, ProfList list, const wchar_t* path, const VARIANT* value) {
    Add(ProfpAppendItem, job, list, path, value);
}
void TVUT22_CALL ProfSetVariant(ProfJob job, ProfList list, const wchar_t* path, const VARIANT* value) {
    Add(ProfpSetItem, job, list, path, value);
}

INT TVUT22_CALL ProfGetVariant(ProfJob job, ProfList list, const wchar_t* path, VARIANT* out) {
    const INT result = WithItem(job, list, path, [out](const clsItem& item) {
        return item.Value().empty() ? PROF_NOT_FOUND : Parse(item.Value(), out);
    });
    return EmptyUnlessRead(result, out);
}

INT TVUT22_CALL ProfGetVariantFromContents(const wchar_t* text, VARIANT* out) {
    return EmptyUnlessRead(text ? Parse(FromWide(std::wstring_view(text)), out) : PROF_NOT_PARSED, out);
}
