/* Util: the character set that a text needs, local time and UTC.
 *
 * Any thread at any time. Nothing here allocates, waits or writes diagnostic lines. docs/locale.md says
 * more about daylight time.
 */
#ifndef TVUT22_LOCALE_H
#define TVUT22_LOCALE_H

#include <tvut22/calling.h>

/* ---- Character set --------------------------------------------------------------------------- */

/* Returns the GDI character set that shows a text in a font, for the lfCharSet of a LOGFONT. Greek letters
 * need the Greek set, whatever the system's own language is.
 *
 * text     UTF-16, terminated; may begin at an odd address. Null counts as empty.
 *
 * Result   by the scripts of the text's letters:
 *            Greek 161, Cyrillic 204, Hebrew 177, Arabic 178, Thai 222, Korean 129, kana 128;
 *            0 (ANSI) when it has none of them: Latin, digits, marks, other scripts.
 *          Ideographs U+4E00 to U+9FAF, which several languages write, and letters of two or more of these
 *          scripts in one text are decided by the ANSI code page that the process had when the library was
 *          loaded: 932 is 128 (Shift-JIS), 936 is 134 (GB 2312), 949 is 129 (Hangul), 950 is
 *          136 (Big5), any other 0. Ideographs U+3400 to U+4DFF count as Korean. PROF_OPTION_CODE_PAGE has
 *          no part in it.
 */
TVUT22_API INT TVUT22_CALL UtilGetLikelyCharsetFromString(const wchar_t* text);

/* ---- Local time and UTC ---------------------------------------------------------------------- */

/* Convert a record in place from local time to UTC and back, by the system's conversion for the machine's
 * current zone. The day of the week is not read, and right afterwards. A local time that the clocks skip or
 * have twice is read as the system reads it.
 *
 * time     a date and time. One that is no date, or out of the system's range (1601 to 30827), is
 *          replaced by a record with wDayOfWeek 0xFFFF and all else 0.
 *
 * Result   S_OK, then, too; E_INVALIDARG (0x80070057) when time is null or its wYear is 0, and the record
 *          is left as it is.
 */
TVUT22_API HRESULT TVUT22_CALL UtilLocConvertLocalTimeToUTCTime(SYSTEMTIME* time);
TVUT22_API HRESULT TVUT22_CALL UtilLocConvertUTCTimeToLocalTime(SYSTEMTIME* time);

/* Finds when daylight time starts and ends in a year, in UTC, by the rules that the machine's zone has today.
 * South of the equator the start lies after the end, since daylight time then spans the turn of the year.
 *
 * year     its low 16 bits count
 * start    receives the moment at which clocks go forward, day of the week included; all zero where the zone
 *          has no daylight time or the moment is out of the system's range. Null: not wanted.
 * end      the same for the moment at which they go back
 *
 * Result   S_OK
 */
TVUT22_API HRESULT TVUT22_CALL UtilLocGetDSTStartAndEndInUTC(UINT year, SYSTEMTIME* start, SYSTEMTIME* end);

#endif
