// Exports of the locale family: the likely character set of a text, local time and UTC.
#include "locale/charset.h"
#include "locale/daylight_time.h"
#include "platform/code_page.h"
#include "platform/time_zone.h"
#include "platform/wide.h"

#include <tvut22/locale.h>

#include <bit>

using namespace tvut;

namespace {

// In place; what cannot be converted becomes a record that is no date.
template <class Conversion>
HRESULT Convert(SYSTEMTIME* time, Conversion* conversion) {
    if (!time || time->wYear == 0)
        return E_INVALIDARG;
    constexpr scDateTime noDate{0, 0, noDayOfWeek, 0, 0, 0, 0, 0};
    *time = std::bit_cast<SYSTEMTIME>(conversion(std::bit_cast<scDateTime>(*time)).value_or(noDate));
    return S_OK;
}

void Give(const scDateTime& from, SYSTEMTIME* to) {
    if (to)
        *to = std::bit_cast<SYSTEMTIME>(from);
}

} // namespace

INT TVUT22_CALL UtilGetLikelyCharsetFromString(const wchar_t* text) {
    return text ? UtilpLikelyCharset(FromWide(text), PlatformProcessCodePage()) : 0;
}

HRESULT TVUT22_CALL UtilLocConvertLocalTimeToUTCTime(SYSTEMTIME* time) {
    return Convert(time, PlatformLocalToUtc);
}

HRESULT TVUT22_CALL UtilLocConvertUTCTimeToLocalTime(SYSTEMTIME* time) {
    return Convert(time, PlatformUtcToLocal);
}

HRESULT TVUT22_CALL UtilLocGetDSTStartAndEndInUTC(UINT year, SYSTEMTIME* start, SYSTEMTIME* end) {
    const scDaylightSpan span = UtilpDaylightTimeInUtc(static_cast<std::uint16_t>(year));
    Give(span.start, start);
    Give(span.end, end);
    return S_OK;
}
