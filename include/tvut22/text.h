/* Util: string functions, and text forms of bytes.
 *
 * Rules that hold for every call below and are not repeated there:
 *
 * Text      UTF-16, terminated by NUL. Lengths, sizes and positions count characters (UTF-16 units),
 *           terminators included in sizes only; sizes of memory are said to be in bytes. Texts given
 *           to string functions may begin at odd addresses.
 * Null      The string functions want valid pointers, as those of the C runtime do, unless they say
 *           otherwise. The conversions check theirs.
 * Buffers   Nothing is read past a terminator's page or written past what a result needs: strings
 *           may end where memory does.
 * Threads   Any thread at any time; a text or buffer is used by one at a time.
 *
 * String check: when the environment variable TVUT22_STRING_CHECK is set and not empty as the library is
 * loaded, copying functions first clear the first character of where they copy to, so that a copy within
 * one string shows at once, and UtilSafeSprintf reports what it cuts. It is meant for test machines.
 */
#ifndef TVUT22_TEXT_H
#define TVUT22_TEXT_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>

/* ---- Formatting, copying --------------------------------------------------------------------- */

/* Formats into a buffer and never writes past its end: what does not fit is cut.
 *
 * destination  receives the text, always terminated unless size is 0
 * size         of the destination; 0 writes nothing
 * format       as the wide functions of msvcrt.dll take it: %s and %ws are UTF-16 text, %hs is 8-bit
 *              text, %I64u a 64-bit number. %n is not for formats that come from outside.
 *
 * Result       characters written, without the terminator; -1 when the text was cut, or when size is
 *              0. With the string check a result of 0 or less also writes "UtilSafeSprintf: destination
 *              buffer too small" to the diagnostic output.
 *
 * This function is __cdecl.
 */
TVUT22_API INT TVUT22_CALL_VARIADIC UtilSafeSprintf(wchar_t* destination, UINT size, const wchar_t* format,
                                                    ...);

/* Copies a text with its terminator. The two may overlap. String check: clears the destination's first
 * character before it looks at the source, unless they are the same.
 *
 * destination  has room for UtilStrlen(source) + 1 characters
 *
 * Result       destination
 */
TVUT22_API wchar_t* TVUT22_CALL UtilStrcpy(wchar_t* destination, const wchar_t* source);

/* Copies at most size - 1 characters and always terminates; nothing after the terminator is written.
 * The two may overlap. String check: as UtilStrcpy, before the size is looked at.
 *
 * size    of the destination; 0 writes nothing
 *
 * Result  destination
 */
TVUT22_API wchar_t* TVUT22_CALL UtilStrncpy(wchar_t* destination, const wchar_t* source, UINT size);

/* Appends a text, which may be the destination itself.
 *
 * destination  has room for both texts and a terminator
 *
 * Result       destination
 */
TVUT22_API wchar_t* TVUT22_CALL UtilStrcat(wchar_t* destination, const wchar_t* source);

/* Copies bytes; the two may overlap. 0 bytes touches neither pointer. Result: destination. */
TVUT22_API void* TVUT22_CALL UtilMemcpy(void* destination, const void* source, UINT bytes);

/* Fills bytes with the low 8 bits of a value. 0 bytes does not touch the pointer. Result: destination. */
TVUT22_API void* TVUT22_CALL UtilMemset(void* destination, INT value, UINT bytes);

/* ---- Measuring, comparing, finding ----------------------------------------------------------- */

/* Returns the number of characters before the terminator. */
TVUT22_API UINT TVUT22_CALL UtilStrlen(const wchar_t* string);

/* Returns what UtilStrlen does; the first argument is ignored. */
TVUT22_API UINT TVUT22_CALL UtilSafeStrlen(UINT reserved, const wchar_t* string);

/* Compares by UTF-16 unit. Result: -1, 0 or 1. */
TVUT22_API INT TVUT22_CALL UtilStrcmp(const wchar_t* a, const wchar_t* b);

/* Compares at most count characters by UTF-16 unit. Result: less than, equal to or greater than 0. */
TVUT22_API INT TVUT22_CALL UtilStrncmp(const wchar_t* a, const wchar_t* b, UINT count);

/* Compare without regard to case, at most count characters, as _wcsicmp and _wcsnicmp of msvcrt.dll do:
 * in lower case, by that runtime's locale for characters beyond ASCII. Result: less than, equal to or
 * greater than 0. */
TVUT22_API INT TVUT22_CALL UtilStricmp(const wchar_t* a, const wchar_t* b);
TVUT22_API INT TVUT22_CALL UtilStrnicmp(const wchar_t* a, const wchar_t* b, UINT count);

/* Finds the first occurrence of a part. Result: where it begins, the string's beginning for an empty part;
 * null when there is none. */
TVUT22_API wchar_t* TVUT22_CALL UtilStrstr(const wchar_t* string, const wchar_t* part);

/* Find the first or last occurrence of a character; the terminator counts. Result: where it is; null when
 * there is none. */
TVUT22_API wchar_t* TVUT22_CALL UtilStrchr(const wchar_t* string, wchar_t character);
TVUT22_API wchar_t* TVUT22_CALL UtilStrrchr(const wchar_t* string, wchar_t character);

/* ---- Changing in place ----------------------------------------------------------------------- */

/* Remove blanks at the beginning, at the end, at both. Blanks are U+0020 only: tabs and others stay. */
TVUT22_API void TVUT22_CALL UtilLtrim(wchar_t* string);
TVUT22_API void TVUT22_CALL UtilRtrim(wchar_t* string);
TVUT22_API void TVUT22_CALL UtilAtrim(wchar_t* string);

