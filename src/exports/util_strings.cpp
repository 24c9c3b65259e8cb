// Exports of the string family: what the C runtime has, with the differences that callers rely on.
#include "platform/wide.h"
#include "runtime/diagnostics.h"
#include "text/short_text.h"
#include "text/string_functions.h"
#include "text/units.h"

#include <tvut22/text.h>

#include <algorithm>
#include <cstdarg>
#include <cwchar>

using namespace tvut;

namespace {

// The string check, switched on by the environment that the library is loaded in.
const bool g_check = GetEnvironmentVariableW(L"TVUT22_STRING_CHECK", nullptr, 0) > 1;

void End(wchar_t* text) {
    UtilpStoreUnit(FromWide(text), u'\0');
}

void ClearIfChecked(wchar_t* destination, const wchar_t* source) {
    if (g_check && destination != source)
        End(destination);
}

wchar_t* Found(const char16_t* place) {
    return const_cast<wchar_t*>(ToWide(place));
}

INT Format(wchar_t* destination, UINT size, const wchar_t* format, va_list arguments) {
    if (size == 0)
        return -1;
    const int written = _vsnwprintf(destination, size - 1, format, arguments);
    if (written < 0 || static_cast<UINT>(written) >= size - 1) // not terminated then
        End(destination + size - 1);
    return std::max(written, -1);
}

} // namespace

INT __cdecl UtilSafeSprintf(wchar_t* destination, UINT size, const wchar_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const INT written = Format(destination, size, format, arguments);
    va_end(arguments);
    if (g_check && written <= 0)
        UtilpWriteDiagnosticLine(u"UtilSafeSprintf: destination buffer too small\n");
    return written;
}

wchar_t* TVUT22_CALL UtilStrcpy(wchar_t* destination, const wchar_t* source) {
    ClearIfChecked(destination, source);
    if (const clsShortText text(FromWide(source)); text)
        UtilpMoveShort(destination, source, (text.Length() + 1) * sizeof(wchar_t));
    else
        UtilpMove(destination, source, (UtilpLength(FromWide(source)) + 1) * sizeof(wchar_t));
    return destination;
}

wchar_t* TVUT22_CALL UtilStrncpy(wchar_t* destination, const wchar_t* source, UINT size) {
    ClearIfChecked(destination, source);
    if (size == 0)
        return destination;
    if (const clsShortText text(FromWide(source)); text && text.Length() < size) {
        UtilpMoveShort(destination, source, (text.Length() + 1) * sizeof(wchar_t));
        return destination;
    }
    const std::size_t length = UtilpLength(FromWide(source), size - 1);
    UtilpMove(destination, source, length * sizeof(wchar_t));
    End(destination + length);
    return destination;
}

wchar_t* TVUT22_CALL UtilStrcat(wchar_t* destination, const wchar_t* source) {
    const bool isEmpty = UtilpLoadUnit(FromWide(destination)) == 0; // just begun, mostly
    wchar_t* const end = destination + (isEmpty ? 0 : UtilpLength(FromWide(destination)));
    if (const clsShortText text(FromWide(source)); text) {
        UtilpMoveShort(end, source, (text.Length() + 1) * sizeof(wchar_t));
        return destination;
    }
    const std::size_t length = UtilpLength(FromWide(source));
    UtilpMove(end, source, length * sizeof(wchar_t));
    End(end + length);
    return destination;
}

void* TVUT22_CALL UtilMemcpy(void* destination, const void* source, UINT bytes) {
    UtilpMove(destination, source, bytes);
    return destination;
}

void* TVUT22_CALL UtilMemset(void* destination, INT value, UINT bytes) {
    if (bytes <= 32)
        UtilpFillShort(destination, static_cast<std::uint8_t>(value), bytes);
    else
        UtilpFill(destination, static_cast<std::uint8_t>(value), bytes);
    return destination;
}

UINT TVUT22_CALL UtilStrlen(const wchar_t* string) {
    return static_cast<UINT>(UtilpLength(FromWide(string)));
}

UINT TVUT22_CALL UtilSafeStrlen(UINT, const wchar_t* string) {
    return static_cast<UINT>(UtilpLength(FromWide(string)));
}

INT TVUT22_CALL UtilStrcmp(const wchar_t* a, const wchar_t* b) {
    return UtilpCompare(FromWide(a), FromWide(b), SIZE_MAX);
}

INT TVUT22_CALL UtilStrncmp(const wchar_t* a, const wchar_t* b, UINT count) {
    return UtilpCompare(FromWide(a), FromWide(b), count);
}

INT TVUT22_CALL UtilStricmp(const wchar_t* a, const wchar_t* b) {
    return UtilStrnicmp(a, b, 0xFFFFFFFF);
}

// From the first character beyond ASCII on the runtime decides, by its locale.
INT TVUT22_CALL UtilStrnicmp(const wchar_t* a, const wchar_t* b, UINT count) {
    const char16_t* atA = FromWide(a);
    const char16_t* atB = FromWide(b);
    std::size_t left = count;
    const scOrder order = UtilpCompareAscii(atA, atB, left);
    return order.decided ? order.order : _wcsnicmp(ToWide(atA), ToWide(atB), left);
}

wchar_t* TVUT22_CALL UtilStrstr(const wchar_t* string, const wchar_t* part) {
    return Found(UtilpFindPart(FromWide(string), FromWide(part)));
}

wchar_t* TVUT22_CALL UtilStrchr(const wchar_t* string, wchar_t character) {
    return Found(UtilpFind(FromWide(string), static_cast<char16_t>(character)));
}

wchar_t* TVUT22_CALL UtilStrrchr(const wchar_t* string, wchar_t character) {
    const auto wanted = static_cast<char16_t>(character);
    const clsShortText text(FromWide(string));
    return Found(text ? text.FindLast(wanted) : UtilpFindLast(FromWide(string), wanted));
}

void TVUT22_CALL UtilLtrim(wchar_t* string) {
    UtilpTrimLeft(FromWide(string));
}

void TVUT22_CALL UtilRtrim(wchar_t* string) {
    UtilpTrimRight(FromWide(string));
}

void TVUT22_CALL UtilAtrim(wchar_t* string) {
    UtilpTrimRight(FromWide(string));
    UtilpTrimLeft(FromWide(string));
}

INT TVUT22_CALL UtilStuff(wchar_t* string, UINT position, UINT count, const wchar_t* insertion) {
    if (position != 0)
        UtilpStuff(FromWide(string), position - 1, count, FromWide(insertion));
    return 0;
}

INT TVUT22_CALL UtilSubstr(wchar_t* string, INT start, UINT count) {
    const std::size_t length = UtilpLength(FromWide(string));
    const UINT distance = start < 0 ? 0u - static_cast<UINT>(start) : static_cast<UINT>(start);
    if (distance > length || (start <= 0 && count != 0xFFFFFFFF)) {
        End(string);
        return 0;
    }
    if (count == 0xFFFFFFFF)
        return 0;
    if (g_check)
        End(string);
    UtilpKeep(FromWide(string), distance - 1, count);
    return 0;
}

BOOL TVUT22_CALL UtilIsRPtr(const void*, UINT) {
    return TRUE;
}
BOOL TVUT22_CALL UtilIsWPtr(void*, UINT) {
    return TRUE;
}
BOOL TVUT22_CALL UtilIsString(const wchar_t*, UINT) {
    return TRUE;
}
