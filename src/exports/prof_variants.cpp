// Exports of the profile store: variants.
#include "exports/guard.h"
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/path.h"
#include "prof/variant.h"
#include "prof/variant_text.h"

using namespace tvut;

namespace {

using AddItem = void (*)(clsItemList& start, std::u16string_view path, std::u16string_view value);

void Add(AddItem add, ProfJob handle, ProfList listHandle, const wchar_t* path, const VARIANT* value) {
    clsProfJob* const job = FromHandle(handle);
    if (!job || !path || !value)
        return;
    const std::u16string_view name = FromWide(std::wstring_view(path));
    clsItemList* const list = StartOf(*job, listHandle, name);
    if (list)
        UtilpGuard([&] { add(*list, name, ProfpVariantText(ProfpStoreVariant(*value))); });
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

INT TVUT22_CALL ProfGetVariant(ProfJob handle, ProfList listHandle, const wchar_t* path, VARIANT* out) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return PROF_OK;
    const clsItem* const item = FindItem(*job, listHandle, path);
    return EmptyUnlessRead(item && !item->Value().empty() ? Parse(item->Value(), out) : PROF_NOT_FOUND, out);
}

INT TVUT22_CALL ProfGetVariantFromContents(const wchar_t* text, VARIANT* out) {
    return EmptyUnlessRead(text ? Parse(FromWide(std::wstring_view(text)), out) : PROF_NOT_PARSED, out);
}