/* Removes characters and puts others in their place.
 *
 * string     its buffer has room for the result, which is not checked
 * position   of the first character removed, counted from 1; 0, or more than the length plus 1, changes
 *            nothing
 * count      characters to remove; those that are there are removed
 * insertion  characters to put in; may be empty or null, must not be part of the string
 *
 * Result     0
 */
TVUT22_API INT TVUT22_CALL UtilStuff(wchar_t* string, UINT position, UINT count, const wchar_t* insertion);

/* Keeps a part of a string, moved to its front.
 *
 * start   of the first character kept, counted from 1. 0 keeps nothing, nor does a negative one. When its
 *         absolute value is greater than the length the string becomes empty whatever count is.
 * count   characters to keep at most; 0xFFFFFFFF leaves the string as it is
 *
 * String check: the string's first character is cleared before it is copied, so that start 1 makes it
 * empty.
 *
 * Result  0
 */
TVUT22_API INT TVUT22_CALL UtilSubstr(wchar_t* string, INT start, UINT count);

/* ---- Pointers -------------------------------------------------------------------------------- */

/* Always return 1: kept for callers that ask whether a pointer is readable, writable, a text of a size. No
 * memory is looked at, since looking has no sure answer and hides faults. */
TVUT22_API BOOL TVUT22_CALL UtilIsRPtr(const void* pointer, UINT size);
TVUT22_API BOOL TVUT22_CALL UtilIsWPtr(void* pointer, UINT size);
TVUT22_API BOOL TVUT22_CALL UtilIsString(const wchar_t* pointer, UINT size);

/* ---- Bytes as text --------------------------------------------------------------------------- */

/* The text form of bytes is what items of a profile hold: Base64 without line breaks, or "@2@" and the
 * Base64 of the bytes compressed by zlib; no bytes are the empty text. Reading also takes blanks, tabs
 * and line ends anywhere, a last group without its "=", and the form "@1@" (Base64 whose padding stands
 * for bytes 0). Everything else is bad format, reported as "ERR: Base64 string has bad format!" on the
 * diagnostic output; compressed bytes that are damaged or unfold to more than 256 MiB are reported there,
 * too. A text that is so refused stands for no bytes. */

#define UTIL_CONVERT_TOO_LARGE (-1)   /* there are more bytes than the destination holds */
#define UTIL_CONVERT_NO_ARGUMENT (-2) /* an argument is missing or no block, or a stream cannot be made */
#define UTIL_CONVERT_FAILED (-4)      /* a stream or memory fails, or there are too many bytes */
#define UTIL_CONVERT_TOO_SMALL (-44)  /* the text does not fit into the destination */

/* Turn bytes into text. They are a block of memory, what a stream holds from its start to its end (one that
 * cannot seek: from where it stands), or a global memory block by its whole GlobalSize.
 *
 * bytes        may be null when byteCount is 0
 * destination  receives the text with its terminator, or is left alone when the text does not fit
 * size         of the destination, in characters
 * compress     not 0: compressed
 *
 * More than 256 MiB of bytes are refused, as reading refuses them: UTIL_CONVERT_FAILED, and the line "WRN:
 * more than 256 MiB cannot be kept as a text" on the diagnostic output.
 *
 * Result       0, UTIL_CONVERT_TOO_SMALL, UTIL_CONVERT_NO_ARGUMENT or UTIL_CONVERT_FAILED; with a null
 *              destination or size 0 the size that is needed, terminator included
 */
TVUT22_API INT TVUT22_CALL UtilConvertBLOBToString(const void* bytes, UINT byteCount, wchar_t* destination,
                                                   UINT size, BOOL compress);
TVUT22_API INT TVUT22_CALL UtilConvertStreamToString(IStream* stream, wchar_t* destination, UINT size,
                                                     BOOL compress);
TVUT22_API INT TVUT22_CALL UtilConvertHGLOBALToString(HGLOBAL block, wchar_t* destination, UINT size,
                                                      BOOL compress);

/* Turns text into bytes.
 *
 * destination  receives the bytes; null: they are counted only. When the result is not their count its
 *              contents are undefined.
 * size         of the destination in bytes
 *
 * Result       the number of bytes, 0 for a text that is refused, UTIL_CONVERT_TOO_LARGE,
 *              UTIL_CONVERT_NO_ARGUMENT for a null text, UTIL_CONVERT_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilConvertStringToBLOB(const wchar_t* text, void* destination, UINT size);

/* Turns text into bytes, and writes them to a stream where it stands. Nothing is written of a text that is
 * refused.
 *
 * Result  0, UTIL_CONVERT_NO_ARGUMENT for a null text or stream, UTIL_CONVERT_FAILED
 */
TVUT22_API INT TVUT22_CALL UtilConvertStringToStream(const wchar_t* text, IStream* stream);

/* Turns text into a movable global memory block of exactly its bytes; a text that is refused makes an empty
 * block.
 *
 * out     receives the block, to be released with GlobalFree; null when the result is not 0
 *
 * Result  0, UTIL_CONVERT_NO_ARGUMENT for a null text or out or when no stream can be made,
 *         UTIL_CONVERT_FAILED. When the stream does not give its block, "GetHGlobalFromStream() failed" is
 *         written to the diagnostic output and the result is UTIL_CONVERT_FAILED.
 */
TVUT22_API INT TVUT22_CALL UtilConvertStringToHGLOBAL(const wchar_t* text, HGLOBAL* out);

#endif
