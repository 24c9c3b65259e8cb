/* Util: the character set that a text needs, local time and UTC, dates and times as text, countries and
 * languages.
 *
 * Any thread at any time. Nothing here writes diagnostic lines or allocates, but for texts that are results,
 * a locale that is used for the first time, and the names of countries and languages. docs/locale.md says
 * more about daylight time, about reading dates, and about names.
 */
#ifndef TVUT22_LOCALE_H
#define TVUT22_LOCALE_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

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
 * current zone. The day of the week is not read; it is right afterwards. A local time that the clocks skip or
 * have twice is read as the system reads it.
 *
 * time     a date and time. One that is no date, or out of the system's range (1601 to 30827), is
 *          replaced by a record with wDayOfWeek 0xFFFF and all else 0.
 *
 * Result   S_OK, also for a record that was replaced; E_INVALIDARG (0x80070057) when time is null or its
 *          wYear is 0, and the record is left as it is.
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

/* ---- Dates and times as text ------------------------------------------------------------------ */

/* Rules that hold for the calls of this group and are not repeated there:
 *
 * locale    a name as the system has them, such as L"de-DE" or L"de". Null: the user's. L"": the invariant
 *           one
 *
 * flags     UTIL_DATETIME_..., below. Other bits are refused
 *
 * picture   null: the locale's own, the date's before the time's with one blank between. Otherwise the
 *           caller's, at most 255 characters; NO_SECONDS and LONG then change nothing, DATE and TIME only
 *           what is read.
 *
 *             d dd       day of the month              h hh       hour of 12
 *             ddd dddd   weekday, short and full       H HH       hour of 24
 *             M MM       month as a number             m mm       minute
 *             MMM MMMM   its name, short and full      s ss       second
 *             y yy       year of the century           t tt       mark of the half day: a character, all
 *             yyyy       year, at least four digits    f ff fff   parts of a second, cut off
 *             g          era
 *
 *           A doubled letter has at least two digits. '...' is text, '' within it an apostrophe. All else is
 *           text as it stands. In the locale's own pictures letters of the other part are text, too.
 *
 * Dates     1 January 0100 to 31 December 9999, in the Gregorian calendar at all times. Every field is
 *           checked. Years are numbered as the locale's calendar does when it differs from the Gregorian only
 *           there: Thai, Korean, Taiwanese; Japanese where the picture has an era.
 *
 * double    a date as OLE has it: days since 30 December 1899; the fraction is the time of day, for negative
 *           days as well: -1.25 is 29 December 1899, 06:00. Rounded to the nearest millisecond.
 *
 * BSTR      null: no text is wanted. Otherwise it points to null or to a string of the OLE allocator, which
 *           is reallocated; the caller frees it with SysFreeString. It may be the one that the picture is in.
 *
 * Result    UTIL_OK; nothing that a pointer leads to is touched unless it is this
 *           UTIL_BAD_ARGUMENT  a null time or text, an unknown flag, no date, a picture or a text that is too
 *                              long, a part asked for that the picture has not
 *           UTIL_NOT_FOUND     the system knows no such locale
 *           UTIL_NOT_PARSED    the text is no date or time of this form
 *           UTIL_FAILED        memory has run out
 *
 * Cost      linear in text and picture. The last eight locales are kept; what the user changes in the
 *           system's settings is seen after a second.
 */
#define UTIL_DATETIME_DATE 1       /* the date only */
#define UTIL_DATETIME_TIME 2       /* the time only; neither or both: both */
#define UTIL_DATETIME_LONG 4       /* the locale's long date instead of the short one */
#define UTIL_DATETIME_NO_SECONDS 8 /* its short time instead of the one with seconds */
#define UTIL_DATETIME_NO_USER 16   /* the locale's own values, not those that the user has changed */
#define UTIL_DATETIME_EXACT 32     /* reading takes only what writing gives */

/* Writes a moment as text. The day of the week is not read. Of a part that is not wanted, or that the
 * caller's picture has not, no field is looked at.
 *
 * time     the moment
 */
TVUT22_API INT TVUT22_CALL UtilLocLocaleStringFromSystemTime(const SYSTEMTIME* time, const wchar_t* locale,
                                                             UINT flags, const wchar_t* picture,
                                                             BSTR* result);

/* Reads a text as a moment. Without UTIL_DATETIME_EXACT blanks, letter case, separators and widths may
 * differ, by rules that docs/locale.md lists; fields never change their order, no date is rolled over,
 * nothing is filled in from today, and a text that can be read in two ways is none. For the locale's pictures
 * the other date and time pictures are tried as well, and yyyy-MM-dd with or without a time is taken
 * everywhere. What UtilLocLocaleStringFromSystemTime wrote is read as what it was.
 *
 * text     at most 1,024 characters
 * picture  has year and month for a date (without a day: the first), the hour for a time. Where flags name no
 *          part, those that it has are read.
 * time     receives the moment, its day of the week included. Fields of a part that is not wanted are 0.
 */
TVUT22_API INT TVUT22_CALL UtilLocSystemTimeFromLocaleString(const wchar_t* text, const wchar_t* locale,
                                                             UINT flags, const wchar_t* picture,
                                                             SYSTEMTIME* time);

/* Write an OLE date as text and read one, as the two calls above do. A time without a date is a fraction
 * alone.
 *
 * dateTime  the moment; when reading, receives it
 */
TVUT22_API INT TVUT22_CALL UtilDateTimeToLocaleString(double dateTime, const wchar_t* locale, UINT flags,
                                                      const wchar_t* picture, BSTR* result);
