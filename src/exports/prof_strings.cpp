// Exports of the profile store: items as text.
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/path.h"

#include <algorithm>

using namespace tvut;

namespace {

template <class Char>
void Add(AddItem add, ProfJob job, ProfList list, const Char* path, const Char* value) {
    WithPath(job, list, path, [&](clsItemList& start, std::u16string_view name) {
        add(start, name, clsTextArgument<Char>(value).View());
    });
}

// ---- Into a caller's buffer -----------------------------------------------------------------------

void Fill(wchar_t* buffer, UINT size, std::wstring_view text) {
    const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = L'\0';
}

void Fill(char* buffer, UINT size, std::string_view text) {
    const std::size_t length = PlatformWholeCharacters(UtilpCodePage(), text, size - 1);
    std::copy_n(text.data(), length, buffer);
    buffer[length] = '\0';
}

void FillFromStored(wchar_t* buffer, UINT size, std::u16string_view text) {
    Fill(buffer, size, std::wstring_view(ToWide(text.data()), text.size()));
}

// No character takes less than a byte: what lies beyond the buffer need not be converted.
void FillFromStored(char* buffer, UINT size, std::u16string_view text) {
    Fill(buffer, size, clsAnsiText(text.substr(0, size - 1)).View());
}

template <class Char>
void FillWithDefault(Char* buffer, UINT size, const Char* defaultValue) {
    if (!buffer || buffer == defaultValue)
        return;
    if (!defaultValue)
        buffer[0] = Char{};
    else if (size != 0)
        Fill(buffer, size, std::basic_string_view<Char>(defaultValue));
}

// The item is found before anything is written: its path may stand in the buffer.
template <class Char>
INT GetString(ProfJob job, ProfList list, const Char* path, Char* buffer, UINT size,
              const Char* defaultValue) {
    const clsItem* item = nullptr;
    const INT found = WithItem(job, list, path, [&item](const clsItem& named) {
        item = &named;
        return PROF_OK;
    });
    return UtilpGuard(PROF_NOT_FOUND, [&]() -> INT {
        FillWithDefault(buffer, size, defaultValue);
        if (!item)
            return found;
        if (buffer && size != 0)
            FillFromStored(buffer, size, item->Value());
        return static_cast<INT>(item->Value().size());
    });
}

template <class Char>
INT GetStringLength(ProfJob job, ProfList list, const Char* path) {
    return WithItem(job, list, path,
                    [](const clsItem& item) { return static_cast<INT>(item.Value().size()); });
}

} // namespace

void TVUT22_CALL ProfAppendStringA(ProfJob job, ProfList list, const char* path, const char* value) {
    Add(ProfpAppendItem, job, list, path, value);
}
void TVUT22_CALL ProfAppendStringW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* value) {
    Add(ProfpAppendItem, job, list, path, value);
}
void TVUT22_CALL ProfSetStringA(ProfJob job, ProfList list, const char* path, const char* value) {
    Add(ProfpSetItem, job, list, path, value);
}
void TVUT22_CALL ProfSetStringW(ProfJob job, ProfList list, const wchar_t* path, const wchar_t* value) {
    Add(ProfpSetItem, job, list, path, value);
}

INT TVUT22_CALL ProfGetStringA(ProfJob job, ProfList list, const char* path, char* buffer, UINT size,
                               const char* defaultValue) {
    return GetString(job, list, path, buffer, size, defaultValue);
}
INT TVUT22_CALL ProfGetStringW(ProfJob job, ProfList list, const wchar_t* path, wchar_t* buffer, UINT size,
                               const wchar_t* defaultValue) {
    return GetString(job, list, path, buffer, size, defaultValue);
}

INT TVUT22_CALL ProfGetStringLengthA(ProfJob job, ProfList list, const char* path) {
    return GetStringLength(job, list, path);
}
INT TVUT22_CALL ProfGetStringLengthW(ProfJob job, ProfList list, const wchar_t* path) {
    return GetStringLength(job, list, path);
}
