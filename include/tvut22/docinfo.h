/* Util: author, title, dates and other properties of documents, without the programs that made them.
 *
 *     UtilDocInfo info = UtilDocInfoOpen(L"C:\\Data\\Report.docx");
 *     BSTR title = NULL;
 *     if (info && UtilDocInfoGet(info, L"Title", &title) == UTIL_OK)
 *         ...                                             // the same name whatever the format
 *     SysFreeString(title);
 *     UtilDocInfoClose(info);
 *
 * The format is recognised by a document's contents, never by its name. A damaged document gives what it
 * still holds, and the property "Problem". Documents are read only, in small pieces: a few kilobytes of a
 * large one. Nothing in them is executed, no link is followed. docs/docinfo.md has the table of formats and
 * properties, and the forms of values.
 *
 * Results are those of results.h. Any thread may call anything at any time. Ciphers load a system library
 * when they are first needed: no Open belongs into a DllMain.
 */
#ifndef TVUT22_DOCINFO_H
#define TVUT22_DOCINFO_H

#include <tvut22/calling.h>
#include <tvut22/ole_types.h>
#include <tvut22/results.h>

/* The properties of a document: an opaque value of 32 bits, 0 for none. */
typedef struct UtilDocInfoObject* UtilDocInfo;

/* Reads the properties of a file, which is closed again before this returns.
 *
 * file       its path, of any length; waited for up to 10 s while others keep it from being shared
 *
 * Result     the properties, to be closed with UtilDocInfoClose; 0 when there are none, and the last-error
 *            value tells why: ERROR_INVALID_PARAMETER for null or an empty path, ERROR_BAD_FORMAT for
 *            contents of no known format, ERROR_NOT_ENOUGH_MEMORY, ERROR_TOO_MANY_OPEN_FILES when 4,096 are
 *            open, or the system's reason
 */
TVUT22_API UtilDocInfo TVUT22_CALL UtilDocInfoOpen(const wchar_t* file);

/* Reads the properties of a document in a stream, from its beginning.
 *
 * stream     must be able to seek; it stands where it stood afterwards
 *
 * Result     as of UtilDocInfoOpen; the last-error value may be the stream's own reason, too
 */
TVUT22_API UtilDocInfo TVUT22_CALL UtilDocInfoOpenStream(IStream* stream);

/* Returns a property.
 *
 * info       from one of the above
 * name       such as L"Author" or L"Custom.Client", without regard to ASCII case; null or empty: the names of
 *            all properties that are there, one a line, with LF between them
 * value      null: only asks. Otherwise leads to null or a string of the OLE allocator, which the text
 *            replaces; the caller frees it with SysFreeString. At most 32,767 characters, except the list of
 *            names
 *
 * Result     UTIL_OK
 *            UTIL_NOT_FOUND     the document does not have it; *value is untouched, as for all that follow
 *            UTIL_BAD_ARGUMENT  no such properties
 *            UTIL_FAILED        no memory
 */
TVUT22_API INT TVUT22_CALL UtilDocInfoGet(UtilDocInfo info, const wchar_t* name, BSTR* value);

/* Gives properties back; their handle is invalid then.
 *
 * info       0: nothing happens
 *
 * Result     UTIL_OK
 *            UTIL_BAD_ARGUMENT  no such properties
 */
TVUT22_API INT TVUT22_CALL UtilDocInfoClose(UtilDocInfo info);

#endif