TVUT22_API INT TVUT22_CALL UtilDateTimeFromLocaleString(const wchar_t* text, const wchar_t* locale,
                                                        UINT flags, const wchar_t* picture, double* dateTime);

/* Converts an OLE date, milliseconds included, which the system's own conversion drops.
 *
 * time     receives the moment, its day of the week included
 *
 * Result   UTIL_OK; UTIL_BAD_ARGUMENT when time is null, or dateTime is no number or out of range
 */
TVUT22_API INT TVUT22_CALL UtilLocDateTimeToSYSTEMTIME(double dateTime, SYSTEMTIME* time);

/* ---- Countries and languages ----------------------------------------------------------------- */

/* The 249 countries of ISO 3166-1 and Kosovo, and the 184 languages of ISO 639-1 with traditional Chinese and
 * Serbian in Latin letters. The tables are the library's own, made from release 41 (2022) of the Common
 * Locale Data Repository (https://cldr.unicode.org): they say the same on every machine.
 *
 * A language is given as
 *   - a tag: de, de-AT, zh-TW, sr-Latn; the language and the script count. Case does not, and _ is as good
 *     as -;
 *   - a code of three letters of ISO 639-2: deu, ger;
 *   - a LANGID in decimal digits, as UtilLanguageGet returns it: 7, 1031;
 *   - null: the language of the host program's user interface, English where it is none of these.
 * Names are in 46 languages: ar be bg ca cs da de el en es et fa fi fr ga he hi hr hu id is it ja ko lt lv mk
 * mt nl no pl pt ro ru sk sl sq sr sr-Latn sv th tr uk vi zh zh-Hant, and nb and nn as no. In all other
 * languages they are English. A name has at most 95 characters.
 */

#define UTIL_COUNTRY_EU 1          /* a member of the European Union */
#define UTIL_COUNTRY_US_LETTER 2   /* paper is US letter, not A4 */
#define UTIL_COUNTRY_US_MEASURES 4 /* miles, gallons; neither this nor the next: metric */
#define UTIL_COUNTRY_UK_MEASURES 8 /* metric, but miles and pints */

typedef struct UtilLocCountry {
    UINT size;              /* bytes: sizeof(UtilLocCountry) */
    wchar_t code2[4];       /* ISO 3166-1: DE */
    wchar_t code3[4];       /* DEU; Kosovo has XKK */
    UINT number;            /* 276; Kosovo has 983 */
    wchar_t currency[4];    /* ISO 4217: EUR. Of several that are legal tender, the newest; empty: none */
    UINT flags;             /* UTIL_COUNTRY_... */
    UINT firstDay;          /* of the week: 0 is Monday, 6 Sunday */
    wchar_t language[12];   /* the official one that most speak, by its tag; empty where nobody lives */
    wchar_t name[96];       /* in the language that was asked for */
    wchar_t nativeName[96]; /* in its own language; English where it has none */
} UtilLocCountry;

#define UTIL_LANGUAGE_RIGHT_TO_LEFT 1

typedef struct UtilLocLanguage {
    UINT size;         /* bytes: sizeof(UtilLocLanguage) */
    wchar_t tag[16];   /* de, zh-Hant */
    wchar_t code3[4];  /* ISO 639-2/T: deu */
    wchar_t script[6]; /* ISO 15924: Latn */
    UINT langId;       /* with the usual sub-language: 0x0407; 0: Windows has none */
    UINT codePage;     /* the ANSI one; 0: Unicode only */
    UINT charset;      /* of this code page, for the lfCharSet of a LOGFONT; without one 1, the default */
    UINT flags;        /* UTIL_LANGUAGE_... */
    wchar_t name[96];  /* in the language that was asked for */
    wchar_t nativeName[96]; /* in itself */
} UtilLocLanguage;

/* Lists all countries with their names in a language, in its alphabetical order. That is the order of
 * CompareStringEx, and of the codes of two letters where names are equal.
 *
 * language   the language of the names
 * list       receives countries. The caller sets the size of the first; it is that of all, and what is beyond
 *            the structure as it is known here becomes zero. Null: only the result is wanted
 * count      how many there is room for; 0 as null
 *
 * Result     250
 *            UTIL_NOT_FOUND     there is no such language
 *            UTIL_BAD_ARGUMENT  size is too small
 *            UTIL_FAILED        memory has run out
 *            The list is as it was then.
 */
TVUT22_API INT TVUT22_CALL UtilLocGetCountryList(const wchar_t* language, UtilLocCountry* list, UINT count);

/* Tells what is known about a country.
 *
 * country    a code of two or three letters, a number in decimal digits, or a name: in the language asked
 *            for, in English or in the country's own. Case does not count. What may be a code and a name is
 *            a code
 * language   the language of the name
 * info       receives it; the caller sets its size
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     there is no such country or language
 *            UTIL_BAD_ARGUMENT  country or info is null, or size too small
 *            UTIL_FAILED        memory has run out
 *            info is as it was then.
 */
TVUT22_API INT TVUT22_CALL UtilLocGetCountryInfo(const wchar_t* country, const wchar_t* language,
                                                 UtilLocCountry* info);

/* Tells what is known about a language.
 *
 * language     the language
 * inLanguage   the language of its name
 * info         receives it; the caller sets its size
 *
 * Result       as UtilLocGetCountryInfo
 */
TVUT22_API INT TVUT22_CALL UtilLocGetLanguageInfo(const wchar_t* language, const wchar_t* inLanguage,
                                                  UtilLocLanguage* info);

#endif
