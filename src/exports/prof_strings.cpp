// Exports of the profile store: items as text.
#include "exports/guard.h"
#include "exports/prof_handles.h"
#include "exports/text_argument.h"
#include "prof/path.h"

#include <algorithm>

using namespace tvut;

namespace {

template <class Char>
void Add(void (*add)(clsItemList&, std::u16string_view, std::u16string_view), ProfJob handle,
         ProfList listHandle, const Char* path, const Char* value) {
    clsProfJob* const job = FromHandle(handle);
    if (!job || !path)
        return;
    UtilpGuard([&] {
        const clsTextArgument<Char> name(path);
        if (clsItemList* const list = StartOf(*job, listHandle, name.View()))
            add(*list, name.View(), clsTextArgument<Char>(value).View());
    });
}

// A path that cannot be converted names nothing.
template <class Char>
const clsItem* FindGuarded(clsProfJob& job, ProfList listHandle, const Char* path) {
    return UtilpGuard(static_cast<const clsItem*>(nullptr), [&] { return FindItem(job, listHandle, path); });
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
INT GetString(ProfJob handle, ProfList listHandle, const Char* path, Char* buffer, UINT size,
              const Char* defaultValue) {
    clsProfJob* const job = FromHandle(handle);
    return UtilpGuard(PROF_NOT_FOUND, [&]() -> INT {
        const clsItem* const item = job ? FindGuarded(*job, listHandle, path) : nullptr;
        FillWithDefault(buffer, size, defaultValue);
        if (!item)
            return job ? PROF_NOT_FOUND : PROF_OK;
        if (buffer && size != 0)
            FillFromStored(buffer, size, item->Value());
        return static_cast<INT>(item->Value().size());
    });
}

template <class Char>
INT GetStringLength(ProfJob handle, ProfList listHandle, const Char* path) {
    clsProfJob* const job = FromHandle(handle);
    if (!job)
        return 0;
    return UtilpGuard(PROF_NOT_FOUND, [&]() -> INT {
        const clsItem* const item = FindItem(*job, listHandle, path);
        return item ? static_cast<INT>(item->Value().size()) : PROF_NOT_FOUND;
    });
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
